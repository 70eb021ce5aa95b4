#include "config/make/graph_records.h"

#include "controls/control_ids.h"
#include "draw/draw_keys.h"

#include <memory>
#include <new>

namespace {

void Configure(CLineGraph_Base& graph, const stLineGraphInit& st) {
    graph.m_fnSetDrawKey(g_keyColorList);
    graph.m_fnSetGraphSize(static_cast<f32>(st.iWidth), static_cast<f32>(st.iHeight));
    g_fnGiveLook(graph, st);
    graph.m_fnSetAnchor(st.iAnchorCode, static_cast<f32>(st.iX), static_cast<f32>(st.iY));
}

void Configure(CPieChart_Base& chart, const stPieChartInit& st) {
    chart.m_fnSetDrawKey(g_keyColorList);
    chart.m_fnSetChartSize(static_cast<f32>(st.iWidth), static_cast<f32>(st.iHeight));
    g_fnGiveLook(chart, st);
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
