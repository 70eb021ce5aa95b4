#include "controls/flip_box.h"

#include "tests/unit/controls/text_fixture.h"

#include <memory>

namespace {

constexpr Four g_red = {1, 0, 0, 1}, g_green = {0, 1, 0, 1}, g_blue = {0, 0, 1, 1};

class FlipBox : public TextTest {
  protected:
    static stFlipText Text(const char16_t* wzText, const Four& color = g_red) {
        return {wzText, {color[0], color[1], color[2], color[3]}};
    }
    static bool Set(CFlipBox_Base& box, const std::vector<stFlipText>& list) {
        return box.m_fnSetStates(list);
    }
    /// A box of text size 16, not yet initialised: most glyphs are 8 wide.
    std::unique_ptr<CLiveFlipBox> New(const std::vector<stFlipText>& list) {
        auto p = std::make_unique<CLiveFlipBox>();
        p->m_fnSetFont(&m_font);
        p->m_fnSetTextSize(16);
        EXPECT_TRUE(Set(*p, list));
        return p;
    }
    std::unique_ptr<CLiveFlipBox> Ready(const std::vector<stFlipText>& list, bool bShadow = false) {
        auto p = New(list);
        p->m_fnSetShadow(bShadow);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    std::unique_ptr<CLiveFlipBox> ReadyThree() {
        return Ready({Text(u"ab", g_red), Text(u"abc", g_green), Text(u"a", g_blue)});
    }
    static std::vector<u32> Shown(const CFlipBox_Base& box) {
        const auto st = box.m_fnShown();
        return {st.uFirst, st.uCount};
    }
    static std::vector<f32> Copy(const CFlipBox_Base& box) {
        return {box.m_pVertices.get(), box.m_pVertices.get() + box.m_uVertexBytes / sizeof(f32)};
    }
    static f32 WidthOf(CFlipBox_Base& box, u32 uState) { return box.m_mapStates.at(uState).m_fTextWidth; }
};

TEST_F(FlipBox, StartsWithOneEmptyStateAndGray) {
    CFlipBox_Base box;
    EXPECT_EQ(box.m_fnGetType(), static_cast<u32>('F'));
    EXPECT_TRUE(box.m_fnGetAutoSize());
    ASSERT_EQ(box.m_mapStates.size(), 1u);
    EXPECT_EQ(box.m_mapStates.at(0).m_uGlyphCount, 1u);
    EXPECT_EQ(box.m_mapStates.at(0).m_uTextLength, 0u);
    EXPECT_EQ(box.m_fnGetCurrentState(), 0u);
    EXPECT_EQ(box.m_uTextSet, 0u);
    EXPECT_EQ(box.m_iAnchorCode, 1);
    f32 r, g, b, a;
    box.m_fnGetTextColor(&r, &g, &b, &a);
    EXPECT_EQ((Four{r, g, b, a}), (Four{0.5f, 0.5f, 0.5f, 1}));
    box.m_fnGetShadowColor(&r, &g, &b, &a);
    EXPECT_EQ((Four{r, g, b, a}), (Four{0, 0, 0, 1}));
    EXPECT_TRUE(box.m_bColorDirty && box.m_bPositionDirty && box.m_bLayoutDirty);
    EXPECT_EQ(box.m_fnGetVertexData(), nullptr);
    EXPECT_EQ(box.m_fnGetIndexData(), nullptr);
}

TEST_F(FlipBox, GettersTakeNullAndANullFontIsIgnored) {
    CFlipBox_Base box;
    box.m_fnSetTextSize(12);
    box.m_fnSetSpacing(3, 4);
    box.m_fnSetFont(&m_font);
    box.m_fnSetFont(nullptr);
    f32 x, y;
    box.m_fnGetSpacing(&x, &y);
    EXPECT_EQ(x, 3);
    EXPECT_EQ(y, 4);
    box.m_fnGetSpacing(nullptr, nullptr);
    EXPECT_EQ(box.m_fnGetTextSize(nullptr), 12);
    CFontUniCode* pFont = nullptr;
    EXPECT_EQ(box.m_fnGetFont(nullptr), &m_font);
    EXPECT_EQ(box.m_fnGetFont(&pFont), &m_font);
    EXPECT_EQ(pFont, &m_font);
    EXPECT_EQ(box.m_fnGetDrawKey(), static_cast<const void*>(&m_font));
    box.m_fnGetTextColor(nullptr, nullptr, nullptr, nullptr);
    box.m_fnGetShadowColor(nullptr, nullptr, nullptr, nullptr);
}

TEST_F(FlipBox, StatesStandOneBehindTheOtherInTheBuffers) {
    auto p = ReadyThree();
    EXPECT_EQ(p->m_uGlyphTotal, 6u);
    EXPECT_EQ(p->m_uVertexBytes, 6u * 128);
    EXPECT_EQ(p->m_uIndexBytes, 6u * 24);
    const u32 auVertex[] = {0, 8, 20}, auIndex[] = {0, 12, 30}, auGlyphs[] = {2, 3, 1};
    for (u32 u = 0; u < 3; ++u) {
        const stFlipState& state = p->m_mapStates.at(u);
        EXPECT_EQ(state.m_uVertexBase, auVertex[u]) << u;
        EXPECT_EQ(state.m_uIndexBase, auIndex[u]) << u;
        EXPECT_EQ(state.m_uGlyphCount, auGlyphs[u]) << u;
        EXPECT_EQ(state.m_uIndexCount, auGlyphs[u] * 6) << u;
        EXPECT_EQ(state.m_uTriangleCount, auGlyphs[u] * 2) << u;
    }
}

TEST_F(FlipBox, WithShadowEachStateHasItsShadowsFirst) {
    auto p = Ready({Text(u"ab", g_red), Text(u"a", g_green)}, true);
    EXPECT_EQ(p->m_uVertexBytes, 6u * 128);
    EXPECT_EQ(p->m_mapStates.at(0).m_uIndexCount, 24u);
    EXPECT_EQ(p->m_mapStates.at(0).m_uTriangleCount, 8u);
    EXPECT_EQ(p->m_mapStates.at(1).m_uVertexBase, 16u);
    EXPECT_EQ(p->m_mapStates.at(1).m_uIndexBase, 24u);
    EXPECT_EQ(p->m_mapStates.at(1).m_uVertexCount, 8u);
    const Four shadow = Rect(Quad(p->m_pVertices, 0)), text = Rect(Quad(p->m_pVertices, 2));
    EXPECT_EQ(shadow, (Four{text[0] + 1, text[1] + 1, text[2] + 1, text[3] + 1}));
    EXPECT_EQ(Texture(Quad(p->m_pVertices, 0)), Texture(Quad(p->m_pVertices, 2)));
    EXPECT_EQ(ColorOf(Quad(p->m_pVertices, 1)), (Four{0, 0, 0, 1}));
    EXPECT_EQ(ColorOf(Quad(p->m_pVertices, 3)), g_red);
    EXPECT_EQ(ColorOf(Quad(p->m_pVertices, 4)), (Four{0, 0, 0, 1}));
    EXPECT_EQ(ColorOf(Quad(p->m_pVertices, 5)), g_green);
}

TEST_F(FlipBox, AGlyphStandsAsInATextBox) {
    auto p = Ready({Text(u"ab")});
    CLiveTextBox text;
    text.m_fnSetFont(&m_font);
    text.m_fnSetTextSize(16);
    text.m_fnSetTextW(u"ab");
    ASSERT_TRUE(text.m_fnInitialize());
    for (u32 u = 0; u < 2; ++u) {
        EXPECT_EQ(Rect(Quad(p->m_pVertices, u)), Rect(Quad(text.m_pVertices, u)));
        EXPECT_EQ(Texture(Quad(p->m_pVertices, u)), Texture(Quad(text.m_pVertices, u)));
    }
}

TEST_F(FlipBox, OnlyTheFirstLineShows) {
    auto p = Ready({Text(u"ab\ncd"), Text(u"W\rabc")});
    EXPECT_EQ(p->m_mapStates.at(0).m_uGlyphCount, 4u) << "counted over the whole text";
    EXPECT_EQ(p->m_fnGetTextWidth(), 16);
    EXPECT_EQ(p->m_fSizeH, 16);
    EXPECT_NE(Rect(Quad(p->m_pVertices, 1)), (Four{}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 2)), (Four{}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 3)), (Four{}));
    EXPECT_EQ(WidthOf(*p, 1), 16);
    EXPECT_EQ(p->m_mapStates.at(1).m_uVertexBase, 16u);
}

