// Line graphs and pie charts over OpenGL: pixels, and what a value and a frame cost.
#include "controls/line_graph.h"
#include "controls/pie_chart.h"
#include "draw/draw_keys.h"
#include "platform/gl_api.h"
#include "tests/gl/draw_fixture.h"
#include "tests/support/gl_recorder.h"

#include <algorithm>

namespace {

using Calls = std::vector<std::string>;
const Pixel g_black = {0, 0, 0, 255}, g_red = {255, 0, 0, 255};

class GraphGL : public DrawFixture {
  protected:
    void TearDown() override {
        m_apGraphs.clear();
        m_apCharts.clear();
        DrawFixture::TearDown();
    }
    /// A red graph, 240 by 100 at (40, 50), with 8 columns over the values 0 to 100.
    CLineGraph_Base& AddGraph(u32 uType) {
        CLineGraph_Base& graph = *m_apGraphs.emplace_back(std::make_unique<CLineGraph_Base>());
        graph.m_fnSetDrawKey(g_keyColorList);
        graph.m_fnSetColorB(255, 0, 0, 255);
        graph.m_fnSetGraphSize(240, 100);
        graph.m_fnSetRange(0, 100);
        graph.m_fnSetLineType(uType);
        graph.m_fnSetDataNum(8);
        graph.m_fnSetDataWidth(20);
        Show(graph, 40, 50);
        return graph;
    }
    /// A red chart of four slots, 160 by 160 at (80, 20).
    CPieChart_Base& AddChart(u32 uType, u32 uSegs) {
        CPieChart_Base& chart = *m_apCharts.emplace_back(std::make_unique<CPieChart_Base>());
        chart.m_fnSetDrawKey(g_keyColorList);
        chart.m_fnSetColorB(255, 0, 0, 255);
        chart.m_fnSetChartSize(160, 160);
        chart.m_fnSetRange(0, 100);
        chart.m_fnSetChartType(uType);
        chart.m_fnSetSlotNum(4);
        chart.m_fnSetShapeSegNum(uSegs);
        Show(chart, 80, 20);
        return chart;
    }
    template <class Action> static Calls CallsOf(Action fnAction) {
        gl_recorder::Install();
        gl_recorder::Start();
        fnAction();
        return gl_recorder::Stop();
    }
    static Calls Only(const Calls& calls, const std::string& strPrefix) {
        Calls found;
        std::ranges::copy_if(calls, std::back_inserter(found),
                             [&](const auto& s) { return s.starts_with(strPrefix); });
        return found;
    }
    static u32 Coloured(const Picture& picture) {
        u32 uCount = 0;
        for (u32 y = 0; y < picture.uHeight; ++y)
            for (u32 x = 0; x < picture.uWidth; ++x) uCount += picture.At(x, y) != g_black;
        return uCount;
    }

    std::vector<std::unique_ptr<CLineGraph_Base>> m_apGraphs;
    std::vector<std::unique_ptr<CPieChart_Base>> m_apCharts;

