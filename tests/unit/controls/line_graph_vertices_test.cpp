// Vertices of line graphs, worked by hand: 4 columns of 30 over the values 0 to 100, 100 high, so y = 100 -
// value. A slope of 40 in a column is 50 long; a line is forced to 15 wide, so its normal is (6, 4.5) there.
#include "controls/line_graph.h"
#include "tests/unit/controls/graph_fixture.h"

#include <initializer_list>

namespace {

using namespace graphs;

class LineGraphVertices : public GraphTest {
  protected:
    /// A graph that begins at column uStart and has taken the values.
    CLineGraph_Base& Feed(u32 uType, u32 uStart, std::initializer_list<i32> values, f32 fHeight = 100) {
        m_pGraph = std::make_unique<CLineGraph_Base>();
        m_pGraph->m_fnSetGraphSize(120, fHeight);
        m_pGraph->m_fnSetRange(0, fHeight);
        m_pGraph->m_fnSetLineType(uType);
        m_pGraph->m_fnSetDataNum(4);
        m_pGraph->m_fnSetDataStartIdx(uStart);
        m_pGraph->m_fnSetDataWidth(4);
        EXPECT_TRUE(m_pGraph->m_fnInitialize());
        return Add(values);
    }
    CLineGraph_Base& Add(std::initializer_list<i32> values) {
        for (i32 i : values) m_pGraph->m_fnAddValue(static_cast<f32>(i));
        return *m_pGraph;
    }
    /// What the mesh holds.
    const stShapeVertex* Uploaded() const {
        return dynamic_cast<CMesh&>(*m_pGraph->m_pMesh).m_aVertices.data();
    }
    void ExpectPair(u32 uPair, stPoint stFirst, stPoint stSecond) const {
        ExpectVertices(Uploaded(), 2 * uPair, {stFirst, stSecond});
    }
    /// Quads 4 wide with these left edges, upper and lower y.
    void ExpectQuads(std::initializer_list<std::array<f32, 3>> quads) const {
        u32 uQuad = 0;
        for (const auto& [x, fUpper, fLower] : quads)
            ExpectVertices(Uploaded(), 4 * uQuad++,
                           {{x, fUpper}, {x + 4, fUpper}, {x, fLower}, {x + 4, fLower}});
    }
    /// An area's pairs: its upper points, each with one at the bottom.
    void ExpectArea(const Points& upper) const {
        for (u32 i = 0; i < upper.size(); ++i) ExpectPair(i, upper[i], {upper[i].x, 100});
    }
    std::unique_ptr<CLineGraph_Base> m_pGraph;
};

TEST_F(LineGraphVertices, TheFirstSampleOfALineShowsNothingTheSecondOneSegment) {
    Feed(LINEGRAPH_TYPE_CLASSIC, 0, {20});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 0u);
    for (u32 i = 0; i < 10; ++i) ExpectVertices(Uploaded(), i, {{0, 0}});
    Add({60});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 6u);
    ExpectPair(0, {-6, 75.5f}, {6, 84.5f});
    ExpectPair(1, {24, 35.5f}, {36, 44.5f});
}

TEST_F(LineGraphVertices, ALineThatFallsPutsTheUpperPointFirstToo) {
    Feed(LINEGRAPH_TYPE_CLASSIC, 0, {60, 20});
    ExpectPair(0, {6, 35.5f}, {-6, 44.5f});
    ExpectPair(1, {36, 75.5f}, {24, 84.5f});
}

TEST_F(LineGraphVertices, ALineThatGrowsToTheLeftPutsTheUpperPointFirstToo) {
    Feed(LINEGRAPH_TYPE_CLASSIC, 0, {});
    m_pGraph->m_fnSetGraphSize(-120, 100);
    Add({20, 60});
    ExpectPair(0, {6, 75.5f}, {-6, 84.5f});
    ExpectPair(1, {-24, 35.5f}, {-36, 44.5f});
}

TEST_F(LineGraphVertices, JoinsOfALineAreMitred) {
    Feed(LINEGRAPH_TYPE_CLASSIC, 0, {20, 60, 60});
    ExpectPair(0, {-6, 75.5f}, {6, 84.5f});
    ExpectPair(1, {26.25f, 32.5f}, {33.75f, 47.5f});
    ExpectPair(2, {60, 32.5f}, {60, 47.5f});
    Add({100});
    ExpectPair(2, {56.25f, 32.5f}, {63.75f, 47.5f});
    ExpectPair(3, {84, -4.5f}, {96, 4.5f});
}

