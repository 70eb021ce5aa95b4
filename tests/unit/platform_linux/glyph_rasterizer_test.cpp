// The rasteriser over FreeType and fontconfig.
#include "platform/glyph_rasterizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace platform;

/// A bitmap of 128 by 100 with the baseline at row 72, and fonts for it.
class Glyphs : public ::testing::Test {
  protected:
    void SetUp() override {
        m_pDevice = CreateGlyphDevice();
        m_pBitmap = CreateGlyphBitmap(m_pDevice, 128, 100);
        ASSERT_NE(m_pBitmap, nullptr);
    }
    void TearDown() override {
        DestroyGlyphDevice(m_pDevice);
        DestroyGlyphBitmap(m_pBitmap);
        for (GlyphFont* const p : m_aFonts) DestroyGlyphFont(p);
    }
    GlyphFont* Font(const char16_t* wzFace, i32 iEm = 43, i32 iWeight = 400) {
        m_aFonts.push_back(CreateGlyphFont(m_pDevice, {32, iEm, iWeight, wzFace}));
        return m_aFonts.back();
    }
    i32 Extent(GlyphFont* pFont, const std::u16string& text) {
        return GlyphExtent(m_pDevice, pFont, text.c_str(), static_cast<u32>(text.size()));
    }
    bool Has(GlyphFont* pFont, const std::u16string& text) {
        return FontHasGlyph(m_pDevice, pFont, text.c_str(), static_cast<u32>(text.size()));
    }
    /// One byte a pixel of the cleared bitmap with a text drawn into it.
    std::vector<u8> Picture(GlyphFont* pFont, const std::u16string& text, i32 iBaseline = 72) {
        ClearGlyphBitmap(m_pDevice);
        DrawGlyphs(m_pDevice, pFont, text.c_str(), static_cast<u32>(text.size()), iBaseline);
        std::vector<u8> rows(128 * 3 * 100), pixels;
        ReadGlyphBitmap(m_pDevice, 128, 100, rows.data());
        for (u32 i = 0; i < rows.size(); i += 3) pixels.push_back(rows[i]);
        return pixels;
    }
    static i64 Ink(const std::vector<u8>& pixels) { return std::count(pixels.begin(), pixels.end(), 255); }

    GlyphDevice* m_pDevice = nullptr;
    GlyphBitmap* m_pBitmap = nullptr;
    std::vector<GlyphFont*> m_aFonts;
};

TEST_F(Glyphs, AFontTellsTheFamilyThatItDrawsWith) {
    char16_t wzFamily[64] = u"x";
    ASSERT_TRUE(GlyphFontFamily(m_pDevice, Font(u"DejaVu Sans"), wzFamily, 64));
    EXPECT_EQ(std::u16string(wzFamily), u"DejaVu Sans");
    ASSERT_TRUE(GlyphFontFamily(m_pDevice, Font(u"No Such Face At All"), wzFamily, 64));
    EXPECT_NE(std::u16string(wzFamily), u"No Such Face At All") << "the nearest one";
    EXPECT_FALSE(GlyphFontFamily(m_pDevice, m_aFonts[0], wzFamily, 4)) << "it does not fit";
    EXPECT_EQ(wzFamily[0], 0);
    EXPECT_FALSE(GlyphFontFamily(m_pDevice, nullptr, wzFamily, 64));
}

TEST_F(Glyphs, PixelsAreBlackOrWhite) {
    const auto pixels = Picture(Font(u"DejaVu Sans"), u"Aas");
    EXPECT_GT(Ink(pixels), 200);
    EXPECT_EQ(Ink(pixels) + std::count(pixels.begin(), pixels.end(), 0), 128 * 100);
}

