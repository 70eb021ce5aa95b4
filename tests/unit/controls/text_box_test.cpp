#include "controls/text_box.h"

#include "tests/unit/controls/text_fixture.h"

#include <memory>

namespace {

class TextBox : public TextTest {
  protected:
    /// A box of text size 16, not yet initialised.
    std::unique_ptr<CLiveTextBox> New(const char16_t* wzText) {
        auto p = std::make_unique<CLiveTextBox>();
        p->m_fnSetFont(&m_font);
        p->m_fnSetTextSize(16);
        EXPECT_TRUE(p->m_fnSetTextW(wzText));
        return p;
    }
    std::unique_ptr<CLiveTextBox> Ready(const char16_t* wzText) {
        auto p = New(wzText);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    static std::u16string TextOf(CTextBox_Base& box) {
        char16_t* wz = nullptr;
        box.m_fnGetTextCopy(&wz);
        const std::u16string str = wz ? wz : u"(none)";
        delete[] wz;
        return str;
    }
};

TEST_F(TextBox, StartsEmptyGrayAndFollowingItsText) {
    CTextBox_Base box;
    EXPECT_EQ(box.m_fnGetType(), static_cast<u32>('T'));
    EXPECT_TRUE(box.m_fnGetAutoSize());
    EXPECT_TRUE(box.m_fnGetFitToText());
    EXPECT_EQ(TextOf(box), u"");
    EXPECT_EQ(box.m_uTextSet, 1u);
    EXPECT_EQ(box.m_uTextLength, 0u);
    EXPECT_EQ(box.m_uGlyphCount, 1u);
    EXPECT_EQ(box.m_fAnchorX, 0);
    EXPECT_EQ(box.m_fSizeW, 0);
    EXPECT_EQ(box.m_iAnchorCode, 1);
    f32 r, g, b, a;
    box.m_fnGetTextColor(&r, &g, &b, &a);
    EXPECT_EQ((Four{r, g, b, a}), (Four{0.5f, 0.5f, 0.5f, 1}));
    box.m_fnGetShadowColor(&r, &g, &b, &a);
    EXPECT_EQ((Four{r, g, b, a}), (Four{0, 0, 0, 1}));
    EXPECT_TRUE(box.m_bColorDirty && box.m_bPositionDirty && box.m_bLayoutDirty);
    EXPECT_EQ(box.m_fnGetDrawKey(), nullptr);
    EXPECT_EQ(box.m_fnGetVertexData(), nullptr);
    EXPECT_EQ(box.m_fnGetIndexData(), nullptr);
}

TEST_F(TextBox, GettersTakeNull) {
    CTextBox_Base box;
    box.m_fnSetTextSize(12);
    box.m_fnSetSpacing(3, 4);
    box.m_fnSetFont(&m_font);
    f32 x, y;
    box.m_fnGetSpacing(&x, &y);
    EXPECT_EQ(x, 3);
    EXPECT_EQ(y, 4);
    box.m_fnGetSpacing(nullptr, nullptr);
    EXPECT_EQ(box.m_fnGetTextSize(nullptr), 12);
    EXPECT_EQ(box.m_fnGetTextSize(&x), 12);
    EXPECT_EQ(x, 12);
    CFontUniCode* pFont = nullptr;
    EXPECT_EQ(box.m_fnGetFont(nullptr), &m_font);
    EXPECT_EQ(box.m_fnGetFont(&pFont), &m_font);
    EXPECT_EQ(pFont, &m_font);
    box.m_fnGetTextColor(nullptr, nullptr, nullptr, nullptr);
    box.m_fnGetTextCopy(nullptr);
}

TEST_F(TextBox, ANullFontIsIgnoredAndTheFontIsTheDrawKey) {
    CTextBox_Base box;
    box.m_fnSetFont(&m_font);
    box.m_fnSetFont(nullptr);
    EXPECT_EQ(box.m_pFont, &m_font);
    EXPECT_EQ(box.m_fnGetDrawKey(), static_cast<const void*>(&m_font));
}

TEST_F(TextBox, TheThreeColourFormsAgree) {
    CTextBox_Base box;
    f32 r, g, b, a;
    box.m_fnSetTextColor(0xFF3300, 102);
    box.m_fnGetTextColor(&r, &g, &b, &a);
    const Four expected{1, 51 / 255.0f, 0, 102 / 255.0f};
    EXPECT_EQ((Four{r, g, b, a}), expected);
    box.m_fnSetShadowColorB(255, 51, 0, 102);
    box.m_fnGetShadowColor(&r, &g, &b, &a);
    EXPECT_EQ((Four{r, g, b, a}), expected);
    box.m_fnSetTextColorF(0.25f, 0.5f, 0.75f, 1);
    box.m_fnGetTextColor(&r, &g, &b, &a);
    EXPECT_EQ((Four{r, g, b, a}), (Four{0.25f, 0.5f, 0.75f, 1}));
}

TEST_F(TextBox, BlanksBreaksAndTabsNeedNoQuad) {
    CTextBox_Base box;
    EXPECT_TRUE(box.m_fnSetTextW(u"a b\tc\r\nd\x3000"));
    EXPECT_EQ(box.m_uTextLength, 9u);
    EXPECT_EQ(box.m_uGlyphCount, 4u);
}

TEST_F(TextBox, ATextOfSpacesHasOneGlyphAndAWidth) {
    auto p = Ready(u"    ");
    EXPECT_EQ(p->m_uGlyphCount, 1u);
    EXPECT_EQ(p->m_fnGetTextWidth(), 4 * 4);
    EXPECT_EQ(p->m_fSizeW, 16);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 0)), (Four{0, 0, 0, 0}));
}

