#include "test_font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

struct stCell {
    f32 x = 0, y = 0, z = 0;
    bool operator==(const stCell&) const = default;
};

static stCell Add(CFontUniCode& font, u32 uCode) {
    stCell st;
    font.m_fnAddChar(uCode, &st.x, &st.y, &st.z);
    return st;
}

static void PrintTo(const stCell& st, std::ostream* p) { *p << st.x << ", " << st.y << ", " << st.z; }

TEST(FontGrid, CellsAreGivenInOrderOfFirstUseRowByRow) {
    auto pFont = ReadyFont(4, 32);
    EXPECT_EQ(Add(*pFont, 'Z'), (stCell{0, 0, 1}));
    EXPECT_EQ(Add(*pFont, 'b'), (stCell{1, 0, 1}));
    Add(*pFont, 'c'), Add(*pFont, 'd');
    EXPECT_EQ(Add(*pFont, 'e'), (stCell{0, 1, 1}));
    Add(*pFont, 'f');
    EXPECT_EQ(Add(*pFont, 'g'), (stCell{2, 1, 1}));
    const stFontChar& st = pFont->m_fnRecord('g');
    EXPECT_EQ(&st, pFont->m_pChars + 6);
    EXPECT_EQ(st.m_u32_Char_UTF32_LE, u32{'g'});
    EXPECT_EQ(st.m_fTexX, 0.5f);
    EXPECT_EQ(st.m_fTexY, 0.25f);
    EXPECT_EQ(st.m_fTexZ, 0.0f);
}

TEST(FontGrid, KnownGlyphKeepsItsCellAndIsNotDrawnAgain) {
    auto pFont = ReadyFont(4, 32);
    Add(*pFont, 'a'), Add(*pFont, 'b');
    const auto uDrawn = pFont->m_aDrawn.size();
    pFont->m_uCharAge = 5;
    pFont->m_bDirty = false;
    EXPECT_EQ(Add(*pFont, 'b'), (stCell{1, 0, 1}));
    EXPECT_EQ(pFont->m_aDrawn.size(), uDrawn);
    EXPECT_EQ(pFont->m_fnRecord('b').m_uCharAge, 5u);
    EXPECT_EQ(pFont->m_fnRecord('a').m_uCharAge, 0u);
    EXPECT_FALSE(pFont->m_bDirty);
}

TEST(FontGrid, The1025thGlyphOf32By32GivesMinusOneAndChangesNoRecord) {
    auto pFont = ReadyFont(32, 8);
    for (u32 i = 0; i < 1024; ++i) ASSERT_TRUE(g_fnFontAddChar(pFont.get(), 0x4E00 + i));
    EXPECT_EQ(pFont->m_fnFindChar(0x4E00 + 1023), 1023);
    std::vector<stFontChar> aBefore(pFont->m_pChars, pFont->m_pChars + 1026);
    const std::vector<u8> atlas(pFont->m_pAtlas, pFont->m_pAtlas + 256 * 256);
    const auto map = pFont->m_mapCharIndex;
    EXPECT_EQ(Add(*pFont, 'A'), (stCell{-1, -1, -1}));
    EXPECT_FALSE(g_fnFontAddChar(pFont.get(), 'A'));
    f32 f = 7.0f;
    EXPECT_FALSE(pFont->m_fnGetCharInfo('A', &f, &f, &f, &f, &f, &f, &f, &f));
    EXPECT_EQ(f, 7.0f);
    EXPECT_EQ(std::memcmp(aBefore.data(), pFont->m_pChars, 1026 * sizeof(stFontChar)), 0);
    EXPECT_TRUE(std::equal(atlas.begin(), atlas.end(), pFont->m_pAtlas));
    EXPECT_EQ(map, pFont->m_mapCharIndex);
    EXPECT_TRUE(g_fnFontAddChar(pFont.get(), 0x4E00)) << "what is in stays in";
}

