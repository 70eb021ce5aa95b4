#pragma once
// Controls that the steps of an update reach without a record: by place, and the ones that a style names.
#include "frame/update/update_records.h"
#include "platform/types.h"

class CFlipBox_Base;
class CLineGraph_Base;
class CNumBox_Base;
class CPanel_Base;
class CPieChart_Base;
class CTextBox_Base;

namespace boxes {

/// Control at a place of the current manager's arrays; null for g_iNoIndex, a place beyond the array, an
/// empty one.
CNumBox_Base* NumBox(i32 iNumBox);
CTextBox_Base* TextBox(i32 iTextBox);
CPanel_Base* Panel(i32 iPanel);
CFlipBox_Base* FlipBox(i32 iFlipBox);
CLineGraph_Base* LineGraph(i32 iLineGraph);
CPieChart_Base* PieChart(i32 iPieChart);

/// Place of an element's instance; g_iNoIndex if the layout has none.
i32 FindNumBox(u64 u64LB_ID);
i32 FindTextBox(u64 u64LB_ID);
i32 FindPanel(u64 u64LB_ID);
i32 FindFlipBox(u64 u64LB_ID);
i32 FindLineGraph(u64 u64LB_ID);
i32 FindPieChart(u64 u64LB_ID);

/// Places of a row's parts. Absent parts are g_iNoIndex.
struct stRow {
    i32 iPanel = g_iNoIndex, iNumBox = g_iNoIndex, iTextBox = g_iNoIndex;
};

/// What the steps of an update write directly. Resolved by the builder of a style with fixed ids.
struct stDirect {
    stRow stFPS, stFrameTime;
    i32 aiTime[3] = {g_iNoIndex, g_iNoIndex, g_iNoIndex}; ///< hour, minute, second
    i32 aiSize[2] = {g_iNoIndex, g_iNoIndex};             ///< width, height
    i32 iSizeText = g_iNoIndex, iSizePanel = g_iNoIndex;
    stRow aDebug[5];
};
extern stDirect g_stDirect;

} // namespace boxes
