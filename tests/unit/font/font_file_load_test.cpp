// Fonts out of cache files, sound and damaged ones.
#include "base/log.h"
#include "font_file_test.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

std::vector<std::string> g_aLines;

/// Catches the log while it lives.
struct LogCatch {
    LogCatch() {
        g_aLines.clear();
        g_fnLogSink = [](const char* szLine) { g_aLines.push_back(szLine); };
    }
    ~LogCatch() { g_fnLogSink = m_fnFormer; }
    void (*m_fnFormer)(const char*) = g_fnLogSink;
};

std::FILE* FileOf(const std::string& bytes) {
    std::FILE* const pFile = std::tmpfile();
    if (pFile) std::fwrite(bytes.data(), 1, bytes.size(), pFile), std::rewind(pFile);
    return pFile;
}

bool LoadStream(CFontUniCode& font, const std::string& bytes) {
    std::FILE* const pFile = FileOf(bytes);
    const bool bLoaded = font.m_fnLoadFromStream(pFile);
    if (pFile) std::fclose(pFile);
    return bLoaded;
}

const char* const g_szBitmap = "Face-400-16x16.bmp";

struct FontFileStreamLoad : testing::Test {
    void TearDown() override { std::remove(g_szBitmap); }
};

} // namespace

TEST(FontFileLoad, RoundTripGivesTheSameFont) {
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    pFont->m_fnSetFontWeight(300);
    const std::string bytes = Saved(*pFont);
    CTestFont font;
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_wzFontName, u"Face");
    EXPECT_EQ(font.m_iFontWeight, 300);
    EXPECT_EQ(font.m_uNum_Characters, 4u);
    EXPECT_EQ(font.m_mapCharIndex, pFont->m_mapCharIndex);
    EXPECT_EQ(std::memcmp(font.m_pChars, pFont->m_pChars, 6 * 32), 0);
    EXPECT_EQ(std::memcmp(font.m_pAtlas, pFont->m_pAtlas, 256), 0);
    EXPECT_TRUE(font.m_bFromFile);
    EXPECT_EQ(Saved(font), bytes);
}

TEST(FontFileLoad, NothingIsDrawnAndTheAtlasIsUploadedOnce) {
    struct CCounting : CTestFont {
        bool m_fnUploadAtlasAll(const u8* const*) override { return ++m_uAll != 0; }
        u32 m_uAll = 0;
    } font;
    ASSERT_TRUE(Load(font, SmallFile()));
    EXPECT_TRUE(font.m_aDrawn.empty());
    EXPECT_EQ(font.m_uAll, 1u);
    EXPECT_EQ(font.m_uUploads, 0u);
}

TEST(FontFileLoad, GlyphsCanBeAddedAfterwards) {
    CTestFont font;
    ASSERT_TRUE(Load(font, SmallFile()));
    EXPECT_TRUE(g_fnFontAddChar(&font, 'C'));
    EXPECT_EQ(font.m_fnFindChar('C'), 2);
    EXPECT_TRUE(g_fnFontAddChar(&font, 'D'));
    EXPECT_FALSE(g_fnFontAddChar(&font, 'E'));
}

TEST(FontFileLoad, MetricsOfTheFileWin) {
    std::string bytes = SmallFile();
    SetWord(bytes, 152, 11);
    SetWord(bytes, 168, 6); // 4 by the sizes
    SetWord(bytes, 172, 7);
    SetWord(bytes, 176, 5);
    SetWord(bytes, 180, 99); // not used
    CTestFont font;
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_uBlockBox[0], 11u);
    EXPECT_EQ(font.m_uFontSize, 6u);
    EXPECT_EQ(font.m_uCalibSize, 7u);
    EXPECT_EQ(font.iGDI_DrawRefY, 5);
    EXPECT_EQ(font.m_uNum_Characters, 4u);
}