TEST_F(FlipBox, AStateWithBlanksOnlyHasOneEmptyQuadAndTheirAdvance) {
    auto p = Ready({Text(u"  \t")});
    EXPECT_EQ(p->m_mapStates.at(0).m_uGlyphCount, 1u);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 0)), (Four{}));
    EXPECT_EQ(p->m_fnGetTextWidth(), 4 + 4 + 16);
    EXPECT_EQ(Shown(*p), (std::vector<u32>{0, 6}));
}

TEST_F(FlipBox, TheSecondIndexListIsFourTimesAsLargeAsItsUse) {
    auto p = Ready({Text(u"ab")});
    for (u32 i = 0; i < 12; ++i) EXPECT_EQ(p->m_pIndicesOut[i], p->m_pIndices[i]);
    for (u32 i = 12; i < p->m_uIndexBytes; ++i) EXPECT_EQ(p->m_pIndicesOut[i], 0u);
}

TEST_F(FlipBox, AWidthCountsTheSpacingBehindTheLastGlyph) {
    auto p = New({Text(u"ab")});
    p->m_fnSetSpacing(3, 5);
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(p->m_fnGetTextWidth(), 2 * (8 + 3));
    EXPECT_EQ(p->m_fnGetLineStep(), 16 + 5);
    EXPECT_EQ(p->m_fSizeH, 16);
}