TEST_F(TextBox, AnEmptyTextHasOneQuadDrawnAsNothing) {
    auto p = Ready(u"");
    EXPECT_EQ(p->m_uGlyphCapacity, 1u);
    EXPECT_EQ(p->m_uVertexBytes, 128u);
    EXPECT_EQ(p->m_uIndexBytes, 24u);
    EXPECT_EQ(p->m_uIndexCount, 6u);
    EXPECT_EQ(p->m_uVertexCount, 4u);
    EXPECT_EQ(p->m_uTriangleCount, 2u);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 0)), (Four{0, 0, 0, 0}));
    EXPECT_EQ(p->m_fSizeW, 0);
    EXPECT_EQ(p->m_fSizeH, 16);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, std::vector<std::string>{"text"});
}

TEST_F(TextBox, ASurrogatePairIsOneCodePoint) {
    CTextBox_Base box;
    EXPECT_TRUE(box.m_fnSetTextW(u"\xD83D\xDE00x"));
    EXPECT_EQ(box.m_uTextLength, 2u);
    EXPECT_EQ(box.m_pCodePoints[0], 0x1F600u);
    EXPECT_EQ(box.m_pCodePoints[1], static_cast<u32>('x'));
    EXPECT_EQ(box.m_pCodePoints[2], 0u);
}

TEST_F(TextBox, ALoneSurrogateIsRefusedAndTheOldTextStays) {
    CTextBox_Base box;
    ASSERT_TRUE(box.m_fnSetTextW(u"old"));
    box.m_bLayoutDirty = box.m_bPositionDirty = false;
    EXPECT_FALSE(box.m_fnSetTextW(u"new\xD83D"));
    EXPECT_FALSE(box.m_fnSetTextW(u"\xD83Dx"));
    EXPECT_FALSE(box.m_fnSetTextW(u"\xD83D\xD83D\xDE00"));
    EXPECT_FALSE(box.m_fnSetTextW(u"a\xDE00"));
    EXPECT_FALSE(box.m_fnSetTextW(nullptr));
    EXPECT_EQ(TextOf(box), u"old");
    EXPECT_EQ(box.m_uGlyphCount, 3u);
    EXPECT_EQ(box.m_pCodePoints[2], static_cast<u32>('d'));
    EXPECT_FALSE(box.m_bLayoutDirty || box.m_bPositionDirty);
}

TEST_F(TextBox, ANewTextShowsAfterTheNextFlushOnly) {
    auto p = Ready(u"aa");
    p->m_fnFlush();
    p->m_bColorDirty = false;
    const i32 iUploads = recording::g_iUploads;
    ASSERT_TRUE(p->m_fnSetTextW(u"WW"));
    EXPECT_TRUE(p->m_bLayoutDirty && p->m_bPositionDirty);
    EXPECT_EQ(recording::g_iUploads, iUploads);
    EXPECT_EQ(p->m_fnGetTextWidth(), 16);
    p->m_fnFlush();
    EXPECT_EQ(recording::g_iUploads, iUploads + 1);
    EXPECT_EQ(p->m_fnGetTextWidth(), 32);
    EXPECT_EQ(p->m_fSizeW, 32);
}