TEST(FontFileLoad, SizesAboveTheAtlasAreTheFilesBusiness) {
    std::string bytes = SmallFile();
    for (const u32 uSize : {17u, 5000u, 0x80000000u, 0xFFFFFFFFu}) {
        SetWord(bytes, 168, uSize);
        SetWord(bytes, 172, uSize);
        CTestFont font;
        ASSERT_TRUE(Load(font, bytes)) << uSize;
        EXPECT_EQ(font.m_uFontSize, uSize);
        EXPECT_EQ(font.m_uCalibSize, uSize);
        EXPECT_TRUE(g_fnFontAddChar(&font, 'W')) << "drawn no larger than the atlas";
        EXPECT_GE(font.m_fnRecord('W').m_fWScale, 0.0f);
        EXPECT_LE(font.m_fnRecord('W').m_fWScale, 3.0f);
    }
}

TEST(FontFileLoad, BehindAHoleCodesGetTheRecordBeforeTheirOwn) {
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    g_fnFontRemoveChar(pFont.get(), 'A');
    CTestFont font;
    ASSERT_TRUE(Load(font, Saved(*pFont)));
    EXPECT_EQ(font.m_mapCharIndex, (std::map<u32, u32>{{'B', 0}, {32, 4}, {12288, 5}}));
}

TEST(FontFileLoad, CodeThatStandsTwiceGetsTheLaterIndex) {
    std::string bytes = SmallFile();
    SetWord(bytes, 216, 'A');
    CTestFont font;
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_fnFindChar('A'), 1);
}

TEST(FontFileLoad, MissingPixelsAreBlack) {
    std::string bytes = SmallFile();
    std::memset(bytes.data() + 376, 7, 256);
    CTestFont font;
    ASSERT_TRUE(Load(font, bytes.substr(0, 376 + 100)));
    EXPECT_EQ(font.m_pAtlas[99], 7);
    EXPECT_EQ(font.m_pAtlas[100], 0);
    ASSERT_TRUE(Load(font, bytes.substr(0, 376)));
    EXPECT_EQ(font.m_pAtlas[0], 0) << "of a font that had pixels";
}

TEST(FontFileLoad, OnlyRowsThatMayHaveInkAreReduced) {
    std::string bytes = SmallFile();
    std::memset(bytes.data() + 376, 0, 256);
    CTestFont font;
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_uAtlasRows, 0u);
    bytes[376 + 5 * 16 + 15] = 1;
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_uAtlasRows, 6u);
    EXPECT_EQ(font.m_pAtlas[5 * 16 + 15], 1);
    bytes[376 + 255] = 9; // far from any glyph; it is the file's all the same
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_uAtlasRows, 16u);
    EXPECT_EQ(font.m_pAtlas[255], 9);
}

TEST(FontFileLoad, MissingRecordsAreRefusedBeforeTheFontIsTouched) {
    const std::string bytes = SmallFile();
    const auto pFont = SmallFont(u"Mine");
    ASSERT_NE(pFont, nullptr);
    EXPECT_FALSE(Load(*pFont, bytes.substr(0, 375)));
    EXPECT_FALSE(Load(*pFont, ""));
    EXPECT_FALSE(pFont->m_fnLoadFromMemory(nullptr));
    EXPECT_EQ(pFont->m_wzFontName, u"Mine");
    EXPECT_EQ(pFont->m_fnFindChar('B'), 1);
}

TEST(FontFileLoad, GridsWithoutPixelsAndHugeOnesAreRefused) {
    const std::string sound = SmallFile();
    const auto loads = [&](std::vector<std::pair<u32, u32>> changes) {
        std::string bytes = sound;
        for (const auto& [uOffset, uValue] : changes) SetWord(bytes, uOffset, uValue);
        CTestFont font;
        return Load(font, bytes);
    };
    EXPECT_TRUE(loads({}));
    for (u32 uOffset : {136u, 140u, 144u, 148u}) EXPECT_FALSE(loads({{uOffset, 0}})) << uOffset;
    EXPECT_FALSE(loads({{144, 1}})) << "two columns in one pixel";
    EXPECT_FALSE(loads({{148, 1}}));
    EXPECT_FALSE(loads({{136, 1}, {140, 4}, {148, 3}}));
    EXPECT_FALSE(loads({{144, 16385}})) << "no texture is that wide";
    EXPECT_FALSE(loads({{136, 0x10000}, {140, 0x10000}})) << "2 to the power 32 cells";
    EXPECT_FALSE(loads({{168, 0}})) << "no nominal size";
    EXPECT_FALSE(loads({{176, 0x80000000}})) << "a baseline 2 to the power 31 rows up";
}

