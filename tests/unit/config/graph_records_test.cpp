#include "config/make/graph_records.h"

#include "base/log.h"
#include "controls/control_ids.h"
#include "controls/line_graph.h"
#include "controls/link_controls.h"
#include "controls/pie_chart.h"
#include "draw/draw_keys.h"
#include "tests/unit/controls/graph_fixture.h"

namespace {

std::vector<std::string> g_aLines;

class GraphRecords : public GraphTest {
  protected:
    void SetUp() override {
        GraphTest::SetUp();
        g_aLines.clear();
        g_fnLogSink = [](const char* szLine) { g_aLines.emplace_back(szLine); };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        GraphTest::TearDown();
        EXPECT_EQ(graphs::g_iLiveMeshes, m_iMeshes) << "a control was left behind";
    }
    static stLineGraphInit GraphRecord(u64 id) {
        stLineGraphInit st{};
        st.u64LB_ID = id;
        st.iAnchorCode = 3;
        st.iX = 10;
        st.iY = 20;
        st.iWidth = 120;
        st.iHeight = 60;
        st.m_u8LineG = 255;
        st.m_u8LineA = 51;
        st.m_fMinValue = 90;
        st.m_fMaxValue = 10;
        st.m_uLineType = LINEGRAPH_TYPE_BAR;
        st.m_uDataNum = 12;
        st.m_uDataStartIdx = 5;
        st.m_fDataWidth = 6;
        return st;
    }
    static stPieChartInit ChartRecord(u64 id) {
        stPieChartInit st{};
        st.u64LB_ID = id;
        st.iAnchorCode = 7;
        st.iX = 1;
        st.iY = 2;
        st.iWidth = 90;
        st.iHeight = 80;
        st.m_u8ChartB = 255;
        st.m_u8ChartA = 102;
        st.m_fMinValue = -10;
        st.m_fMaxValue = 50;
        st.m_uChartType = PIECHART_TYPE_RING;
        st.m_uSlotNum = 8;
        st.m_uShapeSegNum = 4;
        st.m_fSlotFillRatio = 80.9f;
        st.m_fChartFillRatio = 60.9f;
        st.m_fStartDeg = 90;
        st.m_fEndDeg = 45;
        st.m_bClockwise = 1;
        return st;
    }
    static CLineGraph_Base* Graph(u64 id) { return g_fnFindCtrlById(id, g_stLineGraphIds, g_ppLineGraph); }
    static CPieChart_Base* Chart(u64 id) { return g_fnFindCtrlById(id, g_stPieChartIds, g_ppPieChart); }

    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
    i32 m_iMeshes = graphs::g_iLiveMeshes;
};

TEST_F(GraphRecords, ARecordSetsEverythingOnItsGraph) {
    const stLineGraphInit st = GraphRecord(7);
    ASSERT_TRUE(g_fnCreateLineGraphs({&st, 1}));
    CLineGraph_Base* p = Graph(7);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_fnGetDrawKey(), static_cast<const void*>(g_keyColorList));
    EXPECT_EQ(p->m_afColor[1], 1.0f);
    EXPECT_EQ(p->m_afColor[3], 51 / 255.0f);
    EXPECT_EQ(p->m_fGraphW, 120);
    EXPECT_EQ(p->m_fGraphH, 60);
    EXPECT_EQ(p->m_fMin, 10);
    EXPECT_EQ(p->m_fMax, 90);
    EXPECT_EQ(p->m_uLineType, LINEGRAPH_TYPE_BAR);
    EXPECT_EQ(p->m_uDataNum, 12u);
    EXPECT_EQ(p->m_uRingSize, 12u) << "the type is set before the columns";
    EXPECT_EQ(p->m_fColumnStep, 10);
    EXPECT_EQ(p->m_iColumn, 4);
    EXPECT_EQ(p->m_fDataWidth, 6);
    EXPECT_EQ(p->m_iAnchorCode, 3);
    EXPECT_EQ(p->m_fAnchorX, 10);
    EXPECT_EQ(p->m_fAnchorY, 20);
    EXPECT_NE(p->m_pEntity, nullptr);
    EXPECT_NE(p->m_pMesh, nullptr);
}

