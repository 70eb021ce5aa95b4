#include "controls/text_box.h"
#include "tests/unit/controls/text_fixture.h"

#include <memory>

namespace {

/// Text size 16: most glyphs are 8 wide, W 16, i 4, a blank 4, U+3000 16; all are 12 high and reach 2 below
/// the line.
class TextLayout : public TextTest {
  protected:
    std::unique_ptr<CTextBox_Base> New(const char16_t* wzText) {
        auto p = std::make_unique<CTextBox_Base>();
        p->m_fnSetFont(&m_font);
        p->m_fnSetTextSize(16);
        EXPECT_TRUE(p->m_fnSetTextW(wzText));
        return p;
    }
    std::unique_ptr<CTextBox_Base> Ready(const char16_t* wzText) {
        auto p = New(wzText);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    /// A box of a width that the text must keep to.
    std::unique_ptr<CTextBox_Base> Wrapped(const char16_t* wzText, f32 fWidth) {
        auto p = New(wzText);
        p->m_fnSetAutoSize(false);
        p->m_fnSetSize(fWidth, 16);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    /// A box that shows its text through a window.
    std::unique_ptr<CTextBox_Base> Clipped(const char16_t* wzText, i32 iCode, f32 fAnchorX, f32 fWindow) {
        auto p = New(wzText);
        p->m_fnSetAnchor(iCode, fAnchorX, 0);
        p->m_fnSetFitToText(false);
        p->m_fnSetClipWidth(fWindow);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    /// A quad before it grew by a quarter on each side: left, top, right, bottom.
    static Four Nominal(const CTextBox_Base& box, u32 uQuad) {
        const Four r = Rect(Quad(box.m_pVertices, uQuad));
        const f32 dx = (r[2] - r[0]) / 6, dy = (r[3] - r[1]) / 6;
        return {r[0] + dx, r[1] + dy, r[2] - dx, r[3] - dy};
    }
    /// Quads with an area.
    static u32 CountShown(const CTextBox_Base& box) {
        u32 uShown = 0;
        for (u32 i = 0; i < box.m_uGlyphCapacity; ++i) {
            const Four r = Rect(Quad(box.m_pVertices, i));
            uShown += r[2] > r[0] && r[3] > r[1];
        }
        return uShown;
    }
};

TEST_F(TextLayout, AQuadIsAGlyphsBoxGrownByAQuarterOnEachSide) {
    auto p = Ready(u"ab");
    // a: x 0 to 8, y 6 to 18; grown by 2 across and 3 down.
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 0)), (Four{-2, 3, 10, 21}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 1)), (Four{6, 3, 18, 21}));
    // Texture of a: 1/16, 6/16, a thirty-second wide, three sixty-fourths high.
    EXPECT_EQ(Texture(Quad(p->m_pVertices, 0)), (Four{8 / 128.0f - 1 / 128.0f, 96 / 256.0f - 3 / 256.0f,
                                                      12 / 128.0f + 1 / 128.0f, 108 / 256.0f + 3 / 256.0f}));
    EXPECT_EQ(ColorOf(Quad(p->m_pVertices, 0)), (Four{0.5f, 0.5f, 0.5f, 1}));
    EXPECT_EQ(p->m_fSizeW, 16);
    EXPECT_EQ(p->m_fSizeH, 16);
    EXPECT_EQ(p->m_fnGetLineStep(), 16);
}

TEST_F(TextLayout, GrowingTakesAQuarterOfPositionAndTextureAlike) {
    stTextVertex aQuad[8] = {};
    for (stTextVertex* p : {aQuad, aQuad + 4}) {
        g_fnSetQuadRect(p, {10, 20, 18, 36});
        g_fnSetQuadTexture(p, 0.25f, 0.5f, 0.5f, 0.75f);
    }
    g_fnExpandQuads(aQuad, 1, {0.3125f, 0.3125f}); // the cell ends where the growth does
    EXPECT_EQ(Rect(aQuad), (Four{8, 16, 20, 40}));
    EXPECT_EQ(Texture(aQuad), (Four{0.1875f, 0.4375f, 0.5625f, 0.8125f}));
    EXPECT_EQ(Rect(aQuad + 4), (Four{10, 20, 18, 36}));
}