TEST_F(Glyphs, UnknownAndNullAndEmptyNamesGiveTheDefaultFace) {
    const auto wanted = Picture(Font(nullptr), u"iW");
    EXPECT_GT(Ink(wanted), 0);
    EXPECT_EQ(Picture(Font(u"monospace"), u"iW"), wanted);
    EXPECT_EQ(Picture(Font(u""), u"iW"), wanted);
    EXPECT_EQ(Picture(Font(u"No Such Face At All"), u"iW"), wanted);
    EXPECT_EQ(Extent(m_aFonts[0], u"i"), Extent(m_aFonts[0], u"W")) << "of fixed pitch";
    EXPECT_EQ(CreateGlyphFont(m_pDevice, {32, 43, 400, std::u16string(600, u'x').c_str()}), nullptr)
        << "a name beyond all bounds";
}

TEST_F(Glyphs, MissingGlyphComesFromAnotherFace) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    EXPECT_FALSE(Has(pFont, u"\u4E2D"));
    EXPECT_FALSE(FontCoversCode(m_pDevice, pFont, 0x4E2D));
    const auto box = Picture(pFont, u"\uE123");
    EXPECT_NE(Picture(pFont, u"\u4E2D"), box);
    EXPECT_EQ(Extent(pFont, u"\u4E2D"), 43) << "an em, the other face's advance";
    EXPECT_GT(Ink(box), 0) << "no face has it: the box";
}

TEST_F(Glyphs, OwnGlyphsAreKnown) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    EXPECT_TRUE(Has(pFont, u"A"));
    EXPECT_TRUE(Has(pFont, u"\u0416"));
    EXPECT_FALSE(Has(pFont, u"\uE123"));
    EXPECT_FALSE(Has(pFont, u""));
    EXPECT_TRUE(FontCoversCode(m_pDevice, pFont, 'A'));
    EXPECT_FALSE(FontCoversCode(m_pDevice, pFont, 0xFFFFFFFF));
}

TEST_F(Glyphs, SurrogatePairIsOneGlyph) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    EXPECT_TRUE(Has(pFont, u"\U0001D538")); // double-struck A
    EXPECT_EQ(Extent(pFont, u"\U0001D538"), Extent(pFont, u"\U0001D538x") - Extent(pFont, u"x"));
    EXPECT_NE(Picture(pFont, u"\U0001D538"), Picture(pFont, u"\uE123"));
    const char16_t wcLone = 0xD835;
    EXPECT_FALSE(FontHasGlyph(m_pDevice, pFont, &wcLone, 1)) << "half of it is a code of its own";
}

TEST_F(Glyphs, AdvancesAddUp) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    EXPECT_EQ(Extent(pFont, u"AV"), Extent(pFont, u"A") + Extent(pFont, u"V")) << "no kerning";
    EXPECT_EQ(Extent(pFont, u""), 0);
}

TEST_F(Glyphs, DrawingIsClippedAtEverySide) {
    GlyphFont* const pFont = Font(u"DejaVu Sans", 200);
    for (const i32 iBaseline : {-300, -10, 0, 20, 99, 100, 150, 5000})
        EXPECT_LT(Ink(Picture(pFont, u"jMMMMMMMM\u00C4", iBaseline)), 128 * 100) << iBaseline;
    EXPECT_EQ(Ink(Picture(pFont, u"M", -300)), 0);
    EXPECT_GT(Ink(Picture(pFont, u"M", 120)), 0);
}

TEST_F(Glyphs, DrawingGoesOverWhatIsThere) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    const auto iBoth = Ink(Picture(pFont, u"_")) + Ink(Picture(pFont, u"'"));
    Picture(pFont, u"_");
    DrawGlyphs(m_pDevice, pFont, u"'", 1, 72);
    std::vector<u8> rows(128 * 3 * 100);
    ReadGlyphBitmap(m_pDevice, 128, 100, rows.data());
    EXPECT_EQ(std::count(rows.begin(), rows.end(), 255), iBoth * 3);
}

