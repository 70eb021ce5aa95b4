// Glyphs that outlive their font.
#include "font/kept_glyphs.h"
#include "test_font.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

struct KeptGlyphs : ::testing::Test {
    void TearDown() override { g_fnDropKeptGlyphs(); }
    /// Leaves the glyphs of a text.
    static void Leave(const char16_t* wzText) {
        const auto pFont = ReadyFont(4, 128);
        g_fnFontAddText(pFont.get(), wzText);
        g_fnKeepGlyphs(*pFont);
    }
};

} // namespace

TEST_F(KeptGlyphs, TheNextFontIsAsIfItHadDrawnThem) {
    const auto pDrawn = ReadyFont(4, 128);
    g_fnFontAddText(pDrawn.get(), u"QgA");
    Leave(u"AgQ|");
    const auto pTaken = NewFont(4, 128);
    ASSERT_TRUE(pTaken->m_fnInitialize(false));
    g_fnFontAddText(pTaken.get(), u"QgA");
    EXPECT_TRUE(pTaken->m_aDrawn.empty()) << "not even for its measures";
    EXPECT_TRUE(AreAlike(*pDrawn, *pTaken)) << "in the order of its own text";
    EXPECT_EQ(pDrawn->m_uAtlasRows, pTaken->m_uAtlasRows);
    EXPECT_EQ(pDrawn->m_uCalibSize, pTaken->m_uCalibSize);
    EXPECT_EQ(pDrawn->m_fCalibRatio, pTaken->m_fCalibRatio);
    EXPECT_EQ(std::memcmp(pDrawn->m_uBlockBox, pTaken->m_uBlockBox, sizeof pDrawn->m_uBlockBox), 0);
}

TEST_F(KeptGlyphs, AGlyphThatWasNotKeptIsDrawn) {
    const auto pDrawn = ReadyFont(4, 128);
    g_fnFontAddText(pDrawn.get(), u"AB");
    Leave(u"A");
    const auto pTaken = ReadyFont(4, 128);
    g_fnFontAddText(pTaken.get(), u"AB");
    EXPECT_EQ(pTaken->m_aDrawn, std::vector<std::u16string>{u"B"});
    EXPECT_TRUE(AreAlike(*pDrawn, *pTaken));
}

TEST_F(KeptGlyphs, FontsOfAnotherKindDrawTheirOwn) {
    Leave(u"A");
    for (const auto& fnChange : std::vector<std::function<void(CTestFont&)>>{
             [](CTestFont& font) { font.m_fnSetFontName(u"DejaVu Sans Mono"); },
             [](CTestFont& font) { font.m_fnSetFontWeight(700); },
             [](CTestFont& font) { font.m_fnSetTexSize(1024, 1024); },
             [](CTestFont& font) { font.m_u8Threshold = 5; }}) {
        const auto pFont = NewFont(4, 128);
        fnChange(*pFont);
        ASSERT_TRUE(pFont->m_fnInitialize(false));
        pFont->m_aDrawn.clear();
        g_fnFontAddText(pFont.get(), u"A");
        EXPECT_EQ(pFont->m_aDrawn, std::vector<std::u16string>{u"A"});
    }
}

TEST_F(KeptGlyphs, NothingIsKeptOfBlankFontsAndNothingOnceDropped) {
    const auto pBlank = ReadyFont(4, 128);
    g_fnKeepGlyphs(*pBlank);
    EXPECT_FALSE(g_fnHasKeptGlyphs());
    Leave(u"A");
    EXPECT_TRUE(g_fnHasKeptGlyphs());
    EXPECT_TRUE(g_fnIsKindKept(*pBlank));
    g_fnDropKeptGlyphs();
    EXPECT_FALSE(g_fnIsKindKept(*pBlank));
}
