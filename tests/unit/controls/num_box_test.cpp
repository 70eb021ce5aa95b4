#include "controls/num_box.h"

#include "tests/unit/controls/text_fixture.h"

#include <cmath>
#include <limits>
#include <memory>

namespace {

class NumBox : public TextTest {
  protected:
    /// A box of text size 16: a digit and a cell are 8 wide, 12 high and reach 2 below the line.
    std::unique_ptr<CLiveNumBox> New() {
        auto p = std::make_unique<CLiveNumBox>();
        p->m_fnSetFont(&m_font);
        p->m_fnSetTextSize(16);
        return p;
    }
    std::unique_ptr<CLiveNumBox> Ready(bool bShadow = false) {
        auto p = New();
        p->m_fnSetShadow(bShadow);
        EXPECT_TRUE(p->m_fnInitialize());
        return p;
    }
    /// What the draw list shows; every entry must name its own cell.
    static std::string Shown(const CNumBox_Base& box) {
        std::string str;
        for (i32 i = 0; i < box.m_iDrawCount; ++i) {
            const u32 uGlyphIndices = box.m_bShadow ? 12 : 6;
            EXPECT_EQ(box.m_auDrawIndex[i] % uGlyphIndices, 0u);
            const u32 uQuad = box.m_auDrawIndex[i] / uGlyphIndices;
            EXPECT_EQ(uQuad / 14, static_cast<u32>(i));
            str += "0123456789.-% "[uQuad % 14];
        }
        return str;
    }
    static std::string Int(i32 iValue, u32 uPad = 0, bool bHide = true) {
        CNumBox_Base box;
        box.m_fnSetIntEx(iValue, uPad, bHide);
        return Shown(box);
    }
    static std::string Float(f32 fValue, u32 uDecimals, bool bPercent = false) {
        CNumBox_Base box;
        box.m_fnSetPercent(bPercent);
        box.m_fnSetFloat(fValue, uDecimals);
        return Shown(box);
    }
    static std::vector<f32> Copy(const CNumBox_Base& box) {
        return {box.m_pVertices.get(), box.m_pVertices.get() + box.m_uVertexBytes / sizeof(f32)};
    }
    /// Number of the quad of a glyph in a cell, without shadow.
    static constexpr u32 At(u32 uCell, u32 uGlyph) { return uCell * 14 + uGlyph; }
};

TEST_F(NumBox, StartsWithoutAValue) {
    CNumBox_Base box;
    EXPECT_EQ(box.m_fnGetType(), static_cast<u32>('N'));
    EXPECT_TRUE(box.m_fnGetAutoSize());
    EXPECT_EQ(box.m_iDrawCount, -1);
    EXPECT_EQ(box.m_uCellCount, 8u);
    EXPECT_EQ(box.m_uGlyphCount, 14u);
    EXPECT_EQ(box.m_uCharsetSize - box.m_uCharsetRows, box.m_uGlyphCount);
    EXPECT_EQ(std::u16string(box.m_wzCharset.get()), u"0123456789.-% ");
    EXPECT_EQ(box.m_uAlign, 2u);
    EXPECT_EQ(box.m_uPadDigits, 0u);
    EXPECT_TRUE(box.m_bPadBlank);
    EXPECT_FALSE(box.m_bPercent);
    EXPECT_EQ(box.m_fMaxValue, 99999);
    EXPECT_EQ(box.m_fMinValue, -99);
    EXPECT_EQ(box.m_uDataKind, 7u);
    EXPECT_EQ(box.m_pDataSource, 0u);
    EXPECT_EQ(box.m_iAnchorCode, 1);
    f32 r, g, b, a;
    box.m_fnGetTextColor(&r, &g, &b, &a);
    EXPECT_EQ((Four{r, g, b, a}), (Four{0.5f, 0.5f, 0.5f, 1}));
    box.m_fnGetShadowColor(&r, &g, &b, &a);
    EXPECT_EQ((Four{r, g, b, a}), (Four{0, 0, 0, 1}));
    EXPECT_EQ(box.m_fnGetVertexData(), nullptr);
    EXPECT_EQ(box.m_fnGetIndexData(), nullptr);
}

TEST_F(NumBox, ZeroShowsOneDigit) { EXPECT_EQ(Int(0), "0"); }

TEST_F(NumBox, PaddingIsBlanksOrZeros) {
    EXPECT_EQ(Int(5, 3, true), "  5");
    EXPECT_EQ(Int(5, 3, false), "005");
    EXPECT_EQ(Int(1234, 3, false), "1234");
    CNumBox_Base box;
    box.m_fnSetInt(5, 3);
    EXPECT_EQ(Shown(box), "  5");
}

TEST_F(NumBox, AWidthSetBeforeHoldsForValuesWithoutOne) {
    CNumBox_Base box;
    box.m_fnSetDigitPad(4, false);
    box.m_fnSetInt(7, 0);
    EXPECT_EQ(Shown(box), "0007");
    box.m_fnSetIntEx(8, 2, true);
    EXPECT_EQ(Shown(box), " 8");
    box.m_fnSetInt(9, 0);
    EXPECT_EQ(Shown(box), " 9");
}

TEST_F(NumBox, ANegativeNumberHasItsSignInTheFirstCell) {
    EXPECT_EQ(Int(-12), "-12");
    CNumBox_Base box;
    box.m_fnSetInt(-12, 0);
    EXPECT_EQ(box.m_auDrawIndex[0], 66u);
    EXPECT_TRUE(box.m_bNegative);
    box.m_fnSetInt(12, 0);
    EXPECT_EQ(Shown(box), "12");
}

TEST_F(NumBox, TheSignStandsLeftOfThePadding) {
    EXPECT_EQ(Int(-5, 4, true), "-   5");
    EXPECT_EQ(Int(-5, 4, false), "-0005");
}

TEST_F(NumBox, ANegativeFractionShowsItsZero) {
    CNumBox_Base box;
    box.m_fnSetFloat(-0.5f, 1);
    EXPECT_TRUE(box.m_bNegative);
    EXPECT_EQ(Shown(box), "-0.5");
}

TEST_F(NumBox, MinusZeroIsPossible) {
    EXPECT_EQ(Float(-0.04f, 1), "-0.0");
    EXPECT_EQ(Float(-0.0f, 1), "0.0");
}

TEST_F(NumBox, DecimalsAreCutOffNotRounded) {
    EXPECT_EQ(Float(3.14159f, 2), "3.14");
    EXPECT_EQ(Float(2.999f, 2), "2.99");
    EXPECT_EQ(Float(1.5f, 1), "1.5");
    EXPECT_EQ(Float(59.96f, 0), "59");
    EXPECT_EQ(Float(-2.999f, 2), "-2.99");
}

TEST_F(NumBox, EachDecimalIsOneMultiplicationInSinglePrecision) {
    // 16777217 is no float: the tenths of 1677721.7 come out as 7, its hundredths of 1677721.75 as 5.
    EXPECT_EQ(Float(1677721.75f, 2), "1677721.");
    CNumBox_Base box;
    box.m_fnSetFloat(1677721.75f, 2);
    EXPECT_EQ(box.m_au8Digits[1], static_cast<u8>(static_cast<i64>(1677721.75f * 10.0f) % 10));
    EXPECT_EQ(box.m_au8Digits[0], static_cast<u8>(static_cast<i64>(1677721.75f * 10.0f * 10.0f) % 10));
}

TEST_F(NumBox, AFloatWithoutDecimalsHasNoPoint) { EXPECT_EQ(Float(240.75f, 0), "240"); }

TEST_F(NumBox, PercentMultipliesFloatsAndAddsItsSign) {
    EXPECT_EQ(Float(0.25f, 0, true), "25%");
    EXPECT_EQ(Float(0.5f, 1, true), "50.0%");
    EXPECT_EQ(Float(-0.25f, 0, true), "-25%");
    CNumBox_Base box;
    box.m_fnSetPercent(true);
    box.m_fnSetInt(99, 0);
    EXPECT_EQ(Shown(box), "99%");
}

TEST_F(NumBox, ANumberOfNineCharactersLosesItsLast) {
    EXPECT_EQ(Int(12345678), "12345678");
    EXPECT_EQ(Int(123456789), "12345678");
    EXPECT_EQ(Float(12345.67f, 3), "12345.67");
    EXPECT_EQ(Float(99999.0f, 2, true), "9999900.");
}

TEST_F(NumBox, TheLeastIntegerHasAMagnitude) { EXPECT_EQ(Int(std::numeric_limits<i32>::min()), "-2147483"); }

TEST_F(NumBox, WidthIsHeldTo16AndDecimalsTo15) {
    CNumBox_Base box;
    box.m_fnSetIntEx(1, 4000000000u, true);
    EXPECT_EQ(box.m_uPadDigits, 16u);
    EXPECT_EQ(box.m_uIntDigits, 16u);
    EXPECT_EQ(Shown(box), "        ");
    box.m_fnSetIntEx(-1, 16, false);
    EXPECT_EQ(Shown(box), "-0000000");
    box.m_fnSetFloat(-1.25f, 4000000000u);
    EXPECT_EQ(box.m_uDecimals, 15u);
    EXPECT_EQ(Shown(box), "-1.25000");
}

TEST_F(NumBox, ValuesBeyondAllCellsStayInBounds) {
    EXPECT_EQ(Float(std::numeric_limits<f32>::quiet_NaN(), 1), "0.0");
    // The largest whole number that is left has 19 digits, of which 16 are kept.
    EXPECT_EQ(Float(std::numeric_limits<f32>::infinity(), 0), "33720368");
    EXPECT_EQ(Float(-std::numeric_limits<f32>::infinity(), 2), "-7203685");
    EXPECT_EQ(Float(1e30f, 15, true), "7.777777");
}

TEST_F(NumBox, TheSameValueTwiceBuildsNothingTheSecondTime) {
    auto p = Ready();
    p->m_fnSetInt(42, 0);
    p->m_fnSetInt(42, 0);
    EXPECT_EQ(p->m_iBuilds, 1);
    p->m_fnSetFloat(1.5f, 1);
    p->m_fnSetFloat(1.5f, 1);
    EXPECT_EQ(p->m_iBuilds, 2);
}

TEST_F(NumBox, IntegersAndFloatsAreRememberedApart) {
    CNumBox_Base box;
    box.m_fnSetInt(5, 0);
    box.m_fnSetFloat(7.5f, 1);
    box.m_fnSetInt(5, 0);
    EXPECT_EQ(Shown(box), "7.5");
    box.m_fnSetInt(6, 0);
    EXPECT_EQ(Shown(box), "6");
}

TEST_F(NumBox, OtherDecimalsAloneChangeNothing) {
    CNumBox_Base box;
    box.m_fnSetFloat(7.5f, 1);
    box.m_fnSetFloat(7.5f, 2);
    EXPECT_EQ(Shown(box), "7.5");
}

TEST_F(NumBox, ClearShowsNothingAndLetsTheSameValueIn) {
    CNumBox_Base box;
    box.m_fnSetInt(5, 0);
    box.m_fnClear();
    EXPECT_EQ(box.m_iDrawCount, -1);
    EXPECT_EQ(Shown(box), "");
    box.m_fnSetInt(5, 0);
    EXPECT_EQ(Shown(box), "5");
}

TEST_F(NumBox, TheFirstZeroIsShown) {
    CNumBox_Base box;
    box.m_fnSetFloat(0, 1);
    EXPECT_EQ(Shown(box), "0.0");
}

TEST_F(NumBox, FirstIndicesCountCellsGlyphsAndTheShadow) {
    auto pPlain = Ready(), p = Ready(true);
    for (CLiveNumBox* pBox : {pPlain.get(), p.get()}) pBox->m_fnSetFloat(3.5f, 1);
    EXPECT_EQ(pPlain->m_auDrawIndex[0], 3u * 6);
    EXPECT_EQ(pPlain->m_auDrawIndex[1], (14u + 10) * 6);
    EXPECT_EQ(pPlain->m_auDrawIndex[2], (28u + 5) * 6);
    for (u32 i = 0; i < 3; ++i) EXPECT_EQ(p->m_auDrawIndex[i], 2 * pPlain->m_auDrawIndex[i]);
    EXPECT_EQ(pPlain->m_uIndicesPerGlyph, 6u);
    EXPECT_EQ(p->m_uIndicesPerGlyph, 12u);
    EXPECT_EQ(p->m_uVerticesPerGlyph, 8u);
    EXPECT_EQ(p->m_uTrianglesPerGlyph, 4u);
}

TEST_F(NumBox, AnotherTextSizeBuildsTheListAnewAndDoublesItOnce) {
    auto p = Ready(true);
    p->m_fnSetInt(12345678, 0);
    p->m_fnSetTextSize(32);
    EXPECT_EQ(Shown(*p), "12345678");
    EXPECT_EQ(p->m_fSizeW, 8 * 16);
}

TEST_F(NumBox, TheSizeFollowsTheNumber) {
    auto p = New();
    p->m_fnSetSpacing(2, 9);
    p->m_fnSetInt(123, 0);
    EXPECT_EQ(p->m_fNumberW, 3 * 8 + 2 * 2);
    EXPECT_EQ(p->m_fNumberH, 16);
    EXPECT_EQ(p->m_fSizeW, 28);
    p->m_fnSetAutoSize(false);
    p->m_fnSetInt(1, 0);
    EXPECT_EQ(p->m_fNumberW, 8);
    EXPECT_EQ(p->m_fSizeW, 28);
}

TEST_F(NumBox, AnEmptyBoxHasANegativeWidth) {
    auto p = New();
    p->m_fnSetSpacing(3, 0);
    EXPECT_EQ(p->m_fSizeW, -8 - 2 * 3);
}

TEST_F(NumBox, SettingTheSpacingLosesASizeGivenBefore) {
    auto p = New();
    p->m_fnSetSize(100, 20);
    p->m_fnSetSpacing(0, 0);
    EXPECT_EQ(p->m_fSizeW, -8);
    EXPECT_EQ(p->m_fSizeH, 16);
}

TEST_F(NumBox, TheFontGivesTheCellItsWidth) {
    CNumBox_Base box;
    EXPECT_EQ(box.m_fCellWidth, 1);
    box.m_fnSetFont(&m_font);
    box.m_fnSetFont(nullptr);
    EXPECT_EQ(box.m_fCellWidth, 0.5f);
    EXPECT_EQ(box.m_fnGetDrawKey(), static_cast<const void*>(&m_font));
    CFontUniCode* pFont = nullptr;
    EXPECT_EQ(box.m_fnGetFont(&pFont), &m_font);
    EXPECT_EQ(pFont, &m_font);
    EXPECT_EQ(box.m_fnGetFont(nullptr), &m_font);
}

TEST_F(NumBox, AFontWithoutAZeroLeavesTheCellAsItWas) {
    m_font.m_setMissing = {u'0'};
    CNumBox_Base box;
    box.m_fnSetFont(&m_font);
    EXPECT_EQ(box.m_fCellWidth, 1);
}

TEST_F(NumBox, WithoutAFontSizesAreUnscaled) {
    CNumBox_Base box;
    box.m_fnSetTextSize(10);
    box.m_fnSetInt(12, 0);
    EXPECT_EQ(box.m_fSizeW, 20);
}

TEST_F(NumBox, GettersTakeNull) {
    CNumBox_Base box;
    box.m_fnSetTextSize(12);
    box.m_fnSetSpacing(3, 4);
    f32 x, y;
    box.m_fnGetSpacing(&x, &y);
    EXPECT_EQ(x, 3);
    EXPECT_EQ(y, 4);
    box.m_fnGetSpacing(nullptr, nullptr);
    EXPECT_EQ(box.m_fnGetTextSize(nullptr), 12);
    EXPECT_EQ(box.m_fnGetTextSize(&x), 12);
    EXPECT_EQ(x, 12);
    box.m_fnGetTextColor(nullptr, nullptr, nullptr, nullptr);
}

TEST_F(NumBox, AValueFrom9To10MovesARightAnchoredBoxByACellAndTouchesNoVertex) {
    CNumBox_Base* p = Ready().release();
    ASSERT_EQ(g_fnRegisterXCtrl(IdNumBox, 1, p), 1);
    p->m_fnSetAnchor(3, 20, 0);
    m_pManager->m_fnAddChild(nullptr, p);
    p->m_fnSetInt(9, 0);
    EXPECT_EQ(p->m_fPosX, 1920 - 8 - 20);
    const std::vector<f32> aVertices = Copy(*p);
    const i32 iUploads = recording::g_iUploads;
    p->m_fnSetInt(10, 0);
    EXPECT_EQ(p->m_fPosX, 1920 - 16 - 20);
    EXPECT_EQ(p->m_ppEntities[0]->m_fPosX, p->m_fPosX);
    EXPECT_EQ(Copy(*p), aVertices);
    EXPECT_EQ(recording::g_iUploads, iUploads);
}

TEST_F(NumBox, AValueChangeMakesNoMeshUpload) {
    for (bool bShadow : {false, true}) {
        auto p = Ready(bShadow);
        p->m_fnFlush();
        const std::vector<f32> aVertices = Copy(*p);
        const i32 iUploads = recording::g_iUploads;
        for (i32 i = -120; i < 120; ++i) {
            p->m_fnSetInt(i * 37, 4);
            p->m_fnSetFloat(static_cast<f32>(i) * 0.37f, 2);
            p->m_fnRender(&m_batcher);
        }
        EXPECT_EQ(recording::g_iUploads, iUploads);
        EXPECT_EQ(Copy(*p), aVertices);
        EXPECT_FALSE(p->m_bColorDirty || p->m_bPositionDirty || p->m_bLayoutDirty);
    }
}

TEST_F(NumBox, EveryCellHasItsEntityAndTheyStandACellApart) {
    auto p = Ready();
    p->m_fnSetSpacing(2, 0);
    p->m_fnMoveTo(100, 50, 0);
    for (u32 i = 0; i < 8; ++i) {
        f32 x, y, z;
        p->m_ppEntities[i]->m_fnGetPosition(&x, &y, &z);
        EXPECT_EQ(x, 100 + 10 * static_cast<f32>(i));
        EXPECT_EQ(y, 50);
        EXPECT_EQ(z, 0);
    }
}

TEST_F(NumBox, DrawingHandsOnTheEntitiesAndTheTextColour) {
    auto p = Ready();
    p->m_fnSetInt(1, 0);
    p->m_fnRender(&m_batcher);
    EXPECT_EQ(recording::g_aEvents, std::vector<std::string>{"digits"});
    EXPECT_EQ(p->m_ppDrawn, p->m_ppEntities.get());
    EXPECT_EQ(p->m_pColor, p->m_afTextColor);
}

TEST_F(NumBox, NothingIsDrawnWithoutEntitiesOrWhenNotRenderable) {
    auto p = New();
    p->m_fnRender(&m_batcher);
    ASSERT_TRUE(p->m_fnInitialize());
    p->m_fnSetRenderable(false);
    p->m_fnRender(&m_batcher);
    EXPECT_TRUE(recording::g_aEvents.empty());
}

TEST_F(NumBox, InitialisationNeedsAFont) {
    CNumBox_Base box;
    EXPECT_FALSE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pVertices, nullptr);
    box.m_fnSetRenderable(false);
    EXPECT_TRUE(box.m_fnInitialize());
    EXPECT_EQ(box.m_pVertices, nullptr);
}

