// Frosted panels over a known picture, against the plain rule on the processor.
#include "draw/backdrop.h"
#include "platform/gl_api.h"
#include "tests/gl/draw_fixture.h"
#include "tests/support/gl_recorder.h"

#include <algorithm>

namespace {

struct DrawBlur : DrawFixture {
    void SetUp() override {
        DrawFixture::SetUp();
        m_backdrop = MakeBackdrop(s_uWidth, s_uHeight);
    }
    CPanel_Base& AddFrosted(u32 uDiameter, f32 x, f32 y, f32 w, f32 h, const std::array<f32, 4>& afColor) {
        ++g_mapBlurDiameters[uDiameter];
        return AddPanel(g_uShapeRect, x, y, w, h, afColor, g_keyBlurByDiameter[uDiameter]);
    }
    Picture DrawOverBackdrop() {
        Batcher();
        PutBackdrop(m_backdrop);
        Batcher().m_fnRender();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        return Read();
    }
    /// Every pixel of the rectangle is the blurred one, and none outside has changed.
    void ExpectBlurred(const Picture& picture, u32 uLeft, u32 uTop, u32 uRight, u32 uBottom, u32 uDiameter,
                       const std::array<f32, 4>& afColor) {
        u32 uWrong = 0;
        for (u32 y = 0; y < s_uHeight; ++y)
            for (u32 x = 0; x < s_uWidth; ++x) {
                const bool bInside = x >= uLeft && x < uRight && y >= uTop && y < uBottom;
                const Pixel expected =
                    bInside ? BlurredPixel(m_backdrop, x, y, uDiameter, afColor.data()) : m_backdrop.At(x, y);
                uWrong += !Near(picture.At(x, y), expected, bInside ? 1 : 0);
            }
        EXPECT_EQ(uWrong, 0u) << "diameter " << uDiameter;
    }

    Picture m_backdrop;
};

const std::array<f32, 4> g_afClear = {0, 0, 0, 0};

} // namespace

TEST_F(DrawBlur, IsADiscOfTheDiameterUnderTheColour) {
    AddFrosted(30, 60, 40, 150, 100, {0.2f, 0.4f, 1.0f, 0.25f});
    const Picture picture = DrawOverBackdrop();
    m_backdrop.Save("draw_backdrop");
    picture.Save("draw_frosted_30");
    ExpectBlurred(picture, 60, 40, 210, 140, 30, {0.2f, 0.4f, 1.0f, 0.25f});
}

TEST_F(DrawBlur, RepeatsTheEdgesOfThePicture) {
    AddFrosted(100, 0, 0, s_uWidth, s_uHeight, g_afClear);
    const Picture picture = DrawOverBackdrop();
    picture.Save("draw_frosted_100");
    ExpectBlurred(picture, 0, 0, s_uWidth, s_uHeight, 100, g_afClear);
}

class DrawBlurDiameter : public DrawBlur, public ::testing::WithParamInterface<u32> {};

TEST_P(DrawBlurDiameter, FollowsThePlainRule) {
    AddFrosted(GetParam(), 10, 120, 120, 80, {1, 1, 1, 0.1f});
    ExpectBlurred(DrawOverBackdrop(), 10, 120, 130, 200, GetParam(), {1, 1, 1, 0.1f});
}

INSTANTIATE_TEST_SUITE_P(Diameters, DrawBlurDiameter, ::testing::Values(2u, 3u, 8u, 9u, 16u, 17u, 64u, 99u));

TEST_F(DrawBlur, DiametersZeroAndOneAreThePixelItselfWithProgramsOfTheirOwn) {
    AddFrosted(0, 0, 0, 100, 100, g_afClear);
    AddFrosted(1, 100, 100, 100, 100, g_afClear);
    const Picture picture = DrawOverBackdrop();
    EXPECT_EQ(m_pBatcher->m_uBlurProgramCount, 2u);
    EXPECT_EQ(m_pBatcher->m_uBlurDiameters[0], 0u);
    EXPECT_EQ(m_pBatcher->m_uBlurDiameters[1], 1u);
    ExpectBlurred(picture, 0, 0, 200, 200, 0, g_afClear);
}

TEST_F(DrawBlur, PanelsOfOneDiameterShareAProgram) {
    AddFrosted(12, 0, 0, 10, 10, g_afClear);
    AddFrosted(12, 20, 0, 10, 10, g_afClear);
    Batcher();
    EXPECT_EQ(m_pBatcher->m_uBlurProgramCount, 1u);
    EXPECT_EQ(m_pBatcher->m_pProgramBlur[1], nullptr);
}