TEST_F(TextBox, ATextNoLongerThanAnEarlierOneKeepsItsMemory) {
    CTextBox_Base box;
    ASSERT_TRUE(box.m_fnSetTextW(u"a rather long text to begin with"));
    const char16_t* const wzText = box.m_wzText.get();
    const u32* const pCodes = box.m_pCodePoints.get();
    ASSERT_TRUE(box.m_fnSetTextW(u"a short one"));
    ASSERT_TRUE(box.m_fnSetTextW(u"a rather long text to go on with"));
    EXPECT_EQ(box.m_wzText.get(), wzText);
    EXPECT_EQ(box.m_pCodePoints.get(), pCodes);
    EXPECT_EQ(TextOf(box), u"a rather long text to go on with");
}

TEST_F(TextBox, ABoxMayBeGivenItsOwnText) {
    CTextBox_Base box;
    ASSERT_TRUE(box.m_fnSetTextW(u"0123456789"));
    ASSERT_TRUE(box.m_fnSetTextW(box.m_wzText.get() + 4));
    EXPECT_EQ(TextOf(box), u"456789");
    EXPECT_EQ(box.m_uTextLength, 6u);
}

TEST_F(TextBox, BytesOfANarrowTextAreCodes) {
    CTextBox_Base box;
    EXPECT_TRUE(box.m_fnSetTextA("a\xE9\xFF"));
    EXPECT_EQ(TextOf(box), u"a\u00E9\u00FF");
    EXPECT_FALSE(box.m_fnSetTextA(nullptr));
    EXPECT_EQ(TextOf(box), u"a\u00E9\u00FF");
}

TEST_F(TextBox, WithShadowTheBuffersAreTwiceAsLarge) {
    auto pPlain = Ready(u"abc");
    auto p = New(u"abc");
    p->m_fnSetShadow(true);
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(pPlain->m_uVertexBytes, 3u * 128);
    EXPECT_EQ(p->m_uVertexBytes, 2 * pPlain->m_uVertexBytes);
    EXPECT_EQ(p->m_uIndexBytes, 2 * pPlain->m_uIndexBytes);
    EXPECT_EQ(p->m_uIndexCount, 2 * pPlain->m_uIndexCount);
    EXPECT_EQ(p->m_uVertexCount, 2 * pPlain->m_uVertexCount);
    EXPECT_EQ(p->m_uTriangleCount, 2 * pPlain->m_uTriangleCount);
}

TEST_F(TextBox, ShadowIsIgnoredOnceTheBuffersExist) {
    auto p = Ready(u"abc");
    p->m_fnSetShadow(true);
    EXPECT_FALSE(p->m_bShadow);
}

TEST_F(TextBox, IndicesRunQuadByQuad) {
    auto p = Ready(u"ab");
    const u32 auExpected[] = {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7};
    EXPECT_EQ(p->m_fnGetVertexData(), p->m_pVertices.get());
    ASSERT_EQ(p->m_fnGetIndexData(), p->m_pIndices.get());
    for (u32 i = 0; i < 12; ++i) EXPECT_EQ(p->m_pIndices[i], auExpected[i]) << i;
}

TEST_F(TextBox, TheSecondIndexListIsFourTimesAsLargeAsItsUse) {
    auto p = Ready(u"ab");
    for (u32 i = 0; i < 12; ++i) EXPECT_EQ(p->m_pIndicesOut[i], p->m_pIndices[i]);
    for (u32 i = 12; i < p->m_uIndexBytes; ++i) EXPECT_EQ(p->m_pIndicesOut[i], 0u);
}

TEST_F(TextBox, TheMeshTakesTheSizesOfTheBuffersAndWideIndices) {
    auto p = Ready(u"ab");
    EXPECT_EQ(p->m_pMesh->m_uVertexStride, 32u);
    EXPECT_EQ(p->m_pMesh->m_uVertexBytes, 256u);
    EXPECT_EQ(p->m_pMesh->m_uIndexBytes, 48u);
    EXPECT_EQ(p->m_pMesh->m_u8IndexSize, 4);
    EXPECT_EQ(recording::g_iUploads, 1);
}