TEST_F(LineGraphVertices, AFullLineMovesLeftByOneColumnASample) {
    Feed(LINEGRAPH_TYPE_CLASSIC, 0, {20, 60, 60, 100, 60});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 24u);
    ExpectPair(3, {90, -12.5f}, {90, 12.5f});
    ExpectPair(4, {126, 35.5f}, {114, 44.5f});
    Add({60});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 24u);
    ExpectPair(0, {-3.75f, 32.5f}, {3.75f, 47.5f});
    ExpectPair(1, {26.25f, 32.5f}, {33.75f, 47.5f});
    ExpectPair(2, {60, -12.5f}, {60, 12.5f});
    ExpectPair(3, {93.75f, 32.5f}, {86.25f, 47.5f});
    ExpectPair(4, {120, 32.5f}, {120, 47.5f});
}

TEST_F(LineGraphVertices, ALineAtTheLastColumnMovesLeftBeforeItsRingIsFull) {
    Feed(LINEGRAPH_TYPE_CLASSIC, 3, {60, 60});
    ExpectPair(0, {90, 32.5f}, {90, 47.5f});
    ExpectPair(1, {120, 32.5f}, {120, 47.5f});
    Add({60});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 12u);
    ExpectPair(0, {60, 32.5f}, {60, 47.5f});
    ExpectPair(1, {90, 32.5f}, {90, 47.5f});
    ExpectPair(2, {120, 32.5f}, {120, 47.5f});
}

TEST_F(LineGraphVertices, StraightRunsKeepTheHalfWidth) {
    Feed(LINEGRAPH_TYPE_CLASSIC, 0, {20, 60, 100});
    ExpectPair(1, {24, 35.5f}, {36, 44.5f});
    Feed(LINEGRAPH_TYPE_CLASSIC, 0, {50, 50, 50});
    ExpectPair(1, {30, 42.5f}, {30, 57.5f});
}

TEST_F(LineGraphVertices, ASharpTurnShowsALongSpike) {
    // A rise of 3000 in 30: the half width grows by the ratio of the length to the column.
    Feed(LINEGRAPH_TYPE_CLASSIC, 0, {0, 3000, 0}, 3000);
    ExpectVertices(Uploaded(), 2, {{30, -750}, {30, 750}}, 1);
}

TEST_F(LineGraphVertices, TheXOfALineDriftsByRounding) {
    CLineGraph_Base& graph = Feed(LINEGRAPH_TYPE_CLASSIC, 0, {});
    graph.m_fnSetGraphSize(100, 100);
    graph.m_fnSetDataNum(23);
    ASSERT_TRUE(graph.m_fnInitialize());
    for (u32 i = 0; i < 100; ++i) graph.m_fnAddValue(50);
    // A join is written in column 22 and goes down by a step a sample.
    f32 fExpected = 22 * graph.m_fColumnStep;
    for (u32 i = 0; i < 22; ++i) fExpected -= graph.m_fColumnStep;
    EXPECT_EQ(graph.m_pDataVertices[0].m_afPos[0], fExpected);
    EXPECT_NE(fExpected, 0);
    EXPECT_NEAR(fExpected, 0, 1e-3);
}

TEST_F(LineGraphVertices, AnAreaReachesFromTheCurveToTheBottom) {
    Feed(LINEGRAPH_TYPE_MOUNTAIN, 0, {20});
    ExpectArea({{0, 80}});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 0u);
    Add({60, 10});
    ExpectArea({{0, 80}, {30, 40}, {60, 90}});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 12u);
}

TEST_F(LineGraphVertices, AFullAreaMovesItsHeightsOnly) {
    Feed(LINEGRAPH_TYPE_MOUNTAIN, 0, {20, 60, 10, 100, 50});
    ExpectArea({{0, 80}, {30, 40}, {60, 90}, {90, 0}, {120, 50}});
    Add({30});
    ExpectArea({{0, 40}, {30, 90}, {60, 0}, {90, 50}, {120, 70}});
}

TEST_F(LineGraphVertices, AnAreaAtTheLastColumnMovesLeftBeforeItsRingIsFull) {
    Feed(LINEGRAPH_TYPE_MOUNTAIN, 3, {20, 60});
    ExpectArea({{90, 80}, {120, 40}});
    Add({10});
    ExpectArea({{60, 80}, {90, 40}, {120, 90}});
}

TEST_F(LineGraphVertices, AStairStandsBetweenASampleAndTheOneBefore) {
    Feed(LINEGRAPH_TYPE_STAIR, 0, {20});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 0u);
    for (u32 i = 0; i < 4; ++i) ExpectVertices(Uploaded(), i, {{0, 0}});
    Add({60, 20});
    ExpectQuads({{0, 40, 80}, {30, 40, 80}});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 12u);
}

