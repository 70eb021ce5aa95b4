// Atlases of the merged flavour: an upload takes the rows along that have glyphs, and no more.
#include "merged/font_merged.h"

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

constexpr u32 c_uSide = 512, c_uGrid = 16, c_uCell = c_uSide / c_uGrid, c_uLevels = 10;

class FontMerged : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_context.Create({}));
        ASSERT_TRUE(platform::InitGlew());
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        gl_recorder::Install();
        m_pMerged = Make<CFontUC_Merged>();
        m_pPlain = Make<CFontUC_GL>();
    }
    void TearDown() override {
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        m_pMerged.reset();
        m_pPlain.reset();
        m_context.Destroy();
        platform::headless::ResetAll();
    }
    template <class Font> static std::unique_ptr<CFontUC_GL> Make() {
        auto pFont = std::make_unique<Font>();
        pFont->m_fnSetLayout(c_uGrid, c_uGrid, 0);
        pFont->m_fnSetTexSize(c_uSide, c_uSide);
        pFont->m_fnSetFontName(u"DejaVu Sans");
        EXPECT_TRUE(pFont->m_fnInitialize(false));
        return pFont;
    }
    static std::vector<u8> Level(const CFontUC_GL& font, u32 uLevel) {
        std::vector<u8> pixels(std::size_t{c_uSide >> uLevel} * (c_uSide >> uLevel));
        glBindTexture(GL_TEXTURE_2D, font.m_pTexture->m_pNames[0]);
        glGetTexImage(GL_TEXTURE_2D, static_cast<GLint>(uLevel), GL_RED, GL_UNSIGNED_BYTE, pixels.data());
        glBindTexture(GL_TEXTURE_2D, 0);
        return pixels;
    }
    /// The cells in use and the row of cells below, in all levels.
    void ExpectTheSame(u32 uRowsOfCells) const {
        for (u32 i = 0; i < c_uLevels; ++i) {
            const std::vector<u8> expected = Level(*m_pPlain, i), actual = Level(*m_pMerged, i);
            const std::size_t uRows = std::max(1u, ((uRowsOfCells + 1) * c_uCell) >> i);
            const auto iBytes = static_cast<std::ptrdiff_t>(uRows * (c_uSide >> i));
            EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + iBytes, actual.begin())) << i;
        }
    }
    void Add(const char16_t* wzText) const {
        g_fnFontAddText(m_pPlain.get(), wzText);
        g_fnFontAddText(m_pMerged.get(), wzText);
    }
    platform::headless::EglContext m_context;
    std::unique_ptr<CFontUC_GL> m_pMerged, m_pPlain;
};

TEST_F(FontMerged, RowsWithGlyphsAreThoseOfAWholeUpload) {
    Add(u"ABheloW");
    ExpectTheSame(1);
    Add(u"0123456789CDEFGHIJ");
    ExpectTheSame(2);
}

TEST_F(FontMerged, TheRestOfTheAtlasIsNotHandedOver) {
    for (const char16_t* wzText : {u"ABheloW", u"X"}) {
        gl_recorder::Start();
        g_fnFontAddText(m_pMerged.get(), wzText);
        std::vector<u32> listHeights;
        u32 uSpecified = 0;
        for (const std::string& strCall : gl_recorder::Stop()) {
            uSpecified += strCall.starts_with("glTexImage2D");
            u32 uHeight = 0;
            if (std::sscanf(strCall.c_str(), "glTexSubImage2D(%*u, %*u, %*u, %*u, %*u, %u", &uHeight) == 1)
                listHeights.push_back(uHeight);
        }
        // One row of cells, the one below it, and two rows more; levels of 64 rows and less go whole.
        EXPECT_EQ(listHeights, (std::vector<u32>{m_pMerged->m_uAtlasRows + c_uCell + 2,
                                                 (m_pMerged->m_uAtlasRows + c_uCell) / 2 + 2,
                                                 (m_pMerged->m_uAtlasRows + c_uCell) / 4 + 2}));
        EXPECT_EQ(uSpecified, wzText[1] ? c_uLevels : c_uLevels - 3);
    }
}

TEST_F(FontMerged, RowsOfAnEarlierPictureAreOverwritten) {
    Add(u"0123456789ABCDEFGHIJKLMN");
    for (CFontUC_GL* const p : {m_pPlain.get(), m_pMerged.get()}) {
        std::fill_n(p->m_pAtlas, c_uSide * c_uSide, u8{0});
        p->m_uAtlasRows = 0;
        ASSERT_TRUE(p->m_fnUploadAtlas());
    }
    ExpectTheSame(2);
}

} // namespace
