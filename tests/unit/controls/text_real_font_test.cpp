// Text and number boxes with glyphs of a real face.
#include "tests/unit/controls/text_fixture.h"

#include <memory>

namespace {

class TextRealFont : public TextTest {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        m_real.m_fnSetLayout(8, 8, 0);
        m_real.m_fnSetTexSize(512, 512);
        m_real.m_fnSetFontName(u"DejaVu Sans Mono");
        ASSERT_TRUE(m_real.m_fnInitialize(false));
    }
    std::unique_ptr<CTextBox_Base> Ready(CFontUniCode& font, const char16_t* wzText) {
        auto p = std::make_unique<CTextBox_Base>();
        p->m_fnSetFont(&font);
        p->m_fnSetTextSize(32);
        EXPECT_TRUE(p->m_fnSetTextW(wzText));
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    /// Width on the canvas of a code at text size 32.
    static f32 Advance(CFontUniCode& font, u32 uCode) {
        f32 w = -1;
        EXPECT_TRUE(
            font.m_fnGetCharInfo(uCode, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &w, nullptr));
        return w * 32;
    }
    CFontUniCode m_real;
};

TEST_F(TextRealFont, AGlyphStandsOnItsLineWithItsCellAsTexture) {
    auto p = Ready(m_real, u"HH");
    const stFontChar& st = m_real.m_pChars[m_real.m_fnFindChar('H')];
    const f32 w = st.m_fWScale * 32, h = st.m_fHScale * 32, fBottom = st.m_fYOffset * 32 + 32;
    EXPECT_GT(w, 10);
    EXPECT_GT(h, 15);
    const Four rect = Rect(Quad(p->m_pVertices, 1));
    EXPECT_FLOAT_EQ(rect[0], w - w / 4);
    EXPECT_FLOAT_EQ(rect[2], 2 * w + w / 4);
    EXPECT_FLOAT_EQ(rect[1], fBottom - h - h / 4);
    EXPECT_FLOAT_EQ(rect[3], fBottom + h / 4);
    const Four texture = Texture(Quad(p->m_pVertices, 0));
    const f32 u1 = st.m_fWScale * 0.5f / 8 + st.m_fTexX + 1 / 512.0f;
    EXPECT_FLOAT_EQ(texture[2], u1 + (u1 - st.m_fTexX) / 4);
    EXPECT_FLOAT_EQ(p->m_fSizeW, 2 * w);
}

TEST_F(TextRealFont, ATextOfManyScriptsIsMeasuredByItsGlyphs) {
    auto p = Ready(m_real, u"A\u00E9\u0416\u03A9 x");
    f32 fWidth = 0;
    for (u32 uCode : {0x41u, 0xE9u, 0x416u, 0x3A9u, 0x20u, 0x78u}) fWidth += Advance(m_real, uCode);
    EXPECT_FLOAT_EQ(p->m_fnGetTextWidth(), fWidth);
    EXPECT_EQ(p->m_uGlyphCapacity, 5u);
}

TEST_F(TextRealFont, BlanksOfOtherKindsTakeTheirSpaceAndDrawNothing) {
    const auto p = Ready(m_real, u"W\u00A0W\u2003W");
    for (const u32 uQuad : {1u, 3u}) {
        const Four rect = Rect(Quad(p->m_pVertices, uQuad));
        EXPECT_TRUE(rect[0] == rect[2] && rect[1] == rect[3]) << uQuad;
    }
    EXPECT_FLOAT_EQ(Rect(Quad(p->m_pVertices, 2))[0] - Rect(Quad(p->m_pVertices, 0))[0],
                    Advance(m_real, u'W') + Advance(m_real, 0xA0));
}

TEST_F(TextRealFont, ASurrogatePairIsOneGlyph) {
    auto p = Ready(m_real, u"\U0001D7D8");
    EXPECT_GE(m_real.m_fnFindChar(0x1D7D8), 0);
    EXPECT_FLOAT_EQ(p->m_fnGetTextWidth(), Advance(m_real, 0x1D7D8));
}

TEST_F(TextRealFont, WhatAFullAtlasCannotTakeIsLeftOut) {
    CFontUniCode tiny;
    tiny.m_fnSetLayout(2, 2, 0);
    tiny.m_fnSetTexSize(128, 128);
    tiny.m_fnSetFontName(u"DejaVu Sans Mono");
    ASSERT_TRUE(tiny.m_fnInitialize(false));
    auto p = Ready(tiny, u"abcdefabcd");
    EXPECT_FLOAT_EQ(p->m_fnGetTextWidth(), 8 * Advance(tiny, 'a'));
    EXPECT_EQ(p->m_uGlyphCapacity, 10u);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 8)), (Four{0, 0, 0, 0}));
}

TEST_F(TextRealFont, ANumberBoxTakesItsCellFromTheFontsZero) {
    CNumBox_Base box;
    box.m_fnSetFont(&m_real);
    box.m_fnSetTextSize(32);
    ASSERT_TRUE(box.m_fnInitialize());
    EXPECT_FLOAT_EQ(box.m_fCellWidth * 32, Advance(m_real, '0'));
    box.m_fnSetFloat(-12.5f, 1);
    EXPECT_FLOAT_EQ(box.m_fSizeW, 5 * Advance(m_real, '0'));
    const Four first = Rect(Quad(box.m_pVertices, 5)), third = Rect(Quad(box.m_pVertices, 2 * 14 + 5));
    EXPECT_FLOAT_EQ(third[0] - first[0], 2 * Advance(m_real, '0'));
}

TEST_F(TextRealFont, ABoxMayBeMadeAgainForAnotherFont) {
    auto p = Ready(m_real, u"iii");
    CFontUniCode sans;
    sans.m_fnSetLayout(8, 8, 0);
    sans.m_fnSetTexSize(512, 512);
    sans.m_fnSetFontName(u"DejaVu Sans");
    ASSERT_TRUE(sans.m_fnInitialize(false));
    const f32 fMono = p->m_fnGetTextWidth();
    p->m_fnSetFont(&sans);
    EXPECT_EQ(p->m_fnGetTextWidth(), fMono);
    p->m_fnFlush(); // flags of the start are up
    EXPECT_FLOAT_EQ(p->m_fnGetTextWidth(), 3 * Advance(sans, 'i'));
    EXPECT_LT(p->m_fnGetTextWidth(), fMono);
}

} // namespace
