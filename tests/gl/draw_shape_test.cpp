// Flat and textured shapes, as pixels.
#include "draw/canvas.h"
#include "platform/gl_api.h"
#include "tests/gl/draw_fixture.h"
#include "tests/support/gl_recorder.h"

#include <algorithm>
#include <set>

namespace {

/// How many pixels differ from a colour.
u32 Differing(const Picture& picture, const Pixel& colour) {
    u32 uCount = 0;
    for (u32 y = 0; y < picture.uHeight; ++y)
        for (u32 x = 0; x < picture.uWidth; ++x) uCount += !Near(picture.At(x, y), colour, 1);
    return uCount;
}

u32 CountOf(const std::vector<std::string>& calls, const std::string& strPrefix) {
    return static_cast<u32>(
        std::ranges::count_if(calls, [&](const auto& s) { return s.starts_with(strPrefix); }));
}

const Pixel g_black = {0, 0, 0, 255};

using DrawShape = DrawFixture;

} // namespace

TEST_F(DrawShape, RectangleCoversItsPixelsExactlyAndTopIsTop) {
    AddPanel(g_uShapeRect, 30, 10, 100, 40, {1, 0, 0, 1});
    const Picture picture = Draw(0, 0, 0);
    picture.Save("draw_rectangle");
    const Pixel red = {255, 0, 0, 255};
    for (auto [x, y] : {std::pair{30u, 10u}, {129u, 10u}, {30u, 49u}, {129u, 49u}, {80u, 30u}})
        EXPECT_EQ(picture.At(x, y), red) << x << "," << y;
    for (auto [x, y] : {std::pair{29u, 10u}, {30u, 9u}, {130u, 49u}, {129u, 50u}, {80u, 170u}})
        EXPECT_EQ(picture.At(x, y), g_black) << x << "," << y;
    EXPECT_EQ(Differing(picture, g_black), 100u * 40u);
}

TEST_F(DrawShape, AlphaMixesWithWhatIsBelow) {
    AddPanel(g_uShapeRect, 0, 0, 320, 200, {1, 0.5f, 0, 0.25f});
    const Picture picture = Draw(0, 0, 1);
    // The alpha that is left behind is mixed in the same way: 0.25 of 0.25 and 0.75 of 1.
    EXPECT_TRUE(Near(picture.At(5, 5), {64, 32, 191, 207}, 1));
    EXPECT_EQ(picture.At(5, 5), picture.At(310, 190));
}

TEST_F(DrawShape, LaterControlsOfTheListLieAbove) {
    AddPanel(g_uShapeRect, 0, 0, 50, 50, {1, 0, 0, 1});
    CPanel_Base& above = AddPanel(g_uShapeRect, 25, 25, 50, 50, {0, 1, 0, 1});
    EXPECT_EQ(Draw(0, 0, 0).At(30, 30), (Pixel{0, 255, 0, 255}));
    m_manager.m_fnDetach(&above, g_uLayerColor);
    m_manager.m_fnAttachFront(&above, g_uLayerColor);
    EXPECT_EQ(Draw(0, 0, 0).At(30, 30), (Pixel{255, 0, 0, 255}));
}

TEST_F(DrawShape, FrameIsHollowAndGrowsByItsOutset) {
    AddPanel(g_uShapeFrame, 40, 40, 100, 60, {1, 1, 1, 0.5f}, g_keyColorList, 2, 10);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("draw_frame");
    // Outer 104 x 64 at (38, 38); inner from 48 to 132 and from 48 to 92.
    EXPECT_EQ(Differing(picture, g_black), 104u * 64u - 84u * 44u);
    EXPECT_EQ(picture.At(90, 70), g_black);
    EXPECT_EQ(picture.At(37, 38), g_black);
    // No pixel of the ring is painted twice: half white is the same along all diagonals.
    for (auto [x, y] : {std::pair{38u, 38u}, {47u, 47u}, {141u, 101u}, {90u, 40u}, {40u, 70u}, {135u, 95u}})
        EXPECT_TRUE(Near(picture.At(x, y), {128, 128, 128, picture.At(x, y)[3]}, 1)) << x << "," << y;
}