TEST_F(TextBox, InitialisationNeedsAFont) {
    CTextBox_Base box;
    box.m_fnSetTextW(u"a");
    EXPECT_FALSE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pVertices, nullptr);
}

TEST_F(TextBox, ABoxThatIsNotRenderableNeedsNothing) {
    CTextBox_Base box;
    box.m_fnSetRenderable(false);
    EXPECT_TRUE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pVertices, nullptr);
    EXPECT_EQ(box.m_pEntity, nullptr);
}

TEST_F(TextBox, InitialisationStopsAtTheFirstFailure) {
    auto p = New(u"a");
    recording::g_iEntitiesLeft = 0;
    EXPECT_FALSE(p->m_fnInitialize());
    EXPECT_EQ(p->m_pMesh, nullptr);
    auto q = New(u"a");
    recording::g_iEntitiesLeft = -1;
    recording::g_iMeshesLeft = 0;
    EXPECT_FALSE(q->m_fnInitialize());
    EXPECT_NE(q->m_pEntity, nullptr);
    EXPECT_EQ(recording::g_iUploads, 0);
}

TEST_F(TextBox, InitialisationClearsNoFlagSoTheFirstFlushDoesEverything) {
    auto p = Ready(u"ab");
    EXPECT_TRUE(p->m_bColorDirty && p->m_bPositionDirty && p->m_bLayoutDirty);
    p->m_fnFlush();
    EXPECT_FALSE(p->m_bColorDirty || p->m_bPositionDirty || p->m_bLayoutDirty);
    EXPECT_EQ(recording::g_iUploads, 2);
    p->m_fnFlush();
    EXPECT_EQ(recording::g_iUploads, 2);
}

TEST_F(TextBox, FlushingBeforeTheBuffersExistDoesNothing) {
    CTextBox_Base box;
    box.m_fnFlush();
    EXPECT_TRUE(box.m_bColorDirty && box.m_bPositionDirty && box.m_bLayoutDirty);
    box.m_fnRefreshVertices();
    EXPECT_TRUE(box.m_bLayoutDirty);
    EXPECT_FALSE(box.m_fnExpandQuads());
}

TEST_F(TextBox, AColourChangeRewritesColoursAndUploadsOnce) {
    auto p = Ready(u"ab");
    p->m_fnFlush();
    const Four rect = Rect(Quad(p->m_pVertices, 1));
    const i32 iUploads = recording::g_iUploads;
    p->m_fnSetTextColorF(1, 0, 0.5f, 0.25f);
    EXPECT_EQ(recording::g_iUploads, iUploads + 1);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 1)), rect);
    for (u32 i = 0; i < 8; ++i) {
        EXPECT_EQ(ColorOf(g_fnVertexAt(p->m_pVertices.get(), i)), (Four{1, 0, 0.5f, 0.25f}));
        EXPECT_EQ(ColorOf(g_fnVertexAt(p->m_pVerticesOut.get(), i)), (Four{1, 0, 0.5f, 0.25f}));
    }
}

TEST_F(TextBox, AColourChangeOfAShadowedTextKeepsTheTwoLayersApart) {
    auto p = New(u"a");
    p->m_fnSetShadow(true);
    ASSERT_TRUE(p->m_fnInitialize());
    p->m_fnSetTextColorF(1, 1, 1, 1);
    p->m_fnSetShadowColorF(0, 0, 1, 0.5f);
    EXPECT_EQ(ColorOf(Quad(p->m_pVertices, 0)), (Four{0, 0, 1, 0.5f}));
    EXPECT_EQ(ColorOf(Quad(p->m_pVertices, 1)), (Four{1, 1, 1, 1}));
    EXPECT_EQ(ColorOf(Quad(p->m_pVerticesOut, 0)), (Four{0, 0, 1, 0.5f}));
}

TEST_F(TextBox, AMoveCostsOneEntityUpdateAndNoUpload) {
    auto p = Ready(u"a");
    p->m_fnFlush();
    const Four rect = Rect(Quad(p->m_pVertices, 0));
    const i32 iUploads = recording::g_iUploads;
    p->m_fnMoveTo(30, 40, 0);
    f32 x, y, z;
    p->m_pEntity->m_fnGetPosition(&x, &y, &z);
    EXPECT_EQ(x, 30);
    EXPECT_EQ(y, 40);
    EXPECT_EQ(z, 0);
    EXPECT_EQ(recording::g_iUploads, iUploads);
    EXPECT_FALSE(p->m_bColorDirty || p->m_bPositionDirty || p->m_bLayoutDirty);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 0)), rect);
}