TEST_F(DrawBlur, DiametersAreDrawnInAscendingOrder) {
    // The wider one is attached first and must still come out on top.
    AddFrosted(40, 0, 0, 100, 100, {1, 0, 0, 0.5f});
    AddFrosted(5, 50, 50, 100, 100, {0, 1, 0, 0.5f});
    const Picture picture = DrawOverBackdrop();
    picture.Save("draw_frosted_two");
    const f32 afRed[4] = {1, 0, 0, 0.5f}, afGreen[4] = {0, 1, 0, 0.5f};
    EXPECT_TRUE(Near(picture.At(75, 75), BlurredPixel(m_backdrop, 75, 75, 40, afRed), 1));
    EXPECT_TRUE(Near(picture.At(125, 125), BlurredPixel(m_backdrop, 125, 125, 5, afGreen), 1));
}

TEST_F(DrawBlur, FlatShapesLieAboveFrostedOnes) {
    AddPanel(g_uShapeRect, 0, 0, 50, 50, {1, 0, 0, 1});
    AddFrosted(30, 0, 0, 100, 100, g_afClear);
    EXPECT_EQ(DrawOverBackdrop().At(20, 20), (Pixel{255, 0, 0, 255}));
}

TEST_F(DrawBlur, AFrostedPanelIsOpaque) {
    AddFrosted(30, 0, 0, 100, 100, {1, 1, 1, 0.5f});
    EXPECT_EQ(DrawOverBackdrop().At(20, 20)[3], 255);
}

TEST_F(DrawBlur, AKeyWithoutProgramIsNeverDrawn) {
    g_mapBlurDiameters[12] = 1;
    AddPanel(g_uShapeRect, 0, 0, 100, 100, {1, 1, 1, 1}, g_keyBlurList);
    EXPECT_EQ(DrawOverBackdrop().aBytes, m_backdrop.aBytes);
}

TEST_F(DrawBlur, WithoutTheWishForABackdropNothingTouchesTheCopy) {
    AddFrosted(30, 0, 0, 100, 100, {1, 1, 1, 1});
    DrawOverBackdrop();
    g_bCaptureBackdrop = false;
    PutBackdrop(m_backdrop);
    g_bCaptureBackdrop = false;
    gl_recorder::Install();
    gl_recorder::Start();
    Batcher().m_fnRender();
    const auto calls = gl_recorder::Stop();
    EXPECT_TRUE(std::ranges::none_of(calls, [](const auto& s) { return s.starts_with("glBindTexture"); }));
    EXPECT_EQ(Read().aBytes, m_backdrop.aBytes);
}

TEST_F(DrawBlur, TheCopyIsSampledAsPrescribed) {
    AddFrosted(30, 0, 0, 100, 100, g_afClear);
    DrawOverBackdrop();
    glBindTexture(GL_TEXTURE_2D, g_uCopyTexture);
    const std::pair<GLenum, GLint> aExpected[] = {{GL_TEXTURE_MIN_LOD, -1000},
                                                  {GL_TEXTURE_MAX_LOD, 1000},
                                                  {GL_TEXTURE_MAX_LEVEL, 1000},
                                                  {GL_TEXTURE_BASE_LEVEL, 0},
                                                  {GL_TEXTURE_LOD_BIAS, 0},
                                                  {GL_TEXTURE_COMPARE_FUNC, GL_ALWAYS},
                                                  {GL_TEXTURE_COMPARE_MODE, GL_NONE},
                                                  {GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER},
                                                  {GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER},
                                                  {GL_TEXTURE_WRAP_R, GL_CLAMP_TO_BORDER},
                                                  {GL_TEXTURE_MIN_FILTER, GL_LINEAR},
                                                  {GL_TEXTURE_MAG_FILTER, GL_LINEAR}};
    for (auto [eName, iExpected] : aExpected) {
        GLint iValue = -1;
        glGetTexParameteriv(GL_TEXTURE_2D, eName, &iValue);
        EXPECT_EQ(iValue, iExpected) << std::hex << eName;
    }
    GLfloat afBorder[4] = {9, 9, 9, 9};
    glGetTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, afBorder);
    EXPECT_EQ((std::array{afBorder[0], afBorder[1], afBorder[2], afBorder[3]}),
              (std::array{0.f, 0.f, 0.f, 1.f}));
}
