#pragma once
// Line graphs and pie charts from records.
#include "base/color.h"
#include "platform/types.h"

#include <span>

/// One line graph to make. Lengths in canvas units.
struct stLineGraphInit : stColor {
    u64 u64LB_ID;
    i32 iAnchorCode;
    i32 iX, iY;
    i32 iWidth, iHeight;
    f32 fMin, fMax; ///< values at the bottom and the top
    u32 uLineType;  ///< 0 line, 1 area, 2 stairs, 3 bars; any other fails
    u32 uDataNum;   ///< columns
    u32 uDataStartIdx;
    f32 fDataWidth; ///< of types 2 and 3; the others make their own
};

/// One pie chart to make. Lengths in canvas units, ratios in percent, angles in degrees.
struct stPieChartInit : stColor {
    u64 u64LB_ID;
    i32 iAnchorCode;
    i32 iX, iY;
    i32 iWidth, iHeight;
    f32 fMin, fMax; ///< values of the empty and of the full gauge
    u32 uChartType; ///< 0 fan, 1 ring; any other fails
    u32 uSlotNum;
    u32 uShapeSegNum;
    f32 fSlotFillRatio, fChartFillRatio;
    f32 fStartDeg, fEndDeg;
    u32 bClockwise;
};

/// Makes and registers one control per record, in order; attaching them is left to g_fnLinkControls. False if
/// one could not be initialised; those made before it stay.
bool g_fnCreateLineGraphs(std::span<const stLineGraphInit> records);
bool g_fnCreatePieCharts(std::span<const stPieChartInit> records);
