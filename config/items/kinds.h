#pragma once
// The classes of item records by type code: copies of a record whose class only its code tells, and the way
// back from the common part to the complete record. The kinds themselves know nothing of this list.
#include "config/items/item_map.h"

class CItemProperty_ImgBox;
class CItemProperty_LineGraph;
class CItemProperty_NumBox;
class CItemProperty_Panel;
class CItemProperty_PieChart;
class CItemProperty_TextBox;

/// Copies a record of any type to the heap and enters the copy. False for null, for a name that is taken, and
/// for a type code without a record class.
bool g_fnRegisterItemProperty(const CItemProperty_Base* pItem);

/// The complete record if its type code belongs to that class (numbers and mixed items; texts and memos;
/// panels; images; line graphs; pie charts), else null.
const CItemProperty_NumBox* g_fnAsNumBox(const CItemProperty_Base* pItem);
const CItemProperty_TextBox* g_fnAsTextBox(const CItemProperty_Base* pItem);
const CItemProperty_Panel* g_fnAsPanel(const CItemProperty_Base* pItem);
const CItemProperty_ImgBox* g_fnAsImgBox(const CItemProperty_Base* pItem);
const CItemProperty_LineGraph* g_fnAsLineGraph(const CItemProperty_Base* pItem);
const CItemProperty_PieChart* g_fnAsPieChart(const CItemProperty_Base* pItem);

/// Data name of an item ("GPU_CLK#0"), null for types that show no data.
const char* g_fnItemDataName(const CItemProperty_Base& item);

/// How the parts of a mixed item stand in their frame panel, in the words of the update record.
struct stItemAlign {
    u32 m_uAlignX;       ///< 7 left, 8 centre, 9 right: the content anchor
    i32 m_uAlignOffsetX; ///< canvas pixels, may be negative
    i32 m_uAlignOffsetY;
    f32 m_uAlignGap;
};
stItemAlign g_fnItemAlign(const CItemProperty_NumBox& item);
