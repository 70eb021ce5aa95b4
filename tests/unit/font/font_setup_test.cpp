#include "test_font.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(FontSizes, Layout32On4096GivesCell128Size64Descent8Baseline72) {
    CTestFont font;
    font.m_fnSetLayout(32, 32, 0);
    font.m_fnSetTexSize(4096, 4096);
    EXPECT_EQ(font.m_uNum_Characters, 1024u);
    EXPECT_EQ(font.m_iCharBuffW, 128);
    EXPECT_EQ(font.m_iCharBuffH, 128);
    EXPECT_EQ(font.m_iCanvasW, 128);
    EXPECT_EQ(font.m_iCanvasH, 128);
    EXPECT_EQ(font.m_fCellW, 128.0f);
    EXPECT_EQ(font.m_fCellH, 128.0f);
    EXPECT_EQ(font.m_uFontSize, 64u);
    EXPECT_EQ(font.m_uDescent, 8u);
    EXPECT_EQ(font.iGDI_DrawRefY, 72);
    EXPECT_EQ(font.m_fInvTexW, 1.0f / 4096.0f);
}

TEST(FontSizes, DivisionsAreThoseOfIntegers) {
    CTestFont font; // 8 by 8
    font.m_fnSetTexSize(255, 127);
    EXPECT_EQ(font.m_iCharBuffW, 31);
    EXPECT_EQ(font.m_iCharBuffH, 15);
    EXPECT_EQ(font.m_uFontSize, 15u);
    EXPECT_EQ(font.m_uDescent, 1u);
    EXPECT_EQ(font.iGDI_DrawRefY, 16);
}

TEST(FontSizes, CellHeightAndTexYDivideByTheColumns) {
    CTestFont font;
    font.m_fnSetLayout(4, 2, 0);
    font.m_fnSetTexSize(128, 128);
    EXPECT_EQ(font.m_iCharBuffH, 32);
    ASSERT_TRUE(font.m_fnInitialize(false));
    for (u32 uCode = 'a'; uCode < 'f'; ++uCode) ASSERT_TRUE(g_fnFontAddChar(&font, uCode));
    EXPECT_EQ(font.m_fnRecord('e').m_fTexX, 0.0f);
    EXPECT_EQ(font.m_fnRecord('e').m_fTexY, 0.25f); // the second of two rows
}

TEST(FontSizes, FreshFontHasItsDefaults) {
    CFontUniCode font;
    EXPECT_EQ(font.m_uLayoutW, 8u);
    EXPECT_EQ(font.m_uLayoutH, 8u);
    EXPECT_EQ(font.m_uLayoutD, 0u);
    EXPECT_EQ(font.m_uNum_Characters, 64u);
    EXPECT_EQ(font.m_uTexW, 128u);
    EXPECT_EQ(font.m_uTexH, 128u);
    EXPECT_EQ(font.m_fnGetScale(), 1.0f);
    EXPECT_EQ(font.m_iFontWeight, 400);
    EXPECT_EQ(font.m_u8Threshold, 4);
    EXPECT_TRUE(font.m_bAutoUpload);
    EXPECT_FALSE(font.m_bDirty);
    EXPECT_FALSE(font.m_bFromFile);
}

TEST(FontSizes, SizesAreGivenBack) {
    CTestFont font;
    font.m_fnSetTexSize(256, 128);
    u32 uW = 0, uH = 0;
    f32 x = 0, y = 0;
    font.m_fnGetTexSize(&uW, &uH);
    font.m_fnGetInvTexSize(&x, &y);
    EXPECT_EQ(uW, 256u);
    EXPECT_EQ(uH, 128u);
    EXPECT_EQ(x, 1.0f / 256.0f);
    EXPECT_EQ(y, 1.0f / 128.0f);
    font.m_fnGetTexSize(nullptr, nullptr);
    font.m_fnGetInvTexSize(nullptr, nullptr);
}

TEST(FontSetters, WeightIsHeldTo0To1000) {
    CTestFont font;
    font.m_fnSetFontWeight(2000);
    EXPECT_EQ(font.m_iFontWeight, 1000);
    font.m_fnSetFontWeight(-5);
    EXPECT_EQ(font.m_iFontWeight, 0);
    font.m_fnSetFontWeight(700);
    EXPECT_EQ(font.m_iFontWeight, 700);
}

TEST(FontSetters, ScaleNotAbove0IsIgnored) {
    CTestFont font;
    font.m_fnSetScale(1.5f);
    font.m_fnSetScale(0.0f);
    font.m_fnSetScale(-2.0f);
    font.m_fnSetScale(std::nanf(""));
    EXPECT_EQ(font.m_fnGetScale(), 1.5f);
}

TEST(FontSetters, NameIsCopied) {
    CTestFont font;
    font.m_fnSetFontName(u"DejaVu Sans Mono");
    std::u16string name;
    font.m_fnGetFontName(&name);
    EXPECT_EQ(name, u"DejaVu Sans Mono");
    font.m_fnSetFontName(nullptr);
    font.m_fnGetFontName(&name);
    EXPECT_EQ(name, u"");
}