TEST_F(FlipBox, AWidthWithNegativeSpacingIsTheFarthestPlaceOfThePen) {
    auto p = New({Text(u"Wii")});
    p->m_fnSetSpacing(-6, 0);
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(p->m_fnGetTextWidth(), 10);
}

TEST_F(FlipBox, WhatTheFontCantGiveTakesNoSpaceAndWhatHasNoInkNoArea) {
    m_font.m_setMissing = {'x'};
    m_font.m_setInkless = {'y'};
    auto p = Ready({Text(u"xya")});
    EXPECT_EQ(p->m_fnGetTextWidth(), 16);
    const Four inkless = Rect(Quad(p->m_pVertices, 0));
    EXPECT_EQ(inkless[0], inkless[2]);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 2)), (Four{}));
}

TEST_F(FlipBox, AnEmptyListIsRefused) {
    CFlipBox_Base box;
    EXPECT_FALSE(box.m_fnSetStates({}));
    EXPECT_FALSE(box.m_fnSetStates(std::span<const stFlipText>(static_cast<const stFlipText*>(nullptr), 0)));
    EXPECT_EQ(box.m_uTextSet, 0u);
}

TEST_F(FlipBox, OneBadTextRefusesTheListAndNothingChanges) {
    auto p = New({Text(u"old", g_red), Text(u"older", g_red)});
    p->m_bLayoutDirty = p->m_bPositionDirty = false;
    for (const char16_t* wzBad : {u"\xD83D", u"a\xDE00", u"\xD83Dx", static_cast<const char16_t*>(nullptr)})
        EXPECT_FALSE(Set(*p, {Text(u"new", g_green), Text(wzBad), Text(u"more")}));
    ASSERT_EQ(p->m_mapStates.size(), 2u);
    EXPECT_EQ(p->m_mapStates.at(0).m_uTextLength, 3u);
    EXPECT_EQ(p->m_mapStates.at(0).m_pCodePoints[0], static_cast<u32>('o'));
    EXPECT_EQ(p->m_mapStates.at(0).m_afColor[0], 1);
    EXPECT_FALSE(p->m_bLayoutDirty || p->m_bPositionDirty);
}