  private:
    template <class Control> void Show(Control& control, f32 x, f32 y) {
        EXPECT_TRUE(control.m_fnInitialize());
        control.m_fnSetPosition(x, y, 0);
        EXPECT_TRUE(m_manager.m_fnAttachBack(&control, g_uLayerColor));
    }
};

TEST_F(GraphGL, BarsCoverTheirPixelsExactly) {
    CLineGraph_Base& graph = AddGraph(LINEGRAPH_TYPE_BAR);
    for (i32 i : {30, 100, 0, 55}) graph.m_fnAddValue(static_cast<f32>(i));
    const Picture picture = Draw(0, 0, 0);
    picture.Save("graph_bars");
    EXPECT_EQ(Coloured(picture), 20u * (30 + 100 + 0 + 55));
    // Columns of 30 with bars of 20: the second from x 70 on, from the top to the bottom.
    for (auto [x, y] : {std::pair{70u, 50u}, {89u, 149u}, {40u, 120u}, {59u, 149u}, {130u, 95u}})
        EXPECT_EQ(picture.At(x, y), g_red) << x << "," << y;
    for (auto [x, y] :
         {std::pair{90u, 100u}, {69u, 100u}, {70u, 49u}, {70u, 150u}, {40u, 119u}, {105u, 149u}})
        EXPECT_EQ(picture.At(x, y), g_black) << x << "," << y;
}

TEST_F(GraphGL, AnAreaFillsBelowItsCurve) {
    CLineGraph_Base& graph = AddGraph(LINEGRAPH_TYPE_MOUNTAIN);
    graph.m_fnAddValue(50);
    EXPECT_EQ(Coloured(Draw(0, 0, 0)), 0u) << "one sample has no area";
    graph.m_fnAddValue(50);
    graph.m_fnAddValue(100);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("graph_area");
    EXPECT_EQ(picture.At(41, 101), g_red);
    EXPECT_EQ(picture.At(41, 99), g_black);
    EXPECT_EQ(picture.At(98, 56), g_red) << "just under the slope's end";
    EXPECT_EQ(picture.At(85, 60), g_black) << "above the slope";
    EXPECT_EQ(picture.At(101, 120), g_black) << "right of the newest sample";
}

TEST_F(GraphGL, ALineIsAsThickAsHalfAColumn) {
    CLineGraph_Base& graph = AddGraph(LINEGRAPH_TYPE_CLASSIC);
    for (u32 i = 0; i < 9; ++i) graph.m_fnAddValue(50);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("graph_line");
    // 8 columns of 30 at half height, 15 thick: y from 92.5 to 107.5.
    EXPECT_EQ(picture.At(40, 93), g_red);
    EXPECT_EQ(picture.At(279, 106), g_red);
    EXPECT_EQ(picture.At(160, 91), g_black);
    EXPECT_EQ(picture.At(160, 108), g_black);
    EXPECT_EQ(picture.At(280, 100), g_black);
}

TEST_F(GraphGL, AStairStandsBetweenItsSamples) {
    CLineGraph_Base& graph = AddGraph(LINEGRAPH_TYPE_STAIR);
    graph.m_fnAddValue(20);
    graph.m_fnAddValue(80);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("graph_stair");
    EXPECT_EQ(Coloured(picture), 20u * 60);
    EXPECT_EQ(picture.At(40, 70), g_red);
    EXPECT_EQ(picture.At(59, 129), g_red);
}

TEST_F(GraphGL, AFullRingScrollsToTheLeft) {
    CLineGraph_Base& graph = AddGraph(LINEGRAPH_TYPE_BAR);
    for (i32 i : {100, 0, 0, 0, 0, 0, 0, 0}) graph.m_fnAddValue(static_cast<f32>(i));
    EXPECT_EQ(Draw(0, 0, 0).At(45, 60), g_red);
    graph.m_fnAddValue(100);
    const Picture picture = Draw(0, 0, 0);
    EXPECT_EQ(picture.At(45, 60), g_black);
    EXPECT_EQ(picture.At(40 + 7 * 30 + 5, 60), g_red);
    EXPECT_EQ(Coloured(picture), 20u * 100);
}

TEST_F(GraphGL, ASampleCostsOneUploadOfVertices) {
    CLineGraph_Base& graph = AddGraph(LINEGRAPH_TYPE_CLASSIC);
    for (u32 i = 0; i < 20; ++i) graph.m_fnAddValue(50);
    const u32 uVB = graph.m_pMesh->m_fnGetVB();
    const Calls calls = CallsOf([&] { graph.m_fnAddValue(70); });
    const std::string strVB = std::to_string(uVB);
    // 9 pairs of 16 bytes; 34962 is the vertex buffer's target, 35044 the hint of contents that rarely
    // change.
    EXPECT_EQ(calls, (Calls{"glBindBuffer(34962, " + strVB + ")", "glBufferData(34962, 288, ptr, 35044)",
                            "glBindBuffer(34962, 0)"}));
}

TEST_F(GraphGL, AFrameDrawsAGraphOnceAndUploadsNothing) {
    CLineGraph_Base& graph = AddGraph(LINEGRAPH_TYPE_CLASSIC);
    for (u32 i = 0; i < 3; ++i) graph.m_fnAddValue(50);
    Draw(0, 0, 0);
    const Calls calls = CallsOf([&] { Batcher().m_fnRender(); });
    // Two segments of 16-bit indices (5123) as triangles (4).
    EXPECT_EQ(Only(calls, "glDraw"), Calls{"glDrawRangeElements(4, 0, 12, 12, 5123, null)"});
    EXPECT_EQ(Only(calls, "glBufferData"), Calls{});
    EXPECT_EQ(Only(calls, "glBindBuffer(34962, " + std::to_string(graph.m_pMesh->m_fnGetVB())).size(), 1u);
}

TEST_F(GraphGL, AnEmptyGraphMakesNoDrawCall) {
    AddGraph(LINEGRAPH_TYPE_CLASSIC);
    AddChart(PIECHART_TYPE_RING, 4);
    Batcher();
    const Calls calls = CallsOf([&] { Batcher().m_fnRender(); });
    EXPECT_EQ(Only(calls, "glDraw"), Calls{});
}

TEST_F(GraphGL, GraphAndChartStandInTheOrderOfTheColourList) {
    AddGraph(LINEGRAPH_TYPE_BAR).m_fnAddValue(100);
    AddPanel(g_uShapeRect, 40, 50, 20, 50, {0, 1, 0, 1});
    const Picture picture = Draw(0, 0, 0);
    EXPECT_EQ(picture.At(45, 60), (Pixel{0, 255, 0, 255})) << "the later panel lies above";
    EXPECT_EQ(picture.At(45, 140), g_red);
}

TEST_F(GraphGL, ARingShowsItsFirstSlotsCounterClockwiseFromTheRight) {
    CPieChart_Base& chart = AddChart(PIECHART_TYPE_RING, 16);
    chart.m_fnSetValue(25);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("chart_ring");
    // Centre (160, 100), radii 80 and 40: the quarter at the upper right.
    EXPECT_EQ(picture.At(160 + 42, 100 - 42), g_red);
    EXPECT_EQ(picture.At(160 + 20, 100 - 20), g_black) << "inside the ring";
    EXPECT_EQ(picture.At(160 + 60, 100 - 60), g_black) << "outside";
    EXPECT_EQ(picture.At(160 - 42, 100 - 42), g_black);
    EXPECT_EQ(picture.At(160 + 42, 100 + 42), g_black);
    chart.m_fnSetValue(75);
    const Picture more = Draw(0, 0, 0);
    EXPECT_EQ(more.At(160 - 42, 100 + 42), g_red);
    EXPECT_EQ(more.At(160 + 42, 100 + 42), g_black);
}

TEST_F(GraphGL, AFanOfOneSegmentASlotIsFilledToItsCentre) {
    CPieChart_Base& chart = AddChart(PIECHART_TYPE_FAN, 1);
    chart.m_fnSetValue(100);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("chart_fan");
    for (auto [x, y] : {std::pair{165u, 95u}, {155u, 95u}, {155u, 105u}, {165u, 105u}, {195u, 70u}})
        EXPECT_EQ(picture.At(x, y), g_red) << x << "," << y;
    EXPECT_EQ(picture.At(210, 50), g_black) << "the chord of a quarter cuts the arc off";
}

TEST_F(GraphGL, AChartsValueMakesNoGlCall) {
    CPieChart_Base& chart = AddChart(PIECHART_TYPE_RING, 4);
    const Calls calls = CallsOf([&] {
        for (i32 i = -10; i < 120; ++i) chart.m_fnSetValue(static_cast<f32>(i));
    });
    EXPECT_EQ(calls, Calls{});
    chart.m_fnSetValue(50);
    EXPECT_EQ(Only(CallsOf([&] { Batcher().m_fnRender(); }), "glDraw"),
              Calls{"glDrawRangeElements(4, 0, 48, 48, 5123, null)"});
}

TEST_F(GraphGL, DestroyingGivesTheBuffersBack) {
    CLineGraph_Base& graph = AddGraph(LINEGRAPH_TYPE_CLASSIC);
    CPieChart_Base& chart = AddChart(PIECHART_TYPE_RING, 4);
    const u32 auNames[] = {graph.m_pMesh->m_fnGetVB(), graph.m_pMesh->m_fnGetIB(), chart.m_pMesh->m_fnGetVB(),
                           chart.m_pMesh->m_fnGetIB()};
    for (u32 u : auNames) EXPECT_TRUE(glIsBuffer(u));
    graph.m_fnRelease();
    chart.m_fnRelease();
    for (u32 u : auNames) EXPECT_FALSE(glIsBuffer(u));
}

} // namespace