TEST_F(TextLayout, AGlyphWiderOrHigherThanItsCellIsCutAtTheCellsEdge) {
    stTextVertex aQuad[4] = {};
    g_fnSetQuadRect(aQuad, {10, 20, 26, 36});
    g_fnSetQuadTexture(aQuad, 0.25f, 0.5f, 0.5f, 0.75f);
    g_fnExpandQuads(aQuad, 1, {0.125f, 0.28125f});
    EXPECT_EQ(Rect(aQuad), (Four{6, 16, 18, 38})) << "positions are cut like the picture";
    EXPECT_EQ(Texture(aQuad), (Four{0.1875f, 0.4375f, 0.375f, 0.78125f}));
}

TEST_F(TextLayout, AGlyphWithoutInkTakesItsSpaceAndDrawsNothing) {
    m_font.m_setInkless = {0xA0, 0x301};
    for (const bool bShadow : {false, true}) {
        auto p = New(u"a\u00A0b\u0301");
        p->m_fnSetShadow(bShadow);
        ASSERT_TRUE(p->m_fnInitialize());
        EXPECT_EQ(p->m_uGlyphCapacity, 4u);
        for (u32 uLayer = 0; uLayer < (bShadow ? 2u : 1u); ++uLayer)
            for (const u32 uQuad : {1u, 3u}) {
                const Four rect = Rect(Quad(p->m_pVertices, 4 * uLayer + uQuad));
                EXPECT_EQ(rect[0], rect[2]);
                EXPECT_EQ(rect[1], rect[3]);
                EXPECT_EQ(Texture(Quad(p->m_pVertices, 4 * uLayer + uQuad)), (Four{0, 0, 0, 0}));
            }
        EXPECT_EQ(Nominal(*p, bShadow ? 6 : 2)[0], 8 + 8) << "behind a's and the blank's advance";
        EXPECT_EQ(p->m_fnGetTextWidth(), 32);
    }
}

TEST_F(TextLayout, TheFontsScaleStretchesAcrossOnly) {
    m_font.m_fnSetScale(2);
    auto p = Ready(u"ab");
    EXPECT_EQ(Nominal(*p, 0), (Four{0, 6, 16, 18}));
    EXPECT_EQ(Nominal(*p, 1), (Four{16, 6, 32, 18}));
    EXPECT_EQ(p->m_fSizeW, 32);
    EXPECT_EQ(p->m_fSizeH, 16);
}

TEST_F(TextLayout, SpacingFollowsEachGlyphButDoesNotWidenTheText) {
    auto p = New(u"ab");
    p->m_fnSetSpacing(5, 0);
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(Nominal(*p, 1), (Four{13, 6, 21, 18}));
    EXPECT_EQ(p->m_fnGetTextWidth(), 21);
}

TEST_F(TextLayout, ATabTakesTheWidthOfTheIdeographicSpace) {
    auto p = Ready(u"a\tb");
    EXPECT_EQ(Nominal(*p, 1)[0], 8 + 16);
    auto q = Ready(u"a\x3000"
                   u"b");
    EXPECT_EQ(Nominal(*q, 1)[0], 8 + 16);
    EXPECT_EQ(p->m_uGlyphCapacity, 2u);
}

TEST_F(TextLayout, CarriageReturnAndLineFeedMakeOneBreak) {
    auto p = New(u"a\r\nb");
    p->m_fnSetSpacing(0, 4);
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(Nominal(*p, 0), (Four{0, 6, 8, 18}));
    EXPECT_EQ(Nominal(*p, 1), (Four{0, 26, 8, 38}));
    EXPECT_EQ(p->m_fSizeW, 8);
    EXPECT_EQ(p->m_fSizeH, 16 + 20);
}

TEST_F(TextLayout, TheLineStepGrowsByItselfWithEachLine) {
    auto p = New(u"a\nb\nc");
    p->m_fnSetSpacing(0, 4);
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(p->m_fnGetLineStep(), 60);
}

TEST_F(TextLayout, WithoutAutoSizeTextWrapsAtTheGlyphThatWouldPass) {
    // Twelve glyphs of 8 fit in 100, the thirteenth would reach 104.
    auto p = Wrapped(u"aaaaaaaaaaaaaa", 100);
    EXPECT_EQ(Nominal(*p, 11), (Four{88, 6, 96, 18}));
    EXPECT_EQ(Nominal(*p, 12), (Four{0, 22, 8, 34}));
    EXPECT_EQ(Nominal(*p, 13), (Four{8, 22, 16, 34}));
    EXPECT_EQ(p->m_fnGetTextWidth(), 100);
    EXPECT_EQ(p->m_fSizeW, 100);
    EXPECT_EQ(p->m_fSizeH, 32);
}

