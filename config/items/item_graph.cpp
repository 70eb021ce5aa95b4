#include "config/items/item_graph.h"

#include "base/log.h"
#include "config/items/item_reader.h"

#include <algorithm>

namespace {

constexpr u32 g_uLineTypes = 4, g_uFirstComputedType = 2;
constexpr u32 g_uLeastColumns = 2;

constexpr const char* g_aszLineTypes[g_uLineTypes] = {"LINEGRAPH_TYPE_CLASSIC\n", "LINEGRAPH_TYPE_MOUNTAIN\n",
                                                      "LINEGRAPH_TYPE_STAIR\n", "LINEGRAPH_TYPE_BAR\n"};

/// The number of columns is read for lines and areas, and follows from the sizes for stairs and bars.
void SettleColumns(CItemProperty_LineGraph& item) {
    if (item.m_uLineType >= g_uFirstComputedType) {
        if (!(item.m_fDataWidth > 0)) g_fnReportField(item, "m_fDataWidth");
        item.m_uDataNum = g_fnGraphColumns(item.m_uContentSizeW, item.m_fDataWidth);
    } else if (item.m_uDataNum == 0) {
        g_fnReportField(item, "m_uDataNum");
        item.m_uDataNum = g_uLeastColumns;
    }
}

} // namespace

CItemProperty_LineGraph::CItemProperty_LineGraph() {
    m_pComplete = this;
    m_fnSetType(ITEM_LINEGRAPH);
}

void CItemProperty_LineGraph::m_fnAttachComplete() { m_pComplete = this; }

void CItemProperty_LineGraph::m_fnPrintData() const {
    CItemProperty_Base::m_fnPrintData();
    g_fnLog("LINEGRAPH_TYPE: ");
    if (m_uLineType < g_uLineTypes) g_fnLog("%s", g_aszLineTypes[m_uLineType]);
    g_fnLog("LINEGRAPH_COLUMN: %i\n", static_cast<i32>(m_uDataNum));
    g_fnLog("LINEGRAPH_DATA_WIDTH: %.1f\n", static_cast<f64>(m_fDataWidth));
    g_fnPrintColor("LINEGRAPH_COLOR:", m_u8LineR, m_u8LineG, m_u8LineB, m_u8LineA);
    g_fnLog("LINEGRAPH_MAX: %f\n", static_cast<f64>(m_fMaxValue));
    g_fnLog("LINEGRAPH_MIN: %f\n", static_cast<f64>(m_fMinValue));
}

bool g_fnReadLineGraphItems(const tinyxml2::XMLElement* pParent) {
    g_fnReadItems<CItemProperty_LineGraph>(pParent, g_fnItemType(ITEM_LINEGRAPH).szElement,
                                           [](const auto& element, auto& item) {
                                               g_fnApplyGraphRows(element, item, g_fnAddLineGraphSettings);
                                               return g_fnValidateLineGraph(item);
                                           });
    return true;
}

bool g_fnValidateLineGraph(CItemProperty_LineGraph& item) {
    if (item.m_uLineType >= g_uLineTypes) {
        g_fnReportField(item, "LineType");
        item.m_uLineType = 0;
    }
    if (item.m_uContentSizeW == 0) g_fnReportField(item, "m_uContentSizeW");
    if (item.m_uContentSizeH == 0) g_fnReportField(item, "m_uContentSizeH");
    SettleColumns(item);
    // KEEP(profiles): through whole percent and back, so 128 becomes 127 and 1 becomes 0.
    item.m_u8LineOpacity = static_cast<u8>(g_fnAlphaToPercent(item.m_u8LineA));
    item.m_u8LineA = g_fnPercentToAlpha(item.m_u8LineOpacity);
    if (*item.m_szDataFullName) return true;
    g_fnReportField(item, "m_szDataFullName is invalid");
    return false;
}

u32 g_fnGraphColumns(u32 uContentW, f32 fWidth) {
    constexpr f32 c_fPitch = 1.5f;      // in widths: a column and half a column of gap
    constexpr f32 c_fMost = 1000000.0f; // more than any graph takes
    if (!(fWidth > 0)) return g_uLeastColumns;
    const f32 fContentW = static_cast<f32>(uContentW);
    u32 uColumns = static_cast<u32>(std::min(fContentW / (fWidth * c_fPitch), c_fMost));
    if (fContentW - static_cast<f32>(uColumns) * fWidth * c_fPitch >= fWidth) ++uColumns;
    return uColumns == 0 ? g_uLeastColumns : uColumns;
}