TEST_F(DrawShape, BorderHasSquaresInItsCorners) {
    AddPanel(g_uShapeBorder, 40, 40, 120, 80, {0, 1, 1, 1}, g_keyColorList, 0, 3, 15);
    const Picture picture = Draw(0, 0, 0);
    picture.Save("draw_border");
    const Pixel cyan = {0, 255, 255, 255};
    for (auto [x, y] : {std::pair{54u, 54u}, {145u, 54u}, {145u, 105u}, {54u, 105u}, {100u, 42u}, {42u, 80u}})
        EXPECT_EQ(picture.At(x, y), cyan) << x << "," << y;
    for (auto [x, y] : {std::pair{55u, 55u}, {144u, 55u}, {144u, 104u}, {100u, 43u}, {100u, 80u}})
        EXPECT_EQ(picture.At(x, y), g_black) << x << "," << y;
}

TEST_F(DrawShape, AFrameThatCrossesOverDrawsWithoutError) {
    AddPanel(g_uShapeFrame, 40, 40, 20, 20, {1, 1, 1, 1}, g_keyColorList, 0, 18);
    EXPECT_NE(Draw(0, 0, 0).At(41, 41), g_black);
}

TEST_F(DrawShape, ARebuiltPanelShowsItsNewSize) {
    CPanel_Base& panel = AddPanel(g_uShapeRect, 0, 0, 10, 10, {1, 1, 1, 1});
    EXPECT_EQ(Differing(Draw(0, 0, 0), g_black), 100u);
    panel.m_fnSetGeometry(20, 30);
    EXPECT_EQ(Differing(Draw(0, 0, 0), g_black), 600u);
}

TEST_F(DrawShape, ACanvasOfAnotherSizeChangesTheProjectionOnly) {
    CPanel_Base& panel = AddPanel(g_uShapeRect, 0, 0, 80, 50, {1, 1, 1, 1});
    const u32 uBuffer = panel.m_pRectMesh->m_pMesh->m_fnGetVB();
    Draw(0, 0, 0);
    g_uCanvasW = 640;
    Batcher().m_fnOnResize();
    EXPECT_EQ(Differing(Draw(0, 0, 0), g_black), 40u * 50u);
    EXPECT_EQ(panel.m_pRectMesh->m_pMesh->m_fnGetVB(), uBuffer);
    EXPECT_EQ(m_pBatcher->m_mProj[0], 2.0f / 640);
    EXPECT_EQ(m_pBatcher->m_mProj[5], 2.0f / 200);
}

namespace {
/// A picture with depths of full precision in the place of the surface, while it lives.
class DepthTarget {
  public:
    DepthTarget(GLsizei iWidth, GLsizei iHeight) {
        glGenRenderbuffers(2, m_auBuffers);
        glGenFramebuffers(1, &m_uFramebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, m_uFramebuffer);
        Attach(m_auBuffers[0], GL_RGBA8, GL_COLOR_ATTACHMENT0, iWidth, iHeight);
        Attach(m_auBuffers[1], GL_DEPTH_COMPONENT32F, GL_DEPTH_ATTACHMENT, iWidth, iHeight);
        EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), GLenum(GL_FRAMEBUFFER_COMPLETE));
    }
    ~DepthTarget() {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glDeleteFramebuffers(1, &m_uFramebuffer);
        glDeleteRenderbuffers(2, m_auBuffers);
    }
    DepthTarget(const DepthTarget&) = delete;
    DepthTarget& operator=(const DepthTarget&) = delete;

  private:
    static void Attach(u32 uBuffer, GLenum eFormat, GLenum eWhere, GLsizei iWidth, GLsizei iHeight) {
        glBindRenderbuffer(GL_RENDERBUFFER, uBuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, eFormat, iWidth, iHeight);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, eWhere, GL_RENDERBUFFER, uBuffer);
    }
    GLuint m_auBuffers[2] = {}, m_uFramebuffer = 0;
};