struct FontScales : testing::Test {
    void TearDown() override { g_mapFontScalePercent.clear(); }
    f32 ScaleFor(i32 iPercent) {
        g_mapFontScalePercent[u"DejaVu Sans"] = iPercent;
        return ReadyFont(2, 16)->m_fnGetScale();
    }
};

TEST_F(FontScales, ScaleInTheMapIsHeldTo25To400Percent) {
    EXPECT_EQ(ScaleFor(10), 0.25f);
    EXPECT_EQ(ScaleFor(25), 0.25f);
    EXPECT_EQ(ScaleFor(120), 1.2f);
    EXPECT_EQ(ScaleFor(400), 4.0f);
    EXPECT_EQ(ScaleFor(500), 4.0f);
    EXPECT_EQ(ScaleFor(-300), 0.25f);
}

TEST_F(FontScales, OnlyTheExactNameCounts) {
    g_mapFontScalePercent[u"dejavu sans"] = 200;
    EXPECT_EQ(ReadyFont(2, 16)->m_fnGetScale(), 1.0f);
}

TEST(FontBuffers, NothingIsMadeWithoutUsableSizes) {
    EXPECT_FALSE(CTestFont().m_fnInitialize(false)) << "no size at all";
    const auto initialize = [](u32 uLayoutW, u32 uLayoutH, u32 uTexW, u32 uTexH) {
        CTestFont font;
        font.m_fnSetLayout(uLayoutW, uLayoutH, 0);
        font.m_fnSetTexSize(uTexW, uTexH);
        return font.m_fnInitialize(false);
    };
    EXPECT_FALSE(initialize(0, 0, 128, 128));
    EXPECT_FALSE(initialize(8, 0, 128, 128));
    EXPECT_FALSE(initialize(0, 8, 128, 128));
    EXPECT_FALSE(initialize(8, 8, 0, 0));
    EXPECT_FALSE(initialize(8, 8, 8, 8)) << "a cell of one pixel has no nominal size";
    EXPECT_FALSE(initialize(8, 8, 128, 7));
    EXPECT_FALSE(initialize(1, 1, 0xFFFFFFFF, 0xFFFFFFFF));
    EXPECT_FALSE(initialize(65536, 65536, 131072, 131072));
    EXPECT_FALSE(initialize(0x80000001, 2, 0x80000001, 0x80000001));
    EXPECT_TRUE(initialize(8, 8, 16, 16));
}

TEST(FontBuffers, LayoutWithoutItsSizeIsRefused) {
    CTestFont font;
    font.m_fnSetTexSize(128, 128);
    font.m_fnSetLayout(2, 2, 0); // its cells would be 64, the buffers are for 16
    EXPECT_FALSE(font.m_fnInitialize(false));
}

TEST(FontBuffers, NoOperationNeedsInitialisation) {
    CTestFont font;
    f32 x = 0, y = 0, z = 0, w = 7;
    font.m_fnAddChar('A', &x, &y, &z);
    EXPECT_EQ(x, -1.0f);
    EXPECT_EQ(y, -1.0f);
    EXPECT_EQ(z, -1.0f);
    EXPECT_FALSE(g_fnFontAddChar(&font, 'A'));
    EXPECT_FALSE(g_fnFontRemoveChar(&font, 'A'));
    EXPECT_FALSE(font.m_fnGetCharInfo('A', &x, &y, &z, &x, &y, &z, &w, &w));
    EXPECT_FALSE(font.m_fnPutCharBuffInCell('A', &w, &w, &w));
    i32 i = 0;
    font.m_fnMeasureChar('A', &i, &i);
    font.m_fnMeasureSpace(&w);
    font.m_fnRasterizeChar('A');
    font.m_fnDrawCharRaw('A', nullptr);
    font.m_fnAddSpaces();
    font.m_fnBindTexture(0);
    EXPECT_FALSE(font.m_fnExportAtlas(nullptr));
    g_fnFontAddText(&font, u"AB");
    EXPECT_EQ(font.m_uUploads, 0u);
}

TEST(FontLife, ReleaseFreesEverything) {
    auto pFont = ReadyFont(4, 32);
    ASSERT_NE(pFont, nullptr);
    g_fnFontAddText(pFont.get(), u"AB");
    pFont->m_fnRelease();
    EXPECT_TRUE(pFont->m_mapCharIndex.empty());
    EXPECT_EQ(pFont->m_pChars, nullptr);
    EXPECT_EQ(pFont->m_pAtlas, nullptr);
    EXPECT_EQ(pFont->m_pCanvas, nullptr);
    EXPECT_EQ(pFont->m_pCharBuff, nullptr);
    EXPECT_EQ(pFont->m_pDib, nullptr);
    EXPECT_EQ(pFont->m_hDC, nullptr);
    EXPECT_EQ(pFont->m_hBitmap, nullptr);
    EXPECT_EQ(pFont->m_hFont, nullptr);
    EXPECT_EQ(pFont->m_hFontCalib, nullptr);
    ASSERT_TRUE(pFont->m_fnInitialize(false)) << "and it can be made anew";
    EXPECT_TRUE(g_fnFontAddChar(pFont.get(), 'A'));
}