TEST_F(FlipBox, ASurrogatePairIsOneGlyph) {
    auto p = New({Text(u"\xD83D\xDE00x")});
    EXPECT_EQ(p->m_mapStates.at(0).m_uTextLength, 2u);
    EXPECT_EQ(p->m_mapStates.at(0).m_pCodePoints[0], 0x1F600u);
    EXPECT_EQ(p->m_mapStates.at(0).m_uGlyphCount, 2u);
}

TEST_F(FlipBox, StatesBeyondAShorterListKeepTheirTexts) {
    auto p = ReadyThree();
    ASSERT_TRUE(Set(*p, {Text(u"WW")}));
    EXPECT_EQ(p->m_mapStates.size(), 3u);
    EXPECT_EQ(p->m_mapStates.at(1).m_uTextLength, 3u);
    EXPECT_TRUE(p->m_fnSelectState(2));
}

TEST_F(FlipBox, ASelectionDrawsAnotherRangeAndTouchesNoVertex) {
    auto p = ReadyThree();
    p->m_fnFlush();
    const std::vector<f32> aBefore = Copy(*p);
    const i32 iUploads = recording::g_iUploads;
    EXPECT_EQ(Shown(*p), (std::vector<u32>{0, 12}));
    EXPECT_TRUE(p->m_fnSelectState(1));
    EXPECT_EQ(Shown(*p), (std::vector<u32>{12, 18}));
    EXPECT_EQ(p->m_fnGetCurrentState(), 1u);
    EXPECT_EQ(p->m_fnGetTextWidth(), 24);
    EXPECT_EQ(p->m_fSizeW, 24);
    EXPECT_EQ(p->m_uTriangleCount, 6u);
    EXPECT_EQ((Four{p->m_afTextColor[0], p->m_afTextColor[1], p->m_afTextColor[2], p->m_afTextColor[3]}),
              g_green);
    EXPECT_TRUE(p->m_fnSelectState(2));
    EXPECT_EQ(Shown(*p), (std::vector<u32>{30, 6}));
    EXPECT_EQ(Copy(*p), aBefore);
    EXPECT_EQ(recording::g_iUploads, iUploads);
    EXPECT_FALSE(p->m_bColorDirty || p->m_bPositionDirty || p->m_bLayoutDirty);
}

TEST_F(FlipBox, ASelectionLeavesTheVertexCountAndSpoilsTheStates) {
    auto p = ReadyThree();
    p->m_uVertexCount = 77;
    ASSERT_TRUE(p->m_fnSelectState(1));
    EXPECT_EQ(p->m_uVertexCount, 77u);
    EXPECT_EQ(p->m_mapStates.at(1).m_uVertexCount, 77u);
    EXPECT_EQ(Shown(*p), (std::vector<u32>{12, 18})) << "the right range all the same";
    p->m_fnFlush();
    EXPECT_EQ(p->m_mapStates.at(1).m_uVertexCount, 12u) << "a layout sets it anew";
    EXPECT_EQ(p->m_mapStates.at(2).m_uVertexBase, 20u);
}

TEST_F(FlipBox, AColourRefreshBehindASelectionColoursEachStateAlone) {
    auto p = ReadyThree();
    p->m_fnFlush();
    p->m_fnSelectState(1);
    p->m_fnSelectState(0);
    p->m_fnSetTextColorF(0.25f, 0.25f, 0.25f, 1);
    const Four* const apColor[] = {&g_red, &g_red, &g_green, &g_green, &g_green, &g_blue};
    for (u32 u = 0; u < 6; ++u) {
        EXPECT_EQ(ColorOf(Quad(p->m_pVertices, u)), *apColor[u]) << u;
        EXPECT_EQ(ColorOf(Quad(p->m_pVerticesOut, u)), *apColor[u]) << u;
    }
}

