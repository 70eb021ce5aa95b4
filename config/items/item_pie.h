#pragma once
// Gauge items: the element "PieChart".
#include "config/items/item_property.h"
#include "config/make/graph_look.h"

class CItemProperty_PieChart : public virtual CItemProperty_Base, public stPieChartLook {
  public:
    CItemProperty_PieChart();
    void m_fnAttachComplete() override;
    void m_fnPrintData() const override;

    char m_szDataFullName[64] = "";         ///< such as "GPU_USAGE#0"
    char m_szZIndex[g_uItemNameBytes] = ""; ///< place in the stack of graphs and charts, for the layout
};

/// Registers each child "PieChart" that holds. After one without a data name nothing more is registered by
/// this call, though the rest is still read and reported. Always true.
bool g_fnReadPieChartItems(const tinyxml2::XMLElement* pParent);

/// Reports what is wrong, puts right what can be, and works out the percentage. False for a record that must
/// not be kept.
bool g_fnValidatePieChart(CItemProperty_PieChart& item);