TEST(FontGrid, CodeAbove65535IsDrawnAsASurrogatePairAndKeyedByItsValue) {
    auto pFont = ReadyFont(2, 32);
    Add(*pFont, 0x1D49C);
    EXPECT_EQ(pFont->m_aDrawn.back(), (std::u16string{0xD835, 0xDC9C}));
    EXPECT_EQ(pFont->m_fnFindChar(0x1D49C), 0);
    EXPECT_EQ(pFont->m_fnFindChar(0xD835), -1);
    EXPECT_EQ(pFont->m_pChars[0].m_u32_Char_UTF32_LE, 0x1D49Cu);
}

TEST(FontGrid, SurrogateCodesDrawAndMeasureNothingYetTakeACell) {
    auto pFont = ReadyFont(4, 32); // nominal size 16, baseline 18
    EXPECT_EQ(Add(*pFont, 55808), (stCell{0, 0, 1}));
    EXPECT_EQ(Add(*pFont, 57343), (stCell{1, 0, 1}));
    EXPECT_EQ(pFont->m_aDrawn.back(), u"");
    const stFontChar& st = pFont->m_fnRecord(55808);
    EXPECT_EQ(st.m_fWScale, 1.0f / 16.0f);             // no advance, and the pixel more
    EXPECT_EQ(st.m_fHScale, -29.0f / 16.0f);           // 2 - 32 + 1
    EXPECT_EQ(st.m_fYOffset, (-30 - 18 + 31) / 16.0f); // height, baseline, top
    EXPECT_EQ(std::count(pFont->m_pAtlas, pFont->m_pAtlas + 128 * 128, 0), 128 * 128);
    Add(*pFont, 55807);
    EXPECT_EQ(pFont->m_aDrawn.back().size(), 1u) << "one less is drawn";
}

TEST(FontGrid, GlyphWithoutInkGetsANegativeHeightAndACell) {
    auto pFont = ReadyFont(4, 32);
    EXPECT_EQ(Add(*pFont, 0xA0), (stCell{0, 0, 1})); // no-break space
    EXPECT_EQ(pFont->m_fnRecord(0xA0).m_fHScale, -29.0f / 16.0f);
    EXPECT_GT(pFont->m_fnRecord(0xA0).m_fWScale, 1.0f / 16.0f) << "it has an advance";
}

TEST(FontGrid, RemovedGlyphLeavesAHoleThatTheNextOneTakes) {
    auto pFont = ReadyFont(4, 32);
    g_fnFontAddText(pFont.get(), u"abcd");
    const std::vector<u8> atlas(pFont->m_pAtlas, pFont->m_pAtlas + 128 * 128);
    EXPECT_TRUE(g_fnFontRemoveChar(pFont.get(), 'b'));
    EXPECT_FALSE(g_fnFontRemoveChar(pFont.get(), 'b'));
    EXPECT_EQ(pFont->m_fnFindChar('b'), -1);
    EXPECT_EQ(pFont->m_pChars[1].m_u32_Char_UTF32_LE, 0u);
    EXPECT_TRUE(std::equal(atlas.begin(), atlas.end(), pFont->m_pAtlas)) << "the pixels stay";
    EXPECT_EQ(Add(*pFont, 'e'), (stCell{1, 0, 1}));
    EXPECT_EQ(Add(*pFont, 'f'), (stCell{0, 1, 1}));
}

