#pragma once
// Gauge items: the element "PieChart".
#include "config/items/item_property.h"

class CItemProperty_PieChart : public virtual CItemProperty_Base {
  public:
    CItemProperty_PieChart();
    void m_fnAttachComplete() override;
    void m_fnPrintData() const override;

    char m_szDataFullName[64] = ""; ///< such as "GPU_USAGE#0"
    /// Byte alphas go through whole percent and back: 128 becomes 127, 1 becomes 0.
    u8 m_u8ChartR = 0, m_u8ChartG = 0, m_u8ChartB = 0, m_u8ChartA = 0;
    u8 m_u8ChartOpacity = 0; ///< percent
    u32 m_uChartType = 0;    ///< 0 fan, 1 ring
    u32 m_uSlotNum = 1;
    u32 m_uShapeSegNum = 16;    ///< straight segments in each slot
    f32 m_fSlotFillRatio = 100; ///< percent of a slot's arc that is drawn
    f32 m_fChartFillRatio = 0;  ///< inner radius of a ring, percent of the outer
    f32 m_fMinValue = 0, m_fMaxValue = 0;
    f32 m_fStartDeg = 0, m_fEndDeg = 0;
    u32 m_bClockwise = 0;
    char m_szZIndex[g_uItemNameBytes] = ""; ///< place in the stack of graphs and charts, for the layout
};

/// Registers each child "PieChart" that holds. After one without a data name nothing more is registered by
/// this call, though the rest is still read and reported. Always true.
bool g_fnReadPieChartItems(const tinyxml2::XMLElement* pParent);

/// Reports what is wrong, puts right what can be, and works out the percentage. False for a record that must
/// not be kept.
bool g_fnValidatePieChart(CItemProperty_PieChart& item);