TEST_F(NumBox, InitialisationStopsAtTheFirstFailureAndLeaksNothing) {
    const i32 iEntities = recording::g_iLiveEntities;
    auto p = New();
    recording::g_iEntitiesLeft = 5;
    EXPECT_FALSE(p->m_fnInitialize());
    EXPECT_EQ(recording::g_iLiveEntities, iEntities + 5);
    EXPECT_EQ(p->m_pMesh, nullptr);
    p->m_fnMoveTo(1, 2, 0);
    p.reset();
    EXPECT_EQ(recording::g_iLiveEntities, iEntities);
    recording::g_iEntitiesLeft = -1;
    recording::g_iMeshesLeft = 0;
    EXPECT_FALSE(New()->m_fnInitialize());
    EXPECT_EQ(recording::g_iUploads, 0);
}

TEST_F(NumBox, ReleaseFreesEverythingButTheFont) {
    const i32 iMeshes = recording::g_iLiveMeshes, iEntities = recording::g_iLiveEntities;
    auto p = Ready();
    p->m_fnSetInt(5, 0);
    p->m_fnRelease();
    EXPECT_EQ(recording::g_iLiveMeshes, iMeshes);
    EXPECT_EQ(recording::g_iLiveEntities, iEntities);
    EXPECT_EQ(p->m_fnGetVertexData(), nullptr);
    EXPECT_EQ(p->m_fnGetVertexBytes(), 0u);
    EXPECT_EQ(p->m_wzCharset, nullptr);
    EXPECT_FALSE(p->m_fnBuildGlyphs());
    EXPECT_FALSE(p->m_fnExpandQuads());
    p->m_fnSetInt(6, 0);
    p->m_fnRender(&m_batcher);
    p->m_fnFlush();
    EXPECT_EQ(p->m_pFont, &m_font);
}