TEST(FontSpaces, BlanksHaveTheirAdvanceBehindTheGridAndNoCode) {
    auto pFont = ReadyFont(4, 128, u"DejaVu Sans Mono"); // nominal size 64, advance 51
    EXPECT_EQ(pFont->m_fnFindChar(32), 16);
    EXPECT_EQ(pFont->m_fnFindChar(12288), 17);
    const stFontChar& st = pFont->m_fnRecord(32);
    EXPECT_EQ(st.m_u32_Char_UTF32_LE, 0u);
    EXPECT_EQ(st.m_fWScale, 51.0f / 64.0f);
    EXPECT_EQ(st.m_fHScale, 0.0f);
    EXPECT_EQ(st.m_fYOffset, 0.0f);
    EXPECT_EQ(st.m_fTexX, 0.0f);
    EXPECT_EQ(st.m_fTexY, 0.0f);
    EXPECT_EQ(pFont->m_fnRecord(12288).m_u32_Char_UTF32_LE, 0u);
    f32 w = 0, h = 7;
    pFont->m_fnGetCharSize(32, &w, &h);
    EXPECT_EQ(w, 51.0f / 64.0f);
    EXPECT_EQ(h, 0.0f);
}

TEST(FontSpaces, AddingABlankGivesLayer2) {
    auto pFont = ReadyFont(4, 32);
    EXPECT_EQ(Add(*pFont, 32), (stCell{0, 0, 2}));
    EXPECT_EQ(Add(*pFont, 12288), (stCell{1, 0, 2}));
    EXPECT_TRUE(g_fnFontAddChar(pFont.get(), 32));
    EXPECT_EQ(pFont->m_fnRecord(32).m_u32_Char_UTF32_LE, 0u);
}

TEST(FontSpaces, RemovedBlankTakesAnOrdinaryCell) {
    auto pFont = ReadyFont(4, 32);
    EXPECT_TRUE(g_fnFontRemoveChar(pFont.get(), 32));
    EXPECT_EQ(Add(*pFont, 32), (stCell{0, 0, 1}));
    EXPECT_EQ(pFont->m_pChars[0].m_u32_Char_UTF32_LE, 32u);
    EXPECT_GT(pFont->m_pChars[16].m_fWScale, 0.0f) << "the record behind the grid keeps its data";
}

/// Measures a glyph at the rasteriser itself. Nominal size 64, baseline 72.
struct FontRecord : testing::Test {
    void SetUp() override {
        m_pFont = ReadyFont(4, 128);
        ASSERT_NE(m_pFont, nullptr);
    }
    i32 Extent(char16_t wc) { return platform::GlyphExtent(m_pFont->m_hDC, m_pFont->m_hFont, &wc, 1); }
    /// Left, top, width, height of the ink.
    std::array<i32, 4> Ink(u32 uCode) {
        std::array<i32, 4> ai{};
        m_pFont->m_fnDrawCharMain(uCode);
        m_pFont->m_fnInkBox(&ai[0], &ai[1], &ai[2], &ai[3]);
        return ai;
    }
    std::unique_ptr<CTestFont> m_pFont;
};

TEST_F(FontRecord, SizesAreAdvanceAndInkHeightAndAPixelMore) {
    for (const char16_t wc : std::u16string(u"AgjW0.")) {
        const auto ink = Ink(wc);
        Add(*m_pFont, wc);
        const stFontChar& st = m_pFont->m_fnRecord(wc);
        EXPECT_EQ(st.m_fWScale, static_cast<f32>(Extent(wc) + 1) / 64.0f);
        EXPECT_EQ(st.m_fHScale, static_cast<f32>(ink[3] + 1) / 64.0f);
        EXPECT_EQ(st.m_fYOffset, static_cast<f32>(ink[3] - 72 + ink[1]) / 64.0f);
    }
    EXPECT_EQ(m_pFont->m_fnRecord('A').m_fYOffset, 0.0f) << "stands on the baseline";
    EXPECT_GT(m_pFont->m_fnRecord('g').m_fYOffset, 0.0f);
}

