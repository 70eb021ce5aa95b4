#include "config/items/item_pie.h"

#include "base/log.h"
#include "config/items/item_reader.h"

namespace {

constexpr u32 g_uChartTypes = 2;

/// Reports a wrong value and puts another in its place.
template <class T>
void Mend(const CItemProperty_PieChart& item, bool bWrong, const char* szField, T& value, T replacement) {
    if (!bWrong) return;
    g_fnReportField(item, szField);
    value = replacement;
}

/// Below 0 counts as 0.
void MendRatios(CItemProperty_PieChart& item) {
    f32& fSlot = item.m_fSlotFillRatio;
    f32& fChart = item.m_fChartFillRatio;
    Mend(item, fSlot <= 0 || fSlot > 100, "m_fSlotFillRatio", fSlot, 100.0f);
    Mend(item, fChart <= 0, "m_fChartFillRatio", fChart, 50.0f);
    Mend(item, fChart > 100, "m_fChartFillRatio", fChart, 100.0f);
}

// KEEP(profiles): a whole turn passes here, though the chart takes it for none.
bool IsTurn(f32 fDegrees) { return fDegrees >= 0 && fDegrees <= 360; }

/// What is reported only.
void CheckPlace(const CItemProperty_PieChart& item) {
    if (item.m_uContentSizeW == 0) g_fnReportField(item, "m_uContentSizeW");
    if (item.m_uContentSizeH == 0) g_fnReportField(item, "m_uContentSizeH");
    if (!IsTurn(item.m_fStartDeg)) g_fnReportField(item, "m_fStartDeg");
    if (!IsTurn(item.m_fEndDeg)) g_fnReportField(item, "m_fEndDeg");
}

} // namespace

CItemProperty_PieChart::CItemProperty_PieChart() {
    m_pComplete = this;
    m_fnSetType(ITEM_PIECHART);
}

void CItemProperty_PieChart::m_fnAttachComplete() { m_pComplete = this; }

void CItemProperty_PieChart::m_fnPrintData() const {
    CItemProperty_Base::m_fnPrintData();
    g_fnLog("PIECHART_SLOT: %d\n", static_cast<i32>(m_uSlotNum));
    g_fnLog("PIECHART_SHAPE_SEG: %d\n", static_cast<i32>(m_uShapeSegNum));
    g_fnLog("PIECHART_START_DEG: %.1f\n", static_cast<f64>(m_fStartDeg));
    g_fnLog("PIECHART_END_DEG: %.1f\n", static_cast<f64>(m_fEndDeg));
    g_fnLog("PIECHART_CLOCKWISE: %d\n", static_cast<i32>(m_bClockwise));
    g_fnPrintColor("PIECHART_COLOR:", m_u8ChartR, m_u8ChartG, m_u8ChartB, m_u8ChartA);
    g_fnLog("PIECHART_MAX: %f\n", static_cast<f64>(m_fMaxValue));
    g_fnLog("PIECHART_MIN: %f\n", static_cast<f64>(m_fMinValue));
}

bool g_fnReadPieChartItems(const tinyxml2::XMLElement* pParent) {
    g_fnReadItems<CItemProperty_PieChart>(pParent, g_fnItemType(ITEM_PIECHART).szElement,
                                          [](const auto& element, auto& item) {
                                              g_fnApplyGraphRows(element, item, g_fnAddPieChartSettings);
                                              return g_fnValidatePieChart(item);
                                          });
    return true;
}

bool g_fnValidatePieChart(CItemProperty_PieChart& item) {
    Mend(item, item.m_uChartType >= g_uChartTypes, "ChartType", item.m_uChartType, 0u);
    Mend(item, item.m_uSlotNum == 0, "m_uSlotNum", item.m_uSlotNum, 1u);
    Mend(item, item.m_uShapeSegNum == 0, "m_uShapeSegNum", item.m_uShapeSegNum, 3u);
    MendRatios(item);
    CheckPlace(item);
    // KEEP(profiles): through whole percent and back, so 128 becomes 127 and 1 becomes 0.
    item.m_u8ChartOpacity = static_cast<u8>(g_fnAlphaToPercent(item.m_u8ChartA));
    item.m_u8ChartA = g_fnPercentToAlpha(item.m_u8ChartOpacity);
    if (*item.m_szDataFullName) return true;
    g_fnReportField(item, "m_szDataFullName is invalid");
    return false;
}
