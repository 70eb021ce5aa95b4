// Pie charts: the outline's points, both shapes, and what a value shows.
#include "controls/pie_chart.h"

#include "draw/draw_keys.h"
#include "tests/unit/controls/graph_fixture.h"

#include <cmath>

namespace {

using namespace graphs;

constexpr f32 g_fHalfRoot = 0.70710678f; ///< sine and cosine of 45 degrees

std::vector<stPiePoint> Samples(const stPieShape& stShape) {
    std::vector<stPiePoint> aPoints((stShape.uSegs + 1) * stShape.uSlots);
    g_fnPieSamples(stShape, aPoints.data());
    return aPoints;
}

void ExpectPoints(const std::vector<stPiePoint>& aPoints, const Points& expected) {
    ASSERT_EQ(aPoints.size(), expected.size());
    for (u32 i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(aPoints[i].x, expected[i].x, 1e-3) << i;
        EXPECT_NEAR(aPoints[i].y, expected[i].y, 1e-3) << i;
    }
}

/// Degrees of a point, 0 to 360, counter-clockwise from the right; y points down.
f32 DegreesOf(const stPiePoint& st) {
    const f32 fDegrees = std::atan2(-st.y, st.x) * 57.29578f;
    return fDegrees < -0.001f ? fDegrees + 360 : fDegrees;
}

TEST(PieSamples, EqualAnglesGiveTheFullCircleCounterClockwiseFromTheRight) {
    ExpectPoints(Samples({100, 100, false, 0, 0, 1, 4, 1}), {{50, 0}, {0, -50}, {-50, 0}, {0, 50}, {50, 0}});
}

TEST(PieSamples, EqualAnglesClockwiseTurnTheOtherWay) {
    ExpectPoints(Samples({100, 100, true, 0, 0, 1, 4, 1}), {{50, 0}, {0, 50}, {-50, 0}, {0, -50}, {50, 0}});
}

TEST(PieSamples, TheStartTurnsTheWholeCircle) {
    ExpectPoints(Samples({100, 100, false, 90, 90, 1, 2, 1}), {{0, -50}, {0, 50}, {0, -50}});
}

TEST(PieSamples, TwoAnglesGiveTheArcBetweenThem) {
    ExpectPoints(Samples({100, 100, false, 90, 180, 1, 2, 1}),
                 {{0, -50}, {-50 * g_fHalfRoot, -50 * g_fHalfRoot}, {-50, 0}});
}

TEST(PieSamples, ClockwiseWithTwoAnglesTakesTheOtherPartOfTheCircleInTheSameDirection) {
    // 90 to 180 the other way: a sweep of 270 from 90 on, so 90, 180, 270, 360.
    ExpectPoints(Samples({100, 100, true, 90, 180, 1, 3, 1}), {{0, -50}, {-50, 0}, {0, 50}, {50, 0}});
}

TEST(PieSamples, AnEndBeforeTheStartGoesBackwards) {
    ExpectPoints(Samples({100, 100, false, 180, 90, 1, 1, 1}), {{-50, 0}, {0, -50}});
    // 360 - (90 - 180) is more than a turn.
    const auto aPoints = Samples({100, 100, true, 180, 90, 1, 5, 1});
    ExpectPoints(aPoints, {{-50, 0}, {0, 50}, {50, 0}, {0, -50}, {-50, 0}, {0, 50}});
}

TEST(PieSamples, ABoxOf200By100GivesAnEllipseOf100By50) {
    ExpectPoints(Samples({200, 100, false, 0, 0, 1, 4, 1}),
                 {{100, 0}, {0, -50}, {-100, 0}, {0, 50}, {100, 0}});
    ExpectPoints(Samples({100, 200, false, 0, 0, 1, 4, 1}),
                 {{50, 0}, {0, -100}, {-50, 0}, {0, 100}, {50, 0}});
}

TEST(PieSamples, HalfFilledSlotsAreFourSectorsOf45Degrees) {
    const auto aPoints = Samples({100, 100, false, 0, 0, 4, 1, 0.5f});
    ASSERT_EQ(aPoints.size(), 8u);
    const f32 afDegrees[] = {0, 45, 90, 135, 180, 225, 270, 315};
    for (u32 i = 0; i < 8; ++i) EXPECT_NEAR(DegreesOf(aPoints[i]), afDegrees[i], 1e-2) << i;
}

class PieChart : public GraphTest {
  protected:
    std::unique_ptr<CPieChart_Base> Ready(u32 uType, u32 uSlots, u32 uSegs, f32 fSize = 100) {
        auto p = std::make_unique<CPieChart_Base>();
        p->m_fnSetChartSize(fSize, fSize);
        p->m_fnSetRange(0, 100);
        p->m_fnSetChartType(uType);
        p->m_fnSetSlotNum(uSlots);
        p->m_fnSetShapeSegNum(uSegs);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    static CMesh& MeshOf(CPieChart_Base& chart) { return dynamic_cast<CMesh&>(*chart.m_pMesh); }
    static u32 Shown(CPieChart_Base& chart, f32 fValue) {
        chart.m_fnSetValue(fValue);
        return chart.m_uDrawIndexCount;
    }
};

TEST_F(PieChart, StartsAsAFanOfOneSlotWithoutADrawKey) {
    CPieChart_Base chart;
    EXPECT_EQ(chart.m_pVertices, nullptr);
    EXPECT_EQ(chart.m_pIndices, nullptr);
    for (f32 f : chart.m_afColor) EXPECT_EQ(f, 0);
    EXPECT_EQ(chart.m_uShapeSegNum, 3u);
    EXPECT_EQ(chart.m_uSlotNum, 1u);
    EXPECT_EQ(chart.m_fSlotFillRatio, 100);
    EXPECT_EQ(chart.m_fChartFillRatio, 50);
    EXPECT_EQ(chart.m_fValue, 0);
    EXPECT_EQ(chart.m_fFilled, 0);
    EXPECT_EQ(chart.m_uDrawIndexCount, 0u);
    EXPECT_EQ(chart.m_fStartDeg, 0);
    EXPECT_EQ(chart.m_fEndDeg, 0);
    EXPECT_EQ(chart.m_fChartW, 512);
    EXPECT_EQ(chart.m_fChartH, 512);
    EXPECT_EQ(chart.m_bClockwise, 0u);
    EXPECT_EQ(chart.m_uChartType, 0u);
    EXPECT_EQ(chart.m_fnGetDrawKey(), nullptr);
    EXPECT_EQ(chart.m_fnGetType(), 0u);
}

TEST_F(PieChart, CountsAndRatiosAreHeldToTheirLimits) {
    CPieChart_Base chart;
    chart.m_fnSetSlotNum(0);
    chart.m_fnSetShapeSegNum(0);
    chart.m_fnSetSlotFillRatio(0);
    chart.m_fnSetChartFillRatio(0);
    EXPECT_EQ(chart.m_uSlotNum, 1u);
    EXPECT_EQ(chart.m_uShapeSegNum, 3u);
    EXPECT_EQ(chart.m_fSlotFillRatio, 1);
    EXPECT_EQ(chart.m_fChartFillRatio, 1);
    chart.m_fnSetSlotNum(12);
    chart.m_fnSetShapeSegNum(7);
    chart.m_fnSetSlotFillRatio(101);
    chart.m_fnSetChartFillRatio(0xFFFFFFFF);
    EXPECT_EQ(chart.m_uSlotNum, 12u);
    EXPECT_EQ(chart.m_uShapeSegNum, 7u);
    EXPECT_EQ(chart.m_fSlotFillRatio, 100);
    EXPECT_EQ(chart.m_fChartFillRatio, 100);
    chart.m_fnSetSlotFillRatio(80);
    EXPECT_EQ(chart.m_fSlotFillRatio, 80);
}

TEST_F(PieChart, TheAngleSettersTurn360Into0) {
    CPieChart_Base chart;
    const struct {
        f32 fSet, fKept;
    } aCases[] = {{359.5f, 359.5f}, {360, 0}, {90, 90}, {-1, 0}, {45, 45}, {1000, 0}};
    for (const auto& st : aCases) {
        chart.m_fnSetStartDeg(st.fSet);
        chart.m_fnSetEndDeg(st.fSet);
        EXPECT_EQ(chart.m_fStartDeg, st.fKept) << st.fSet;
        EXPECT_EQ(chart.m_fEndDeg, st.fKept) << st.fSet;
    }
}

TEST_F(PieChart, TheThreeColourFormsAgree) {
    CPieChart_Base chart;
    chart.m_fnSetColor(0xFF3300, 102);
    EXPECT_EQ(chart.m_afColor[0], 1.0f);
    EXPECT_EQ(chart.m_afColor[1], 51 / 255.0f);
    EXPECT_EQ(chart.m_afColor[2], 0.0f);
    EXPECT_EQ(chart.m_afColor[3], 102 / 255.0f);
    chart.m_fnSetColorB(0, 255, 51, 204);
    EXPECT_EQ(chart.m_afColor[1], 1.0f);
    EXPECT_EQ(chart.m_afColor[2], 51 / 255.0f);
}

TEST_F(PieChart, AFanOfOneSegmentASlotIsWhole) {
    auto p = Ready(PIECHART_TYPE_FAN, 4, 1);
    EXPECT_EQ(p->m_uVertexBytes, (2u * 4 + 1) * 16);
    EXPECT_EQ(p->m_uIndexBytes, 1u * 4 * 3 * 2);
    const auto& mesh = MeshOf(*p);
    ExpectVertices(
        mesh.m_aVertices.data(), 0,
        {{50, 50}, {100, 50}, {50, 0}, {50, 0}, {0, 50}, {0, 50}, {50, 100}, {50, 100}, {100, 50}});
    EXPECT_EQ(mesh.m_auIndices, (Indices{0, 1, 2, 0, 3, 4, 0, 5, 6, 0, 7, 8}));
}

TEST_F(PieChart, AFanOfMoreSegmentsKeepsTheLastTriangleOfEachSlot) {
    auto p = Ready(PIECHART_TYPE_FAN, 2, 3);
    EXPECT_EQ(p->m_uVertexBytes, (4u * 2 + 1) * 16);
    EXPECT_EQ(MeshOf(*p).m_auIndices, (Indices{0, 3, 4, 0, 0, 0, 0, 0, 0, 0, 7, 8, 0, 0, 0, 0, 0, 0}));
    // Slot 0 from 0 to 180 degrees in three steps.
    const f32 fRoot = 50 * 0.8660254f;
    ExpectVertices(MeshOf(*p).m_aVertices.data(), 0,
                   {{50, 50}, {100, 50}, {75, 50 - fRoot}, {25, 50 - fRoot}, {0, 50}});
}

TEST_F(PieChart, ARingHasTwoPointsASampleAndTwoTrianglesASegment) {
    auto p = Ready(PIECHART_TYPE_RING, 2, 2);
    EXPECT_EQ(p->m_uVertexBytes, 3u * 2 * 2 * 16);
    EXPECT_EQ(p->m_uIndexBytes, 2u * 2 * 6 * 2);
    ExpectVertices(MeshOf(*p).m_aVertices.data(), 0,
                   {{100, 50},
                    {75, 50},
                    {50, 0},
                    {50, 25},
                    {0, 50},
                    {25, 50},
                    {0, 50},
                    {25, 50},
                    {50, 100},
                    {50, 75},
                    {100, 50},
                    {75, 50}});
    EXPECT_EQ(MeshOf(*p).m_auIndices,
              (Indices{0, 1, 2, 1, 2, 3, 2, 3, 4, 3, 4, 5, 6, 7, 8, 7, 8, 9, 8, 9, 10, 9, 10, 11}));
}

TEST_F(PieChart, ARingWithAFillOf100IsOfZeroWidth) {
    CPieChart_Base chart;
    chart.m_fnSetChartType(PIECHART_TYPE_RING);
    chart.m_fnSetChartFillRatio(100);
    ASSERT_TRUE(chart.m_fnInitialize());
    for (u32 i = 0; i < 4; ++i)
        for (u32 c = 0; c < 2; ++c)
            EXPECT_EQ(chart.m_pVertices[2 * i].m_afPos[c], chart.m_pVertices[2 * i + 1].m_afPos[c]);
}

TEST_F(PieChart, TheOffsetMovesTheCentre) {
    for (u32 uType : {PIECHART_TYPE_FAN, PIECHART_TYPE_RING}) {
        CPieChart_Base chart;
        chart.m_fnSetChartSize(100, 100);
        chart.m_fnSetOffset(10, -20);
        chart.m_fnSetChartType(uType);
        ASSERT_TRUE(chart.m_fnInitialize());
        const bool bFan = uType == PIECHART_TYPE_FAN;
        ExpectVertices(chart.m_pVertices.get(), 0, {bFan ? stPoint{60, 30} : stPoint{110, 30}});
        ExpectVertices(chart.m_pVertices.get(), 1, {bFan ? stPoint{110, 30} : stPoint{85, 30}});
    }
}

TEST_F(PieChart, AFigureOtherThan0IsClockwise) {
    CPieChart_Base chart;
    chart.m_fnSetChartSize(100, 100);
    chart.m_fnSetClockwise(2);
    chart.m_fnSetShapeSegNum(4);
    ASSERT_TRUE(chart.m_fnInitialize());
    ExpectVertices(chart.m_pVertices.get(), 1, {{100, 50}, {50, 100}, {0, 50}});
}

TEST_F(PieChart, OfTenSlotsAValueOf55ShowsFive) {
    auto pFan = Ready(PIECHART_TYPE_FAN, 10, 4), pRing = Ready(PIECHART_TYPE_RING, 10, 4);
    EXPECT_EQ(Shown(*pFan, 55), 5u * 4 * 3);
    EXPECT_EQ(Shown(*pRing, 55), 5u * 4 * 6);
    EXPECT_EQ(pRing->m_fValue, 55);
    EXPECT_FLOAT_EQ(pRing->m_fFilled, 0.55f);
    EXPECT_EQ(Shown(*pRing, 30), 3u * 4 * 6);
    EXPECT_EQ(Shown(*pRing, 70), 7u * 4 * 6);
}

TEST_F(PieChart, TheMaximumShowsAllTheMinimumNone) {
    auto p = Ready(PIECHART_TYPE_RING, 10, 2);
    EXPECT_EQ(Shown(*p, 100), 10u * 2 * 6);
    EXPECT_EQ(Shown(*p, 1000), 10u * 2 * 6);
    EXPECT_EQ(p->m_fFilled, 1);
    EXPECT_EQ(p->m_fValue, 1000);
    EXPECT_EQ(Shown(*p, 0), 0u);
    EXPECT_EQ(Shown(*p, -50), 0u);
    EXPECT_EQ(p->m_fFilled, 0);
}

TEST_F(PieChart, OneSlotIsEmptyOrFull) {
    auto p = Ready(PIECHART_TYPE_RING, 1, 8);
    EXPECT_EQ(Shown(*p, 99), 0u);
    EXPECT_EQ(Shown(*p, 100), 48u);
}

TEST_F(PieChart, ARangeIsSortedAndAnEmptyOneIsFullAboveItsValue) {
    auto p = Ready(PIECHART_TYPE_RING, 4, 1);
    p->m_fnSetRange(100, 20);
    EXPECT_EQ(p->m_fMin, 20);
    EXPECT_EQ(p->m_fMax, 100);
    EXPECT_EQ(p->m_fRange, 80);
    EXPECT_EQ(Shown(*p, 60), 12u);
    p->m_fnSetRange(5, 5);
    EXPECT_EQ(Shown(*p, 6), 24u);
    EXPECT_EQ(Shown(*p, 5), 0u);
}

TEST_F(PieChart, AValueTouchesNoVertexAndUploadsNothing) {
    auto p = Ready(PIECHART_TYPE_RING, 4, 2);
    const auto aVertices = MeshOf(*p).m_aVertices;
    for (f32 f : {10.0f, 60.0f, 90.0f}) p->m_fnSetValue(f);
    EXPECT_EQ(MeshOf(*p).m_uFullUploads, 1u);
    EXPECT_EQ(MeshOf(*p).m_uVertexUploads, 0u);
    for (u32 i = 0; i < aVertices.size(); ++i)
        EXPECT_EQ(p->m_pVertices[i].m_afPos[0], aVertices[i].m_afPos[0]);
}

TEST_F(PieChart, BuffersEndAt65536Vertices) {
    CPieChart_Base fan, ring;
    fan.m_fnSetShapeSegNum(1);
    fan.m_fnSetSlotNum(32767);
    EXPECT_TRUE(fan.m_fnInitialize());
    EXPECT_EQ(fan.m_pIndices[3 * 32767 - 1], 65534);
    fan.m_fnSetSlotNum(32768);
    EXPECT_FALSE(fan.m_fnAllocBuffers());
    ring.m_fnSetChartType(PIECHART_TYPE_RING);
    ring.m_fnSetShapeSegNum(1);
    ring.m_fnSetSlotNum(16384);
    EXPECT_TRUE(ring.m_fnInitialize());
    EXPECT_EQ(ring.m_pIndices[6 * 16384 - 1], 65535);
    ring.m_fnSetSlotNum(16385);
    EXPECT_FALSE(ring.m_fnAllocBuffers());
    for (CPieChart_Base* p : {&fan, &ring}) {
        p->m_fnSetSlotNum(0xFFFFFFFF);
        p->m_fnSetShapeSegNum(0xFFFFFFFF);
        p->m_fnSetRange(0, 1);
        EXPECT_FALSE(p->m_fnAllocBuffers());
        p->m_fnSetValue(1);
        p->m_fnSetSlotNum(0x80000000);
        EXPECT_FALSE(p->m_fnAllocBuffers()) << "twice this many points are a power that wraps to none";
    }
}

TEST_F(PieChart, AShapeSetAfterTheMeshNeverDrawsBehindItsEnd) {
    auto p = Ready(PIECHART_TYPE_RING, 4, 2);
    p->m_fnSetSlotNum(1000);
    p->m_fnSetValue(100);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(g_aEvents, (Events{"constants", "bind", "layout", "draw 48 from 0"}));
}

TEST_F(PieChart, AnUnknownTypeIsRefused) {
    CPieChart_Base chart;
    chart.m_fnSetChartType(2);
    EXPECT_FALSE(chart.m_fnBuildChart());
    EXPECT_FALSE(chart.m_fnInitialize());
    EXPECT_EQ(chart.m_pMesh, nullptr);
}

TEST_F(PieChart, BuildingBeforeTheBuffersIsRefused) {
    CPieChart_Base chart;
    EXPECT_FALSE(chart.m_fnBuildFan());
    EXPECT_FALSE(chart.m_fnBuildRing());
}

TEST_F(PieChart, InitialisationStopsAtTheFirstFailureAndSkipsAHiddenChart) {
    CPieChart_Base chart;
    g_bEntities = false;
    EXPECT_FALSE(chart.m_fnInitialize());
    EXPECT_EQ(chart.m_pMesh, nullptr);
    g_bEntities = true;
    g_bMeshes = false;
    EXPECT_FALSE(chart.m_fnInitialize());
    CPieChart_Base hidden;
    hidden.m_fnSetRenderable(false);
    EXPECT_TRUE(hidden.m_fnInitialize());
    EXPECT_EQ(hidden.m_pVertices, nullptr);
}

TEST_F(PieChart, DrawsConstantsThenMeshThenLayoutThenIndices) {
    auto p = Ready(PIECHART_TYPE_FAN, 4, 1);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(g_aEvents, Events{"constants"}) << "an empty gauge";
    g_aEvents.clear();
    p->m_fnSetValue(50);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(g_aEvents, (Events{"constants", "bind", "layout", "draw 6 from 0"}));
    EXPECT_EQ(m_batcher.m_stLast.m_pWorld, p->m_pEntity->m_fnGetWorldForDraw());
    EXPECT_EQ(m_batcher.m_stLast.m_pColor, p->m_afColor);
}

TEST_F(PieChart, AChartWithoutAMeshOrNotRenderableDrawsNothing) {
    CPieChart_Base chart;
    chart.m_fnRender(&m_batcher);
    chart.m_fnDrawChart(&m_batcher, nullptr, chart.m_afColor);
    auto p = Ready(PIECHART_TYPE_FAN, 4, 1);
    p->m_fnSetValue(100);
    p->m_fnSetRenderable(false);
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(g_aEvents.empty());
}

TEST_F(PieChart, MovingTakesTheEntityAlongAndReleaseFreesEverything) {
    const i32 iEntities = g_iLiveEntities, iMeshes = g_iLiveMeshes;
    auto p = Ready(PIECHART_TYPE_FAN, 4, 1);
    p->m_fnSetPosition(30, 40, 0);
    f32 x = 0, y = 0;
    p->m_pEntity->m_fnGetPosition(&x, &y, nullptr);
    EXPECT_EQ(x, 30);
    EXPECT_EQ(y, 40);
    p->m_fnRelease();
    EXPECT_EQ(g_iLiveEntities, iEntities);
    EXPECT_EQ(g_iLiveMeshes, iMeshes);
    EXPECT_EQ(p->m_pVertices, nullptr);
    EXPECT_EQ(p->m_pIndices, nullptr);
}

TEST_F(PieChart, TheDrawKeyIsStoredOnly) {
    CPieChart_Base chart;
    chart.m_fnSetDrawKey(g_keyColorList);
    EXPECT_EQ(chart.m_fnGetDrawKey(), static_cast<const void*>(g_keyColorList));
    EXPECT_TRUE(m_pManager->m_fnGetLayer(g_uLayerColor).empty());
}

} // namespace