TEST_F(TextLayout, AGlyphThatEndsAtTheEdgeDoesNotWrap) {
    auto p = Wrapped(u"aaa", 24);
    EXPECT_EQ(Nominal(*p, 2), (Four{16, 6, 24, 18}));
    EXPECT_EQ(p->m_fSizeH, 16);
}

TEST_F(TextLayout, BlanksWrapToo) {
    auto p = Wrapped(u"aaa a", 24);
    EXPECT_EQ(Nominal(*p, 3), (Four{4, 22, 12, 34}));
}

TEST_F(TextLayout, AFirstGlyphWiderThanTheBoxLeavesAnEmptyLine) {
    auto p = Wrapped(u"Wa", 10);
    EXPECT_EQ(Nominal(*p, 0), (Four{0, 22, 16, 34}));
    EXPECT_EQ(Nominal(*p, 1), (Four{0, 38, 8, 50}));
    EXPECT_EQ(p->m_fSizeH, 48);
}

TEST_F(TextLayout, TheShadowLiesOneUnitRightAndDownAndComesFirst) {
    for (f32 fSize : {16.0f, 64.0f}) {
        auto p = New(u"ab");
        p->m_fnSetTextSize(fSize);
        p->m_fnSetShadow(true);
        p->m_fnSetTextColorF(1, 1, 1, 1);
        p->m_fnSetShadowColorF(0, 0, 0.5f, 0.25f);
        ASSERT_TRUE(p->m_fnInitialize());
        for (u32 i = 0; i < 2; ++i) {
            const Four text = Rect(Quad(p->m_pVertices, 2 + i)), shadow = Rect(Quad(p->m_pVertices, i));
            EXPECT_EQ(shadow, (Four{text[0] + 1, text[1] + 1, text[2] + 1, text[3] + 1}));
            EXPECT_EQ(Texture(Quad(p->m_pVertices, i)), Texture(Quad(p->m_pVertices, 2 + i)));
            EXPECT_EQ(ColorOf(Quad(p->m_pVertices, i)), (Four{0, 0, 0.5f, 0.25f}));
            EXPECT_EQ(ColorOf(Quad(p->m_pVertices, 2 + i)), (Four{1, 1, 1, 1}));
        }
    }
}

TEST_F(TextLayout, Code7ShowsFromTheLeftUpToTheLastGlyphThatFitsWhole) {
    auto p = Clipped(u"abcd", 7, 0, 20);
    EXPECT_EQ(Nominal(*p, 0), (Four{0, 6, 8, 18}));
    EXPECT_EQ(Nominal(*p, 1), (Four{8, 6, 16, 18}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 2)), (Four{16, 16, 16, 16}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 3)), (Four{16, 16, 16, 16}));
    EXPECT_EQ(Texture(Quad(p->m_pVertices, 2)), (Four{0, 0, 0, 0}));
    EXPECT_EQ(p->m_fSizeW, 16);
}

TEST_F(TextLayout, BothEdgesOfTheWindowCountAsInside) {
    EXPECT_EQ(CountShown(*Clipped(u"abc", 7, 0, 24)), 3u);
    EXPECT_EQ(CountShown(*Clipped(u"abc", 7, 0, 23.5f)), 2u);
    EXPECT_EQ(CountShown(*Clipped(u"abc", 7, -0.5f, 24)), 0u);
}

TEST_F(TextLayout, Code7StartsAtItsOffset) {
    auto p = Clipped(u"abc", 7, 8, 24);
    EXPECT_EQ(CountShown(*p), 2u);
    // The start serves the test alone: the quads stand as ever.
    EXPECT_EQ(Nominal(*p, 0), (Four{0, 6, 8, 18}));
}

TEST_F(TextLayout, Code8WithATextWiderThanTheWindowShowsNothing) {
    EXPECT_EQ(CountShown(*Clipped(u"abcd", 8, 0, 20)), 0u);
    EXPECT_EQ(CountShown(*Clipped(u"abcd", 8, 0, 32)), 4u);
    EXPECT_EQ(CountShown(*Clipped(u"abcd", 8, 6, 20)), 2u);
}

TEST_F(TextLayout, Code9EndsAtTheRightEdgeLessItsOffset) {
    EXPECT_EQ(CountShown(*Clipped(u"ab", 9, 4, 20)), 2u);
    EXPECT_EQ(CountShown(*Clipped(u"ab", 9, 5, 20)), 0u);
}

TEST_F(TextLayout, OtherCodesStartAtTheWindowsLeftEdge) {
    for (i32 iCode : {0, 1, 3, 6, -7, -9, 12}) EXPECT_EQ(CountShown(*Clipped(u"abcd", iCode, 9, 20)), 2u);
}