TEST_F(GraphRecords, ARecordSetsEverythingOnItsChart) {
    const stPieChartInit st = ChartRecord(7);
    ASSERT_TRUE(g_fnCreatePieCharts({&st, 1}));
    CPieChart_Base* p = Chart(7);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_fnGetDrawKey(), static_cast<const void*>(g_keyColorList));
    EXPECT_EQ(p->m_afColor[2], 1.0f);
    EXPECT_EQ(p->m_afColor[3], 102 / 255.0f);
    EXPECT_EQ(p->m_fChartW, 90);
    EXPECT_EQ(p->m_fChartH, 80);
    EXPECT_EQ(p->m_fMin, -10);
    EXPECT_EQ(p->m_fMax, 50);
    EXPECT_EQ(p->m_uChartType, PIECHART_TYPE_RING);
    EXPECT_EQ(p->m_uSlotNum, 8u);
    EXPECT_EQ(p->m_uShapeSegNum, 4u);
    EXPECT_EQ(p->m_fSlotFillRatio, 80) << "cut to whole percent";
    EXPECT_EQ(p->m_fChartFillRatio, 60);
    EXPECT_EQ(p->m_fStartDeg, 90);
    EXPECT_EQ(p->m_fEndDeg, 45);
    EXPECT_EQ(p->m_bClockwise, 1u);
    EXPECT_EQ(p->m_iAnchorCode, 7);
    EXPECT_EQ(p->m_fAnchorX, 1);
    EXPECT_EQ(p->m_fAnchorY, 2);
    EXPECT_NE(p->m_pMesh, nullptr);
}

TEST_F(GraphRecords, RatiosBelow0CountAs0AndLargeOnesAs100) {
    stPieChartInit aRecords[] = {ChartRecord(1), ChartRecord(2)};
    aRecords[0].m_fSlotFillRatio = aRecords[0].m_fChartFillRatio = -50;
    aRecords[1].m_fSlotFillRatio = aRecords[1].m_fChartFillRatio = 1e30f;
    ASSERT_TRUE(g_fnCreatePieCharts(aRecords));
    EXPECT_EQ(Chart(1)->m_fSlotFillRatio, 1);
    EXPECT_EQ(Chart(1)->m_fChartFillRatio, 1);
    EXPECT_EQ(Chart(2)->m_fSlotFillRatio, 100);
    EXPECT_EQ(Chart(2)->m_fChartFillRatio, 100);
}

TEST_F(GraphRecords, AGraphThatCannotBeMadeEndsTheCreation) {
    stLineGraphInit aRecords[] = {GraphRecord(1), GraphRecord(2), GraphRecord(3)};
    aRecords[1].m_uLineType = 4;
    EXPECT_FALSE(g_fnCreateLineGraphs(aRecords));
    EXPECT_NE(Graph(1), nullptr);
    EXPECT_EQ(Graph(2), nullptr);
    EXPECT_EQ(Graph(3), nullptr);
    aRecords[0] = GraphRecord(4);
    aRecords[0].m_uDataNum = 20000;
    EXPECT_FALSE(g_fnCreateLineGraphs(aRecords)) << "more vertices than an index reaches";
}

TEST_F(GraphRecords, AChartThatCannotBeMadeEndsTheCreation) {
    stPieChartInit aRecords[] = {ChartRecord(1), ChartRecord(2), ChartRecord(3)};
    aRecords[1].m_uChartType = 2;
    EXPECT_FALSE(g_fnCreatePieCharts(aRecords));
    EXPECT_NE(Chart(1), nullptr);
    EXPECT_EQ(Chart(2), nullptr);
    EXPECT_EQ(Chart(3), nullptr);
    aRecords[0] = ChartRecord(4);
    aRecords[0].m_uSlotNum = 100000;
    EXPECT_FALSE(g_fnCreatePieCharts(aRecords));
}

TEST_F(GraphRecords, ARepeatedIdIsRefusedAndLoggedAndTheOthersAreMade) {
    const stLineGraphInit aGraphs[] = {GraphRecord(1), GraphRecord(1), GraphRecord(2)};
    ASSERT_TRUE(g_fnCreateLineGraphs(aGraphs));
    EXPECT_NE(Graph(2), nullptr);
    EXPECT_EQ(g_aLines.size(), 1u);
    const stPieChartInit aCharts[] = {ChartRecord(1), ChartRecord(1), ChartRecord(2)};
    ASSERT_TRUE(g_fnCreatePieCharts(aCharts));
    EXPECT_NE(Chart(2), nullptr);
    EXPECT_EQ(g_aLines.size(), 2u);
    EXPECT_EQ(graphs::g_iLiveMeshes, m_iMeshes + 4);
}

TEST_F(GraphRecords, LinkingPutsGraphsThenChartsIntoTheColourList) {
    const stPieChartInit aCharts[] = {ChartRecord(5), ChartRecord(3)};
    const stLineGraphInit aGraphs[] = {GraphRecord(9), GraphRecord(4)};
    ASSERT_TRUE(g_fnCreatePieCharts(aCharts));
    ASSERT_TRUE(g_fnCreateLineGraphs(aGraphs));
    EXPECT_TRUE(m_pManager->m_fnGetLayer(g_uLayerColor).empty()) << "creation attaches nothing";
    g_fnLinkControls();
    EXPECT_EQ(*m_pManager->m_fnGetDrawList(g_keyColorList),
              (ControlList{Graph(9), Graph(4), Chart(5), Chart(3)}));
}

} // namespace