TEST_F(FontRecord, PixelsStandInTheirCellAtTheTopLeft) {
    Add(*m_pFont, 'x');
    Add(*m_pFont, 'T');
    const auto ink = Ink('T');
    const std::vector<u8> canvas(m_pFont->m_pCanvas, m_pFont->m_pCanvas + 128 * 128);
    for (i32 y = 0; y < 128; ++y)
        for (i32 x = 0; x < 128; ++x) {
            const bool bGlyph = y < ink[3] && x < Extent('T');
            const u8 uWanted = bGlyph ? canvas[static_cast<u32>((y + ink[1]) * 128 + x)] : u8{0};
            ASSERT_EQ(m_pFont->m_pAtlas[y * 512 + 128 + x], uWanted) << x << " " << y;
        }
}

TEST_F(FontRecord, OverhangIsCutOnBothSides) {
    // Ink everywhere: only advance columns from the left edge are kept.
    m_pFont->m_fnPaint = [this] { m_pFont->m_fnInk(0, 10, 128, 20); };
    Add(*m_pFont, 'A');
    i32 iInked = 0;
    for (i32 x = 0; x < 128; ++x) iInked += m_pFont->m_pAtlas[x] != 0;
    EXPECT_EQ(iInked, Extent('A'));
    EXPECT_LT(iInked, 128);
    // A letter that begins left of its origin loses that part.
    m_pFont->m_fnPaint = nullptr;
    EXPECT_EQ(Ink('j')[0], 0);
    EXPECT_EQ(m_pFont->m_fnRecord('A').m_fHScale, 21.0f / 64.0f);
}

TEST_F(FontRecord, InfoGivesTheCornersOfTheGlyphInTheAtlas) {
    f32 x, y, z, xr, yb, yoff, w, h;
    Add(*m_pFont, 'x');
    Add(*m_pFont, 'y');
    ASSERT_TRUE(m_pFont->m_fnGetCharInfo('y', &x, &y, &z, &xr, &yb, &yoff, &w, &h));
    const stFontChar& st = m_pFont->m_fnRecord('y');
    EXPECT_EQ(x, 0.25f);
    EXPECT_EQ(y, 0.0f);
    EXPECT_EQ(z, 0.0f);
    EXPECT_EQ(w, st.m_fWScale);
    EXPECT_EQ(h, st.m_fHScale);
    EXPECT_EQ(yoff, st.m_fYOffset);
    // In pixels of the 512 wide atlas: half of (w + 1) / 64 of a 128 pixel cell, and a texel.
    EXPECT_FLOAT_EQ(xr * 512.0f, 128.0f + static_cast<f32>(Extent('y') + 1) + 1.0f);
    EXPECT_FLOAT_EQ(yb * 512.0f, h * 64.0f + 1.0f);
}

TEST_F(FontRecord, InfoOfAnUnknownCodeAddsIt) {
    f32 w = 0;
    EXPECT_TRUE(
        m_pFont->m_fnGetCharInfo('Q', nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &w, nullptr));
    EXPECT_EQ(m_pFont->m_fnFindChar('Q'), 0);
    EXPECT_EQ(m_pFont->m_uUploads, 1u) << "a glyph in the middle of a frame goes to the GPU at once";
    EXPECT_EQ(w, static_cast<f32>(Extent('Q') + 1) / 64.0f);
    EXPECT_FALSE(
        m_pFont->m_fnGetCharInfo(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &w, nullptr));
    EXPECT_EQ(m_pFont->m_mapCharIndex.size(), 3u);
}

TEST_F(FontRecord, SizeOfAnAbsentCodeIsThatOfItsInkAndAddsNothing) {
    f32 w = 0, h = 0;
    const auto ink = Ink('i');
    m_pFont->m_fnGetCharSize('i', &w, &h);
    EXPECT_EQ(w, static_cast<f32>(ink[2]) / 64.0f);
    EXPECT_EQ(h, static_cast<f32>(ink[3]) / 64.0f);
    EXPECT_EQ(m_pFont->m_fnFindChar('i'), -1);
    Add(*m_pFont, 'i');
    m_pFont->m_fnGetCharSize('i', &w, &h);
    EXPECT_EQ(w, static_cast<f32>(Extent('i') + 1) / 64.0f);
    EXPECT_EQ(h, static_cast<f32>(ink[3] + 1) / 64.0f);
    m_pFont->m_fnGetCharSize('i', nullptr, nullptr);
}