TEST_F(Glyphs, RowsArePaddedToFourBytes) {
    GlyphDevice* const pDevice = CreateGlyphDevice();
    GlyphBitmap* const pBitmap = CreateGlyphBitmap(pDevice, 10, 2);
    GlyphFont* const pFont = Font(u"DejaVu Sans", 40);
    DrawGlyphs(pDevice, pFont, u"\u2588", 1, 20);
    std::vector<u8> rows(64 + 1, 7);
    ReadGlyphBitmap(pDevice, 10, 2, rows.data());
    EXPECT_EQ(rows[29], 255);
    EXPECT_EQ(rows[30], 7) << "padding is left alone";
    EXPECT_EQ(rows[32], 255) << "the next row";
    EXPECT_EQ(rows[64], 7);
    DestroyGlyphDevice(pDevice);
    DestroyGlyphBitmap(pBitmap);
}

TEST_F(Glyphs, OnlyRowsThatMayBeWhiteAreWritten) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    const auto whole = Picture(pFont, u"-g");
    std::vector<u8> rows(128 * 3 * 100, 7);
    const stGlyphRows st = ReadGlyphBitmap(m_pDevice, 128, 100, rows.data());
    EXPECT_GT(st.m_iTop, 40);
    EXPECT_LT(st.m_iEnd, 100);
    for (i32 y = 0; y < 100; ++y)
        for (i32 x = 0; x < 128; ++x) {
            const bool bWritten = y >= st.m_iTop && y < st.m_iEnd;
            EXPECT_EQ(rows[static_cast<u64>(y * 128 + x) * 3],
                      bWritten ? whole[static_cast<u64>(y * 128 + x)] : 7);
        }
    ReadGlyphBitmap(m_pDevice, 128, st.m_iTop, rows.data());
    ClearGlyphBitmap(m_pDevice);
    const stGlyphRows stCleared = ReadGlyphBitmap(m_pDevice, 128, 100, rows.data());
    EXPECT_EQ(stCleared.m_iTop, stCleared.m_iEnd);
}

TEST_F(Glyphs, SidesBelow1GiveNoBitmap) {
    EXPECT_EQ(CreateGlyphBitmap(m_pDevice, 0, 4), nullptr);
    EXPECT_EQ(CreateGlyphBitmap(m_pDevice, 4, -1), nullptr);
    EXPECT_EQ(CreateGlyphBitmap(nullptr, 4, 4), nullptr);
}

TEST_F(Glyphs, NullHandlesDoNothing) {
    i32 iX = 0, iY = 0;
    GlyphDeviceDpi(nullptr, &iX, &iY);
    EXPECT_EQ(iX, 96);
    EXPECT_EQ(iY, 96);
    ClearGlyphBitmap(nullptr);
    ReadGlyphBitmap(nullptr, 4, 4, nullptr);
    DrawGlyphs(nullptr, nullptr, u"A", 1, 4);
    EXPECT_EQ(Ink(Picture(nullptr, u"A")), 0);
    EXPECT_EQ(GlyphExtent(m_pDevice, nullptr, u"A", 1), 0);
    EXPECT_FALSE(FontHasGlyph(m_pDevice, nullptr, u"A", 1));
    EXPECT_FALSE(FontCoversCode(m_pDevice, nullptr, 'A'));
    DestroyGlyphFont(nullptr);
    DestroyGlyphBitmap(nullptr);
    DestroyGlyphDevice(nullptr);
}

TEST_F(Glyphs, WildSizesAreHeld) {
    for (const i32 iEm : {-5, 0, 1, 16384, 2147483647}) {
        GlyphFont* const pFont = Font(u"DejaVu Sans", iEm);
        ASSERT_NE(pFont, nullptr) << iEm;
        EXPECT_GE(Extent(pFont, u"M"), 0) << iEm;
    }
    for (const i32 iWeight : {-5, 0, 1000, 5000}) EXPECT_NE(Font(u"DejaVu Sans", 20, iWeight), nullptr);
}

TEST_F(Glyphs, WeightPicksTheFace) {
    const auto regular = Picture(Font(u"DejaVu Sans", 43, 400), u"H");
    EXPECT_GT(Ink(Picture(Font(u"DejaVu Sans", 43, 700), u"H")), Ink(regular) * 5 / 4);
    EXPECT_EQ(Picture(Font(u"DejaVu Sans", 43, 0), u"H"), regular) << "0 is regular";
}