TEST_F(TextBox, TheSecondVertexListStandsAtTheControlsPosition) {
    auto p = Ready(u"a");
    p->m_fnMoveTo(30, 40, 0);
    p->m_fnMarkPositionDirty();
    const Four in = Rect(Quad(p->m_pVertices, 0)), out = Rect(Quad(p->m_pVerticesOut, 0));
    EXPECT_EQ(out, (Four{in[0] + 30, in[1] + 40, in[2] + 30, in[3] + 40}));
    EXPECT_EQ(Texture(Quad(p->m_pVerticesOut, 0)), Texture(Quad(p->m_pVertices, 0)));
}

TEST_F(TextBox, SizeAndSpacingLayTheTextOutAnew) {
    auto p = Ready(u"ab");
    p->m_fnFlush();
    p->m_fnSetTextSize(32);
    EXPECT_EQ(p->m_fSizeW, 32);
    EXPECT_EQ(p->m_fSizeH, 32);
    p->m_fnSetSpacing(4, 0);
    EXPECT_EQ(p->m_fnGetTextWidth(), 16 + 4 + 16);
    EXPECT_EQ(recording::g_iUploads, 4);
}

TEST_F(TextBox, DrawingHandsOnTheEntitysMatrixAndTheTextColour) {
    auto p = Ready(u"a");
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(p->m_pWorld, p->m_pEntity->m_fnGetWorldForDraw());
    EXPECT_EQ(p->m_pColor, p->m_afTextColor);
}

TEST_F(TextBox, NothingIsDrawnWithoutEntityOrWhenNotRenderable) {
    auto p = New(u"a");
    p->m_fnRender(&m_batcher);
    ASSERT_TRUE(p->m_fnInitialize());
    p->m_fnSetRenderable(false);
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(recording::g_aEvents.empty());
}

TEST_F(TextBox, ReleaseFreesEverythingButTheFont) {
    const i32 iMeshes = recording::g_iLiveMeshes, iEntities = recording::g_iLiveEntities;
    auto p = Ready(u"abc");
    p->m_fnRelease();
    EXPECT_EQ(recording::g_iLiveMeshes, iMeshes);
    EXPECT_EQ(recording::g_iLiveEntities, iEntities);
    EXPECT_EQ(p->m_fnGetVertexData(), nullptr);
    EXPECT_EQ(p->m_fnGetVertexBytes(), 0u);
    EXPECT_EQ(p->m_pFont, &m_font);
    EXPECT_EQ(TextOf(*p), u"");
    EXPECT_FALSE(p->m_fnLayoutGlyphs(true, true, 0));
    p->m_fnFlush();
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(p->m_fnSetTextW(u"again"));
    EXPECT_EQ(TextOf(*p), u"again");
}

TEST_F(TextBox, DeletingThroughTheBaseFreesMeshAndEntity) {
    const i32 iMeshes = recording::g_iLiveMeshes, iEntities = recording::g_iLiveEntities;
    CTextBox_Base* p = Ready(u"abc").release();
    delete p;
    EXPECT_EQ(recording::g_iLiveMeshes, iMeshes);
    EXPECT_EQ(recording::g_iLiveEntities, iEntities);
    EXPECT_EQ(CLiveTextBox::s_iLive, 0);
}

TEST_F(TextBox, AControlAnchoredRightKeepsItsRightEdgeWhenItsTextGrows) {
    CTextBox_Base* p = Ready(u"ab").release();
    ASSERT_EQ(g_fnRegisterXCtrl(IdTextBox, 1, p), 1);
    p->m_fnSetAnchor(3, 10, 0);
    m_pManager->m_fnAddChild(nullptr, p);
    EXPECT_EQ(p->m_fPosX, 1920 - 16 - 10);
    ASSERT_TRUE(p->m_fnSetTextW(u"WW"));
    p->m_fnFlush();
    EXPECT_EQ(p->m_fPosX, 1920 - 32 - 10);
}

} // namespace