TEST_F(NumBox, DeletingThroughTheBaseFreesMeshAndEntities) {
    const i32 iMeshes = recording::g_iLiveMeshes, iEntities = recording::g_iLiveEntities;
    CNumBox_Base* p = Ready().release();
    EXPECT_EQ(recording::g_iLiveEntities, iEntities + 8);
    delete p;
    EXPECT_EQ(recording::g_iLiveMeshes, iMeshes);
    EXPECT_EQ(recording::g_iLiveEntities, iEntities);
    EXPECT_EQ(CLiveNumBox::s_iLive, 0);
}

TEST_F(NumBox, BuffersHoldEveryGlyphInEveryCell) {
    auto p = Ready(), q = Ready(true);
    EXPECT_EQ(p->m_uVertexBytes, 14336u);
    EXPECT_EQ(p->m_uIndexBytes, 2688u);
    EXPECT_EQ(q->m_uVertexBytes, 28672u);
    EXPECT_EQ(q->m_uIndexBytes, 5376u);
    EXPECT_EQ(p->m_pMesh->m_uVertexStride, 32u);
    EXPECT_EQ(p->m_pMesh->m_uVertexBytes, 14336u);
    EXPECT_EQ(p->m_pMesh->m_u8IndexSize, 4);
    EXPECT_EQ(p->m_fnGetIndexData(), p->m_pIndices.get());
    const u32 uLast = At(7, 13);
    const u32 auExpected[] = {0, 1, 2, 0, 2, 3};
    for (u32 i = 0; i < 6; ++i) {
        EXPECT_EQ(p->m_pIndices[uLast * 6 + i], uLast * 4 + auExpected[i]);
        EXPECT_EQ(p->m_pIndicesOut[uLast * 6 + i], uLast * 4 + auExpected[i]);
    }
    EXPECT_EQ(p->m_pIndicesOut[p->m_uIndexBytes - 1], 0u);
}

