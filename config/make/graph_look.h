#pragma once
// How line graphs and pie charts look: the records, the attributes of an item that fill them, and how a
// control gets them. An attribute more is a field, a row and a line of this file.
#include "config/settings/setting_binding.h"
#include "controls/line_graph.h"
#include "controls/pie_chart.h"
#include "platform/types.h"

#include <algorithm>

/// Byte alphas of items go through whole percent and back: 128 becomes 127, 1 becomes 0.
struct stLineGraphLook {
    u8 m_u8LineR = 0, m_u8LineG = 0, m_u8LineB = 0, m_u8LineA = 0;
    u8 m_u8LineOpacity = 0;               ///< percent; of items only
    u32 m_uDataNum = 0;                   ///< columns; items work it out from the sizes for types 2 and 3
    u32 m_uLineType = 0;                  ///< 0 line, 1 area, 2 stairs, 3 bars; any other fails
    f32 m_fDataWidth = 0;                 ///< canvas pixels; of types 2 and 3, the others make their own
    f32 m_fMinValue = 0, m_fMaxValue = 0; ///< values at the bottom and the top
    u32 m_uDataStartIdx = 0;              ///< column of the first sample
};

inline void g_fnAddLineGraphSettings(SettingTable& table, stLineGraphLook& look) {
    const stSettingRow aRows[] = {
        {"LineColorR", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8LineR},
        {"LineColorG", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8LineG},
        {"LineColorB", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8LineB},
        {"LineColorA", "255", SETTING_DECIMAL, TARGET_U8, &look.m_u8LineA},
        {"DataNum", "0", SETTING_DECIMAL, TARGET_U32, &look.m_uDataNum},
        {"LineType", "0", SETTING_DECIMAL, TARGET_U32, &look.m_uLineType},
        {"DataWidth", "1.0", SETTING_FLOAT, TARGET_F32, &look.m_fDataWidth},
        {"MinValue", "0", SETTING_FLOAT, TARGET_F32, &look.m_fMinValue},
        {"MaxValue", "100.0", SETTING_FLOAT, TARGET_F32, &look.m_fMaxValue},
        {"DataStartIdx", "2", SETTING_DECIMAL, TARGET_U32, &look.m_uDataStartIdx},
    };
    g_fnAddSettings(table, aRows);
}

/// Behind the graph's size, ahead of its anchor and its buffers.
inline void g_fnGiveLook(CLineGraph_Base& graph, const stLineGraphLook& look) {
    graph.m_fnSetColorB(look.m_u8LineR, look.m_u8LineG, look.m_u8LineB, look.m_u8LineA);
    graph.m_fnSetRange(look.m_fMinValue, look.m_fMaxValue);
    graph.m_fnSetLineType(look.m_uLineType);
    graph.m_fnSetDataNum(look.m_uDataNum);
    graph.m_fnSetDataStartIdx(look.m_uDataStartIdx);
    graph.m_fnSetDataWidth(look.m_fDataWidth);
}

/// Byte alphas of items go through whole percent and back: 128 becomes 127, 1 becomes 0.
struct stPieChartLook {
    u8 m_u8ChartR = 0, m_u8ChartG = 0, m_u8ChartB = 0, m_u8ChartA = 0;
    u8 m_u8ChartOpacity = 0; ///< percent; of items only
    u32 m_uChartType = 0;    ///< 0 fan, 1 ring; any other fails
    u32 m_uSlotNum = 1;
    u32 m_uShapeSegNum = 16;              ///< straight segments in each slot
    f32 m_fSlotFillRatio = 100;           ///< percent of a slot's arc that is drawn
    f32 m_fChartFillRatio = 0;            ///< inner radius of a ring, percent of the outer
    f32 m_fMinValue = 0, m_fMaxValue = 0; ///< values of the empty and of the full gauge
    f32 m_fStartDeg = 0, m_fEndDeg = 0;
    u32 m_bClockwise = 0;
};

inline void g_fnAddPieChartSettings(SettingTable& table, stPieChartLook& look) {
    const stSettingRow aRows[] = {
        {"ChartColorR", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8ChartR},
        {"ChartColorG", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8ChartG},
        {"ChartColorB", "0", SETTING_DECIMAL, TARGET_U8, &look.m_u8ChartB},
        {"ChartColorA", "255", SETTING_DECIMAL, TARGET_U8, &look.m_u8ChartA},
        {"ChartType", "0", SETTING_DECIMAL, TARGET_U32, &look.m_uChartType},
        {"SlotNum", "1", SETTING_DECIMAL, TARGET_U32, &look.m_uSlotNum},
        {"ShapeSegNum", "3", SETTING_DECIMAL, TARGET_U32, &look.m_uShapeSegNum},
        {"SlotFillRatio", "100.0", SETTING_FLOAT, TARGET_F32, &look.m_fSlotFillRatio},
        {"ChartFillRatio", "50.0", SETTING_FLOAT, TARGET_F32, &look.m_fChartFillRatio},
        {"MinValue", "0", SETTING_FLOAT, TARGET_F32, &look.m_fMinValue},
        {"MaxValue", "100.0", SETTING_FLOAT, TARGET_F32, &look.m_fMaxValue},
        {"StartDegree", "0", SETTING_FLOAT, TARGET_F32, &look.m_fStartDeg},
        {"EndDegree", "0", SETTING_FLOAT, TARGET_F32, &look.m_fEndDeg},
        {"Clockwise", "0", SETTING_DECIMAL, TARGET_U32, &look.m_bClockwise},
    };
    g_fnAddSettings(table, aRows);
}

/// A ratio as its setter takes it; below 0 counts as 0.
inline u32 g_fnWholePercent(f32 fPercent) { return static_cast<u32>(std::clamp(fPercent, 0.0f, 1000.0f)); }

/// Behind the chart's size, ahead of its anchor and its buffers.
inline void g_fnGiveLook(CPieChart_Base& chart, const stPieChartLook& look) {
    chart.m_fnSetColorB(look.m_u8ChartR, look.m_u8ChartG, look.m_u8ChartB, look.m_u8ChartA);
    chart.m_fnSetRange(look.m_fMinValue, look.m_fMaxValue);
    chart.m_fnSetChartType(look.m_uChartType);
    chart.m_fnSetSlotNum(look.m_uSlotNum);
    chart.m_fnSetShapeSegNum(look.m_uShapeSegNum);
    chart.m_fnSetSlotFillRatio(g_fnWholePercent(look.m_fSlotFillRatio));
    chart.m_fnSetChartFillRatio(g_fnWholePercent(look.m_fChartFillRatio));
    chart.m_fnSetStartDeg(look.m_fStartDeg);
    chart.m_fnSetEndDeg(look.m_fEndDeg);
    chart.m_fnSetClockwise(look.m_bClockwise);
}
