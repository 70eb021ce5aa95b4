#include "test_font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

/// A font of one 16 pixel cell whose canvas is painted by hand. Nominal size 8, baseline at row 9.
struct FontCanvas : testing::Test {
    void SetUp() override {
        m_pFont = ReadyFont(1, 16);
        ASSERT_NE(m_pFont, nullptr);
        std::fill_n(m_pFont->m_pCanvas, 256, u8{0});
    }
    std::vector<i32> InkBox() {
        std::vector<i32> ai(4);
        m_pFont->m_fnInkBox(&ai[0], &ai[1], &ai[2], &ai[3]);
        return ai;
    }
    i32 InkGap() {
        i32 i = -7;
        m_pFont->m_fnInkGap(&i);
        return i;
    }
    u8 CharBuff(i32 x, i32 y) { return m_pFont->m_pCharBuff[y * 16 + x]; }
    i32 CharBuffInk() {
        return static_cast<i32>(256 - std::count(m_pFont->m_pCharBuff, m_pFont->m_pCharBuff + 256, 0));
    }
    std::unique_ptr<CTestFont> m_pFont;
};

TEST_F(FontCanvas, InkBoxIsTheSmallestAroundTheInk) {
    m_pFont->m_fnInk(3, 2, 1, 1);
    EXPECT_EQ(InkBox(), (std::vector<i32>{3, 2, 1, 1}));
    m_pFont->m_fnInk(10, 7, 2, 3);
    EXPECT_EQ(InkBox(), (std::vector<i32>{3, 2, 9, 8}));
    m_pFont->m_fnInk(0, 0, 16, 16);
    EXPECT_EQ(InkBox(), (std::vector<i32>{0, 0, 16, 16}));
}

TEST_F(FontCanvas, EmptyCanvasGivesTheLastPixelAndNegativeSizes) {
    EXPECT_EQ(InkBox(), (std::vector<i32>{15, 15, -14, -14}));
}

TEST_F(FontCanvas, OnlyPixelsAboveTheThresholdAreInk) {
    m_pFont->m_fnInk(3, 3, 2, 2, 4);
    EXPECT_EQ(InkBox()[2], -14);
    m_pFont->m_fnInk(3, 3, 2, 2, 5);
    EXPECT_EQ(InkBox()[2], 2);
}

TEST_F(FontCanvas, GapIsTheFirstBetweenTwoRuns) {
    m_pFont->m_fnInk(1, 4, 2, 5);
    EXPECT_EQ(InkGap(), 0) << "one run";
    m_pFont->m_fnInk(8, 0, 1, 1);
    m_pFont->m_fnInk(12, 0, 1, 1);
    EXPECT_EQ(InkGap(), 5);
}

TEST_F(FontCanvas, GapOfAnEmptyCanvasIs0) { EXPECT_EQ(InkGap(), 0); }

TEST_F(FontCanvas, BlankIsMeasuredBetweenTwoLetters) {
    m_pFont->m_fnPaint = [this] {
        m_pFont->m_fnInk(1, 2, 1, 7);
        m_pFont->m_fnInk(6, 2, 1, 7);
    };
    f32 f = 0;
    m_pFont->m_fnMeasureSpace(&f);
    EXPECT_EQ(m_pFont->m_aDrawn.back(), u"I I");
    EXPECT_EQ(f, 0.5f); // 4 of 8
}

TEST_F(FontCanvas, RegionGoesToTheTopLeft) {
    m_pFont->m_fnInk(0, 0, 16, 16, 9);
    m_pFont->m_fnInk(5, 6, 1, 1, 77);
    m_pFont->m_fnCanvasToCharBuff(5, 6, 3, 2);
    EXPECT_EQ(CharBuff(0, 0), 77);
    EXPECT_EQ(CharBuff(2, 1), 9);
    EXPECT_EQ(CharBuffInk(), 6);
    m_pFont->m_fnCanvasToCharBuff(0, 0, 1, 1);
    EXPECT_EQ(CharBuffInk(), 1) << "what was there is gone";
}

TEST_F(FontCanvas, RegionIsLimitedToTheCellFirst) {
    m_pFont->m_fnInk(0, 0, 16, 16);
    m_pFont->m_fnCanvasToCharBuff(0, 0, 500, 400);
    EXPECT_EQ(CharBuffInk(), 256);
}

TEST_F(FontCanvas, RegionOutsideTheCanvasLeavesTheBufferEmpty) {
    m_pFont->m_fnInk(0, 0, 16, 16);
    for (const auto& [x, y, w, h] : {std::array{1, 0, 16, 4},
                                     {0, 13, 4, 4},
                                     {16, 0, 1, 1},
                                     {0, 0, -3, 4},
                                     {0, 0, 4, 0},
                                     {2147483647, 2147483647, 4, 4}}) {
        m_pFont->m_fnCanvasToCharBuff(0, 0, 1, 1);
        m_pFont->m_fnCanvasToCharBuff(x, y, w, h);
        EXPECT_EQ(CharBuffInk(), 0) << x << " " << y << " " << w << " " << h;
    }
}