TEST(FontFileLoad, NumbersThatNoGlyphHasBecomeZero) {
    std::string bytes = SmallFile();
    const f32 afBad[] = {std::numeric_limits<f32>::quiet_NaN(), std::numeric_limits<f32>::infinity(), -1e30f};
    std::memcpy(bytes.data() + 184 + 24, &afBad[0], 4);
    std::memcpy(bytes.data() + 184 + 28, &afBad[1], 4);
    std::memcpy(bytes.data() + 184 + 4 * 32 + 24, &afBad[2], 4); // advance of the blank
    CTestFont font;
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_pChars[0].m_fWScale, 0.0f);
    EXPECT_EQ(font.m_pChars[0].m_fHScale, 0.0f);
    EXPECT_EQ(font.m_pChars[4].m_fWScale, 0.0f);
    EXPECT_GT(font.m_pChars[1].m_fWScale, 0.0f);
}

TEST(FontFileLoad, NameWithoutATerminatorEndsAtItsLastUnit) {
    std::string bytes = SmallFile();
    for (u32 u = 0; u < 64; ++u) bytes[4 + 2 * u] = 'x', bytes[5 + 2 * u] = 0;
    CTestFont font;
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_wzFontName, std::u16string(63, u'x'));
}

TEST(FontFileLoad, EveryTruncationIsSafe) {
    const std::string bytes = SmallFile();
    for (u32 u = 0; u < bytes.size(); ++u) {
        const std::string part(bytes, 0, u); // ends where its memory ends
        CTestFont font;
        EXPECT_LT(Check(part), 0) << u;
        EXPECT_EQ(Load(font, part), u >= 376) << u;
    }
}

TEST_F(FontFileStreamLoad, TakesTheSameDataButNotTheBlanks) {
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    CTestFont font;
    ASSERT_TRUE(LoadStream(font, Saved(*pFont)));
    EXPECT_EQ(font.m_wzFontName, u"Face");
    EXPECT_EQ(std::memcmp(font.m_pChars, pFont->m_pChars, 4 * 32), 0);
    EXPECT_EQ(std::memcmp(font.m_pAtlas, pFont->m_pAtlas, 256), 0) << "the blanks' records are passed over";
    EXPECT_EQ(font.m_mapCharIndex, (std::map<u32, u32>{{'A', 0}, {'B', 1}}));
    EXPECT_EQ(font.m_pChars[4].m_fWScale, 0.0f);
}

TEST_F(FontFileStreamLoad, MapStopsAtTheFirstFreeRecord) {
    std::string bytes = SmallFile();
    SetWord(bytes, 216, 0);   // 'B'
    SetWord(bytes, 248, 'C'); // behind the hole
    CTestFont font;
    ASSERT_TRUE(LoadStream(font, bytes));
    EXPECT_EQ(font.m_mapCharIndex, (std::map<u32, u32>{{'A', 0}}));
}

