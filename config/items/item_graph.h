#pragma once
// Graph items: the element "LineGraph".
#include "config/items/item_property.h"

class CItemProperty_LineGraph : public virtual CItemProperty_Base {
  public:
    CItemProperty_LineGraph();
    void m_fnAttachComplete() override;
    void m_fnPrintData() const override;

    char m_szDataFullName[64] = ""; ///< such as "GPU_CLK#0"
    /// Byte alphas go through whole percent and back: 128 becomes 127, 1 becomes 0.
    u8 m_u8LineR = 0, m_u8LineG = 0, m_u8LineB = 0, m_u8LineA = 0;
    u8 m_u8LineOpacity = 0; ///< percent
    u32 m_uDataNum = 0;     ///< columns; worked out from the sizes for types 2 and 3
    u32 m_uLineType = 0;    ///< 0 line, 1 area, 2 stairs, 3 bars
    f32 m_fDataWidth = 0;   ///< canvas pixels; of types 2 and 3
    f32 m_fMinValue = 0, m_fMaxValue = 0;
    u32 m_uDataStartIdx = 0;                ///< column of the first sample
    char m_szZIndex[g_uItemNameBytes] = ""; ///< place in the stack of graphs and charts, for the layout
};

/// Registers each child "LineGraph" that holds. After one without a data name nothing more is registered by
/// this call, though the rest is still read and reported. Always true.
bool g_fnReadLineGraphItems(const tinyxml2::XMLElement* pParent);

/// Reports what is wrong, puts right what can be, and works out percentage and columns. False for a record
/// that must not be kept.
bool g_fnValidateLineGraph(CItemProperty_LineGraph& item);

/// Bars or stairs of width fWidth, half a width apart, that fit into uContentW; 2 where none does.
u32 g_fnGraphColumns(u32 uContentW, f32 fWidth);
