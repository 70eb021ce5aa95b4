#pragma once
// Graphs and charts in the update lists of the custom style.
#include "platform/types.h"

class CItemProperty_Base;
class CPieChart_Base;

/// The two forms that the builder puts into records: the value, divided by a divisor above 1, becomes the
/// graph's next sample or the chart's value. A place without a control is skipped.
void g_fnUpdateLineGraph(i32 iLineGraph, const u32* pData, u32 uDivisor);
void g_fnUpdatePieChart(i32 iPieChart, const u32* pData, u32 uDivisor);

/// The chart of that name, or null; logs which.
CPieChart_Base* g_fnGetPieChartPtrByName(const char* szName);

/// Enters the record of a line graph or pie chart item: in the FPS list for a figure of the process itself,
/// in the data list for a value of the companion. Without control or value, or for an unknown sensor, none.
void g_fnBindLineGraph(const CItemProperty_Base& item);
void g_fnBindPieChart(const CItemProperty_Base& item);