TEST_F(FontCanvas, NegativePlacesCountAs0) {
    m_pFont->m_fnInk(0, 0, 1, 1, 50);
    m_pFont->m_fnCanvasToCharBuff(-4, -9, 16, 16);
    EXPECT_EQ(CharBuff(0, 0), 50);
}

TEST_F(FontCanvas, CentredRegionStandsInTheMiddle) {
    m_pFont->m_fnInk(2, 3, 4, 2);
    m_pFont->m_fnCanvasToCharBuffCentred(2, 3, 4, 2);
    EXPECT_EQ(CharBuffInk(), 8);
    EXPECT_EQ(CharBuff(6, 7), 255);
    EXPECT_EQ(CharBuff(9, 8), 255);
    m_pFont->m_fnCanvasToCharBuffCentred(2, 3, 99, 2);
    EXPECT_EQ(CharBuffInk(), 0) << "too wide for its place";
}

TEST_F(FontCanvas, TextIsRaisedByHalfAndTheRawFormIsNot) {
    // Two levels come from the rasteriser; both forms give 255 for ink, only one of them clears.
    m_pFont->m_fnDrawCharMain('I');
    const i32 iWidth = InkBox()[2];
    EXPECT_GT(iWidth, 0);
    EXPECT_EQ(*std::max_element(m_pFont->m_pCanvas, m_pFont->m_pCanvas + 256), 255);
    m_pFont->m_fnDrawCharRaw('_', m_pFont->m_hFont);
    const auto both = InkBox();
    m_pFont->m_fnDrawCharMain('_');
    EXPECT_LT(InkBox()[3], both[3]) << "the letter under the line was still there";
}

TEST_F(FontCanvas, BaselineStandsUnderTheLetters) {
    auto pFont = ReadyFont(1, 128);
    pFont->m_fnDrawCharMain('H');
    i32 iLeft = 0, iTop = 0, iW = 0, iH = 0;
    pFont->m_fnInkBox(&iLeft, &iTop, &iW, &iH);
    EXPECT_EQ(iTop + iH, 72) << "the last row of ink is the one above the baseline";
    EXPECT_EQ(iH, 62) << "729 of 1000 parts of 85 pixels";
}

TEST_F(FontCanvas, SurrogatesAreDrawnAsOneTextAndTheOddRangeAsNone) {
    m_pFont->m_fnDrawCharMain(0x1F600);
    EXPECT_EQ(m_pFont->m_aDrawn.back(), (std::u16string{0xD83D, 0xDE00}));
    m_pFont->m_fnDrawCharMain(0x10FFFF);
    EXPECT_EQ(m_pFont->m_aDrawn.back(), (std::u16string{0xDBFF, 0xDFFF}));
    m_pFont->m_fnDrawCharMain(0x10000);
    EXPECT_EQ(m_pFont->m_aDrawn.back(), (std::u16string{0xD800, 0xDC00}));
    m_pFont->m_fnDrawCharMain(0xFFFF);
    EXPECT_EQ(m_pFont->m_aDrawn.back(), (std::u16string{0xFFFF}));
    m_pFont->m_fnDrawCharMain(55807);
    EXPECT_EQ(m_pFont->m_aDrawn.back(), (std::u16string{55807})) << "below the range without a text";
    for (const u32 uCode : {55808u, 56320u, 57343u, 0x110000u, 0xFFFFFFFFu}) {
        m_pFont->m_fnDrawCharMain(uCode);
        EXPECT_EQ(m_pFont->m_aDrawn.back(), u"") << uCode;
        EXPECT_EQ(InkBox()[2], -14) << uCode;
    }
}

/// The rasteriser's rows are padded to four bytes, the canvas takes triplets one after the other.
TEST(FontSlant, CellThatFourDoesNotDivideComesOutSlanted) {
    auto pFont = ReadyFont(1, 10); // rows of 30 bytes in 32
    pFont->m_fnDrawCharMain('|');
    std::vector<i32> aColumns;
    for (i32 y = 0; y < 10; ++y)
        for (i32 x = 0; x < 10; ++x)
            if (pFont->m_pDib[y * 32 + x * 3]) {
                // One of the pixel's three bytes is the first of a triplet.
                const i32 i = (y * 32 + x * 3 + 2) / 3;
                EXPECT_EQ(pFont->m_pCanvas[i], 255);
                aColumns.push_back(i % 10);
            }
    ASSERT_GE(aColumns.size(), 6u);
    EXPECT_NE(aColumns.front(), aColumns.back()) << "a straight bar leans";
}

