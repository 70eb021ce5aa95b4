// The custom layout in a real context: what a profile's file says is what stands on the picture. The picture
// is half as high as the canvas, so two units are a pixel; rectangles below are in pixels.
#include "controls/osd_manager.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/draw_keys.h"
#include "frame/release.h"
#include "frame/update/statistics.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#include "tests/gl/profile_fixture.h"

#include <algorithm>
#include <cstdlib>

namespace headless = platform::headless;

namespace {

constexpr u32 g_uWidth = 960, g_uHeight = 540;
constexpr Pixel g_bare = {51, 102, 153, 255}, g_red = {255, 0, 0, 255}, g_green = {0, 255, 0, 255},
                g_blue = {0, 0, 255, 255};

struct stRect {
    u32 uLeft, uTop, uRight, uBottom; ///< right and bottom not in it
};
constexpr stRect g_stAll = {0, 0, g_uWidth, g_uHeight};

class CustomLayout : public ProfileFixture {
  protected:
    static void Clear() {
        glClearColor(0.2f, 0.4f, 0.6f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    /// A picture of the profile "Own" after two seconds.
    Picture Show(const std::string& strItems, const std::string& strSettings = "", u32 uFrames = 8) {
        WriteProfile("Own", strItems, strSettings);
        if (!Begin(true, u"Own", g_uWidth, g_uHeight) || !RunUntilBuilt()) return {};
        Run(uFrames);
        return Look();
    }
    /// So many frames in two seconds.
    void Run(u32 uFrames) {
        for (u32 u = 0; u < uFrames; ++u) {
            headless::AdvanceClock(2'000'000'000 / uFrames - 16'666'667); // Swap adds the rest
            Swap();
        }
    }
    Picture Look() {
        Clear();
        return ProfileFixture::Frame();
    }
    /// Near() without words, for whole pictures.
    static bool IsNear(const Pixel& a, const Pixel& b, int iSlack) {
        for (u32 u = 0; u < 3; ++u)
            if (std::abs(a[u] - b[u]) > iSlack) return false;
        return true;
    }
    /// How many pixels of a colour there are.
    static u32 Count(const Picture& picture, const stRect& st, const Pixel& color, int iSlack = 2) {
        u32 uCount = 0;
        for (u32 y = st.uTop; y < st.uBottom; ++y)
            for (u32 x = st.uLeft; x < st.uRight; ++x) uCount += IsNear(picture.At(x, y), color, iSlack);
        return uCount;
    }
    /// The smallest rectangle around all pixels that aren't bare; an empty one without any.
    static stRect Ink(const Picture& picture, const stRect& st = g_stAll) {
        stRect ink = {st.uRight, st.uBottom, st.uLeft, st.uTop};
        for (u32 y = st.uTop; y < st.uBottom; ++y)
            for (u32 x = st.uLeft; x < st.uRight; ++x) {
                if (IsNear(picture.At(x, y), g_bare, 3)) continue;
                ink = {std::min(ink.uLeft, x), std::min(ink.uTop, y), std::max(ink.uRight, x + 1),
                       std::max(ink.uBottom, y + 1)};
            }
        return ink;
    }
    static std::string Frame(int x, int y, int w, int h, int iAnchor = 1) {
        return " IsShow='1' FrameAnchor='" + std::to_string(iAnchor) + "' FrameAnchorX='" +
               std::to_string(x) + "' FrameAnchorY='" + std::to_string(y) + "' FrameSizeW='" +
               std::to_string(w) + "' FrameSizeH='" + std::to_string(h) + "' ";
    }
    static std::string Content(int w, int h, int iAnchor = 1, int x = 0, int y = 0) {
        return " ContentSizeW='" + std::to_string(w) + "' ContentSizeH='" + std::to_string(h) +
               "' ContentAnchor='" + std::to_string(iAnchor) + "' ContentAnchorX='" + std::to_string(x) +
               "' ContentAnchorY='" + std::to_string(y) + "' ";
    }
    static std::string Color(const char* szWord, int r, int g, int b, int a = 255) {
        const std::string strKey = std::string(" ") + szWord + "Color";
        return strKey + "R='" + std::to_string(r) + "'" + strKey + "G='" + std::to_string(g) + "'" + strKey +
               "B='" + std::to_string(b) + "'" + strKey + "A='" + std::to_string(a) + "' ";
    }
    static constexpr char c_szFont[] = " FontName='DejaVu Sans' TextSize='48' ";
    /// A whole turn of a fan, once the figure is above 1.
    static std::string Disc(const char* szName, const std::string& strMore) {
        return std::string("<PieChart Name='") + szName + "'" + Frame(200, 200, 200, 200) +
               Content(200, 200) +
               "DataFullName='FPS' MaxValue='1' StartDegree='0' EndDegree='359.9' ShapeSegNum='24'" +
               strMore + "/>";
    }
};

TEST_F(CustomLayout, APanelCoversItsContentInItsFrameAndNothingElse) {
    const Picture picture = Show("<Panel Name='P'" + Frame(40, 60, 400, 200) + Content(200, 100, 9) +
                                 Color("Panel", 255, 0, 0) + "/>");
    ASSERT_FALSE(picture.aBytes.empty());
    // The frame is 200 by 100 pixels at (20, 30); the content stands in its lower right corner.
    const stRect rect = {120, 80, 220, 130};
    EXPECT_EQ(Count(picture, rect, g_red), 100u * 50u);
    EXPECT_EQ(Count(picture, g_stAll, g_bare), g_uWidth * g_uHeight - 100u * 50u);
}

TEST_F(CustomLayout, APanelsBorderLeavesItsInsideFree) {
    const Picture picture = Show("<Panel Name='P'" + Frame(40, 60, 200, 100) + Content(200, 100) +
                                 Color("Panel", 255, 0, 0) + "PanelBorder='6'/>");
    ASSERT_FALSE(picture.aBytes.empty());
    // 100 by 50 pixels at (20, 30), with 3 pixels of border.
    EXPECT_EQ(Count(picture, {20, 30, 120, 80}, g_red), 100u * 50u - 94u * 44u);
    EXPECT_EQ(Count(picture, {23, 33, 117, 77}, g_bare), 94u * 44u);
    EXPECT_EQ(Count(picture, g_stAll, g_bare), g_uWidth * g_uHeight - (100u * 50u - 94u * 44u));
}

TEST_F(CustomLayout, TextsAndNumbersStandInTheirFramesInTheirColours) {
    const Picture picture =
        Show(std::string("<TextBox Name='T' Text='Hello'") + c_szFont + Frame(100, 100, 400, 60) +
             Color("Text", 0, 255, 0) + "/><NumBox Name='N' DataFullName='PID'" + c_szFont +
             Frame(100, 300, 400, 60, 3) + Content(0, 0, 3) + Color("Text", 0, 0, 255) + "/>");
    ASSERT_FALSE(picture.aBytes.empty());
    // A pixel more than the frames all around, for the soft edges of glyphs.
    const stRect text = {49, 49, 251, 81}, number = {709, 149, 911, 181};
    EXPECT_GT(Count(picture, text, g_green, 60), 150u);
    EXPECT_GT(Count(picture, number, g_blue, 60), 150u);
    EXPECT_EQ(Count(picture, text, g_bare) + Count(picture, number, g_bare) +
                  (g_uWidth * g_uHeight - 2 * 202 * 32),
              Count(picture, g_stAll, g_bare))
        << "no ink outside the two frames";
    EXPECT_NEAR(Ink(picture, number).uRight, 910, 5) << "at the right end of the frame";
}

TEST_F(CustomLayout, ShadowsFollowTheProfilesSwitch) {
    const std::string strItem = std::string("<TextBox Name='T' Text='Hello'") + c_szFont +
                                Frame(100, 100, 400, 60) + Color("Shadow", 255, 0, 0) + "/>";
    const auto uReddish = [](const Picture& picture) {
        u32 uCount = 0;
        for (u32 y = 0; y < g_uHeight; ++y)
            for (u32 x = 0; x < g_uWidth; ++x) uCount += picture.At(x, y)[0] > picture.At(x, y)[1] + 40;
        return uCount;
    };
    EXPECT_EQ(uReddish(Show(strItem)), 0u);
    g_fnTavo_GL_Release();
    WriteProfile("Own", strItem, "<Camera TextShadow='1'/>");
    ASSERT_TRUE(RunUntilBuilt());
    EXPECT_GT(uReddish(Look()), 20u);
}

TEST_F(CustomLayout, ItemsOfAnOwnerStandInTheOwnersFrame) {
    const Picture picture = Show("<Panel Name='Box'" + Frame(100, 100, 400, 200, 9) + Content(400, 200) +
                                 Color("Panel", 255, 0, 0) + "/><Panel Name='Aim@Box'" +
                                 Frame(0, 0, 40, 40, 5) + Content(40, 40) + Color("Panel", 0, 255, 0) + "/>");
    ASSERT_FALSE(picture.aBytes.empty());
    // The owner's frame: 200 by 100 pixels, 50 from the lower right corner; its middle is at (810, 440).
    EXPECT_EQ(Count(picture, {710, 390, 910, 490}, g_red), 200u * 100u - 20u * 20u);
    EXPECT_EQ(Count(picture, {800, 430, 820, 450}, g_green), 20u * 20u);
}

TEST_F(CustomLayout, AClockStandsInTheMiddleOfItsFrame) {
    const Picture picture = Show(std::string("<NumBox Name='C' DataFullName='SYSTEM_TIME'") + c_szFont +
                                 Frame(400, 400, 600, 80) + Content(0, 0, 5) + "/>");
    ASSERT_FALSE(picture.aBytes.empty());
    const stRect ink = Ink(picture);
    EXPECT_GT(ink.uRight - ink.uLeft, 100u) << "six digits and two marks";
    EXPECT_NEAR((ink.uLeft + ink.uRight) / 2.0, 350, 4);
    EXPECT_GE(ink.uTop, 199u);
    EXPECT_LE(ink.uBottom, 241u);
    headless::SetLocalTime({2024, 2, 29, 20, 8, 58});
    Run(8);
    EXPECT_NE(Look().aBytes, picture.aBytes) << "it goes on";
}

TEST_F(CustomLayout, AResolutionKeepsItsRightEndWhileItGrows) {
    const std::string strItem = std::string("<NumBox Name='R' DataFullName='RESOLUTION'") + c_szFont +
                                Frame(400, 400, 600, 80) + Content(0, 0, 3) + "/>";
    const stRect before = Ink(Show(strItem));
    EXPECT_NEAR(before.uRight, 500, 4);
    EXPECT_GT(before.uRight - before.uLeft, 90u);
    ASSERT_TRUE(m_context.ReplaceSurface(1920, 1080));
    Run(8);
    Clear();
    const Picture picture = ProfileFixture::Frame();
    stRect after = {1920, 0, 0, 0};
    for (u32 y = 380; y < 500; ++y)
        for (u32 x = 0; x < 1920; ++x)
            if (!IsNear(picture.At(x, y), g_bare, 3)) {
                after.uLeft = std::min(after.uLeft, x);
                after.uRight = std::max(after.uRight, x + 1);
            }
    EXPECT_NEAR(after.uRight, 1000, 6) << "a unit is a pixel now";
    EXPECT_GT(after.uRight - after.uLeft, 2 * (before.uRight - before.uLeft)) << "1920x1080 for 960x540";
}

TEST_F(CustomLayout, AGraphShowsTheFigureOverTime) {
    // Bars of 10 units, 5 between them. Four frames a second are half of eight.
    const Picture picture =
        Show("<LineGraph Name='L'" + Frame(200, 200, 300, 200) + Content(300, 200) +
             "DataFullName='FPS' LineType='3' DataWidth='10' DataStartIdx='0' MaxValue='8'" +
             Color("Line", 255, 0, 0) + "/>");
    ASSERT_FALSE(picture.aBytes.empty());
    EXPECT_EQ(Ink(picture).uBottom, 200u) << "bars stand on the lower edge";
    EXPECT_NEAR(g_uFPS, 4, 1);
    const u32 uTop = 200 - 100 * g_uFPS / 8;
    u32 uColumns = 0;
    for (u32 x = 100; x < 250; ++x) {
        const stRect column = {x, 100, x + 1, 200};
        uColumns += Ink(picture, column).uTop == uTop && Count(picture, column, g_red) == 200 - uTop;
    }
    EXPECT_GE(uColumns, 5u) << "the newest bar at least";
    EXPECT_EQ(uColumns % 5, 0u);
}

TEST_F(CustomLayout, AFullRingHasAHole) {
    const Picture picture = Show(Disc("C", "ChartType='1' ChartFillRatio='50'" + Color("Chart", 0, 255, 0)));
    ASSERT_FALSE(picture.aBytes.empty());
    // Middle at (150, 150), radius 50, hole of 25.
    for (auto [x, y] : {std::pair{187u, 150u}, {113u, 150u}, {150u, 187u}, {150u, 113u}})
        EXPECT_TRUE(Near(picture.At(x, y), g_green, 2)) << x << "," << y;
    for (auto [x, y] : {std::pair{150u, 150u}, {165u, 150u}, {150u, 135u}, {98u, 150u}, {102u, 102u}})
        EXPECT_TRUE(Near(picture.At(x, y), g_bare, 2)) << x << "," << y;
}

TEST_F(CustomLayout, ChartsStackByZIndexAlsoAfterAnotherBuild) {
    const std::string strRed = Color("Chart", 255, 0, 0), strGreen = Color("Chart", 0, 255, 0);
    // Off the middle, where all triangles meet.
    EXPECT_TRUE(Near(Show(Disc("a", strRed) + Disc("b", strGreen)).At(170, 150), g_green, 2))
        << "the later one lies on top";
    for (const bool bRedOnTop : {true, false, true}) {
        WriteProfile("Own", Disc("a", strRed + (bRedOnTop ? "ZIndex='7'" : "ZIndex='-7'")) +
                                Disc("b", strGreen + "ZIndex='1'"));
        g_fnTavo_GL_Release();
        ASSERT_TRUE(RunUntilBuilt());
        Run(8);
        EXPECT_TRUE(Near(Look().At(170, 150), bRedOnTop ? g_red : g_green, 2)) << bRedOnTop;
    }
}

TEST_F(CustomLayout, OfTwoPanelsTheOneWithTheSmallerNameLiesOnTopAndChartsLieAboveBoth) {
    const std::string strPlace = Frame(200, 200, 200, 200) + Content(200, 200);
    const Picture picture =
        Show("<Panel Name='b'" + strPlace + Color("Panel", 255, 0, 0) + "/><Panel Name='a'" + strPlace +
             Color("Panel", 0, 0, 255) + "/>" + Disc("A", Color("Chart", 0, 255, 0)));
    ASSERT_FALSE(picture.aBytes.empty());
    EXPECT_TRUE(Near(picture.At(102, 102), g_blue, 2));
    EXPECT_TRUE(Near(picture.At(170, 150), g_green, 2));
    EXPECT_EQ(Count(picture, g_stAll, g_red), 0u);
}

TEST_F(CustomLayout, AFrostedPanelTintsWhatIsBehind) {
    const Picture picture =
        Show("<Panel Name='P' PanelType='2' PanelScattering='8'" + Frame(200, 200, 200, 200) +
             Content(200, 200) + Color("Panel", 255, 0, 0, 128) + "/>");
    ASSERT_FALSE(picture.aBytes.empty());
    EXPECT_TRUE(g_bCaptureBackdrop);
    EXPECT_FALSE(Near(picture.At(150, 150), g_bare, 10));
    EXPECT_GT(picture.At(150, 150)[0], g_bare[0] + 50) << "redder than bare";
    EXPECT_TRUE(Near(picture.At(90, 150), g_bare, 2));
}

TEST_F(CustomLayout, AMemoWrapsAtItsWidth) {
    WriteData("Profiles/Own/memo.txt", "one two three four five six seven eight nine ten");
    const Picture picture = Show(std::string("<Memo Name='M' FileName='memo.txt'") + c_szFont +
                                 Frame(100, 100, 300, 400) + Content(300, 400) + "/>");
    ASSERT_FALSE(picture.aBytes.empty());
    const stRect ink = Ink(picture);
    EXPECT_LE(ink.uRight, 50u + 150u + 2u);
    EXPECT_GT(ink.uBottom - ink.uTop, 24u * 3u) << "several lines";
}

TEST_F(CustomLayout, EverythingAtOnce) {
    const Picture picture = Show(
        "<Panel Name='Group' PanelType='2'" + Frame(60, 60, 900, 500) + Content(900, 500) +
            Color("Panel", 10, 14, 20, 150) + "/>" + "<TextBox Name='Title@Group' Text='Own profile'" +
            c_szFont + Frame(30, 20, 600, 60) + "/>" + "<NumBox Name='Fps@Group' DataFullName='FPS'" +
            c_szFont + Frame(30, 90, 300, 60) + Color("Text", 96, 192, 255) + "/>" +
            "<NumBox Name='Clock@Group' DataFullName='SYSTEM_TIME'" + c_szFont + Frame(30, 20, 360, 60, 3) +
            Content(0, 0, 3) + "/>" + "<NumBox Name='Size@Group' DataFullName='RESOLUTION'" + c_szFont +
            Frame(30, 90, 360, 60, 3) + Content(0, 0, 3) + Color("Text", 168, 180, 196) + "/>" +
            "<LineGraph Name='Graph@Group' DataFullName='FPS' LineType='1' DataNum='20' DataStartIdx='0' "
            "MaxValue='8'" +
            Frame(30, 30, 500, 240, 7) + Content(500, 240) + Color("Line", 255, 184, 92, 200) + "/>" +
            "<PieChart Name='Ring@Group' DataFullName='FPS' ChartType='1' SlotNum='20' SlotFillRatio='70' "
            "ChartFillRatio='70' StartDegree='0' EndDegree='270' MaxValue='5'" +
            Frame(60, 30, 240, 240, 9) + Content(240, 240) + Color("Chart", 96, 192, 255) + "/>",
        "<Camera TextShadow='1'/>");
    ASSERT_FALSE(picture.aBytes.empty());
    for (u32 u = 0; u < 6; ++u) Run(6 + u % 3 * 3);
    Look().Save("custom_layout");
    const stRect ink = Ink(picture);
    EXPECT_EQ(ink.uLeft, 30u);
    EXPECT_EQ(ink.uTop, 30u);
    EXPECT_EQ(ink.uRight, 480u);
    EXPECT_EQ(ink.uBottom, 280u);
}

} // namespace