TEST(FontLife, InitialisingAgainMakesOnlyWhatIsMissing) {
    auto pFont = ReadyFont(4, 32);
    g_fnFontAddText(pFont.get(), u"AB");
    const u8* const pAtlas = pFont->m_pAtlas;
    const stFontChar* const pChars = pFont->m_pChars;
    ASSERT_TRUE(pFont->m_fnInitialize(false));
    EXPECT_EQ(pFont->m_pAtlas, pAtlas);
    EXPECT_EQ(pFont->m_pChars, pChars);
    EXPECT_EQ(pFont->m_fnFindChar('B'), 1);
}

TEST(FontLife, AnotherSizeDropsTheGlyphsAndBuffersOfTheOldOne) {
    auto pFont = ReadyFont(2, 16);
    g_fnFontAddText(pFont.get(), u"ABCD");
    pFont->m_fnSetLayout(4, 4, 0);
    pFont->m_fnSetTexSize(128, 128);
    EXPECT_EQ(pFont->m_fnFindChar('A'), -1);
    EXPECT_EQ(pFont->m_pAtlas, nullptr);
    ASSERT_TRUE(pFont->m_fnInitialize(false));
    g_fnFontAddText(pFont.get(), u"ABCDEFGHIJKLMNOP");
    EXPECT_EQ(pFont->m_fnFindChar('P'), 15);
}

TEST(FontLife, SameSizeKeepsTheGlyphs) {
    auto pFont = ReadyFont(2, 16);
    g_fnFontAddText(pFont.get(), u"AB");
    pFont->m_fnSetLayout(2, 2, 0);
    pFont->m_fnSetTexSize(32, 32);
    EXPECT_EQ(pFont->m_fnFindChar('B'), 1);
    EXPECT_NE(pFont->m_pAtlas, nullptr);
}

TEST(FontLife, FromAFileOnlyTheFontsAreMade) {
    auto pFont = NewFont(2, 32);
    pFont->m_uCalibSize = 20;
    ASSERT_TRUE(pFont->m_fnInitialize(true));
    EXPECT_TRUE(pFont->m_bFromFile);
    EXPECT_NE(pFont->m_hFont, nullptr);
    EXPECT_NE(pFont->m_hFontCalib, nullptr);
    EXPECT_TRUE(pFont->m_mapCharIndex.empty());
    EXPECT_TRUE(pFont->m_aDrawn.empty());
    ASSERT_TRUE(pFont->m_fnInitialize(false));
    EXPECT_FALSE(pFont->m_bFromFile);
}

/// Refuses fonts, or textures.
class CRefusingFont : public CTestFont {
  public:
    bool m_fnCreateGdiFont(platform::GlyphFont** ppFont, u32 uSize, const char16_t* wzName) override {
        m_aNames.push_back(wzName ? wzName : u"(null)");
        m_aSizes.push_back(uSize);
        return !m_bRefuseFonts && CTestFont::m_fnCreateGdiFont(ppFont, uSize, wzName);
    }
    bool m_fnCreateTexture() override { return !m_bRefuseTexture; }
    bool m_bRefuseFonts = false, m_bRefuseTexture = false;
    std::vector<std::u16string> m_aNames;
    std::vector<u32> m_aSizes;
};

static void GiveSizes(CRefusingFont& font) {
    font.m_fnSetLayout(2, 2, 0);
    font.m_fnSetTexSize(64, 64);
    font.m_fnSetFontName(u"Face");
    font.m_uCalibSize = 20;
}

TEST(FontLife, UnknownFaceIsTriedAgainWithTheNullName) {
    CRefusingFont font;
    GiveSizes(font);
    font.m_bRefuseFonts = true;
    EXPECT_TRUE(font.m_fnInitialize(false)) << "the texture decides";
    ASSERT_GE(font.m_aNames.size(), 2u);
    EXPECT_EQ(font.m_aNames[0], u"Face");
    EXPECT_EQ(font.m_aNames[1], u"(null)");
    EXPECT_EQ(font.m_aSizes[1], 16u);
    EXPECT_TRUE(g_fnFontAddChar(&font, 'A')) << "a font that draws nothing still gives cells";
}

TEST(FontLife, ResultIsTheTexturesOrFromAFileTheCalibrationFonts) {
    CRefusingFont font;
    GiveSizes(font);
    font.m_bRefuseTexture = true;
    EXPECT_FALSE(font.m_fnInitialize(false));
    EXPECT_TRUE(font.m_fnInitialize(true));
    font.m_aSizes.clear();
    font.m_uCalibSize = 20;
    font.m_bRefuseFonts = true;
    font.m_bRefuseTexture = false;
    EXPECT_FALSE(font.m_fnInitialize(true));
    EXPECT_EQ(font.m_aSizes, (std::vector<u32>{16, 16, 20, 20}));
}
