// Atlases in a real context: what of a font reaches the GPU, and what goes when.
#include "batch/flavour_gl.h"
#include "font/font_uc_gl.h"

#include "draw/creation_table.h"
#include "draw/texture_gl.h"
#include "platform/gl_api.h"
#include "platform/headless/egl_context.h"
#include "platform/headless/test_controls.h"
#include "tests/support/gl_recorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

class FontGL : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_context.Create({}));
        ASSERT_TRUE(platform::InitGlew());
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        gl_recorder::Install();
        m_pFont = std::make_unique<CFontUC_GL>();
        m_pFont->m_fnSetLayout(4, 4, 0);
        m_pFont->m_fnSetTexSize(128, 128);
        m_pFont->m_fnSetFontName(u"DejaVu Sans");
        ASSERT_TRUE(m_pFont->m_fnInitialize(false));
    }
    void TearDown() override {
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        m_pFont.reset();
        m_context.Destroy();
        platform::headless::ResetAll();
    }
    u32 Name() const { return m_pFont->m_pTexture->m_pNames[0]; }
    std::vector<u8> Level(i32 iLevel) const {
        std::vector<u8> pixels(static_cast<u32>((128 >> iLevel) * (128 >> iLevel)));
        glBindTexture(GL_TEXTURE_2D, Name());
        glGetTexImage(GL_TEXTURE_2D, iLevel, GL_RED, GL_UNSIGNED_BYTE, pixels.data());
        glBindTexture(GL_TEXTURE_2D, 0);
        return pixels;
    }
    template <class Function> u32 UploadsOf(const Function& fn) {
        gl_recorder::Start();
        fn();
        u32 uUploads = 0;
        for (const std::string& call : gl_recorder::Stop()) uUploads += call.rfind("glTexImage2D", 0) == 0;
        return uUploads;
    }
    platform::headless::EglContext m_context;
    std::unique_ptr<CFontUC_GL> m_pFont;
};

TEST_F(FontGL, TextureIsOneByteAPixelWithAFullChain) {
    EXPECT_EQ(m_pFont->m_pTexture->m_uFormat, 2u);
    EXPECT_EQ(m_pFont->m_pTexture->m_uFrameCount, 1);
    EXPECT_EQ(m_pFont->m_pTexture->m_uLevelCount, 8);
    EXPECT_EQ(m_pFont->m_pTexture->m_uWidth, 128u);
}

TEST_F(FontGL, GlyphReachesTheGpuAtOnce) {
    EXPECT_EQ(UploadsOf([&] { g_fnFontAddChar(m_pFont.get(), 'M'); }), 8u) << "every level";
    const auto pixels = Level(0);
    EXPECT_GT(std::count(pixels.begin(), pixels.end(), 255), 50);
    EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), m_pFont->m_pAtlas));
    EXPECT_EQ(UploadsOf([&] { g_fnFontAddChar(m_pFont.get(), 'M'); }), 0u) << "known";
}

TEST_F(FontGL, WholeTextIsUploadedOnce) {
    EXPECT_EQ(UploadsOf([&] { g_fnFontAddText(m_pFont.get(), u"hello world"); }), 8u);
    EXPECT_TRUE(std::equal(m_pFont->m_pAtlas, m_pFont->m_pAtlas + 128 * 128, Level(0).begin()));
}

TEST_F(FontGL, LevelsTakeMemoryOnlyWhileTheyAreUploaded) {
    const auto hasLevel = [&](u32 uLevel) {
        u8* pLevel = nullptr;
        m_pFont->m_pTexture->m_fnGetLevel(&pLevel, 0, uLevel);
        return pLevel != nullptr;
    };
    g_fnFontAddText(m_pFont.get(), u"AB");
    for (u32 u = 0; u < 8; ++u) EXPECT_FALSE(hasLevel(u)) << u;
    m_pFont->m_pTexture->m_fnUploadLevel(nullptr, 0, 0);
    EXPECT_TRUE(std::equal(m_pFont->m_pAtlas, m_pFont->m_pAtlas + 128 * 128, Level(0).begin())) << "kept";
    g_fnFontAddChar(m_pFont.get(), 'C');
    EXPECT_FALSE(hasLevel(0));
    EXPECT_TRUE(std::equal(m_pFont->m_pAtlas, m_pFont->m_pAtlas + 128 * 128, Level(0).begin()));
}

