// Line graphs and pie charts in the lists of the custom style.
#include "frame/update/update_flags.h"
#include "frame/update/update_graphs.h"

#include "config/items/item_graph.h"
#include "config/items/item_pie.h"
#include "controls/line_graph.h"
#include "controls/pie_chart.h"
#include "tests/unit/frame/update_fixture.h"

#include <cstdio>

namespace {

class UpdateGraphs : public UpdateCustomTest {
  protected:
    template <class Item> static void Register(const char* szName, const char* szData) {
        Item item;
        std::strcpy(item.m_szItemName, szName);
        std::strcpy(item.m_szDataFullName, szData);
        item.m_u64ItemId = g_fnInternName(szName);
        EXPECT_TRUE(g_fnRegisterItemProperty(&item));
    }
    /// An item and its control, over the values 0 to 100.
    CLineGraph_Base* GraphItem(const char* szName, const char* szData) {
        Register<CItemProperty_LineGraph>(szName, szData);
        auto* p = new CLineGraph_Base;
        p->m_fnSetRange(0, 100);
        EXPECT_TRUE(p->m_fnInitialize());
        EXPECT_EQ(g_fnRegisterXCtrl(IdLineGraph, Id(szName), p), 1);
        (*g_fnControlNames('L'))[szName] = Id(szName);
        return p;
    }
    CPieChart_Base* ChartItem(const char* szName, const char* szData) {
        Register<CItemProperty_PieChart>(szName, szData);
        auto* p = new CPieChart_Base;
        p->m_fnSetRange(0, 100);
        p->m_fnSetSlotNum(10);
        EXPECT_TRUE(p->m_fnInitialize());
        EXPECT_EQ(g_fnRegisterXCtrl(IdPieChart, Id(szName), p), 1);
        (*g_fnControlNames('C'))[szName] = Id(szName);
        return p;
    }
    /// The next data walk.
    static void Walk() {
        g_bUpdateData[0] = 1;
        Frame(1);
    }
    static f32 Newest(const CLineGraph_Base* p) { return p->m_pRawValues[p->m_uHead]; }
    static std::string Word(const char* szFormat, const void* p) {
        char szText[200];
        std::snprintf(szText, sizeof szText, szFormat,
                      static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(p)));
        return szText;
    }
};

TEST_F(UpdateGraphs, EachDataWalkAddsASampleOfTheCompanionsValue) {
    Publish({{"GPU_USAGE#0", 40}});
    CLineGraph_Base* p = GraphItem("Use@Gpu", "GPU_USAGE#0");
    g_fnBuildUpdateCustom();
    ASSERT_EQ(g_listUpdateData_L.size(), 1u);
    EXPECT_TRUE(g_listUpdateFPS_L.empty());
    EXPECT_EQ(g_uUpdateRecordCount, 1u);
    const CUpdateDataFuncL& record = g_listUpdateData_L.front();
    EXPECT_EQ(record.m_uBID, Id("Use@Gpu"));
    EXPECT_EQ(record.m_fn, &g_fnUpdateLineGraph);
    EXPECT_EQ(record.m_uDivisor, 1u);
    Walk();
    Change({70});
    Frame(1);
    EXPECT_EQ(p->m_uSampleCount, 1u) << "between two walks nothing is added";
    Walk();
    EXPECT_EQ(p->m_uSampleCount, 2u);
    EXPECT_EQ(Newest(p), 70);
}

TEST_F(UpdateGraphs, AChartShowsTheCompanionsValue) {
    Publish({{"GPU_USAGE#0", 40}});
    CPieChart_Base* p = ChartItem("Ring", "GPU_USAGE#0");
    g_fnBuildUpdateCustom();
    ASSERT_EQ(g_listUpdateData_L.size(), 1u);
    EXPECT_EQ(g_listUpdateData_L.front().m_fn, &g_fnUpdatePieChart);
    Walk();
    EXPECT_EQ(p->m_fValue, 40);
    EXPECT_EQ(p->m_uDrawIndexCount, 4u * 3 * 3);
}