TEST_F(FontRecord, RasterisingACodeWithoutARecordWritesNone) {
    std::vector<stFontChar> aBefore(m_pFont->m_pChars, m_pFont->m_pChars + 18);
    m_pFont->m_fnRasterizeChar('R');
    EXPECT_EQ(std::memcmp(aBefore.data(), m_pFont->m_pChars, 18 * sizeof(stFontChar)), 0);
    EXPECT_GT(std::count(m_pFont->m_pCharBuff, m_pFont->m_pCharBuff + 128 * 128, 255), 500);
}

TEST(FontCell, CellsThatDoNotDivideTheAtlasDriftFromTheirCoordinates) {
    auto pFont = NewFont(3, 16);
    pFont->m_fnSetTexSize(50, 50); // cells of 16, 2 columns over
    ASSERT_TRUE(pFont->m_fnInitialize(false));
    pFont->m_fnPaint = [&] { pFont->m_fnInk(0, 0, 1, 1); };
    Add(*pFont, 'a'), Add(*pFont, 'b'), Add(*pFont, 'c');
    EXPECT_EQ(pFont->m_pAtlas[32], 255);
    EXPECT_EQ(pFont->m_fnRecord('c').m_fTexX, 2.0f / 3.0f); // pixel 33.3
}

TEST(FontCell, PlacesOutsideTheGridAreRefused) {
    auto pFont = ReadyFont(2, 16);
    const auto put = [&](f32 x, f32 y) {
        f32 z = 1.0f;
        return pFont->m_fnPutCharBuffInCell('A', &x, &y, &z);
    };
    EXPECT_TRUE(put(1, 1));
    EXPECT_FALSE(put(2, 0));
    EXPECT_FALSE(put(0, 2));
    EXPECT_FALSE(put(-1, 0));
    EXPECT_FALSE(put(0, -1));
    EXPECT_FALSE(put(1e30f, 0));
}

TEST(FontCell, GridOfUnequalSidesStaysInsideItsBuffers) {
    CTestFont font;
    font.m_fnSetLayout(4, 2, 0); // 32 pixels a cell by the columns, 64 by the rows
    font.m_fnSetTexSize(128, 128);
    ASSERT_TRUE(font.m_fnInitialize(false));
    for (u32 uCode = 'a'; uCode < 'a' + 8; ++uCode) ASSERT_TRUE(g_fnFontAddChar(&font, uCode));
    EXPECT_FALSE(g_fnFontAddChar(&font, 'z'));
    EXPECT_EQ(Add(font, 'e'), (stCell{0, 1, 1}));
    EXPECT_NE(std::count(font.m_pAtlas + 64 * 128, font.m_pAtlas + 96 * 128, 0), 32 * 128)
        << "row 1 is at 64";
}

TEST(FontBatch, Code0IsTrueAndStoresNothing) {
    auto pFont = ReadyFont(2, 16);
    EXPECT_TRUE(g_fnFontAddChar(pFont.get(), 0));
    EXPECT_EQ(pFont->m_fnFindChar(0), -1);
    EXPECT_EQ(pFont->m_mapCharIndex.size(), 2u);
}

TEST(FontBatch, WholeTextCostsOneUpload) {
    auto pFont = ReadyFont(4, 16);
    g_fnFontAddText(pFont.get(), u"hello world");
    EXPECT_EQ(pFont->m_uUploads, 1u);
    EXPECT_FALSE(pFont->m_bDirty);
    EXPECT_TRUE(pFont->m_bAutoUpload);
    g_fnFontAddText(pFont.get(), u"hello");
    EXPECT_EQ(pFont->m_uUploads, 1u) << "nothing new";
    g_fnFontAddChar(pFont.get(), 'Q');
    EXPECT_EQ(pFont->m_uUploads, 2u);
    EXPECT_FALSE(pFont->m_bDirty);
    g_fnFontAddCodes(pFont.get(), U"xyz");
    EXPECT_EQ(pFont->m_uUploads, 3u);
    g_fnFontAddText(pFont.get(), u"");
    g_fnFontAddText(pFont.get(), nullptr);
    EXPECT_EQ(pFont->m_uUploads, 3u);
}

