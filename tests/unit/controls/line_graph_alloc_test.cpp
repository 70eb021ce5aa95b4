// Once a graph or chart stands, a value allocates nothing: every allocation of this program is counted.
#include "controls/line_graph.h"
#include "controls/pie_chart.h"
#include "tests/support/allocation_count.h"
#include "tests/unit/controls/graph_fixture.h"

namespace {

class GraphAllocations : public GraphTest {
  protected:
    void SetUp() override {
        if (!c_bCounting) GTEST_SKIP() << "the sanitizer counts on its own operators";
        GraphTest::SetUp();
    }
};

TEST_F(GraphAllocations, TheCounterCounts) {
    const u64 uBefore = g_uAllocations;
    std::vector<int> aNumbers(10);
    EXPECT_EQ(g_uAllocations, uBefore + 1);
    EXPECT_EQ(aNumbers.size(), 10u);
}

TEST_F(GraphAllocations, AThousandSamplesOfEachTypeAllocateNothing) {
    for (u32 uType = 0; uType < 4; ++uType) {
        CLineGraph_Base graph;
        graph.m_fnSetRange(0, 100);
        graph.m_fnSetLineType(uType);
        graph.m_fnSetDataNum(100);
        ASSERT_TRUE(graph.m_fnInitialize());
        const u64 uBefore = g_uAllocations;
        for (u32 i = 0; i < 1000; ++i) graph.m_fnAddValue(static_cast<f32>(i % 101));
        EXPECT_EQ(g_uAllocations, uBefore) << uType;
        EXPECT_EQ(graph.m_uSampleCount, graph.m_uRingSize);
    }
}

TEST_F(GraphAllocations, AThousandValuesOfAChartAllocateNothing) {
    CPieChart_Base chart;
    chart.m_fnSetRange(0, 100);
    chart.m_fnSetSlotNum(20);
    ASSERT_TRUE(chart.m_fnInitialize());
    const u64 uBefore = g_uAllocations;
    for (u32 i = 0; i < 1000; ++i) chart.m_fnSetValue(static_cast<f32>(i % 101));
    EXPECT_EQ(g_uAllocations, uBefore);
}

} // namespace