TEST_F(UpdateGraphs, FiguresOfTheProcessGoThroughTheFPSListWithTheTablesDivisor) {
    CLineGraph_Base* pGraph = GraphItem("Ft", "FRAME_TIME");
    CPieChart_Base* pChart = ChartItem("Fps", "FPS");
    g_fnBuildUpdateCustom();
    EXPECT_EQ(g_listUpdateFPS_L.size(), 2u);
    EXPECT_TRUE(g_listUpdateData_L.empty());
    EXPECT_EQ(g_uUpdateRecordCount, 0u);
    EXPECT_TRUE(g_stShownFigures.m_fnCustomFrameTime())
        << "a graph of the frame time counts as a display of it";
    g_uFPS = 60;
    g_iFrameTime = 694;
    g_bUpdateFPS[0] = 1;
    Frame(1);
    g_iFrameTime = 0;
    EXPECT_EQ(pGraph->m_uSampleCount, 1u);
    EXPECT_FLOAT_EQ(Newest(pGraph), 6.94f);
    EXPECT_EQ(pChart->m_fValue, 60);
}

TEST_F(UpdateGraphs, ASensorsDivisorComesFromTheTable) {
    Publish({{"GPU_VOLTAGE#0", 1250}, {"PUMP_RPM#0", -24}});
    g_stDisplay.mapFormat["GPU_VOLTAGE"] = {3, 1000};
    g_stDisplay.mapFormat["PUMP_RPM"] = {0, 0};
    CLineGraph_Base* pVoltage = GraphItem("V", "GPU_VOLTAGE#0");
    CPieChart_Base* pPump = ChartItem("P", "PUMP_RPM#0");
    g_fnBuildUpdateCustom();
    Walk();
    EXPECT_EQ(Newest(pVoltage), 1.25f);
    EXPECT_EQ(pPump->m_fValue, -24) << "values are signed, and a divisor of 0 shows the plain value";
}

TEST_F(UpdateGraphs, AGraphWithoutDataStaysUnboundUntilTheNextBuild) {
    CLineGraph_Base* p = GraphItem("Use", "GPU_USAGE#0");
    g_fnBuildUpdateCustom();
    EXPECT_TRUE(g_listUpdateData_L.empty());
    EXPECT_TRUE(Logged("item \"Use\" szDataFullName: \"GPU_USAGE#0\" missing"));
    Publish({{"GPU_USAGE#0", 40}});
    Walk();
    EXPECT_EQ(p->m_uSampleCount, 0u) << "the data turned up later";
    g_fnResetUpdate();
    Frame(1);
    EXPECT_EQ(p->m_uSampleCount, 1u);
}

TEST_F(UpdateGraphs, ARebuildOfTheListsKeepsTheHistory) {
    Publish({{"GPU_USAGE#0", 40}});
    CLineGraph_Base* p = GraphItem("Use", "GPU_USAGE#0");
    g_fnResetUpdate();
    Walk();
    g_fnResetUpdate();
    Walk();
    EXPECT_EQ(p->m_uSampleCount, 2u);
}

TEST_F(UpdateGraphs, AnUnknownSensorStaysUnboundThoughItsValueIsThere) {
    Publish({{"PUMP_RPM#0", 2400}});
    GraphItem("G", "PUMP_RPM#0");
    ChartItem("C", "PUMP_RPM#0");
    g_fnBuildUpdateCustom();
    EXPECT_TRUE(g_listUpdateData_L.empty() && g_listUpdateFPS_L.empty());
    EXPECT_TRUE(Logged("item \"G\" szDataFullName: \"PUMP_RPM#0\" missing"));
    EXPECT_TRUE(Logged("item \"C\" szDataFullName: \"PUMP_RPM#0\" missing"));
}

