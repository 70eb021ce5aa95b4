#pragma once
// The items of the custom layout, by name and by id.
#include "config/items/item_property.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class CItemProperty_ImgBox;
class CItemProperty_LineGraph;
class CItemProperty_NumBox;
class CItemProperty_Panel;
class CItemProperty_PieChart;
class CItemProperty_TextBox;

/// Owns the records; byte order of the names.
extern std::map<std::string, std::unique_ptr<CItemProperty_Base>, std::less<>> g_mapItemByName;
/// These records in id order. A later record under a taken id takes its place here only.
extern std::map<u64, CItemProperty_Base*> g_mapItemById;

/// Copies a record of any type to the heap and enters the copy. False for null, for a name that is taken, and
/// for a type code without a record class.
bool g_fnRegisterItemProperty(const CItemProperty_Base* pItem);
/// The item of that name (null and unknown give false, with *ppOut untouched).
bool g_fnQueryItemProperty(const char* szName, CItemProperty_Base** ppOut);
bool g_fnIsItemNameTaken(const char* szName);
/// Clears the list, then appends all items of a type in id order.
void g_fnEnumItemsOfType(std::vector<CItemProperty_Base*>& list, u32 uType);
/// Drops all items; names keep their ids.
void g_fnClearItems();

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
/// Name up to the last "@".
std::string g_fnItemStem(const CItemProperty_Base& item);
/// Owner text, which is the group; false, with szOut untouched, if there is none.
bool g_fnItemOwner(const CItemProperty_Base& item, std::string& szOut);
/// Name of a control of the item: stem, suffix ("_F", "[0]", "") and, if there is one, "@" and the owner.
std::string g_fnItemControlName(const CItemProperty_Base& item, const char* szSuffix);

/// How the parts of a mixed item stand in their frame panel, in the words of the update record.
struct stItemAlign {
    u32 m_uAlignX;       ///< 7 left, 8 centre, 9 right: the content anchor
    i32 m_uAlignOffsetX; ///< canvas pixels, may be negative
    i32 m_uAlignOffsetY;
    f32 m_uAlignGap;
};
stItemAlign g_fnItemAlign(const CItemProperty_NumBox& item);