TEST_F(NumBox, ADigitFillsItsCellAndGrowsByAQuarter) {
    auto p = Ready();
    // x 0 to 8, y 6 to 18, grown by 2 and 3.
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(0, 7))), (Four{-2, 3, 10, 21}));
    EXPECT_EQ(Texture(Quad(p->m_pVertices, At(0, 7))),
              (Four{56 / 128.0f - 1 / 128.0f, 48 / 256.0f - 3 / 256.0f, 60 / 128.0f + 1 / 128.0f,
                    60 / 256.0f + 3 / 256.0f}));
}

TEST_F(NumBox, NarrowGlyphsStandLeftMiddleOrRightInTheirCell) {
    // The point is 4 of 8 wide. KEEP(profiles): the room of 4 counts half, for the cell's relative width of a
    // half.
    const f32 afLeft[] = {0, 1, 2};
    for (u32 uAlign : {g_uAlignLeft, g_uAlignMiddle, g_uAlignRight}) {
        auto p = New();
        p->m_fnSetAlign(uAlign);
        ASSERT_TRUE(p->m_fnInitialize());
        const f32 x = afLeft[uAlign];
        EXPECT_EQ(Rect(Quad(p->m_pVertices, At(0, g_uGlyphPoint))), (Four{x - 1, 3, x + 5, 21}));
    }
}