TEST(FontBatch, BatchTurnsUploadsOnAgainWhateverTheyWere) {
    auto pFont = ReadyFont(4, 16);
    pFont->m_bAutoUpload = false;
    g_fnFontAddChar(pFont.get(), 'a');
    EXPECT_TRUE(pFont->m_bDirty);
    g_fnFontAddText(pFont.get(), u"a");
    EXPECT_TRUE(pFont->m_bAutoUpload);
    EXPECT_EQ(pFont->m_uUploads, 1u) << "what was waiting goes too";
    EXPECT_FALSE(pFont->m_bDirty);
}

TEST(FontBatch, BlanksAndControlCodesAreSkipped) {
    auto pFont = ReadyFont(4, 16);
    g_fnFontRemoveChar(pFont.get(), 32);
    g_fnFontRemoveChar(pFont.get(), 12288);
    g_fnFontAddCodes(pFont.get(), std::u32string{0, 9, 10, 13, 32, 12288, 11, 'a'});
    EXPECT_EQ(pFont->m_mapCharIndex, (std::map<u32, u32>{{11, 0}, {'a', 1}}));
}

TEST(FontBatch, TextsGoInTheirOrderAndSetsInAscendingOrder) {
    auto pFont = ReadyFont(4, 16);
    g_fnFontAddText(pFont.get(), u"zya");
    EXPECT_EQ(pFont->m_fnFindChar('z'), 0);
    EXPECT_EQ(pFont->m_fnFindChar('a'), 2);
    g_fnFontAddSet(pFont.get(), {'q', 'b', 0x1F600});
    EXPECT_EQ(pFont->m_fnFindChar('b'), 3);
    EXPECT_EQ(pFont->m_fnFindChar('q'), 4);
    EXPECT_EQ(pFont->m_fnFindChar(0x1F600), 5);
}

TEST(FontBatch, SurrogatePairsOfATextAreOneCode) {
    auto pFont = ReadyFont(4, 16);
    g_fnFontAddText(pFont.get(), u"\xD83D\xDE00z\xDE00\xD83D");
    EXPECT_EQ(pFont->m_fnFindChar(0x1F600), 0);
    EXPECT_EQ(pFont->m_fnFindChar('z'), 1);
    EXPECT_EQ(pFont->m_fnFindChar(0xDE00), 2) << "alone, a code of its own";
    EXPECT_EQ(pFont->m_fnFindChar(0xD83D), 3);
}

TEST(FontBatch, FullAtlasTakesWhatFits) {
    auto pFont = ReadyFont(2, 16);
    g_fnFontAddText(pFont.get(), u"abcdef");
    EXPECT_EQ(pFont->m_fnFindChar('d'), 3);
    EXPECT_EQ(pFont->m_fnFindChar('e'), -1);
    EXPECT_EQ(pFont->m_uUploads, 1u);
}

TEST(FontWeights, BoldIsAnotherFace) {
    const auto ink = [](i32 iWeight) {
        auto pFont = NewFont(1, 128);
        pFont->m_fnSetFontWeight(iWeight);
        pFont->m_fnInitialize(false);
        pFont->m_fnDrawCharMain('H');
        return std::count(pFont->m_pCanvas, pFont->m_pCanvas + 128 * 128, 255);
    };
    EXPECT_GT(ink(700), ink(400) * 5 / 4);
    EXPECT_EQ(ink(0), ink(400)) << "0 stands for the regular weight";
}

