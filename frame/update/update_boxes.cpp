#include "frame/update/update_boxes.h"

#include "controls/control_kinds.h"

namespace boxes {

stDirect g_stDirect;

template <class T> static T* At(const stControlKind<T>& kind, i32 iIndex) {
    T* const* const ppArray = *kind.pppCurrent;
    return ppArray && static_cast<u32>(iIndex) < kind.uEntries ? ppArray[iIndex] : nullptr;
}

CNumBox_Base* NumBox(i32 iNumBox) { return At(g_fnKind<KIND_NUMBOX>(), iNumBox); }
CTextBox_Base* TextBox(i32 iTextBox) { return At(g_fnKind<KIND_TEXTBOX>(), iTextBox); }
CPanel_Base* Panel(i32 iPanel) { return At(g_fnKind<KIND_PANEL>(), iPanel); }
CFlipBox_Base* FlipBox(i32 i) { return At(g_fnKind<KIND_FLIPBOX>(), i); }
CLineGraph_Base* LineGraph(i32 i) { return At(g_fnKind<KIND_LINEGRAPH>(), i); }
CPieChart_Base* PieChart(i32 i) { return At(g_fnKind<KIND_PIECHART>(), i); }

template <class T> static i32 Find(const stControlKind<T>& kind, u64 u64LB_ID) {
    const u32 uPlace = g_fnFindCtrlPlace(u64LB_ID, kind);
    return uPlace != g_uNoControl ? static_cast<i32>(uPlace) : g_iNoIndex;
}

i32 FindNumBox(u64 u64LB_ID) { return Find(g_fnKind<KIND_NUMBOX>(), u64LB_ID); }
i32 FindTextBox(u64 u64LB_ID) { return Find(g_fnKind<KIND_TEXTBOX>(), u64LB_ID); }
i32 FindPanel(u64 u64LB_ID) { return Find(g_fnKind<KIND_PANEL>(), u64LB_ID); }
i32 FindFlipBox(u64 u64LB_ID) { return Find(g_fnKind<KIND_FLIPBOX>(), u64LB_ID); }
i32 FindLineGraph(u64 u64LB_ID) { return Find(g_fnKind<KIND_LINEGRAPH>(), u64LB_ID); }
i32 FindPieChart(u64 u64LB_ID) { return Find(g_fnKind<KIND_PIECHART>(), u64LB_ID); }

} // namespace boxes