TEST_F(FontGL, LaterGlyphsGiveTheSameLevelsAsAllAtOnce) {
    g_fnFontAddText(m_pFont.get(), u"AB");
    g_fnFontAddText(m_pFont.get(), u"hello");
    g_fnFontAddChar(m_pFont.get(), 'W');
    std::vector<std::vector<u8>> late;
    for (i32 i = 0; i < 8; ++i) late.push_back(Level(i));
    m_pFont = std::make_unique<CFontUC_GL>();
    m_pFont->m_fnSetLayout(4, 4, 0);
    m_pFont->m_fnSetTexSize(128, 128);
    m_pFont->m_fnSetFontName(u"DejaVu Sans");
    ASSERT_TRUE(m_pFont->m_fnInitialize(false));
    g_fnFontAddText(m_pFont.get(), u"ABheloW");
    for (i32 i = 0; i < 8; ++i) EXPECT_EQ(Level(i), late[static_cast<u32>(i)]) << i;
}

TEST_F(FontGL, SmallLevelsKeepTheWeightOfThinStrokes) {
    // A solid cell stays solid in the inside of each level; 170 would too, raised by half.
    std::fill_n(m_pFont->m_pAtlas, 128 * 128, u8{170});
    m_pFont->m_uAtlasRows = 128;
    ASSERT_TRUE(m_pFont->m_fnUploadAtlas());
    EXPECT_EQ(Level(0)[64 * 128 + 64], 170);
    EXPECT_EQ(Level(1)[32 * 64 + 32], 255);
    EXPECT_EQ(Level(3)[8 * 16 + 8], 255);
}

TEST_F(FontGL, BindingMakesTheTextureCurrent) {
    m_pFont->m_fnUploadAtlas();
    m_pFont->m_fnBindTexture(0);
    GLint iName = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &iName);
    EXPECT_EQ(static_cast<u32>(iName), Name());
    glBindTexture(GL_TEXTURE_2D, 0);
}

TEST_F(FontGL, ReleaseDropsTheTextureOnly) {
    g_fnFontAddText(m_pFont.get(), u"AB");
    const u32 uName = Name();
    m_pFont->m_fnRelease();
    EXPECT_EQ(m_pFont->m_pTexture, nullptr);
    EXPECT_FALSE(glIsTexture(uName));
    EXPECT_NE(m_pFont->m_pAtlas, nullptr);
    EXPECT_NE(m_pFont->m_hFont, nullptr);
    EXPECT_EQ(m_pFont->m_fnFindChar('B'), 1);
    EXPECT_FALSE(m_pFont->m_fnUploadAtlas());
    m_pFont->m_fnBindTexture(0);
    m_pFont->m_fnRelease();
    EXPECT_TRUE(g_fnFontAddChar(m_pFont.get(), 'C')) << "glyphs still come";
}

TEST_F(FontGL, InitialisingAgainReplacesTheTexture) {
    const u32 uName = Name();
    ASSERT_TRUE(m_pFont->m_fnInitialize(false));
    ASSERT_TRUE(m_pFont->m_fnUploadAtlasAll(nullptr));
    EXPECT_TRUE(glIsTexture(Name()));
    EXPECT_TRUE(Name() == uName || !glIsTexture(uName));
}

TEST_F(FontGL, FontFromAFileHasTheTextureOfTheOneThatWroteIt) {
    g_fnFontAddText(m_pFont.get(), u"hello");
    const std::vector<u8> whole = Level(0), half = Level(1);
    std::FILE* const pFile = std::tmpfile();
    ASSERT_NE(pFile, nullptr);
    ASSERT_TRUE(m_pFont->m_fnSaveToStream(pFile));
    std::vector<u8> bytes(static_cast<std::size_t>(std::ftell(pFile)));
    std::rewind(pFile);
    ASSERT_EQ(std::fread(bytes.data(), 1, bytes.size(), pFile), bytes.size());
    std::fclose(pFile);
    m_pFont = std::make_unique<CFontUC_GL>();
    stMemoryStream stream = {bytes.data(), static_cast<u32>(bytes.size()), 0};
    EXPECT_EQ(UploadsOf([&] { EXPECT_TRUE(m_pFont->m_fnLoadFromMemory(&stream)); }), 8u)
        << "once, every level";
    EXPECT_EQ(Level(0), whole);
    EXPECT_EQ(Level(1), half) << "with gain, unlike the file's";
    EXPECT_GT(std::count(whole.begin(), whole.end(), 255), 50);
}

TEST_F(FontGL, FontAndTextureGoTogether) {
    g_fnFontAddText(m_pFont.get(), u"AB");
    const u32 uName = Name();
    m_pFont.reset();
    EXPECT_FALSE(glIsTexture(uName));
}

TEST_F(FontGL, TableMakesFonts) {
    g_fnFillCreationTable_GL();
    const std::unique_ptr<CFontUniCode> pFont(g_stCreationTable.m_fnCreateFont());
    EXPECT_NE(dynamic_cast<CFontUC_GL*>(pFont.get()), nullptr);
    g_stCreationTable = {};
}

} // namespace