TEST_F(NumBox, AnAlignmentWithoutMeaningActsAsLeft) {
    auto p = New();
    p->m_fnSetAlign(9);
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(0, g_uGlyphPoint)))[0], -1);
}

TEST_F(NumBox, AGlyphWiderThanItsCellReachesOverItsLeftEdge) {
    auto p = Ready();
    // 12 wide in 8: the room is -4, half of it -2.
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(0, g_uGlyphPercent))), (Four{-2 - 3, 3, 10 + 3, 21}));
}

TEST_F(NumBox, ABlankIsAnEmptyQuadThatTakesItsCell) {
    auto p = Ready();
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(0, g_uGlyphBlank))), (Four{0, 0, 0, 0}));
    EXPECT_EQ(Texture(Quad(p->m_pVertices, At(0, g_uGlyphBlank))), (Four{0, 0, 0, 0}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(3, g_uGlyphBlank))), (Four{24, 0, 24, 0}));
    p->m_fnSetInt(5, 3);
    EXPECT_EQ(p->m_auDrawIndex[0], At(0, g_uGlyphBlank) * 6);
    EXPECT_EQ(p->m_fSizeW, 24);
}

TEST_F(NumBox, WhatTheFontCannotGiveIsEmpty) {
    m_font.m_setMissing = {u'-'};
    auto p = Ready();
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(0, g_uGlyphMinus))), (Four{0, 0, 0, 0}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(0, 1))), (Four{-2, 3, 10, 21}));
}