/// All depths that a frame leaves behind in a target cleared to the near plane.
std::set<f32> DepthsDrawn(CDrawBasic_GL& batcher) {
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_ALWAYS);
    glClearDepth(0.0);
    glClear(GL_DEPTH_BUFFER_BIT);
    batcher.m_fnRender();
    std::vector<f32> aDepths(320 * 200, -1.0f);
    glReadPixels(0, 0, 320, 200, GL_DEPTH_COMPONENT, GL_FLOAT, aDepths.data());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    glDisable(GL_DEPTH_TEST);
    return {aDepths.begin(), aDepths.end()};
}
} // namespace

TEST_F(DrawShape, ShapesLieExactlyOnTheFarPlane) {
    AddPanel(g_uShapeRect, 0, 0, 320, 200, {1, 1, 1, 1});
    Batcher();
    const DepthTarget target(320, 200);
    EXPECT_EQ(DepthsDrawn(Batcher()), (std::set<f32>{1.0f}));
    for (GLenum eDepth : {GLenum(GL_ZERO_TO_ONE), GLenum(GL_NEGATIVE_ONE_TO_ONE)}) {
        if (!glClipControl) break;
        glClipControl(GL_LOWER_LEFT, eDepth);
        EXPECT_EQ(DepthsDrawn(Batcher()), (std::set<f32>{1.0f}));
    }
}

namespace {
/// Two by two pixels: red and green above blue and white.
u32 MakeQuadrants() {
    const u8 auPixels[16] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255};
    GLuint uTexture = 0;
    glGenTextures(1, &uTexture);
    glBindTexture(GL_TEXTURE_2D, uTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, auPixels);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    return uTexture;
}
} // namespace

TEST_F(DrawShape, APicturesFirstRowIsItsTopAndTheColourModulates) {
    AddPanel(g_uShapeRect, 20, 20, 100, 60, {1, 1, 0.5f, 1}, g_keyTextureList);
    const u32 uTexture = MakeQuadrants();
    Batcher();
    const Picture picture = Draw(0, 0, 0);
    picture.Save("draw_texture");
    EXPECT_TRUE(Near(picture.At(21, 21), {255, 0, 0, 255}, 1));
    EXPECT_TRUE(Near(picture.At(118, 21), {0, 255, 0, 255}, 1));
    EXPECT_TRUE(Near(picture.At(21, 78), {0, 0, 128, 255}, 1));
    EXPECT_TRUE(Near(picture.At(118, 78), {255, 255, 128, 255}, 1));
    glDeleteTextures(1, &uTexture);
}

TEST_F(DrawShape, PicturesLieAboveFlatShapes) {
    AddPanel(g_uShapeRect, 0, 0, 100, 100, {1, 1, 1, 1}, g_keyTextureList);
    AddPanel(g_uShapeRect, 0, 0, 100, 100, {0, 1, 1, 1});
    const u32 uTexture = MakeQuadrants();
    EXPECT_EQ(Draw(0, 0, 0).At(10, 10), (Pixel{255, 0, 0, 255}));
    glDeleteTextures(1, &uTexture);
}

TEST_F(DrawShape, AFrameBindsEachProgramOnceAndDrawsOncePerControl) {
    for (f32 x : {0.0f, 50.0f, 100.0f}) AddPanel(g_uShapeRect, x, 0, 20, 20, {1, 1, 1, 1});
    AddPanel(g_uShapeFrame, 0, 50, 20, 20, {1, 1, 1, 1}, g_keyColorList, 0, 2);
    Draw(0, 0, 0);
    gl_recorder::Install();
    gl_recorder::Start();
    Batcher().m_fnRender();
    const auto calls = gl_recorder::Stop();
    EXPECT_EQ(CountOf(calls, "glUseProgram(0)"), 2u);
    EXPECT_EQ(CountOf(calls, "glUseProgram("), 4u);
    EXPECT_EQ(CountOf(calls, "glDrawRangeElements("), 4u);
    EXPECT_EQ(CountOf(calls, "glBufferData("), 0u);
    EXPECT_EQ(CountOf(calls, "glGetUniformLocation("), 0u + CountOf(calls, "glUniform"));
}

TEST_F(DrawShape, DrawsInACompatibilityContextToo) {
    UseContext(false);
    AddPanel(g_uShapeRect, 0, 0, 40, 50, {1, 1, 1, 1});
    EXPECT_EQ(Differing(Draw(0, 0, 0), g_black), 40u * 50u);
}
