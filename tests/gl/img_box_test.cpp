// Image boxes over OpenGL: pixels, animations, names, and what a frame costs.
#include "base/timer.h"
#include "controls/img_box.h"
#include "draw/draw_keys.h"
#include "draw/own_context.h"
#include "draw/pixel_guard.h"
#include "draw/texture_gl.h"
#include "platform/gl_api.h"
#include "tests/gl/draw_fixture.h"
#include "tests/support/gif_maker.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/picture_files.h"

#include <algorithm>

namespace {

using Calls = std::vector<std::string>;
constexpr Pixel g_black = {0, 0, 0, 255}, g_red = {255, 0, 0, 255}, g_green = {0, 255, 0, 255},
                g_blue = {0, 0, 255, 255}, g_white = {255, 255, 255, 255};

class ImgBoxGL : public DrawFixture {
  protected:
    void TearDown() override {
        m_apBoxes.clear();
        g_fLastFrameSeconds = 0;
        DrawFixture::TearDown();
    }
    /// Red, green, blue, white, from the top left, clockwise from there: nothing is symmetric.
    static u32 Quarters(u32 x, u32 y, u32 uWidth, u32 uHeight) {
        const bool bRight = x >= uWidth / 2, bLow = y >= uHeight / 2;
        return bLow ? (bRight ? 0xFF0000FF : 0xFFFFFFFF) : (bRight ? 0xFF00FF00 : 0xFFFF0000);
    }
    void WriteQuarters(u32 uWidth, u32 uHeight) const {
        m_folder.Write("p.png", picture_files::Png(uWidth, uHeight, [=](u32 x, u32 y) {
                           return Quarters(x, y, uWidth, uHeight);
                       }));
    }
    std::unique_ptr<CImgBox_Base> NewBox(const char16_t* wzFile, f32 w, f32 h) {
        auto pBox = std::make_unique<CImgBox_Base>();
        pBox->m_fnSetBoxSize(w, h);
        pBox->m_fnSetColorF(1, 1, 1, 1);
        pBox->m_fnSetImageFile(wzFile, false);
        return pBox;
    }
    CImgBox_Base& Show(std::unique_ptr<CImgBox_Base> pBox, f32 x, f32 y) {
        CImgBox_Base& box = *m_apBoxes.emplace_back(std::move(pBox));
        EXPECT_TRUE(box.m_fnInitialize());
        box.m_fnMoveTo(x, y, 0);
        m_manager.m_fnAttachBack(&box, g_uLayerTexture);
        return box;
    }
    /// The bytes of the colours of a GIF's table: A is red 10, green 11, blue 12, and so on.
    static Pixel Letter(char c) {
        const u8 u = static_cast<u8>(10 * (c - 'A' + 1));
        return {u, static_cast<u8>(u + 1), static_cast<u8>(u + 2), 255};
    }
    template <class Action> static Calls CallsOf(Action fnAction) {
        gl_recorder::Install();
        gl_recorder::Start();
        fnAction();
        return gl_recorder::Stop();
    }
    static std::ptrdiff_t Count(const Calls& calls, const std::string& strPrefix) {
        return std::ranges::count_if(calls, [&](const auto& s) { return s.starts_with(strPrefix); });
    }
    std::vector<std::unique_ptr<CImgBox_Base>> m_apBoxes;
};

TEST_F(ImgBoxGL, AWidePictureIsFittedWithItsRowsFromTheTop) {
    WriteQuarters(80, 40);
    Show(NewBox(u"p.png", 80, 80), 100, 50);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("image-fitted");
    EXPECT_EQ(picture.At(101, 51), g_red);
    EXPECT_EQ(picture.At(178, 51), g_green);
    EXPECT_EQ(picture.At(178, 88), g_blue);
    EXPECT_EQ(picture.At(101, 88), g_white);
    EXPECT_EQ(picture.At(101, 91), g_black) << "code 1 leaves the lower half free";
    EXPECT_EQ(picture.At(99, 51), g_black);
}

TEST_F(ImgBoxGL, AnEnlargedPictureHasADarkRim) {
    m_folder.Write("p.png", picture_files::Png(2, 2, [](u32, u32) { return 0xFFFFFFFF; }));
    Show(NewBox(u"p.png", 80, 80), 100, 50);
    const Picture picture = Draw(0, 0, 0);
    EXPECT_EQ(picture.At(140, 90), g_white);
    EXPECT_LT(picture.At(101, 90)[0], 150);
    EXPECT_EQ(picture.At(121, 90), g_white) << "half a pixel of the picture further in";
}

TEST_F(ImgBoxGL, Code9PutsAPictureToTheLowerRight) {
    WriteQuarters(40, 80);
    auto pBox = NewBox(u"p.png", 80, 80);
    pBox->m_fnSetAnchor(9, 0, 0);
    Show(std::move(pBox), 100, 50);
    const Picture picture = Draw(0, 0, 0);
    EXPECT_EQ(picture.At(138, 51), g_black);
    EXPECT_EQ(picture.At(142, 52), g_red);
    EXPECT_EQ(picture.At(178, 128), g_blue);
}

TEST_F(ImgBoxGL, QuarterTurnsGoClockwiseToTheLastPixel) {
    WriteQuarters(80, 40);
    const Pixel aTurned[4][4] = {{g_red, g_green, g_blue, g_white},
                                 {g_white, g_red, g_green, g_blue},
                                 {g_blue, g_white, g_red, g_green},
                                 {g_green, g_blue, g_white, g_red}};
    auto pBox = NewBox(u"p.png", 80, 80);
    pBox->m_fnSetTilted(true);
    CImgBox_Base& box = Show(std::move(pBox), 100, 50);
    for (u32 q = 0; q < 4; ++q) {
        SCOPED_TRACE(q);
        box.m_fnSetTiltDegree(90.0f * static_cast<f32>(q));
        box.m_fnRebuild();
        const Picture picture = Draw(0, 0, 0);
        const bool bUpright = q % 2 == 1;
        const u32 uLeft = bUpright ? 120 : 100, uTop = bUpright ? 50 : 70;
        const u32 uRight = bUpright ? 159 : 179, uBottom = bUpright ? 129 : 109;
        EXPECT_EQ(picture.At(uLeft, uTop), aTurned[q][0]);
        EXPECT_EQ(picture.At(uRight, uTop), aTurned[q][1]);
        EXPECT_EQ(picture.At(uRight, uBottom), aTurned[q][2]);
        EXPECT_EQ(picture.At(uLeft, uBottom), aTurned[q][3]);
        EXPECT_EQ(picture.At(uLeft - 1, uTop), g_black);
        EXPECT_EQ(picture.At(uLeft, uTop - 1), g_black);
        EXPECT_EQ(picture.At(uRight + 1, uBottom), g_black);
        EXPECT_EQ(picture.At(uRight, uBottom + 1), g_black);
    }
}

TEST_F(ImgBoxGL, ATiltedPictureTouchesTheSidesOfItsBoxAndShowsNothingBeyond) {
    WriteQuarters(64, 64);
    auto pBox = NewBox(u"p.png", 100, 100);
    pBox->m_fnSetTilted(true);
    pBox->m_fnSetTiltDegree(45);
    Show(std::move(pBox), 100, 50);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("image-tilted");
    EXPECT_EQ(picture.At(150, 54), g_red) << "the top left corner has come to the top";
    EXPECT_EQ(picture.At(195, 100), g_green);
    EXPECT_EQ(picture.At(150, 145), g_blue);
    EXPECT_EQ(picture.At(104, 100), g_white);
    for (const auto& [x, y] : {std::pair{104u, 54u}, {195u, 54u}, {104u, 145u}, {195u, 145u}})
        EXPECT_EQ(picture.At(x, y), g_black);
}

TEST_F(ImgBoxGL, TheTintMultipliesAndThePicturesOwnAlphaBlends) {
    // Opaque, half, clear.
    m_folder.Write("p.png", picture_files::Png(30, 10, [](u32 x, u32) {
                       return x < 10 ? 0xFFFFFFFF : x < 20 ? 0x80FFFFFF : 0x00FFFFFF;
                   }));
    auto pBox = NewBox(u"p.png", 30, 10);
    pBox->m_fnSetColorB(200, 100, 50, 255);
    CImgBox_Base& box = Show(std::move(pBox), 0, 0);
    const Picture solid = Draw(0, 0, 0);
    EXPECT_TRUE(Near(solid.At(5, 5), {200, 100, 50, 255}, 1));
    const Pixel blended = solid.At(15, 5);
    EXPECT_TRUE(Near({blended[0], blended[1], blended[2], 255}, {100, 50, 25, 255}, 2));
    EXPECT_EQ(solid.At(25, 5), g_black);
    box.m_fnSetColorB(200, 100, 50, 127);
    const Pixel half = Draw(0, 0, 0).At(5, 5); // the alpha of the frame is nobody's
    EXPECT_TRUE(Near({half[0], half[1], half[2], 255}, {100, 50, 25, 255}, 2));
    box.m_fnSetColorB(200, 100, 50, 0);
    EXPECT_EQ(Draw(0, 0, 0).At(5, 5), g_black);
}

TEST_F(ImgBoxGL, LaterImagesLieOverEarlierOnesAndOverFlatPanels) {
    AddPanel(g_uShapeRect, 0, 0, 100, 100, {1, 1, 0, 1});
    m_folder.Write("r.png", picture_files::Png(40, 40, [](u32, u32) { return 0xFFFF0000; }));
    m_folder.Write("g.png", picture_files::Png(40, 40, [](u32, u32) { return 0xFF00FF00; }));
    Show(NewBox(u"r.png", 40, 40), 10, 10);
    Show(NewBox(u"g.png", 40, 40), 30, 30);
    const Picture picture = Draw(0, 0, 0);
    EXPECT_EQ(picture.At(20, 20), g_red);
    EXPECT_EQ(picture.At(40, 40), g_green);
    EXPECT_EQ(picture.At(80, 80), (Pixel{255, 255, 0, 255}));
}

TEST_F(ImgBoxGL, AnAnimationGoesOnByTheTimeThatItWasShown) {
    m_folder.Write("a.gif", CGifMaker(20, 20)
                                .Control(10, 1)
                                .Frame(0, 0, 20, 20, std::string(400, 'A'))
                                .Control(20, 1)
                                .Frame(0, 0, 20, 20, std::string(400, 'B'))
                                .Control(0, 1)
                                .Frame(0, 0, 20, 20, std::string(400, 'C'))
                                .File());
    Show(NewBox(u"a.gif", 20, 20), 0, 0);
    // 16 milliseconds a frame, until a delay of 100, 200 and, where none is given, 90 is exceeded.
    g_fLastFrameSeconds = 0.016f;
    std::string strShown, strExpected;
    for (u32 u = 0; u < 60; ++u) {
        const Pixel pixel = Draw(0, 0, 0).At(10, 10);
        for (const char c : {'A', 'B', 'C'})
            if (pixel == Letter(c)) strShown += c;
    }
    for (u32 uRound = 0; uRound < 3; ++uRound) {
        strExpected.append(uRound ? 7 : 6, 'A'); // the seventh bind is the one that steps
        strExpected.append(13, 'B');
        strExpected.append(6, 'C');
    }
    EXPECT_EQ(strShown, strExpected.substr(0, 60));
}

TEST_F(ImgBoxGL, ALongFrameIsOneStep) {
    m_folder.Write("a.gif", CGifMaker(20, 20)
                                .Control(10, 1)
                                .Frame(0, 0, 20, 20, std::string(400, 'A'))
                                .Control(10, 1)
                                .Frame(0, 0, 20, 20, std::string(400, 'B'))
                                .Control(10, 1)
                                .Frame(0, 0, 20, 20, std::string(400, 'C'))
                                .File());
    Show(NewBox(u"a.gif", 20, 20), 0, 0);
    g_fLastFrameSeconds = 5;
    EXPECT_EQ(Draw(0, 0, 0).At(10, 10), Letter('B'));
    EXPECT_EQ(Draw(0, 0, 0).At(10, 10), Letter('C'));
    EXPECT_EQ(Draw(0, 0, 0).At(10, 10), Letter('A'));
}

/// Names of this context's texture objects.
u32 Textures() {
    u32 uCount = 0;
    for (GLuint u = 1; u < 4096; ++u) uCount += glIsTexture(u) != 0;
    return uCount;
}

TEST_F(ImgBoxGL, NamesAreReleasedWithTheBoxInItsOwnContextAndForgottenInAnother) {
    g_fnTakeContext();
    WriteQuarters(4, 4);
    const std::string strGif = CGifMaker(20, 20)
                                   .Control(1, 1)
                                   .Frame(0, 0, 20, 20, std::string(400, 'A'))
                                   .Control(1, 1)
                                   .Frame(0, 0, 20, 20, std::string(400, 'B'))
                                   .File();
    m_folder.Write("a.gif", strGif);
    const u32 uBefore = Textures();
    for (u32 u = 0; u < 100; ++u) {
        Show(NewBox(u"p.png", 20, 20), 0, 0);
        Show(NewBox(u"a.gif", 20, 20), 0, 0);
        EXPECT_EQ(Textures(), uBefore + 3);
        for (const auto& pBox : m_apBoxes) m_manager.m_fnDetach(pBox.get(), g_uLayerTexture);
        m_apBoxes.clear();
        EXPECT_EQ(Textures(), uBefore);
    }
    auto pBox = NewBox(u"p.png", 20, 20);
    ASSERT_TRUE(pBox->m_fnInitialize());
    platform::headless::EglContext other;
    ASSERT_TRUE(other.Create({}));
    GLuint uForeign = 0;
    glGenTextures(1, &uForeign);
    glBindTexture(GL_TEXTURE_2D, uForeign);
    const u32 uOthers = Textures();
    pBox.reset(); // its number is that of somebody else's texture here
    EXPECT_EQ(Textures(), uOthers);
    other.Destroy();
    ASSERT_TRUE(m_context.MakeCurrent());
    EXPECT_EQ(Textures(), uBefore + 1);
    g_fnLeaveContext();
}

TEST_F(ImgBoxGL, ReplacingAPictureReleasesTheOld) {
    g_fnTakeContext();
    WriteQuarters(4, 4);
    CImgBox_Base& box = Show(NewBox(u"p.png", 20, 20), 0, 0);
    const u32 uBefore = Textures();
    for (u32 u = 0; u < 10; ++u) box.m_fnSetImageFile(u"p.png", false);
    EXPECT_EQ(Textures(), uBefore);
    g_fnLeaveContext();
}

TEST_F(ImgBoxGL, AFrameUploadsAndDecodesNothing) {
    WriteQuarters(16, 16);
    m_folder.Write("a.gif", CGifMaker(20, 20)
                                .Control(1, 1)
                                .Frame(0, 0, 20, 20, std::string(400, 'A'))
                                .Control(1, 1)
                                .Frame(0, 0, 20, 20, std::string(400, 'B'))
                                .File());
    Show(NewBox(u"p.png", 20, 20), 0, 0);
    Show(NewBox(u"a.gif", 20, 20), 0, 0);
    g_fLastFrameSeconds = 0.02f;
    Draw(0, 0, 0);
    m_folder.Remove("p.png");
    m_folder.Remove("a.gif");
    for (u32 u = 0; u < 4; ++u) {
        const Calls calls = CallsOf([&] { static_cast<CDraw_Base&>(Batcher()).m_fnRender(); });
        EXPECT_EQ(Count(calls, "glTexImage") + Count(calls, "glTexSubImage") + Count(calls, "glBuffer"), 0);
        EXPECT_EQ(Count(calls, "glDraw"), 2);
        EXPECT_EQ(Count(calls, "glGen"), 0);
    }
}

TEST_F(ImgBoxGL, WithoutASizeNothingIsCalledForIt) {
    WriteQuarters(16, 16);
    CImgBox_Base& box = Show(NewBox(u"p.png", 20, 20), 0, 0);
    Draw(0, 0, 0);
    const auto calls = [&] { return CallsOf([&] { static_cast<CDraw_Base&>(Batcher()).m_fnRender(); }); };
    EXPECT_EQ(Count(calls(), "glBindTexture"), 1);
    box.m_fnSetBoxSize(0, 0);
    box.m_fnRebuild();
    EXPECT_EQ(Count(calls(), "glBindTexture"), 0);
    EXPECT_EQ(Count(calls(), "glDraw"), 0);
}

TEST_F(ImgBoxGL, UploadsStandUnderTheGuardOfPixelState) {
    WriteQuarters(16, 16);
    GLuint uBuffer = 0;
    glGenBuffers(1, &uBuffer);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, uBuffer);
    glBufferData(GL_PIXEL_UNPACK_BUFFER, 64, nullptr, GL_STATIC_DRAW); // too small to be read from
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 3);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 99);
    g_fnBeginGuardPixels(false);
    Show(NewBox(u"p.png", 16, 16), 0, 0);
    g_fnEndGuardPixels();
    GLint iBound = 0, iSkip = 0;
    glGetIntegerv(GL_PIXEL_UNPACK_BUFFER_BINDING, &iBound);
    glGetIntegerv(GL_UNPACK_SKIP_ROWS, &iSkip);
    EXPECT_EQ(static_cast<GLuint>(iBound), uBuffer);
    EXPECT_EQ(iSkip, 3);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 0);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    const Picture picture = Draw(0, 0, 0);
    EXPECT_EQ(picture.At(0, 0), g_red);
    EXPECT_EQ(picture.At(15, 15), g_blue);
}

TEST_F(ImgBoxGL, APictureWiderThanTheDriverTakesIsRefusedWithoutAnError) {
    GLint iLimit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &iLimit);
    const u32 uWide = static_cast<u32>(iLimit) + 1;
    m_folder.Write("wide.bmp", picture_files::Bmp(uWide, 1, [](u32, u32) { return 0xFF00u; }));
    m_folder.Write("fits.bmp", picture_files::Bmp(uWide - 1, 1, [](u32, u32) { return 0xFF00u; }));
    auto pBox = NewBox(u"wide.bmp", 20, 20);
    EXPECT_FALSE(pBox->m_fnInitialize());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    Show(NewBox(u"fits.bmp", 20, 20), 0, 0);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

} // namespace