TEST_F(TextLayout, AHiddenGlyphMovesThePenBySpacingOnlySoANarrowerOneMayShow) {
    auto p = New(u"aWi");
    p->m_fnSetSpacing(2, 0);
    p->m_fnSetFitToText(false);
    p->m_fnSetClipWidth(16);
    ASSERT_TRUE(p->m_fnInitialize());
    // a ends at 8, pen 10; W would reach 26 and hides, pen 12; i reaches 16.
    EXPECT_EQ(Nominal(*p, 0), (Four{0, 6, 8, 18}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 1)), (Four{10, 16, 10, 16}));
    EXPECT_EQ(Nominal(*p, 2), (Four{12, 6, 16, 18}));
}

TEST_F(TextLayout, BlanksHideToo) {
    // Pen 16 after two glyphs, a blank would reach 20 of 18: it takes no width, and i would reach 20 too.
    auto p = Clipped(u"ab i", 7, 0, 18);
    EXPECT_EQ(CountShown(*p), 2u);
    EXPECT_EQ(p->m_fnGetTextWidth(), 16);
}

TEST_F(TextLayout, WithoutAutoSizeNothingIsClipped) {
    auto p = New(u"abcd");
    p->m_fnSetAutoSize(false);
    p->m_fnSetFitToText(false);
    p->m_fnSetSize(100, 16);
    p->m_fnSetClipWidth(10);
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(CountShown(*p), 4u);
}

TEST_F(TextLayout, ACodeThatTheFontCannotGiveTakesNoQuadAndNoSpace) {
    m_font.m_setMissing = {u'b', u' '};
    auto p = Ready(u"ab c");
    EXPECT_EQ(Nominal(*p, 1), (Four{8, 6, 16, 18}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 2)), (Four{0, 0, 0, 0}));
    EXPECT_EQ(p->m_fnGetTextWidth(), 16);
}

TEST_F(TextLayout, GlyphsBeyondTheRoomTakeTheirSpaceAndAreNotWritten) {
    for (bool bShadow : {false, true}) {
        auto p = New(u"ab");
        p->m_fnSetShadow(bShadow);
        ASSERT_TRUE(p->m_fnInitialize());
        ASSERT_TRUE(p->m_fnSetTextW(u"abcdefgh"));
        p->m_fnFlush();
        EXPECT_EQ(p->m_uGlyphCapacity, 2u);
        EXPECT_EQ(p->m_uVertexBytes, bShadow ? 512u : 256u);
        EXPECT_EQ(p->m_fnGetTextWidth(), 64);
        EXPECT_EQ(p->m_uIndexCount, bShadow ? 24u : 12u);
    }
}

TEST_F(TextLayout, QuadsThatTheTextDoesNotReachStayAndGrowAtEachLayout) {
    auto p = Ready(u"ab");
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 1)), (Four{6, 3, 18, 21}));
    ASSERT_TRUE(p->m_fnSetTextW(u"a"));
    p->m_fnFlush();
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 0)), (Four{-2, 3, 10, 21}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 1)), (Four{3, -1.5f, 21, 25.5f}));
}

TEST_F(TextLayout, ALayoutWithoutFontOrBuffersFails) {
    CTextBox_Base box;
    EXPECT_FALSE(box.m_fnLayoutGlyphs(true, true, 0));
    box.m_fnSetFont(&m_font);
    EXPECT_FALSE(box.m_fnLayoutGlyphs(true, true, 0));
    ASSERT_TRUE(box.m_fnAllocBuffers());
    EXPECT_TRUE(box.m_fnLayoutGlyphs(true, true, 0));
    CTextBox_Base fontless;
    ASSERT_TRUE(fontless.m_fnAllocBuffers());
    EXPECT_FALSE(fontless.m_fnBuildText());
}

TEST_F(TextLayout, TheMeasuredSizeIsAppliedOnRequestOnly) {
    auto p = New(u"ab");
    p->m_fnSetSize(3, 4);
    ASSERT_TRUE(p->m_fnAllocBuffers());
    ASSERT_TRUE(p->m_fnLayoutGlyphs(false, true, 0));
    EXPECT_EQ(p->m_fSizeW, 3);
    EXPECT_EQ(p->m_fnGetTextWidth(), 16);
    ASSERT_TRUE(p->m_fnLayoutGlyphs(true, true, 0));
    EXPECT_EQ(p->m_fSizeW, 16);
}

} // namespace