TEST_F(FlipBox, AnIndexBeyondTheStatesChangesNothing) {
    auto p = ReadyThree();
    p->m_fnSelectState(1);
    for (u32 u : {3u, 24u, 0x7FFFFFFFu, 0xFFFFFFFFu}) EXPECT_FALSE(p->m_fnSelectState(u));
    EXPECT_EQ(p->m_fnGetCurrentState(), 1u);
    EXPECT_EQ(Shown(*p), (std::vector<u32>{12, 18}));
    EXPECT_EQ(p->m_mapStates.size(), 3u);
}

TEST_F(FlipBox, State0OfABoxWithoutStatesIsMade) {
    CFlipBox_Base box;
    box.m_mapStates.clear();
    EXPECT_FALSE(box.m_fnSelectState(1));
    EXPECT_TRUE(box.m_fnSelectState(0));
    ASSERT_EQ(box.m_mapStates.size(), 1u);
    EXPECT_EQ(box.m_mapStates.at(0).m_uGlyphCount, 1u);
    EXPECT_EQ(box.m_fnGetTextWidth(), 0);
}

TEST_F(FlipBox, AnEmptyMapIsLaidOutAtOnce) {
    auto p = Ready({Text(u"a")});
    p->m_mapStates.clear();
    EXPECT_TRUE(p->m_fnLayoutAll());
    EXPECT_EQ(Shown(*p), (std::vector<u32>{0, 0}));
}

/// A batcher that keeps what it draws must hear of a selection, and only of one that shows.
TEST_F(FlipBox, ASelectionIsAChangeAndTheSameOneAgainIsNone) {
    auto p = ReadyThree();
    ASSERT_TRUE(p->m_fnSelectState(0));
    const u32 uBefore = g_uControlChanges;
    p->m_fnSelectState(0);
    EXPECT_EQ(g_uControlChanges, uBefore);
    p->m_fnSelectState(9);
    EXPECT_EQ(g_uControlChanges, uBefore);
    p->m_bChanged = false;
    p->m_fnSelectState(2);
    EXPECT_TRUE(p->m_bChanged);
    EXPECT_NE(g_uControlChanges, uBefore);
}

TEST_F(FlipBox, TwoStatesOfOneTextAndTwoColoursDifferToo) {
    auto p = Ready({Text(u"ab", g_red), Text(u"ab", g_green)});
    p->m_bChanged = false;
    p->m_fnSelectState(1);
    EXPECT_TRUE(p->m_bChanged);
}

TEST_F(FlipBox, ASelectionMovesABoxThatIsAnchoredRight) {
    CFlipBox_Base* p = ReadyThree().release();
    ASSERT_EQ(g_fnRegisterXCtrl(IdFlipBox, 1, p), 1);
    p->m_fnSetAnchor(3, 10, 0);
    m_pManager->m_fnAddChild(nullptr, p);
    EXPECT_EQ(p->m_fPosX, 1920 - 16 - 10);
    p->m_fnSelectState(1);
    EXPECT_EQ(p->m_fPosX, 1920 - 24 - 10);
}

TEST_F(FlipBox, LongerTextsAfterInitialisationStayInsideTheBuffers) {
    for (const bool bShadow : {false, true}) {
        auto p = Ready({Text(u"ab"), Text(u"c")}, bShadow);
        const std::vector<stFlipText> longer = {Text(u"a"), Text(u"bcdefghijklmnop"), Text(u"more")};
        ASSERT_TRUE(Set(*p, longer));
        p->m_fnFlush();
        const u32 uIndices = p->m_uIndexBytes / 4, uLayers = bShadow ? 2 : 1;
        for (u32 u = 0; u < 3; ++u) {
            ASSERT_TRUE(p->m_fnSelectState(u));
            const auto st = p->m_fnShown();
            EXPECT_LE(st.uFirst + st.uCount, uIndices) << u;
        }
        EXPECT_EQ(p->m_mapStates.at(1).m_uIndexCount, 2 * 6 * uLayers) << "as far as the buffer reaches";
        EXPECT_EQ(p->m_mapStates.at(2).m_uIndexCount, 0u);
        EXPECT_EQ(WidthOf(*p, 1), 15 * 8 - 4) << "the rest takes its space only";
    }
}