/// Boxes that fill less and less; ratios by hand. Nominal size 8.
class CCalibratedFont : public CTestFont {
  public:
    bool m_fnCreateGdiFont(platform::GlyphFont** ppFont, u32 uSize, const char16_t* wzName) override {
        if (ppFont == &m_hFontCalib) m_aSizes.push_back(uSize), m_aNames.push_back(wzName);
        return CTestFont::m_fnCreateGdiFont(ppFont, uSize, wzName);
    }
    std::vector<u32> m_aSizes;
    std::vector<const char16_t*> m_aNames;
};

struct FontCalibration : testing::Test {
    void SetUp() override {
        m_font.m_fnSetLayout(1, 1, 0);
        m_font.m_fnSetTexSize(16, 16);
        ASSERT_TRUE(m_font.m_fnInitialize(false));
        m_font.m_aSizes.clear();
    }
    /// One box a round, the last for all further ones.
    void Calibrate(std::vector<std::array<i32, 2>> aBoxes) {
        u32 n = 0;
        m_font.m_fnPaint = [&] {
            const auto [w, h] = aBoxes[std::min<std::size_t>(n++, aBoxes.size() - 1)];
            m_font.m_fnInk(std::min(1, 16 - w), std::min(2, 16 - h), w, h);
        };
        m_font.m_fnCalibrate();
        m_font.m_fnPaint = nullptr;
    }
    CCalibratedFont m_font;
};

TEST_F(FontCalibration, BlockThatFitsEndsAtOnce) {
    Calibrate({{8, 8}});
    EXPECT_EQ(m_font.m_aSizes, (std::vector<u32>{8}));
    EXPECT_EQ(m_font.m_fCalibRatio, 1.0f);
    EXPECT_EQ(m_font.m_uCalibSize, 8u);
    EXPECT_NE(m_font.m_hFontCalib, nullptr);
    EXPECT_EQ(m_font.m_uBlockBox[0], 1u);
    EXPECT_EQ(m_font.m_uBlockBox[1], 2u);
    EXPECT_EQ(m_font.m_uBlockBox[2], 8u);
    EXPECT_EQ(m_font.m_uBlockBox[3], 8u);
    EXPECT_EQ(m_font.m_aDrawn.back(), (std::u16string{9608}));
}

TEST_F(FontCalibration, SizeIsDividedByTheHeightsRatioAndTheFirstIsKept) {
    Calibrate({{8, 12}, {6, 10}, {6, 8}});
    // 12 / 8 = 1.5: trunc(8 / 1.5) = 5; 10 / 8 = 1.25: trunc(5 / 1.25) = 4
    EXPECT_EQ(m_font.m_aSizes, (std::vector<u32>{8, 5, 4}));
    EXPECT_EQ(m_font.m_fCalibRatio, 1.5f);
    EXPECT_EQ(m_font.m_uCalibSize, 8u) << "keeps its first value";
    EXPECT_EQ(m_font.m_uBlockBox[3], 8u);
    EXPECT_EQ(m_font.m_aNames, (std::vector<const char16_t*>(m_font.m_aNames.size(), nullptr)));
}

TEST_F(FontCalibration, FiveRoundsAreTheEndAndLeaveNoFont) {
    Calibrate({{8, 16}});
    EXPECT_EQ(m_font.m_aSizes, (std::vector<u32>{8, 4, 2, 1, 0}));
    EXPECT_EQ(m_font.m_hFontCalib, nullptr);
    EXPECT_EQ(m_font.m_fCalibRatio, 2.0f);
}

TEST_F(FontCalibration, WidthAloneGoesOnToo) {
    Calibrate({{12, 4}, {8, 8}});
    EXPECT_EQ(m_font.m_aSizes, (std::vector<u32>{8, 16}));
    EXPECT_EQ(m_font.m_fCalibRatio, 0.5f);
}

TEST_F(FontCalibration, BlockWithoutInkEndsAtOnceAndStoresSignedBits) {
    Calibrate({{0, 0}});
    EXPECT_EQ(m_font.m_aSizes.size(), 1u);
    EXPECT_EQ(m_font.m_uBlockBox[0], 15u);
    EXPECT_EQ(static_cast<i32>(m_font.m_uBlockBox[2]), -14);
}

TEST_F(FontCalibration, OnlyFeedsFiles) {
    g_fnFontAddChar(&m_font, 'A');
    EXPECT_EQ(m_font.m_aDrawnWith.back(), m_font.m_hFont);
    EXPECT_EQ(m_font.m_uFontSize, 8u);
}

TEST_F(FontCalibration, DescentIsAnEighthWhateverWasDrawn) {
    m_font.m_uDescent = 99;
    m_font.m_fnPaint = [this] { m_font.m_fnInk(0, 0, 3, 16); };
    m_font.m_fnMeasureDescent();
    EXPECT_EQ(m_font.m_aDrawn.back(), u"A");
    EXPECT_EQ(m_font.m_uDescent, 1u);
}
