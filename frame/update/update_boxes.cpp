#include "frame/update/update_boxes.h"

#include "controls/control_ids.h"
#include "controls/osd_manager.h"

namespace boxes {

stDirect g_stDirect;

template <class T> static T* At(T* const* ppArray, i32 iIndex, u32 uEntries) {
    return ppArray && static_cast<u32>(iIndex) < uEntries ? ppArray[iIndex] : nullptr;
}

CNumBox_Base* NumBox(i32 iNumBox) { return At(g_ppNumBox, iNumBox, g_uNumBoxEntries); }
CTextBox_Base* TextBox(i32 iTextBox) { return At(g_ppTextBox, iTextBox, g_uTextBoxEntries); }
CPanel_Base* Panel(i32 iPanel) { return At(g_ppPanel, iPanel, g_uPanelEntries); }
CLineGraph_Base* LineGraph(i32 i) { return At(g_ppLineGraph, i, g_uLineGraphEntries); }
CPieChart_Base* PieChart(i32 i) { return At(g_ppPieChart, i, g_uPieChartEntries); }

template <class T> static i32 Find(const stControlIdTable& stIds, u64 u64LB_ID, T* const* ppArray) {
    return g_fnFindCtrlById(u64LB_ID, stIds, ppArray) ? static_cast<i32>(stIds.m_fnFind(u64LB_ID))
                                                      : g_iNoIndex;
}

i32 FindNumBox(u64 u64LB_ID) { return Find(g_stNumBoxIds, u64LB_ID, g_ppNumBox); }
i32 FindTextBox(u64 u64LB_ID) { return Find(g_stTextBoxIds, u64LB_ID, g_ppTextBox); }
i32 FindPanel(u64 u64LB_ID) { return Find(g_stPanelIds, u64LB_ID, g_ppPanel); }
i32 FindLineGraph(u64 u64LB_ID) { return Find(g_stLineGraphIds, u64LB_ID, g_ppLineGraph); }
i32 FindPieChart(u64 u64LB_ID) { return Find(g_stPieChartIds, u64LB_ID, g_ppPieChart); }

} // namespace boxes