TEST_F(FlipBox, ShorterTextsLeaveNothingOfTheFormerOnes) {
    auto p = Ready({Text(u"abcd"), Text(u"efg")});
    ASSERT_TRUE(Set(*p, {Text(u"a\nbcd"), Text(u"e\nfg")}));
    p->m_fnFlush();
    for (u32 u : {1u, 2u, 3u, 5u, 6u}) EXPECT_EQ(Rect(Quad(p->m_pVertices, u)), (Four{})) << u;
    EXPECT_NE(Rect(Quad(p->m_pVertices, 4)), (Four{}));
}

TEST_F(FlipBox, TextsThatWouldLeave32BitsAreRefused) {
    auto p = New({Text(u"a"), Text(u"b")});
    p->m_mapStates.at(0).m_uGlyphCount = 1u << 20;
    EXPECT_FALSE(p->m_fnInitialize());
    p->m_mapStates.at(0).m_uGlyphCount = p->m_mapStates.at(1).m_uGlyphCount = 0xFFFFFFF0;
    EXPECT_FALSE(p->m_fnAllocBuffers());
    EXPECT_EQ(p->m_pVertices, nullptr);
}

TEST_F(FlipBox, InitialisationNeedsAFontAndStopsAtTheFirstFailure) {
    CFlipBox_Base box;
    EXPECT_FALSE(box.m_fnInitialize());
    EXPECT_FALSE(box.m_fnLayoutAll());
    auto p = New({Text(u"a")});
    recording::g_iEntitiesLeft = 0;
    EXPECT_FALSE(p->m_fnInitialize());
    EXPECT_EQ(p->m_pMesh, nullptr);
    recording::g_iEntitiesLeft = -1;
    recording::g_iMeshesLeft = 0;
    EXPECT_FALSE(p->m_fnInitialize());
    EXPECT_EQ(recording::g_iUploads, 0);
}

TEST_F(FlipBox, ABoxThatIsNotRenderableNeedsNothingAndDrawsNothing) {
    CLiveFlipBox box;
    box.m_fnSetRenderable(false);
    EXPECT_TRUE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pVertices, nullptr);
    box.m_fnRender(&m_batcher);
    EXPECT_TRUE(recording::g_aEvents.empty());
}

TEST_F(FlipBox, AStateSelectedAheadOfInitialisationShows) {
    auto p = New({Text(u"ab", g_red), Text(u"abc", g_green)});
    ASSERT_TRUE(p->m_fnSelectState(1));
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(Shown(*p), (std::vector<u32>{12, 18}));
    EXPECT_EQ(p->m_fSizeW, 24);
    EXPECT_EQ(p->m_afTextColor[1], 1);
}

TEST_F(FlipBox, InitialisationClearsNoFlagAndAnUnchangedBoxUploadsNothing) {
    auto p = ReadyThree();
    EXPECT_TRUE(p->m_bColorDirty && p->m_bPositionDirty && p->m_bLayoutDirty);
    EXPECT_EQ(recording::g_iUploads, 1);
    p->m_fnFlush();
    EXPECT_EQ(recording::g_iUploads, 2);
    p->m_fnFlush();
    EXPECT_EQ(recording::g_iUploads, 2);
    EXPECT_EQ(p->m_pMesh->m_uVertexStride, 32u);
    EXPECT_EQ(p->m_pMesh->m_u8IndexSize, 4);
}

TEST_F(FlipBox, AMoveCostsOneEntityUpdateAndTheSecondListStandsAtThePosition) {
    auto p = ReadyThree();
    p->m_fnFlush();
    const i32 iUploads = recording::g_iUploads;
    p->m_fnMoveTo(30, 40, 0);
    f32 x, y;
    p->m_pEntity->m_fnGetPosition(&x, &y, nullptr);
    EXPECT_EQ(x, 30);
    EXPECT_EQ(y, 40);
    EXPECT_EQ(recording::g_iUploads, iUploads);
    p->m_fnMarkPositionDirty();
    const Four in = Rect(Quad(p->m_pVertices, 3)), out = Rect(Quad(p->m_pVerticesOut, 3));
    EXPECT_EQ(out, (Four{in[0] + 30, in[1] + 40, in[2] + 30, in[3] + 40}));
}