TEST_F(UpdateGraphs, AChartsBindingIsLogged) {
    Publish({{"GPU_USAGE#0", 40}});
    CPieChart_Base* p = ChartItem("Ring", "GPU_USAGE#0");
    g_fnBuildUpdateCustom();
    EXPECT_TRUE(Logged(Word("g_fnGetPieChartPtrByName: Ring - %#x\n", p)));
    EXPECT_TRUE(Logged("uBID; " + std::to_string(Id("Ring")) + "\n"));
    EXPECT_TRUE(Logged("szDataFullName: GPU_USAGE#0\n"));
    EXPECT_TRUE(Logged(Word("pData: %#x\n", g_fnGetMonitorDataPtr("GPU_USAGE#0"))));
}

TEST_F(UpdateGraphs, AChartWithoutDataIsLogged) {
    ChartItem("Other", "GPU_USAGE#1");
    ChartItem("Ring", "GPU_USAGE#0");
    g_fnBuildUpdateCustom();
    EXPECT_TRUE(Logged("pData: 0\n"));
    EXPECT_TRUE(Logged("error - uPtr_ID_C; 0\n"));
    EXPECT_TRUE(Logged("error - uPtr_ID_C; 1\n"));
    EXPECT_TRUE(Logged("item \"Ring\" szDataFullName: \"GPU_USAGE#0\" missing"));
}

TEST_F(UpdateGraphs, AnItemWhoseControlWasNotMadeMakesNoRecord) {
    Publish({{"GPU_USAGE#0", 40}});
    Register<CItemProperty_LineGraph>("G", "GPU_USAGE#0");
    Register<CItemProperty_PieChart>("C", "GPU_USAGE#0");
    GraphItem("Lost", "GPU_USAGE#0");
    const u32 uPtr_ID = g_stLineGraphIds.m_fnFind(Id("Lost"));
    delete g_ppLineGraph[uPtr_ID];
    g_ppLineGraph[uPtr_ID] = nullptr;
    g_fnBuildUpdateCustom();
    EXPECT_TRUE(g_listUpdateData_L.empty());
    EXPECT_TRUE(Logged("g_fnGetPieChartPtrByName: C - 0\n"));
}

TEST_F(UpdateGraphs, RecordsOfControlsThatWentAreHarmless) {
    const u32 uValue = 5;
    for (i32 i : {-1, 0, 511, 512, 100000}) {
        g_fnUpdateLineGraph(i, &uValue, 1);
        g_fnUpdatePieChart(i, nullptr, 2);
    }
    EXPECT_EQ(boxes::LineGraph(512), nullptr);
    EXPECT_EQ(boxes::PieChart(-1), nullptr);
}

TEST_F(UpdateGraphs, WithoutAPointerADemoValueComes) {
    CPieChart_Base* p = ChartItem("Ring", "GPU_USAGE#0");
    const i32 iIndex = boxes::FindPieChart(Id("Ring"));
    std::vector<f32> aValues;
    for (u32 u = 0; u < 20; ++u) {
        g_fnUpdatePieChart(iIndex, nullptr, 100);
        aValues.push_back(p->m_fValue);
        EXPECT_TRUE(p->m_fValue >= 0 && p->m_fValue < 100);
    }
    EXPECT_NE(std::count(aValues.begin(), aValues.end(), aValues[0]), 20);
}

TEST_F(UpdateGraphs, BuildingAgainMakesNoSecondRecord) {
    Publish({{"GPU_USAGE#0", 40}});
    GraphItem("G", "GPU_USAGE#0");
    ChartItem("C", "FPS");
    for (u32 u = 0; u < 3; ++u) g_fnBuildUpdateCustom();
    EXPECT_EQ(g_listUpdateData_L.size(), 1u);
    EXPECT_EQ(g_listUpdateFPS_L.size(), 1u);
}

} // namespace