TEST_F(NumBox, TheOtherCellsAreCopiesAStepApart) {
    auto p = New();
    m_font.m_fnSetScale(2);
    p->m_fnSetSpacing(3, 0);
    ASSERT_TRUE(p->m_fnInitialize());
    const Four first = Rect(Quad(p->m_pVertices, At(0, 4)));
    for (u32 d = 1; d < 8; ++d) {
        const f32 x = static_cast<f32>(d) * (16 + 3);
        EXPECT_EQ(Rect(Quad(p->m_pVertices, At(d, 4))),
                  (Four{first[0] + x, first[1], first[2] + x, first[3]}));
        EXPECT_EQ(Texture(Quad(p->m_pVertices, At(d, 4))), Texture(Quad(p->m_pVertices, At(0, 4))));
    }
}

TEST_F(NumBox, EightCellsAreBuiltWhateverTheCount) {
    auto p = New();
    p->m_uCellCount = 10;
    ASSERT_TRUE(p->m_fnInitialize());
    EXPECT_EQ(p->m_uVertexBytes, 14u * 128 * 10);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(7, 0))), (Four{54, 3, 66, 21}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(8, 0))), (Four{0, 0, 0, 0}));
}

TEST_F(NumBox, ShadowQuadsStandInFrontOfTheirGlyphOneUnitRightAndDown) {
    auto p = New();
    p->m_fnSetShadow(true);
    p->m_fnSetTextColorF(1, 1, 1, 1);
    p->m_fnSetShadowColorF(0, 0, 0.5f, 0.25f);
    ASSERT_TRUE(p->m_fnInitialize());
    for (u32 uGlyph : {At(0, 7), At(0, g_uGlyphPoint), At(5, 3)}) {
        const stTextVertex* pShadow = Quad(p->m_pVertices, uGlyph * 2);
        const stTextVertex* pText = Quad(p->m_pVertices, uGlyph * 2 + 1);
        const Four text = Rect(pText);
        EXPECT_EQ(Rect(pShadow), (Four{text[0] + 1, text[1] + 1, text[2] + 1, text[3] + 1}));
        EXPECT_EQ(Texture(pShadow), Texture(pText));
        EXPECT_EQ(ColorOf(pShadow), (Four{0, 0, 0.5f, 0.25f}));
        EXPECT_EQ(ColorOf(pText), (Four{1, 1, 1, 1}));
    }
    EXPECT_EQ(Rect(Quad(p->m_pVertices, 7 * 2 + 1)), (Four{-2, 3, 10, 21}));
}

