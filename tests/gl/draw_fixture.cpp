#include "tests/gl/draw_fixture.h"

#include "batch/flavour_gl.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/creation_table.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

Pixel Picture::At(u32 x, u32 y) const {
    Pixel pixel;
    std::copy_n(aBytes.begin() + static_cast<std::ptrdiff_t>((y * uWidth + x) * 4), 4, pixel.begin());
    return pixel;
}

void Picture::Save(const std::string& strName) const {
    std::filesystem::create_directories(ORVIN_BINARY_DIR "/pictures");
    std::ofstream file(ORVIN_BINARY_DIR "/pictures/" + strName + ".ppm", std::ios::binary);
    file << "P6\n" << uWidth << " " << uHeight << "\n255\n";
    for (std::size_t i = 0; i < aBytes.size(); i += 4)
        file.write(reinterpret_cast<const char*>(&aBytes[i]), 3);
}

Picture MakeBackdrop(u32 uWidth, u32 uHeight) {
    Picture picture{uWidth, uHeight, std::vector<u8>(std::size_t{uWidth} * uHeight * 4, 255)};
    u32 uNoise = 12345;
    for (u32 y = 0; y < uHeight; ++y)
        for (u32 x = 0; x < uWidth; ++x) {
            uNoise = uNoise * 1664525u + 1013904223u;
            u8* pPixel = &picture.aBytes[(std::size_t{y} * uWidth + x) * 4];
            pPixel[0] = static_cast<u8>(x * 255 / uWidth);
            pPixel[1] = (y / 10) % 3 == 0 ? 230 : 20;
            pPixel[2] = static_cast<u8>(uNoise >> 24);
        }
    return picture;
}

static f32 Component(const Picture& picture, i32 x, i32 y, u32 uComponent) {
    x = std::clamp(x, 0, static_cast<i32>(picture.uWidth) - 1);
    y = std::clamp(y, 0, static_cast<i32>(picture.uHeight) - 1);
    return picture.At(static_cast<u32>(x), static_cast<u32>(y))[uComponent] / 255.0f;
}

using Disc = std::vector<std::array<i32, 2>>;

/// Sample points relative to the pixel.
static Disc MakeDisc(u32 uDiameter) {
    const i32 s = std::max(1, static_cast<i32>(std::ceil(uDiameter / 8.0)));
    Disc disc;
    for (i32 i = -60; i <= 60; ++i)
        for (i32 j = -60; j <= 60; ++j)
            if (std::hypot(f64(i * s), f64(j * s)) <= uDiameter / 2.0) disc.push_back({i * s, j * s});
    return disc;
}

static const Disc& DiscOf(u32 uDiameter) {
    static std::map<u32, Disc> mapDiscs;
    Disc& disc = mapDiscs[uDiameter];
    if (disc.empty()) disc = MakeDisc(uDiameter);
    return disc;
}

Pixel BlurredPixel(const Picture& picture, u32 x, u32 y, u32 uDiameter, const f32* pColor) {
    Pixel pixel = {0, 0, 0, 255};
    const Disc& disc = DiscOf(uDiameter);
    for (u32 c = 0; c < 3; ++c) {
        f32 fSum = 0;
        for (const auto& offset : disc)
            fSum += Component(picture, static_cast<i32>(x) + offset[0], static_cast<i32>(y) + offset[1], c);
        const f32 fBlur = fSum / static_cast<f32>(disc.size());
        pixel[c] = static_cast<u8>(std::lround(255.0f * (fBlur * (1 - pColor[3]) + pColor[c] * pColor[3])));
    }
    return pixel;
}

::testing::AssertionResult Near(const Pixel& actual, const Pixel& expected, int iSlack) {
    for (u32 c = 0; c < 4; ++c)
        if (std::abs(actual[c] - expected[c]) > iSlack)
            return ::testing::AssertionFailure()
                   << "component " << c << ": " << int(actual[c]) << " instead of " << int(expected[c]);
    return ::testing::AssertionSuccess();
}

void DrawFixture::SetUp() {
    UseContext(true);
    g_fnFillCreationTable_GL();
    g_mapBlurDiameters.clear();
    g_bCaptureBackdrop = false;
    g_uCopyTexture = 0;
    g_uCanvasW = s_uWidth;
    g_uCanvasH = s_uHeight;
    g_pOSDManager = &m_manager;
}