TEST(FontFaces, SizesFrom8To96GiveGlyphsOfTheirSize) {
    for (const u32 uSize : {8u, 16u, 24u, 48u, 96u}) {
        auto pFont = ReadyFont(2, uSize * 2);
        f32 w = 0, h = 0;
        pFont->m_fnGetCharSize('H', &w, &h);
        EXPECT_NEAR(h * static_cast<f32>(uSize), static_cast<f32>(uSize) * 0.972f, 1.0f)
            << uSize; // 4/3 * 0.729
    }
}

/// Codes that come out as the box for a missing glyph.
static std::vector<u32> Missing(const char16_t* wzFace, const std::vector<u32>& aCodes) {
    auto pFont = ReadyFont(1, 64, wzFace);
    const auto picture = [&](u32 uCode) {
        pFont->m_fnDrawCharMain(uCode);
        return std::vector<u8>(pFont->m_pCanvas, pFont->m_pCanvas + 64 * 64);
    };
    const auto box = picture(0xE123); // private use
    std::vector<u32> aMissing;
    std::copy_if(aCodes.begin(), aCodes.end(), std::back_inserter(aMissing),
                 [&](u32 uCode) { return picture(uCode) == box; });
    return aMissing;
}

TEST(FontFaces, LettersOfManyScriptsAreDrawn) {
    EXPECT_EQ(Missing(u"DejaVu Sans", {'A', 0xE9, 0x416, 0x3A9}), std::vector<u32>());
    EXPECT_EQ(Missing(u"WenQuanYi Micro Hei", {'A', 0x4E2D, 0x3042}), std::vector<u32>());
    EXPECT_EQ(Missing(u"DejaVu Sans", {0xE124}), std::vector<u32>{0xE124});
}

TEST(FontGlyphs, ABatchGivesBackWhatOnlyDrawingNeedsAndTheNextDrawsAsWell) {
    const auto pWhole = ReadyFont(4, 128), pPieces = ReadyFont(4, 128);
    ASSERT_TRUE(pWhole && pPieces);
    g_fnFontAddText(pWhole.get(), u"AgQ|");
    for (const char16_t* wzText : {u"A", u"g", u"Q|"}) g_fnFontAddText(pPieces.get(), wzText);
    pPieces->m_fnRest();
    EXPECT_EQ(std::memcmp(pWhole->m_pAtlas, pPieces->m_pAtlas, 512 * 512), 0);
    EXPECT_EQ(std::memcmp(pWhole->m_pChars, pPieces->m_pChars, 18 * sizeof(stFontChar)), 0);
    EXPECT_EQ(pWhole->m_uAtlasRows, pPieces->m_uAtlasRows);
}

TEST(FontGlyphs, APackedAtlasIsAwayUntilALaterGlyphAndThenWhole) {
    const auto pWhole = ReadyFont(8, 1024), pPieces = ReadyFont(8, 1024);
    ASSERT_TRUE(pWhole && pPieces);
    constexpr std::size_t uBytes = 1024 * 1024;
    g_fnFontAddText(pWhole.get(), u"AgQ|");
    for (const char16_t* wzText : {u"A", u"g", u"Q|"}) {
        g_fnFontAddText(pPieces.get(), wzText);
        pPieces->m_fnPackAtlas();
        EXPECT_EQ(pPieces->m_pAtlas, nullptr);
        pPieces->m_fnPackAtlas(); // twice changes nothing
    }
    const u32 uRows = pPieces->m_uAtlasRows;
    EXPECT_EQ(std::memcmp(pWhole->m_pAtlas, pPieces->m_fnTakeAtlas(), uBytes), 0);
    EXPECT_EQ(uRows, pWhole->m_uAtlasRows);
    pPieces->m_fnPackAtlas();
    pPieces->m_fnRelease();
    EXPECT_EQ(pPieces->m_fnTakeAtlas(), nullptr);
}