TEST_F(NumBox, ColoursReachEveryGlyphOfEveryCellInOneUpload) {
    auto p = Ready(true);
    p->m_fnFlush();
    const i32 iUploads = recording::g_iUploads;
    p->m_fnSetTextColor(0xFF0000, 255);
    p->m_fnSetShadowColor(0x0000FF, 255);
    EXPECT_EQ(recording::g_iUploads, iUploads + 2);
    for (u32 uGlyph = 0; uGlyph < 14 * 8; ++uGlyph) {
        EXPECT_EQ(ColorOf(Quad(p->m_pVertices, uGlyph * 2)), (Four{0, 0, 1, 1}));
        EXPECT_EQ(ColorOf(Quad(p->m_pVertices, uGlyph * 2 + 1) + 3), (Four{1, 0, 0, 1}));
        EXPECT_EQ(ColorOf(Quad(p->m_pVerticesOut, uGlyph * 2 + 1) + 3), (Four{1, 0, 0, 1}));
    }
}

TEST_F(NumBox, TheSecondVertexListStandsAtTheControlsPosition) {
    auto p = Ready();
    p->m_fnMoveTo(30, 40, 0);
    p->m_fnMarkPositionDirty();
    EXPECT_EQ(Rect(Quad(p->m_pVerticesOut, At(1, 0))), (Four{36, 43, 48, 61}));
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(1, 0))), (Four{6, 3, 18, 21}));
}

TEST_F(NumBox, InitialisationClearsNoFlagSoTheFirstFlushDoesEverything) {
    auto p = Ready();
    EXPECT_TRUE(p->m_bColorDirty && p->m_bPositionDirty && p->m_bLayoutDirty);
    p->m_fnFlush();
    EXPECT_FALSE(p->m_bColorDirty || p->m_bPositionDirty || p->m_bLayoutDirty);
    EXPECT_EQ(recording::g_iUploads, 2);
    p->m_fnFlush();
    EXPECT_EQ(recording::g_iUploads, 2);
    EXPECT_EQ(Rect(Quad(p->m_pVertices, At(0, 7))), (Four{-2, 3, 10, 21}));
}

TEST_F(NumBox, ShadowIsIgnoredOnceTheBuffersExist) {
    auto p = Ready();
    p->m_fnSetShadow(true);
    EXPECT_FALSE(p->m_bShadow);
}

} // namespace