void DrawFixture::UseContext(bool bCore) {
    m_context.Destroy();
    platform::headless::EglOptions stOptions;
    stOptions.m_uWidth = s_uWidth;
    stOptions.m_uHeight = s_uHeight;
    stOptions.m_bCore = bCore;
    ASSERT_TRUE(m_context.Create(stOptions));
    ASSERT_TRUE(platform::InitGlew());
    while (glGetError() != GL_NO_ERROR) {
    }
    SetUpDrawing();
}

/// What the frame driver sets up around drawing.
void DrawFixture::SetUpDrawing() {
    glGenVertexArrays(1, &m_uVertexArray);
    glBindVertexArray(m_uVertexArray);
    glViewport(0, 0, s_uWidth, s_uHeight);
    glDisable(GL_DITHER);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1); // small levels have rows of one or two bytes
}

void DrawFixture::TearDown() {
    m_pBatcher.reset();
    m_apPanels.clear();
    m_context.Destroy();
    g_pOSDManager = nullptr;
    g_stCreationTable = {};
    g_mapBlurDiameters.clear();
    g_bCaptureBackdrop = false;
    g_uCopyTexture = 0;
    g_uCanvasW = 1920;
    g_uCanvasH = 1080;
    platform::headless::ResetAll();
}

CPanel_Base& DrawFixture::AddPanel(u32 uShape, f32 x, f32 y, f32 w, f32 h, const std::array<f32, 4>& afColor,
                                   DrawKey pKey, f32 e, f32 t, f32 c) {
    CPanel_Base& panel = *m_apPanels.emplace_back(g_stCreationTable.m_fnCreatePanel());
    panel.m_fnSetShape(uShape);
    panel.m_fnSetGeometry5(w, h, e, t, c);
    panel.m_fnSetColorF(afColor[0], afColor[1], afColor[2], afColor[3]);
    panel.m_fnSetDrawKey(pKey);
    EXPECT_TRUE(panel.m_fnInitialize());
    panel.m_fnSetPosition(x, y, 0);
    EXPECT_TRUE(m_manager.m_fnAttachBack(&panel, pKey == g_keyColorList     ? g_uLayerColor
                                                 : pKey == g_keyTextureList ? g_uLayerTexture
                                                                            : g_uLayerBlur));
    return panel;
}

CDrawBasic_GL& DrawFixture::Batcher() {
    if (!m_pBatcher) {
        m_pBatcher = std::make_unique<CDrawBasic_GL>();
        EXPECT_TRUE(m_pBatcher->m_fnInitialize());
    }
    return *m_pBatcher;
}

Picture DrawFixture::Draw(f32 r, f32 g, f32 b) {
    glClearColor(r, g, b, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    Batcher().m_fnRender();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    return Read();
}

void DrawFixture::PutBackdrop(const Picture& picture) {
    std::vector<u8> aBottomUp;
    for (u32 y = picture.uHeight; y-- > 0;) {
        const auto row = picture.aBytes.begin() + static_cast<std::ptrdiff_t>(y * picture.uWidth * 4);
        aBottomUp.insert(aBottomUp.end(), row, row + picture.uWidth * 4);
    }
    GLuint uSource = 0, uFramebuffer = 0;
    glGenTextures(1, &uSource);
    glBindTexture(GL_TEXTURE_2D, uSource);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, static_cast<GLsizei>(picture.uWidth),
                 static_cast<GLsizei>(picture.uHeight), 0, GL_RGBA, GL_UNSIGNED_BYTE, aBottomUp.data());
    glGenFramebuffers(1, &uFramebuffer);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, uFramebuffer);
    glFramebufferTexture2D(GL_READ_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, uSource, 0);
    glBlitFramebuffer(0, 0, s_uWidth, s_uHeight, 0, 0, s_uWidth, s_uHeight, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    glDeleteFramebuffers(1, &uFramebuffer);
    glDeleteTextures(1, &uSource);
    if (!g_uCopyTexture) glGenTextures(1, &g_uCopyTexture);
    glBindTexture(GL_TEXTURE_2D, g_uCopyTexture);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, s_uWidth, s_uHeight, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
    g_bCaptureBackdrop = true;
}

Picture DrawFixture::Read() const { return {s_uWidth, s_uHeight, m_context.ReadPixels()}; }
