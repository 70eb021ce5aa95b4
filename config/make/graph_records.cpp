#include "config/make/graph_records.h"

#include "controls/control_ids.h"
#include "controls/line_graph.h"
#include "controls/pie_chart.h"
#include "draw/draw_keys.h"

#include <algorithm>
#include <memory>
#include <new>

namespace {

/// A ratio as its setter takes it; below 0 counts as 0.
u32 WholePercent(f32 fPercent) { return static_cast<u32>(std::clamp(fPercent, 0.0f, 1000.0f)); }

void Configure(CLineGraph_Base& graph, const stLineGraphInit& st) {
    graph.m_fnSetDrawKey(g_keyColorList);
    graph.m_fnSetColorB(st.u8R, st.u8G, st.u8B, st.u8A);
    graph.m_fnSetGraphSize(static_cast<f32>(st.iWidth), static_cast<f32>(st.iHeight));
    graph.m_fnSetRange(st.fMin, st.fMax);
    graph.m_fnSetLineType(st.uLineType);
    graph.m_fnSetDataNum(st.uDataNum);
    graph.m_fnSetDataStartIdx(st.uDataStartIdx);
    graph.m_fnSetDataWidth(st.fDataWidth);
    graph.m_fnSetAnchor(st.iAnchorCode, static_cast<f32>(st.iX), static_cast<f32>(st.iY));
}

void Configure(CPieChart_Base& chart, const stPieChartInit& st) {
    chart.m_fnSetDrawKey(g_keyColorList);
    chart.m_fnSetColorB(st.u8R, st.u8G, st.u8B, st.u8A);
    chart.m_fnSetChartSize(static_cast<f32>(st.iWidth), static_cast<f32>(st.iHeight));
    chart.m_fnSetRange(st.fMin, st.fMax);
    chart.m_fnSetChartType(st.uChartType);
    chart.m_fnSetSlotNum(st.uSlotNum);
    chart.m_fnSetShapeSegNum(st.uShapeSegNum);
    chart.m_fnSetSlotFillRatio(WholePercent(st.fSlotFillRatio));
    chart.m_fnSetChartFillRatio(WholePercent(st.fChartFillRatio));
    chart.m_fnSetStartDeg(st.fStartDeg);
    chart.m_fnSetEndDeg(st.fEndDeg);
    chart.m_fnSetClockwise(st.bClockwise);
    chart.m_fnSetAnchor(st.iAnchorCode, static_cast<f32>(st.iX), static_cast<f32>(st.iY));
}

template <class Control, class Record> bool CreateAll(std::span<const Record> records, ControlIdType eType) {
    for (const Record& st : records) {
        std::unique_ptr<Control> pControl(new (std::nothrow) Control);
        if (!pControl) continue;
        Configure(*pControl, st);
        if (!pControl->m_fnInitialize()) return false;
        // A refused one is logged; it has no owner, so it goes.
        if (g_fnRegisterXCtrl(eType, st.u64LB_ID, pControl.get())) pControl.release();
    }
    return true;
}

} // namespace

bool g_fnCreateLineGraphs(std::span<const stLineGraphInit> records) {
    return CreateAll<CLineGraph_Base>(records, IdLineGraph);
}

bool g_fnCreatePieCharts(std::span<const stPieChartInit> records) {
    return CreateAll<CPieChart_Base>(records, IdPieChart);
}