TEST_F(FlipBox, ASizeLaysAllStatesOutAnewAndShowsWithTheNextSelection) {
    auto p = ReadyThree();
    p->m_fnFlush();
    p->m_fnSetTextSize(32);
    EXPECT_EQ(WidthOf(*p, 1), 48);
    EXPECT_EQ(p->m_fSizeW, 16);
    p->m_fnSelectState(0);
    EXPECT_EQ(p->m_fSizeW, 32);
    EXPECT_EQ(p->m_fSizeH, 32);
}

TEST_F(FlipBox, TheColourFormsAgree) {
    CFlipBox_Base box;
    f32 r, g, b, a;
    const Four expected{1, 51 / 255.0f, 0, 102 / 255.0f};
    const auto fnText = [&] {
        box.m_fnGetTextColor(&r, &g, &b, &a);
        return Four{r, g, b, a};
    };
    const auto fnShadow = [&] {
        box.m_fnGetShadowColor(&r, &g, &b, &a);
        return Four{r, g, b, a};
    };
    box.m_fnSetTextColor(0xFF3300, 102);
    EXPECT_EQ(fnText(), expected);
    box.m_fnSetTextColorF2(0, 0, 0, 0);
    box.m_fnSetTextColorB(255, 51, 0, 102);
    EXPECT_EQ(fnText(), expected);
    box.m_fnSetShadowColor(0xFF3300, 102);
    EXPECT_EQ(fnShadow(), expected);
    box.m_fnSetShadowColorF(0, 0, 0, 0);
    box.m_fnSetShadowColorB(255, 51, 0, 102);
    EXPECT_EQ(fnShadow(), expected);
}

TEST_F(FlipBox, DrawingHandsOnTheEntitysMatrixAndTheStatesColour) {
    auto p = ReadyThree();
    p->m_fnSelectState(1);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, std::vector<std::string>{"flip"});
    EXPECT_EQ(p->m_pWorld, p->m_pEntity->m_fnGetWorldForDraw());
    EXPECT_EQ((Four{p->m_pColor[0], p->m_pColor[1], p->m_pColor[2], p->m_pColor[3]}), g_green);
}

TEST_F(FlipBox, ReleaseKeepsTheStatesWithoutTheirTexts) {
    const i32 iMeshes = recording::g_iLiveMeshes, iEntities = recording::g_iLiveEntities;
    auto p = ReadyThree();
    p->m_fnRelease();
    EXPECT_EQ(recording::g_iLiveMeshes, iMeshes);
    EXPECT_EQ(recording::g_iLiveEntities, iEntities);
    EXPECT_EQ(p->m_mapStates.size(), 3u);
    EXPECT_EQ(p->m_mapStates.at(1).m_pCodePoints, nullptr);
    EXPECT_EQ(p->m_mapStates.at(1).m_uIndexCount, 0u);
    EXPECT_EQ(p->m_fnGetVertexBytes(), 0u);
    p->m_fnFlush();
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(p->m_fnSelectState(2));
    EXPECT_EQ(Shown(*p), (std::vector<u32>{0, 0}));
    EXPECT_TRUE(p->m_fnInitialize()) << "a box may be made ready again";
}

TEST_F(FlipBox, DeletingThroughTheBaseFreesMeshAndEntity) {
    const i32 iMeshes = recording::g_iLiveMeshes, iEntities = recording::g_iLiveEntities;
    CFlipBox_Base* p = ReadyThree().release();
    delete p;
    EXPECT_EQ(recording::g_iLiveMeshes, iMeshes);
    EXPECT_EQ(recording::g_iLiveEntities, iEntities);
    EXPECT_EQ(CLiveFlipBox::s_iLive, 0);
}

} // namespace