TEST_F(LineGraphVertices, AFlatRunOfStairsStillShowsAStepAsHighAsTheWidth) {
    Feed(LINEGRAPH_TYPE_STAIR, 0, {60, 60, 58, 54});
    ExpectQuads({{0, 38, 42}, {30, 39, 43}, {60, 42, 46}});
}

TEST_F(LineGraphVertices, FullStairsMoveTheirHeights) {
    Feed(LINEGRAPH_TYPE_STAIR, 0, {20, 60, 60, 58, 20});
    ExpectQuads({{0, 40, 80}, {30, 38, 42}, {60, 39, 43}, {90, 42, 80}});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 24u);
    Add({100});
    ExpectQuads({{0, 38, 42}, {30, 39, 43}, {60, 42, 80}, {90, 0, 80}});
}

TEST_F(LineGraphVertices, StairsAtTheLastColumnMoveLeftBeforeTheirRingIsFull) {
    Feed(LINEGRAPH_TYPE_STAIR, 3, {20, 60});
    ExpectQuads({{90, 40, 80}});
    Add({10});
    ExpectQuads({{60, 40, 80}, {90, 40, 90}});
    Add({50});
    ExpectQuads({{30, 40, 80}, {60, 40, 90}, {90, 50, 90}});
}

TEST_F(LineGraphVertices, ABarReachesFromTheValueToTheBottom) {
    Feed(LINEGRAPH_TYPE_BAR, 0, {20});
    ExpectQuads({{0, 80, 100}});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 6u);
    Add({60, 10, 100});
    ExpectQuads({{0, 80, 100}, {30, 40, 100}, {60, 90, 100}, {90, 0, 100}});
    EXPECT_EQ(m_pGraph->m_uDrawIndexCount, 24u);
}

TEST_F(LineGraphVertices, FullBarsMoveTheirHeights) {
    Feed(LINEGRAPH_TYPE_BAR, 0, {20, 60, 10, 100, 50});
    ExpectQuads({{0, 40, 100}, {30, 90, 100}, {60, 0, 100}, {90, 50, 100}});
}

TEST_F(LineGraphVertices, BarsAtTheLastColumnMoveLeftBeforeTheirRingIsFull) {
    Feed(LINEGRAPH_TYPE_BAR, 2, {20, 60});
    ExpectQuads({{60, 80, 100}, {90, 40, 100}});
    Add({10});
    ExpectQuads({{30, 80, 100}, {60, 40, 100}, {90, 90, 100}});
}

TEST_F(LineGraphVertices, AFullRingMovesHeightsAlsoWhereTheColumnStillGrows) {
    CLineGraph_Base& line = Feed(LINEGRAPH_TYPE_CLASSIC, 0, {20, 60, 60});
    line.m_fnScroll(true, true, false);
    ExpectVertices(line.m_pDataVertices, 0, {{-3.75f, 32.5f}, {3.75f, 47.5f}, {30, 32.5f}, {30, 47.5f}});
    CLineGraph_Base& area = Feed(LINEGRAPH_TYPE_MOUNTAIN, 0, {20, 60, 10});
    area.m_fnScroll(true, true, false);
    ExpectVertices(area.m_pDataVertices, 0, {{0, 40}, {0, 100}, {30, 90}, {30, 100}});
    CLineGraph_Base& bars = Feed(LINEGRAPH_TYPE_BAR, 0, {20, 60, 10});
    bars.m_iColumn = 100;
    bars.m_fnScroll(true, true, false);
    ExpectVertices(bars.m_pDataVertices, 0, {{0, 40}, {4, 40}, {0, 100}, {4, 100}, {30, 90}});
}

TEST_F(LineGraphVertices, ScrollingAGraphWithoutSamplesTouchesNothing) {
    for (u32 uType = 0; uType < 4; ++uType) {
        Feed(uType, 0, {}).m_fnScroll(true, true, true);
        for (u32 i = 0; i < 10; ++i) ExpectVertices(m_pGraph->m_pDataVertices, i, {{0, 0}});
        CLineGraph_Base bare;
        bare.m_fnScroll(true, true, true);
    }
}

TEST_F(LineGraphVertices, TheStartIndexIsTheColumnOfTheFirstSample) {
    Feed(LINEGRAPH_TYPE_BAR, 2, {20});
    ExpectQuads({{60, 80, 100}});
    Feed(LINEGRAPH_TYPE_MOUNTAIN, 2, {20});
    ExpectArea({{60, 80}});
}

} // namespace