TEST_F(FontFileStreamLoad, ReportsToTheLogAndExportsTheAtlas) {
    std::string bytes = SmallFile();
    SetWord(bytes, 216, 0x1F600);
    const f32 af[5] = {0.5f, 0.25f, 0.0f, 0.75f, 1.25f}; // of 'A'
    std::memcpy(bytes.data() + 184 + 12, af, sizeof af);
    std::memcpy(bytes.data() + 216 + 12, af, sizeof af);
    const LogCatch log;
    CTestFont font;
    ASSERT_TRUE(LoadStream(font, bytes));
    const std::string dashes = std::string(128, '-') + "\n";
    EXPECT_EQ(
        g_aLines,
        (std::vector<std::string>{
            dashes, "m_wzFontName\t\t\t: Face\n", "m_iFontWeight\t\t\t: 400\n", "m_uLayoutW\t\t\t: 2\n",
            "m_uLayoutH\t\t\t: 2\n", "m_uTexW\t\t\t\t: 16\n", "m_uTexH\t\t\t\t: 16\n",
            "m_uNum_Characters\t\t: 4\n",
            "Char [####]\tm_u32_Char_UTF32_LE\t\"\"\tm_fTexX\tm_fTexY\tm_fTexZ\t\tm_fWScale\tm_fHScale\n",
            "Char [0000]\t0x41\t\"A\"\t0.5000\t0.2500\t0.0000\t\t0.7500\t\t1.2500\n",
            "Char [0001]\t0x1f600\t\"\xF0\x9F\x98\x80\"\t0.5000\t0.2500\t0.0000\t\t0.7500\t\t1.2500\n",
            dashes, "Export texture file to \"Face-400-16x16.bmp\"\n"}));
    std::FILE* const pFile = std::fopen(g_szBitmap, "rb");
    ASSERT_NE(pFile, nullptr);
    std::fseek(pFile, 0, SEEK_END);
    EXPECT_EQ(std::ftell(pFile), 54 + 16 * 16 * 4);
    std::fclose(pFile);
}

TEST_F(FontFileStreamLoad, NameOfTheBitmapStaysInTheFolder) {
    const LogCatch log;
    CTestFont font;
    ASSERT_TRUE(LoadStream(font, SmallFile(u"../a\\b:c")));
    ASSERT_FALSE(g_aLines.empty());
    EXPECT_EQ(g_aLines.back(), "Export texture file to \".._a_b_c-400-16x16.bmp\"\n");
    std::remove(".._a_b_c-400-16x16.bmp");
}

TEST_F(FontFileStreamLoad, DamagedStreamsAreRefused) {
    std::string bytes = SmallFile();
    CTestFont font;
    EXPECT_FALSE(font.m_fnLoadFromStream(nullptr));
    EXPECT_FALSE(LoadStream(font, ""));
    EXPECT_FALSE(LoadStream(font, bytes.substr(0, 183)));
    EXPECT_FALSE(LoadStream(font, bytes.substr(0, 375)));
    SetWord(bytes, 136, 16384);
    SetWord(bytes, 140, 16384);
    SetWord(bytes, 144, 16384);
    SetWord(bytes, 148, 16384);
    EXPECT_FALSE(LoadStream(font, bytes)) << "8 GiB of records are claimed";
    EXPECT_EQ(font.m_pAtlas, nullptr);
}

TEST_F(FontFileStreamLoad, FilesGoByWideAndNarrowPath) {
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    ASSERT_TRUE(pFont->m_fnSaveToFile(u"font_file_\u00E4.fnt"));
    CTestFont font, other;
    EXPECT_TRUE(font.m_fnLoadFromFile(u"font_file_\u00E4.fnt"));
    EXPECT_EQ(font.m_fnFindChar('B'), 1);
    std::remove("font_file_\u00E4.fnt");
    ASSERT_TRUE(pFont->m_fnSaveToFileA("font_file_b.fnt"));
    EXPECT_TRUE(other.m_fnLoadFromFileA("font_file_b.fnt"));
    EXPECT_EQ(other.m_fnFindChar('B'), 1);
    std::remove("font_file_b.fnt");
    EXPECT_FALSE(other.m_fnLoadFromFileA("font_file_b.fnt"));
    EXPECT_FALSE(other.m_fnLoadFromFile(u"font_file_b.fnt"));
    EXPECT_FALSE(other.m_fnLoadFromFile(nullptr));
    EXPECT_FALSE(other.m_fnLoadFromFileA(nullptr));
}