TEST_F(Glyphs, TwoThreadsWithFontsOfTheirOwn) {
    const auto wanted = Picture(Font(u"DejaVu Sans"), u"A\u4E2D");
    const auto work = [] {
        for (u32 i = 0; i < 10; ++i) {
            GlyphDevice* const pDevice = CreateGlyphDevice();
            GlyphBitmap* const pBitmap = CreateGlyphBitmap(pDevice, 64, 64);
            GlyphFont* const pFont = CreateGlyphFont(pDevice, {32, 43, 400, u"DejaVu Sans"});
            DrawGlyphs(pDevice, pFont, u"A\u4E2D", 2, 50);
            DestroyGlyphDevice(pDevice);
            DestroyGlyphBitmap(pBitmap);
            DestroyGlyphFont(pFont);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(Picture(m_aFonts[0], u"A\u4E2D"), wanted);
}

TEST_F(Glyphs, AProgramMayEndItsOwnFontconfigWhileOurFontsAreOpen) {
    void* const hLibrary = dlopen("libfontconfig.so.1", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(hLibrary, nullptr) << dlerror();
    const auto fnInit = reinterpret_cast<int (*)()>(dlsym(hLibrary, "FcInit"));
    const auto fnFini = reinterpret_cast<void (*)()>(dlsym(hLibrary, "FcFini"));
    ASSERT_TRUE(fnInit && fnFini);
    ASSERT_EQ(fnInit(), 1);
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    const auto wanted = Picture(pFont, u"A\u4E2D");
    fnFini(); // stops the process where somebody else still holds one of its caches
    EXPECT_EQ(Picture(pFont, u"A\u4E2D"), wanted);
    EXPECT_EQ(Picture(Font(u"DejaVu Sans"), u"A\u4E2D"), wanted);
    dlclose(hLibrary);
}

TEST_F(Glyphs, TheLibrariesWriteNothingToTheTerminal) {
    const std::string path = ::testing::TempDir() + "orvin-odd-fonts.conf";
    std::FILE* const pFile = std::fopen(path.c_str(), "w");
    ASSERT_NE(pFile, nullptr);
    std::fputs("<?xml version=\"1.0\"?><fontconfig><no-such-thing/></fontconfig>\n", pFile);
    std::fclose(pFile);
    setenv("FONTCONFIG_FILE", path.c_str(), 1);
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(Font(nullptr), nullptr) << "a configuration without fonts";
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    unsetenv("FONTCONFIG_FILE");
    std::remove(path.c_str());
}

TEST_F(Glyphs, AFaceMayBeLookedForAtTheFirstUse) {
    const auto wanted = Picture(Font(u"DejaVu Sans"), u"Ag");
    const i32 iWanted = GlyphExtent(m_pDevice, m_aFonts[0], u"Ag", 2);
    GlyphFont* const pFont = CreateGlyphFont(m_pDevice, {32, 43, 400, u"DejaVu Sans", true});
    ASSERT_NE(pFont, nullptr);
    EXPECT_EQ(GlyphExtent(m_pDevice, pFont, u"Ag", 2), iWanted);
    EXPECT_EQ(Picture(pFont, u"Ag"), wanted);
    DestroyGlyphFont(pFont);
    DestroyGlyphFont(CreateGlyphFont(m_pDevice, {32, 43, 400, u"DejaVu Sans", true})); // never used
}

TEST_F(Glyphs, TheAdvanceAskedForAfterADrawingIsThatOfTheGlyphAsked) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    const i32 iWide = GlyphExtent(m_pDevice, pFont, u"W", 1), iThin = GlyphExtent(m_pDevice, pFont, u"i", 1);
    ASSERT_NE(iWide, iThin);
    DrawGlyphs(m_pDevice, pFont, u"W", 1, 40);
    EXPECT_EQ(GlyphExtent(m_pDevice, pFont, u"i", 1), iThin);
    DrawGlyphs(m_pDevice, pFont, u"W", 1, 40);
    EXPECT_EQ(GlyphExtent(m_pDevice, pFont, u"W", 1), iWide);
    EXPECT_EQ(GlyphExtent(m_pDevice, pFont, u"WiW", 3), 2 * iWide + iThin);
}

TEST_F(Glyphs, NothingOfAnEarlierDrawingStaysAfterAClear) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    const auto wanted = Picture(pFont, u".");
    Picture(pFont, u"\u00C5g|");
    EXPECT_EQ(Picture(pFont, u"."), wanted);
}

TEST_F(Glyphs, AfterARestEverythingIsDrawnAsBefore) {
    GlyphFont* const pFont = Font(u"DejaVu Sans");
    const std::u16string strText = u"A\u4E2D"; // a glyph of its own and one of another face
    const auto before = Picture(pFont, strText);
    const i32 iExtent = Extent(pFont, strText);
    RestGlyphFont(pFont);
    RestGlyphDevice(m_pDevice);
    RestGlyphFont(pFont);
    std::vector<u8> rows(128 * 3 * 100, 7);
    const stGlyphRows stBlack = ReadGlyphBitmap(m_pDevice, 128, 100, rows.data());
    EXPECT_EQ(stBlack.m_iTop, stBlack.m_iEnd);
    EXPECT_EQ(std::count(rows.begin(), rows.end(), 7), static_cast<i64>(rows.size()));
    EXPECT_EQ(Extent(pFont, strText), iExtent);
    RestGlyphFont(pFont);
    EXPECT_EQ(Picture(pFont, strText), before);
    RestGlyphFont(pFont);
    EXPECT_TRUE(Has(pFont, u"A"));
    char16_t wzFamily[64] = u"";
    RestGlyphFont(pFont);
    EXPECT_TRUE(GlyphFontFamily(m_pDevice, pFont, wzFamily, 64));
    RestGlyphFont(nullptr);
    RestGlyphDevice(nullptr);
}

TEST(GlyphsWithoutFonts, NoFontIsMadeAndNothingElseFails) {
    // No font is open here, so that the next one reads the configuration anew.
    const std::string path = ::testing::TempDir() + "orvin-no-fonts.conf";
    std::FILE* const pFile = std::fopen(path.c_str(), "w");
    ASSERT_NE(pFile, nullptr);
    std::fputs("<?xml version=\"1.0\"?><fontconfig></fontconfig>\n", pFile);
    std::fclose(pFile);
    setenv("FONTCONFIG_FILE", path.c_str(), 1);
    GlyphDevice* const pDevice = CreateGlyphDevice();
    GlyphBitmap* const pBitmap = CreateGlyphBitmap(pDevice, 8, 8);
    EXPECT_NE(pBitmap, nullptr);
    EXPECT_EQ(CreateGlyphFont(pDevice, {32, 43, 400, u"DejaVu Sans"}), nullptr);
    EXPECT_EQ(CreateGlyphFont(pDevice, {32, 43, 400, nullptr}), nullptr);
    GlyphFont* const pLater = CreateGlyphFont(pDevice, {32, 43, 400, nullptr, true});
    ASSERT_NE(pLater, nullptr);
    DrawGlyphs(pDevice, pLater, u"A", 1, 7);
    EXPECT_EQ(GlyphExtent(pDevice, pLater, u"A", 1), 0);
    EXPECT_FALSE(FontHasGlyph(pDevice, pLater, u"A", 1));
    DestroyGlyphFont(pLater);
    unsetenv("FONTCONFIG_FILE");
    GlyphFont* const pFont = CreateGlyphFont(pDevice, {32, 43, 400, nullptr});
    EXPECT_NE(pFont, nullptr) << "with fonts again";
    DestroyGlyphFont(pFont);
    DestroyGlyphDevice(pDevice);
    DestroyGlyphBitmap(pBitmap);
    std::remove(path.c_str());
}

} // namespace
