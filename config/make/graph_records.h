#pragma once
// Line graphs and pie charts from records.
#include "config/make/graph_look.h"
#include "platform/types.h"

#include <span>

/// One line graph to make. Lengths in canvas units.
struct stLineGraphInit : stLineGraphLook {
    u64 u64LB_ID;
    i32 iAnchorCode;
    i32 iX, iY;
    i32 iWidth, iHeight;
};

/// One pie chart to make. Lengths in canvas units, ratios in percent, angles in degrees.
struct stPieChartInit : stPieChartLook {
    u64 u64LB_ID;
    i32 iAnchorCode;
    i32 iX, iY;
    i32 iWidth, iHeight;
};

/// Makes and registers one control per record, in order; attaching them is left to g_fnLinkControls. False if
/// one could not be initialised; those made before it stay.
bool g_fnCreateLineGraphs(std::span<const stLineGraphInit> records);
bool g_fnCreatePieCharts(std::span<const stPieChartInit> records);
