#pragma once
// Graph items: the element "LineGraph".
#include "config/items/item_property.h"
#include "config/make/graph_look.h"

class CItemProperty_LineGraph : public virtual CItemProperty_Base, public stLineGraphLook {
  public:
    CItemProperty_LineGraph();
    void m_fnAttachComplete() override;
    void m_fnPrintData() const override;

    char m_szDataFullName[64] = "";         ///< such as "GPU_CLK#0"
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
