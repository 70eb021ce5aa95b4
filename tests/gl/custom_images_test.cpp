// Images of a profile through the whole library: what its file says is what stands on the picture. The
// picture is half as high as the canvas, so two units are a pixel; places below are in pixels.
#include "config/settings/settings.h"
#include "controls/control_kinds.h"
#include "draw/batcher_slots.h"
#include "frame/context_state.h"
#include "frame/release.h"
#include "merged/draw_basic_merged.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#include "tests/gl/profile_fixture.h"
#include "tests/support/gif_maker.h"
#include "tests/support/picture_files.h"

namespace headless = platform::headless;

namespace {

constexpr u32 g_uWidth = 960, g_uHeight = 540;
constexpr Pixel g_bare = {51, 102, 153, 255}, g_red = {255, 0, 0, 255}, g_green = {0, 255, 0, 255},
                g_blue = {0, 0, 255, 255};

class CustomImages : public ProfileFixture {
  protected:
    void WritePlain(const std::string& strName, u32 uWidth, u32 uHeight, u32 uColor) const {
        WriteData("Profiles/Own/" + strName,
                  picture_files::Png(uWidth, uHeight, [=](u32, u32) { return uColor; }));
    }
    /// An image with a frame at canvas units, 200 by 100 where nothing else is said.
    static std::string Image(const char* szName, const char* szFile, int x, int y,
                             const std::string& strMore = "") {
        return std::string("<Image IsShow='1' Name='") + szName + "' ImageFileName='" + szFile +
               "' FrameAnchorX='" + std::to_string(x) + "' FrameAnchorY='" + std::to_string(y) +
               "' FrameSizeW='200' FrameSizeH='100' ContentSizeW='200' ContentSizeH='100' " + strMore + "/>";
    }
    Picture Show(const std::string& strItems, const std::string& strSettings = "") {
        WriteProfile("Own", strItems, strSettings);
        if (!Begin(true, u"Own", g_uWidth, g_uHeight)) return {};
        return Look();
    }
    Picture Look() {
        if (!RunUntilBuilt()) return {};
        glClearColor(0.2f, 0.4f, 0.6f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        return Frame();
    }
    static u32 Count(const Picture& picture, const Pixel& color) {
        u32 uCount = 0;
        for (std::size_t u = 0; u < picture.aBytes.size(); u += 4)
            uCount +=
                std::equal(color.begin(), color.begin() + 3, picture.aBytes.begin() + static_cast<i64>(u));
        return uCount;
    }
};

TEST_F(CustomImages, AnImageStandsInItsFrameFittedAndPlacedByItsContentAnchor) {
    WritePlain("p.png", 40, 80, 0xFFFF0000);
    // 50 by 100 units in a content of 200 by 100, which fills its frame.
    const Picture picture = Show(Image("i", "p.png", 100, 60, "ContentAnchor='6'"));
    ASSERT_FALSE(picture.aBytes.empty());
    EXPECT_EQ(Count(picture, g_red), 25u * 50u);
    EXPECT_EQ(Count(picture, g_bare), g_uWidth * g_uHeight - 25u * 50u);
    EXPECT_EQ(picture.At(125, 30), g_red) << "100 + 150 units from the left, 60 from the top";
    EXPECT_EQ(picture.At(149, 79), g_red);
}

TEST_F(CustomImages, OpacityIsThatOfTheItemInWholePercent) {
    WritePlain("p.png", 200, 100, 0xFFFF0000);
    const Picture picture = Show(Image("i", "p.png", 0, 0, "ImageColorA='128'")); // 50 percent, 127
    ASSERT_FALSE(picture.aBytes.empty());
    EXPECT_TRUE(Near(picture.At(50, 25), {153, 51, 77, picture.At(50, 25)[3]}, 1));
}

TEST_F(CustomImages, ATiltTurnsThePictureClockwise) {
    WriteData("Profiles/Own/p.png",
              picture_files::Png(200, 100, [](u32 x, u32) { return x < 100 ? 0xFFFF0000 : 0xFF0000FF; }));
    const Picture picture =
        Show(Image("i", "p.png", 0, 0, "TiltDegree='90'") + Image("j", "p.png", 300, 0, "TiltDegree='-90'") +
             Image("k", "p.png", 600, 0, "TiltDegree='30'"));
    ASSERT_FALSE(picture.aBytes.empty());
    picture.Save("custom-image-tilted");
    EXPECT_EQ(picture.At(50, 5), g_red);
    EXPECT_EQ(picture.At(50, 45), g_blue);
    EXPECT_EQ(picture.At(200, 5), g_blue);
    EXPECT_EQ(picture.At(200, 45), g_red);
    EXPECT_EQ(picture.At(5, 5), g_bare);
    // At 30 degrees the left end has gone up, and the middle is where it was.
    EXPECT_EQ(picture.At(345, 20), g_red);
    EXPECT_EQ(picture.At(355, 30), g_blue);
}

TEST_F(CustomImages, ImagesStackInTheOrderOfTheirNamesAboveFlatShapesAndBelowText) {
    WritePlain("r.png", 200, 100, 0xFFFF0000);
    WritePlain("g.png", 200, 100, 0xFF00FF00);
    const Picture picture =
        Show(Image("b", "g.png", 100, 50) + Image("a", "r.png", 0, 0) +
             "<Panel Name='P' IsShow='1' FrameAnchorX='0' FrameAnchorY='0' FrameSizeW='600' FrameSizeH='400' "
             "ContentSizeW='600' ContentSizeH='400' PanelColorB='255'/>"
             "<TextBox Name='T' IsShow='1' Text='&#x2588;&#x2588;' FontName='DejaVu Sans' TextSize='60' "
             "FrameAnchorX='20' FrameAnchorY='10' FrameSizeW='100' FrameSizeH='60' ContentAnchor='1'/>");
    ASSERT_FALSE(picture.aBytes.empty());
    picture.Save("custom-image-order");
    EXPECT_EQ(picture.At(5, 3), g_red);
    EXPECT_EQ(picture.At(90, 40), g_green) << "'b' above 'a', whatever their order in the file";
    EXPECT_EQ(picture.At(280, 180), g_blue);
    EXPECT_GT(Count(picture, {255, 255, 255, 255}), 300u) << "the text";
}

TEST_F(CustomImages, MissingAndBrokenFilesLeaveEverythingElse) {
    WritePlain("p.png", 200, 100, 0xFFFF0000);
    WriteData("Profiles/Own/broken.png", "\x89PNG\r\n\x1A\n and no more");
    const Picture picture = Show(Image("a", "missing.png", 0, 0) + Image("b", "broken.png", 300, 0) +
                                 Image("c", "..\\\\..\\\\OSD.ini", 300, 200) + Image("d", "p.png", 600, 0));
    ASSERT_FALSE(picture.aBytes.empty());
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(Count(picture, g_red), 100u * 50u);
    EXPECT_EQ(Count(picture, g_bare), g_uWidth * g_uHeight - 100u * 50u);
}

TEST_F(CustomImages, ThePhotoOfTheProfileStandsOnTheCanvas) {
    WritePlain("photo.png", 100, 100, 0xFF00FF00);
    const Picture picture =
        Show("", "<Photo IsShow='1' Filename='photo.png' FrameSizeW='100' FrameSizeH='60' "
                 "Anchor='9' PositionX='20' PositionY='10' PhotoOpacity='100'/>");
    ASSERT_FALSE(picture.aBytes.empty());
    EXPECT_EQ(Count(picture, g_green), 30u * 30u);
    // The box is 50 by 30 pixels, 10 and 5 off the lower right; code 9 puts the picture to that side, too.
    EXPECT_EQ(picture.At(g_uWidth - 11, g_uHeight - 6), g_green);
    EXPECT_EQ(picture.At(g_uWidth - 40, g_uHeight - 35), g_green);
}

TEST_F(CustomImages, TheCompanionsPhotoTakesItsPlace) {
    WritePlain("photo.png", 100, 100, 0xFF00FF00);
    WriteData("other.png", picture_files::Png(100, 100, [](u32, u32) { return 0xFFFF0000; }));
    const std::u16string wzCamera = u"SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD\\Camera";
    const std::string strPath = Data("other.png").string();
    WriteProfile("Own", "", "<Photo IsShow='1' Filename='photo.png' PhotoOpacity='100'/>");
    ASSERT_TRUE(Begin(true, u"Own", g_uWidth, g_uHeight));
    headless::SetSettingsNumber(wzCamera.c_str(), u"IsShow", 1);
    headless::SetSettingsText(wzCamera.c_str(), u"FilePath",
                              std::u16string(strPath.begin(), strPath.end()).c_str());
    const Picture picture = Look();
    ASSERT_FALSE(picture.aBytes.empty());
    EXPECT_EQ(Count(picture, g_green), 0u);
    EXPECT_EQ(Count(picture, g_red), 100u * 100u) << "of the size of the profile's photo";
}

TEST_F(CustomImages, AnAnimationIsDecodedOnceAndGoesOnByTheFrames) {
    CGifMaker gif(100, 50);
    for (const char c : {'A', 'B', 'C'}) gif.Control(5, 1).Frame(0, 0, 100, 50, std::string(5000, c));
    WriteData("Profiles/Own/a.gif", gif.File());
    WriteProfile("Own", Image("i", "a.gif", 0, 0));
    ASSERT_TRUE(Begin(true, u"Own", g_uWidth, g_uHeight));
    ASSERT_TRUE(RunUntilBuilt());
    const std::size_t uOpened = headless::OpenedFiles().size();
    std::string strShown;
    for (u32 u = 0; u < 40; ++u) {
        const Picture picture = Frame(); // a sixtieth of a second each
        strShown += static_cast<char>('A' + (picture.At(50, 25)[0] - 10) / 10);
    }
    EXPECT_NE(strShown.find("AAABBBCCCAAABBBCCC"), std::string::npos) << strShown;
    EXPECT_EQ(headless::OpenedFiles().size(), uOpened) << "no frame reads a file";
}

TEST_F(CustomImages, TheShutterImageIsMadeAndStaysUnseen) {
    WriteData("Screenshot.png", picture_files::Png(64, 64, [](u32, u32) { return 0xFFFF0000; }));
    WriteData("Screenshot.anm", picture_files::Low(500) + picture_files::Low(1) + picture_files::Low(64));
    const Picture picture = Show("");
    ASSERT_FALSE(picture.aBytes.empty());
    ASSERT_NE(g_ppImgBox[g_uShutterImage], nullptr);
    EXPECT_TRUE(g_pOSDManager->m_fnIsAttached(g_ppImgBox[g_uShutterImage], g_uLayerTexture));
    EXPECT_EQ(Count(picture, g_bare), g_uWidth * g_uHeight);
}

TEST_F(CustomImages, BothFlavoursShowTheSame) {
    WriteData("Profiles/Own/p.png", picture_files::Png(61, 47, [](u32 x, u32 y) {
                  return (x * 4) << 24 | (x * y % 255) << 16 | y * 5;
              }));
    WriteProfile("Own", Image("i", "p.png", 3, 5, "TiltDegree='33'") +
                            Image("j", "p.png", 150, 31, "ImageColorA='200' ContentAnchor='9'"));
    ASSERT_TRUE(Begin(true, u"Own", g_uWidth, g_uHeight));
    const Picture plain = Look();
    g_fnTavo_GL_Release();
    SetCare({"MergedDraw"});
    const Picture merged = Look();
    EXPECT_NE(dynamic_cast<CDrawBasic_Merged*>(g_apDrawBasic[0]), nullptr);
    EXPECT_LT(Count(plain, g_bare), g_uWidth * g_uHeight);
    EXPECT_EQ(merged.aBytes, plain.aBytes);
}

} // namespace
