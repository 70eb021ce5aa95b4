// Line graphs: setters, ring, buffers and drawing. Vertices are checked in line_graph_vertices_test.cpp.
#include "controls/line_graph.h"

#include "draw/draw_keys.h"
#include "tests/unit/controls/graph_fixture.h"

#include <algorithm>
#include <limits>

namespace {

using namespace graphs;

class LineGraph : public GraphTest {
  protected:
    /// 100 wide and 80 high over the values 0 to 100.
    static void SetUpGraph(CLineGraph_Base& graph, u32 uType, u32 uDataNum) {
        graph.m_fnSetGraphSize(100, 80);
        graph.m_fnSetRange(0, 100);
        graph.m_fnSetLineType(uType);
        graph.m_fnSetDataNum(uDataNum);
        graph.m_fnSetDataStartIdx(0);
        graph.m_fnSetDataWidth(4);
    }
    std::unique_ptr<CLineGraph_Base> Ready(u32 uType, u32 uDataNum) {
        auto p = std::make_unique<CLineGraph_Base>();
        SetUpGraph(*p, uType, uDataNum);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    static CMesh& MeshOf(CLineGraph_Base& graph) { return dynamic_cast<CMesh&>(*graph.m_pMesh); }
    static f32 NewestY(const CLineGraph_Base& graph) { return graph.m_pPixelY[graph.m_uHead]; }
};

TEST_F(LineGraph, StartsEmptyAndWithoutADrawKey) {
    CLineGraph_Base graph;
    EXPECT_EQ(graph.m_pDataVertices, nullptr);
    EXPECT_EQ(graph.m_pVertices, nullptr);
    EXPECT_EQ(graph.m_pIndices, nullptr);
    for (f32 f : graph.m_afColor) EXPECT_EQ(f, 0);
    EXPECT_EQ(graph.m_uRingSize, 9u);
    EXPECT_EQ(graph.m_uDataNum, 8u);
    EXPECT_EQ(graph.m_iColumn, -1);
    EXPECT_EQ(graph.m_uDataStartIdx, 0u);
    EXPECT_EQ(graph.m_uHead, 0u);
    EXPECT_EQ(graph.m_uSampleCount, 0u);
    EXPECT_EQ(graph.m_uDrawIndexCount, 0u);
    EXPECT_EQ(graph.m_fRange, 0);
    EXPECT_EQ(graph.m_fMin, 0);
    EXPECT_EQ(graph.m_fMax, 0);
    EXPECT_EQ(graph.m_fGraphW, 512);
    EXPECT_EQ(graph.m_fGraphH, 512);
    EXPECT_EQ(graph.m_fColumnStep, 64);
    EXPECT_EQ(graph.m_fDataWidth, 0);
    EXPECT_EQ(graph.m_fHalfWidth, 0);
    EXPECT_EQ(graph.m_uLineType, 0u);
    EXPECT_EQ(graph.m_uGridLines + graph.m_uGridVertices + graph.m_uGridIndices, 0u);
    EXPECT_EQ(graph.m_fnGetDrawKey(), nullptr);
    EXPECT_EQ(graph.m_fnGetType(), 0u);
    EXPECT_EQ(graph.m_iAnchorCode, 1);
}

TEST_F(LineGraph, TheThreeColourFormsAgree) {
    CLineGraph_Base graph;
    graph.m_fnSetColor(0xFF3300, 102);
    EXPECT_EQ(graph.m_afColor[0], 1.0f);
    EXPECT_EQ(graph.m_afColor[1], 51 / 255.0f);
    EXPECT_EQ(graph.m_afColor[2], 0.0f);
    EXPECT_EQ(graph.m_afColor[3], 102 / 255.0f);
    graph.m_fnSetColorB(0, 255, 51, 204);
    EXPECT_EQ(graph.m_afColor[0], 0.0f);
    EXPECT_EQ(graph.m_afColor[1], 1.0f);
    EXPECT_EQ(graph.m_afColor[2], 51 / 255.0f);
    EXPECT_EQ(graph.m_afColor[3], 204 / 255.0f);
}

TEST_F(LineGraph, ARangeIsSorted) {
    CLineGraph_Base graph;
    graph.m_fnSetRange(100, 0);
    EXPECT_EQ(graph.m_fMin, 0);
    EXPECT_EQ(graph.m_fMax, 100);
    EXPECT_EQ(graph.m_fRange, 100);
    graph.m_fnSetRange(-5, 20);
    EXPECT_EQ(graph.m_fMin, -5);
    EXPECT_EQ(graph.m_fMax, 20);
    EXPECT_EQ(graph.m_fRange, 25);
}

TEST_F(LineGraph, TheSizeGivesTheColumnStepAndTheControlsSize) {
    CLineGraph_Base graph;
    graph.m_fnSetGraphSize(160, 40);
    EXPECT_EQ(graph.m_fColumnStep, 20);
    f32 w, h;
    graph.m_fnGetSize(&w, &h);
    EXPECT_EQ(w, 160);
    EXPECT_EQ(h, 40);
    graph.m_fnSetDataNum(4);
    EXPECT_EQ(graph.m_fColumnStep, 40);
}

TEST_F(LineGraph, TheRingOfBarsIsAsLongAsThereAreColumnsThatOfTheOthersOneLonger) {
    for (u32 uType = 0; uType < 4; ++uType) {
        CLineGraph_Base graph;
        graph.m_fnSetLineType(uType);
        graph.m_fnSetDataNum(20);
        EXPECT_EQ(graph.m_uDataNum, 20u);
        EXPECT_EQ(graph.m_uRingSize, uType == LINEGRAPH_TYPE_BAR ? 20u : 21u) << uType;
    }
}

TEST_F(LineGraph, ColumnsAreRaisedTo2ButTheRingFollowsTheNumberAsGiven) {
    CLineGraph_Base line, bars;
    bars.m_fnSetLineType(LINEGRAPH_TYPE_BAR);
    for (CLineGraph_Base* p : {&line, &bars}) {
        p->m_fnSetDataNum(1);
        EXPECT_EQ(p->m_uDataNum, 2u);
    }
    EXPECT_EQ(line.m_uRingSize, 2u);
    EXPECT_EQ(bars.m_uRingSize, 1u);
    line.m_fnSetDataNum(0);
    bars.m_fnSetDataNum(0);
    EXPECT_EQ(line.m_uRingSize, 1u);
    EXPECT_EQ(bars.m_uRingSize, 1u);
    EXPECT_EQ(bars.m_uDataNum, 2u);
}

TEST_F(LineGraph, ThinRingsOfAnyTypeTakeSamples) {
    for (u32 uType = 0; uType < 4; ++uType)
        for (u32 uDataNum = 0; uDataNum < 4; ++uDataNum) {
            auto p = Ready(uType, uDataNum);
            for (i32 i = 0; i < 10; ++i) p->m_fnAddValue(static_cast<f32>(i * 10));
            EXPECT_EQ(p->m_uSampleCount, p->m_uRingSize);
            EXPECT_LE(p->m_uDrawIndexCount, p->m_uIndexBytes / 2);
            for (u32 i = 0; i < p->m_uDrawIndexCount; ++i)
                EXPECT_LT(p->m_pIndices[i], p->m_uVertexBytes / 16);
        }
}

TEST_F(LineGraph, TheFirstSampleStandsAtTheStartIndex) {
    CLineGraph_Base graph;
    graph.m_fnSetDataNum(8);
    graph.m_fnSetDataStartIdx(2);
    EXPECT_EQ(graph.m_iColumn, 1);
    graph.m_fnSetDataStartIdx(0);
    EXPECT_EQ(graph.m_iColumn, -1);
    graph.m_fnSetDataStartIdx(7);
    EXPECT_EQ(graph.m_iColumn, 6);
}

TEST_F(LineGraph, AStartIndexPastTheColumnsIsTakenLess2) {
    CLineGraph_Base graph;
    graph.m_fnSetDataNum(8);
    graph.m_fnSetDataStartIdx(8);
    EXPECT_EQ(graph.m_iColumn, 6);
    graph.m_fnSetDataStartIdx(20);
    EXPECT_EQ(graph.m_iColumn, 18);
}

TEST_F(LineGraph, StartIndexesOutsideAllReasonHarmNothing) {
    for (u32 uType = 0; uType < 4; ++uType)
        for (u32 uStart : {0x7FFFFFFFu, 0x80000000u, 0x80000002u, 0xFFFFFFFFu}) {
            auto p = Ready(uType, 4);
            p->m_fnSetDataStartIdx(uStart);
            for (i32 i = 0; i < 12; ++i) p->m_fnAddValue(static_cast<f32>(i));
            EXPECT_EQ(p->m_uSampleCount, p->m_uRingSize);
        }
}

TEST_F(LineGraph, TheNumberOfColumnsSettlesTheStartAgain) {
    CLineGraph_Base graph;
    graph.m_fnSetDataStartIdx(5);
    EXPECT_EQ(graph.m_iColumn, 4);
    graph.m_fnSetDataNum(4);
    EXPECT_EQ(graph.m_iColumn, 3);
}

TEST_F(LineGraph, BuffersFollowTheType) {
    auto pLine = Ready(LINEGRAPH_TYPE_CLASSIC, 3);
    EXPECT_EQ(pLine->m_uVertexBytes, 2u * 4 * 16);
    EXPECT_EQ(pLine->m_uIndexBytes, 6u * 3 * 2);
    EXPECT_EQ(MeshOf(*pLine).m_auIndices, (Indices{0, 2, 1, 2, 3, 1, 2, 4, 3, 4, 5, 3, 4, 6, 5, 6, 7, 5}));
    EXPECT_EQ(MeshOf(*Ready(LINEGRAPH_TYPE_MOUNTAIN, 3)).m_auIndices, MeshOf(*pLine).m_auIndices);
    auto pBars = Ready(LINEGRAPH_TYPE_BAR, 3);
    EXPECT_EQ(pBars->m_uVertexBytes, 4u * 3 * 16);
    EXPECT_EQ(pBars->m_uIndexBytes, 6u * 3 * 2);
    EXPECT_EQ(MeshOf(*pBars).m_auIndices, (Indices{0, 1, 2, 1, 3, 2, 4, 5, 6, 5, 7, 6, 8, 9, 10, 9, 11, 10}));
    EXPECT_EQ(MeshOf(*Ready(LINEGRAPH_TYPE_STAIR, 3)).m_auIndices, MeshOf(*pBars).m_auIndices);
}

TEST_F(LineGraph, AnEmptyGraphLiesFlatOnItsBottomAndDrawsNothing) {
    for (u32 uType = 0; uType < 4; ++uType) {
        auto p = Ready(uType, 4);
        for (u32 i = 0; i < p->m_uRingSize; ++i) EXPECT_EQ(p->m_pPixelY[i], 80);
        for (const stShapeVertex& st : MeshOf(*p).m_aVertices) EXPECT_EQ(st.m_afPos[0] + st.m_afPos[1], 0);
        EXPECT_EQ(p->m_uDrawIndexCount, 0u);
        EXPECT_TRUE(p->m_fnAppendColumn()) << "without samples there is nothing to write";
        for (u32 i = 0; i < p->m_uVertexBytes / 16; ++i) EXPECT_EQ(p->m_pVertices[i].m_afPos[1], 0);
    }
}

TEST_F(LineGraph, GuideLinesWouldStandAheadOfTheData) {
    CLineGraph_Base graph;
    SetUpGraph(graph, LINEGRAPH_TYPE_BAR, 2);
    graph.m_uGridVertices = 4;
    graph.m_uGridIndices = 6;
    ASSERT_TRUE(graph.m_fnInitialize());
    EXPECT_EQ(graph.m_uVertexBytes, (8u + 4) * 16);
    EXPECT_EQ(graph.m_uIndexBytes, (12u + 6) * 2);
    EXPECT_EQ(graph.m_pDataVertices, graph.m_pVertices.get() + 4);
    EXPECT_EQ(graph.m_pDataIndices, graph.m_pIndices.get() + 6);
    EXPECT_EQ(graph.m_pDataIndices[0], 4);
    graph.m_fnAddValue(50);
    graph.m_fnRender(&m_batcher);
    EXPECT_EQ(g_aEvents, (Events{"constants", "bind", "layout", "draw 6 from 0", "constants", "bind",
                                 "layout", "draw 6 from 6"}));
}

TEST_F(LineGraph, BuffersEndAt65536Vertices) {
    CLineGraph_Base line, bars;
    line.m_fnSetDataNum(32767);
    EXPECT_TRUE(line.m_fnAllocBuffers());
    EXPECT_EQ(line.m_pIndices[6 * 32767 - 2], 65535);
    line.m_fnSetDataNum(32768);
    EXPECT_FALSE(line.m_fnAllocBuffers());
    bars.m_fnSetLineType(LINEGRAPH_TYPE_BAR);
    bars.m_fnSetDataNum(16384);
    EXPECT_TRUE(bars.m_fnAllocBuffers());
    EXPECT_EQ(bars.m_pIndices[6 * 16384 - 2], 65535);
    bars.m_fnSetDataNum(16385);
    EXPECT_FALSE(bars.m_fnAllocBuffers());
    for (CLineGraph_Base* p : {&line, &bars}) {
        p->m_fnSetDataNum(0x80000000u);
        EXPECT_FALSE(p->m_fnAllocBuffers());
        p->m_fnSetDataNum(0xFFFFFFFFu);
        EXPECT_FALSE(p->m_fnAllocBuffers());
        EXPECT_FALSE(p->m_fnInitialize());
        p->m_fnAddValue(1);
        EXPECT_EQ(p->m_uSampleCount, 0u);
    }
}

TEST_F(LineGraph, ATypeSetAfterTheColumnsThatDoesNotFitThemIsRefused) {
    CLineGraph_Base graph;
    graph.m_fnSetDataNum(8);
    graph.m_fnSetLineType(LINEGRAPH_TYPE_BAR);
    EXPECT_FALSE(graph.m_fnAllocBuffers()) << "a ring of 9 has no room in 8 columns";
    graph.m_fnSetDataNum(8);
    EXPECT_TRUE(graph.m_fnAllocBuffers());
}

TEST_F(LineGraph, AnUnknownTypeIsRefused) {
    CLineGraph_Base graph;
    SetUpGraph(graph, 4, 8);
    EXPECT_FALSE(graph.m_fnAppendColumn());
    EXPECT_FALSE(graph.m_fnInitialize());
    EXPECT_EQ(graph.m_pMesh, nullptr);
}

TEST_F(LineGraph, ANewNumberOfColumnsOrTypeForgetsTheHistory) {
    auto p = Ready(LINEGRAPH_TYPE_CLASSIC, 4);
    for (i32 i = 0; i < 3; ++i) p->m_fnAddValue(50);
    p->m_fnSetDataNum(100);
    p->m_fnAddValue(50);
    EXPECT_EQ(p->m_uSampleCount, 0u);
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(g_aEvents.empty());
    ASSERT_TRUE(p->m_fnInitialize());
    for (i32 i = 0; i < 200; ++i) p->m_fnAddValue(50);
    EXPECT_EQ(p->m_uSampleCount, 101u);
    p->m_fnSetLineType(LINEGRAPH_TYPE_BAR);
    EXPECT_EQ(p->m_pVertices, nullptr);
    EXPECT_EQ(p->m_pMesh, nullptr);
}

TEST_F(LineGraph, InitialisationForcesTheWidthOfLinesAndAreasOnly) {
    for (u32 uType = 0; uType < 4; ++uType) {
        auto p = Ready(uType, 5);
        EXPECT_EQ(p->m_fDataWidth, uType < 2 ? 10.0f : 4.0f) << uType;
        EXPECT_EQ(p->m_fHalfWidth, p->m_fDataWidth / 2) << uType;
    }
}

TEST_F(LineGraph, InitialisationStopsAtTheFirstFailure) {
    CLineGraph_Base graph;
    SetUpGraph(graph, LINEGRAPH_TYPE_CLASSIC, 8);
    g_bEntities = false;
    EXPECT_FALSE(graph.m_fnInitialize());
    EXPECT_NE(graph.m_pVertices, nullptr);
    EXPECT_EQ(graph.m_pMesh, nullptr);
    g_bEntities = true;
    g_bMeshes = false;
    EXPECT_FALSE(graph.m_fnInitialize());
    g_stCreationTable = {};
    EXPECT_FALSE(graph.m_fnCreateEntity());
    EXPECT_FALSE(graph.m_fnCreateMesh());
}

TEST_F(LineGraph, InitialisingAHiddenGraphMakesNothing) {
    CLineGraph_Base graph;
    graph.m_fnSetRenderable(false);
    EXPECT_TRUE(graph.m_fnInitialize());
    EXPECT_EQ(graph.m_pVertices, nullptr);
    EXPECT_EQ(graph.m_pEntity, nullptr);
    graph.m_fnAddValue(1);
    EXPECT_EQ(graph.m_uSampleCount, 0u);
}

TEST_F(LineGraph, AValueBeforeTheBuffersDoesNothing) {
    CLineGraph_Base graph;
    graph.m_fnAddValue(50);
    EXPECT_EQ(graph.m_uSampleCount, 0u);
    EXPECT_EQ(graph.m_uHead, 0u);
    EXPECT_EQ(graph.m_iColumn, -1);
}

TEST_F(LineGraph, AValueOutOfRangeSticksToTheEdgeAndIsKeptAsItIs) {
    auto p = Ready(LINEGRAPH_TYPE_BAR, 4);
    const struct { f32 fValue, fY; } aCases[] = {{150, 0}, {100, 0}, {75, 20}, {50, 40}, {0, 80}, {-20, 80}};
    for (const auto& st : aCases) {
        p->m_fnAddValue(st.fValue);
        EXPECT_EQ(NewestY(*p), st.fY) << st.fValue;
        EXPECT_EQ(p->m_pRawValues[p->m_uHead], st.fValue);
    }
}

TEST_F(LineGraph, AnEmptyRangeIsFullAboveItsValueAndEmptyAtIt) {
    auto p = Ready(LINEGRAPH_TYPE_BAR, 4);
    p->m_fnSetRange(10, 10);
    p->m_fnAddValue(11);
    EXPECT_EQ(NewestY(*p), 0);
    p->m_fnAddValue(10);
    EXPECT_EQ(NewestY(*p), 80);
}

TEST_F(LineGraph, TheOffsetMovesSamplesToComeDownAndNeverSideways) {
    auto p = Ready(LINEGRAPH_TYPE_BAR, 4);
    p->m_fnSetOffset(1000, 7);
    p->m_fnAddValue(50);
    EXPECT_EQ(NewestY(*p), 47);
    ExpectVertices(p->m_pDataVertices, 0, {{0, 47}, {4, 47}, {0, 80}, {4, 80}});
}

TEST_F(LineGraph, TheRingFillsAndThenDropsTheOldest) {
    auto p = Ready(LINEGRAPH_TYPE_CLASSIC, 2);
    const u32 auHead[] = {1, 2, 0, 1, 2}, auCount[] = {1, 2, 3, 3, 3}, auDraw[] = {0, 6, 12, 12, 12};
    for (u32 i = 0; i < 5; ++i) {
        p->m_fnAddValue(static_cast<f32>(i));
        EXPECT_EQ(p->m_uHead, auHead[i]);
        EXPECT_EQ(p->m_uSampleCount, auCount[i]);
        EXPECT_EQ(p->m_uDrawIndexCount, auDraw[i]);
    }
    EXPECT_EQ(std::vector<f32>(p->m_pRawValues.get(), p->m_pRawValues.get() + 3),
              (std::vector<f32>{2, 3, 4}));
}

TEST_F(LineGraph, BarsDrawFromTheFirstSampleOnTheOthersFromTheSecond) {
    for (u32 uType = 0; uType < 4; ++uType) {
        auto p = Ready(uType, 4);
        p->m_fnAddValue(50);
        EXPECT_EQ(p->m_uDrawIndexCount, uType == LINEGRAPH_TYPE_BAR ? 6u : 0u);
        p->m_fnAddValue(50);
        EXPECT_EQ(p->m_uDrawIndexCount, uType == LINEGRAPH_TYPE_BAR ? 12u : 6u);
    }
}

TEST_F(LineGraph, TheColumnStopsAtTheLastOne) {
    for (u32 uType = 0; uType < 4; ++uType) {
        auto p = Ready(uType, 4);
        for (i32 i = 0; i < 20; ++i) p->m_fnAddValue(50);
        EXPECT_EQ(p->m_iColumn, uType == LINEGRAPH_TYPE_BAR ? 3 : 4);
    }
}

TEST_F(LineGraph, ASampleUploadsTheVerticesOnceAndNoIndices) {
    auto p = Ready(LINEGRAPH_TYPE_STAIR, 4);
    EXPECT_EQ(MeshOf(*p).m_uFullUploads, 1u);
    for (i32 i = 0; i < 3; ++i) p->m_fnAddValue(50);
    EXPECT_EQ(MeshOf(*p).m_uFullUploads, 1u);
    EXPECT_EQ(MeshOf(*p).m_uVertexUploads, 3u);
}

TEST_F(LineGraph, TheMeshHas16ByteVerticesAnd16BitIndices) {
    auto p = Ready(LINEGRAPH_TYPE_CLASSIC, 4);
    EXPECT_EQ(p->m_pMesh->m_uVertexStride, 16u);
    EXPECT_EQ(p->m_pMesh->m_u8IndexSize, 2);
    EXPECT_EQ(p->m_pMesh->m_uVertexBytes, p->m_uVertexBytes);
    EXPECT_EQ(p->m_pMesh->m_uIndexBytes, p->m_uIndexBytes);
}

TEST_F(LineGraph, DrawsConstantsThenMeshThenLayoutThenIndices) {
    auto p = Ready(LINEGRAPH_TYPE_BAR, 4);
    p->m_fnSetColorF(0.1f, 0.2f, 0.3f, 0.4f);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(g_aEvents, Events{"constants"}) << "an empty graph";
    g_aEvents.clear();
    p->m_fnAddValue(1);
    p->m_fnAddValue(2);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(g_aEvents, (Events{"constants", "bind", "layout", "draw 12 from 0"}));
    EXPECT_EQ(m_batcher.m_stLast.m_pWorld, p->m_pEntity->m_fnGetWorldForDraw());
    EXPECT_EQ(m_batcher.m_stLast.m_pColor, p->m_afColor);
}

TEST_F(LineGraph, AGraphWithoutAMeshOrNotRenderableDrawsNothing) {
    CLineGraph_Base graph;
    graph.m_fnRender(&m_batcher);
    graph.m_fnDrawGraph(&m_batcher, nullptr, graph.m_afColor);
    auto p = Ready(LINEGRAPH_TYPE_BAR, 4);
    p->m_fnAddValue(1);
    p->m_fnSetRenderable(false);
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(g_aEvents.empty());
}

TEST_F(LineGraph, MovingTakesTheEntityAlong) {
    auto* p = Ready(LINEGRAPH_TYPE_BAR, 4).release();
    ASSERT_EQ(g_fnRegisterXCtrl(IdLineGraph, 1, p), 1);
    p->m_fnSetAnchor(9, 10, 20);
    m_pManager->m_fnAddChild(nullptr, p);
    f32 x = 0, y = 0, z = 9;
    p->m_pEntity->m_fnGetPosition(&x, &y, &z);
    EXPECT_EQ(x, 1920 - 100 - 10);
    EXPECT_EQ(y, 1080 - 80 - 20);
    EXPECT_EQ(z, 0);
}

TEST_F(LineGraph, ReleaseFreesEverything) {
    const i32 iEntities = g_iLiveEntities, iMeshes = g_iLiveMeshes;
    auto p = Ready(LINEGRAPH_TYPE_CLASSIC, 4);
    EXPECT_EQ(g_iLiveEntities, iEntities + 1);
    EXPECT_EQ(g_iLiveMeshes, iMeshes + 1);
    p->m_fnAddValue(1);
    p->m_fnRelease();
    EXPECT_EQ(g_iLiveEntities, iEntities);
    EXPECT_EQ(g_iLiveMeshes, iMeshes);
    EXPECT_EQ(p->m_pVertices, nullptr);
    EXPECT_EQ(p->m_pIndices, nullptr);
    EXPECT_EQ(p->m_pRawValues, nullptr);
    EXPECT_EQ(p->m_pPixelY, nullptr);
    p->m_fnAddValue(1);
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(g_aEvents.empty());
}

TEST_F(LineGraph, TheDrawKeyIsStoredOnly) {
    CLineGraph_Base graph;
    graph.m_fnSetDrawKey(g_keyColorList);
    EXPECT_EQ(graph.m_fnGetDrawKey(), static_cast<const void*>(g_keyColorList));
    EXPECT_TRUE(m_pManager->m_fnGetLayer(g_uLayerColor).empty());
}

} // namespace
