// Bytes of cache files, and what their check says.
#include "font_file_test.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

TEST(FontFileFormat, HeaderIsWrittenFieldByField) {
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    pFont->m_fnSetFontWeight(700);
    const u32 auBox[4] = {1, 2, 3, 4};
    std::copy_n(auBox, 4, pFont->m_uBlockBox);
    pFont->m_uCalibSize = 9;
    const std::string bytes = Saved(*pFont);
    ASSERT_EQ(bytes.size(), g_uSmallFileBytes);
    EXPECT_EQ(bytes.substr(0, 4), "\5\0\0\0"s);
    EXPECT_EQ(bytes.substr(4, 8), "F\0a\0c\0e\0"s);
    EXPECT_EQ(bytes.substr(12, 120), std::string(120, '\0'));
    EXPECT_EQ(bytes.substr(132, 4), "\xBC\x02\0\0"s);
    const u32 auFields[] = {2, 2, 16, 16, 1, 2, 3, 4, 4, 9, 4, 4};
    for (u32 u = 0; u < std::size(auFields); ++u) EXPECT_EQ(WordAt(bytes, 136 + 4 * u), auFields[u]) << u;
}

TEST(FontFileFormat, RecordsFollowWithTheBlanksLast) {
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    const std::string bytes = Saved(*pFont);
    EXPECT_EQ(WordAt(bytes, 184), u32{'A'});
    EXPECT_EQ(WordAt(bytes, 216), u32{'B'});
    EXPECT_EQ(WordAt(bytes, 248), 0u); // free
    f32 fLeft = 0, fAdvance = 0;
    std::memcpy(&fLeft, bytes.data() + 216 + 12, 4);
    EXPECT_EQ(fLeft, 0.5f); // second of two columns
    EXPECT_EQ(WordAt(bytes, 184 + 4 * 32), 0u) << "blanks are written without their code";
    std::memcpy(&fAdvance, bytes.data() + 184 + 4 * 32 + 24, 4);
    EXPECT_EQ(fAdvance, pFont->m_pChars[4].m_fWScale);
}

TEST(FontFileFormat, LevelsFollowLargestFirstAndWithoutGain) {
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    std::fill_n(pFont->m_pAtlas, 256, u8{0});
    for (u32 u : {0u, 1u, 16u, 17u}) pFont->m_pAtlas[u] = 80; // one pixel of the second level
    const std::string bytes = Saved(*pFont);
    ASSERT_EQ(bytes.size(), g_uSmallFileBytes);
    EXPECT_EQ(bytes[376], 80);
    EXPECT_EQ(bytes[376 + 16], 80);
    EXPECT_EQ(bytes[376 + 32], 0);
    EXPECT_EQ(bytes[376 + 256], 80) << "the levels for the graphics card would have 120 here";
    EXPECT_EQ(bytes[376 + 257], 0);
    EXPECT_EQ(bytes[376 + 320], 20);
}

TEST(FontFileFormat, SizeThatIsToldLacksTheBlanksRecords) {
    CFontUniCode plain; // 8 by 8 cells, 128 by 128 pixels
    EXPECT_EQ(plain.m_fnGetFileSize(), 184u + 64 * 32 + 21845);
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    EXPECT_EQ(pFont->m_fnGetFileSize() + 64, g_uSmallFileBytes);
}

TEST(FontFileFormat, LargeAtlasHasThirteenLevelsDownToOneByte) {
    EXPECT_EQ(g_fnFontLevels(4096, 4096), 13u);
    EXPECT_EQ(g_fnFontLevelBytes(4096, 4096, 0), 16777216u);
    EXPECT_EQ(g_fnFontLevelBytes(4096, 4096, 1), 4194304u);
    EXPECT_EQ(g_fnFontLevelBytes(4096, 4096, 12), 1u);
    EXPECT_EQ(g_fnFontLevelsBytes(4096, 4096), 22369621u);
    EXPECT_EQ(g_fnFontLevels(1, 1), 1u);
    EXPECT_EQ(g_fnFontLevelsBytes(1, 1), 1u);
}

TEST(FontFileFormat, LevelSizesAreQuartersAndNotHalvedSides) {
    EXPECT_EQ(g_fnFontLevels(5, 3), 3u);
    EXPECT_EQ(g_fnFontLevelsBytes(5, 3), 15u + 3 + 0);
    EXPECT_EQ(g_fnFontLevels(8, 2), 4u);
    EXPECT_EQ(g_fnFontLevelsBytes(8, 2), 16u + 4 + 1 + 0);
    EXPECT_EQ(g_fnFontLevelsBytes(0xFFFFFFFF, 0xFFFFFFFF), 0xFFFFFFFE00000001u) << "no overflow";
}

TEST(FontFileFormat, LevelsOfOddSidesAreCutToTheirQuarter) {
    CTestFont font;
    font.m_fnSetLayout(1, 1, 0);
    font.m_fnSetTexSize(8, 2);
    ASSERT_TRUE(font.m_fnInitialize(false));
    std::fill_n(font.m_pAtlas, 16, u8{200});
    const std::string bytes = Saved(font);
    ASSERT_EQ(bytes.size(), 184u + 3 * 32 + 21);
    EXPECT_EQ(bytes.substr(bytes.size() - 5), std::string(5, static_cast<char>(200)));
}

TEST(FontFileFormat, NameIsCutToSixtyThreeUnits) {
    const auto pFont = SmallFont(std::u16string(70, u'n').c_str());
    ASSERT_NE(pFont, nullptr);
    const std::string bytes = Saved(*pFont);
    stFontFileHeader st;
    stMemoryStream stream = StreamOf(bytes);
    ASSERT_TRUE(g_fnReadFontFileHeader(&stream, &st));
    EXPECT_EQ(std::u16string(st.m_wzFontName), std::u16string(63, u'n'));
    EXPECT_EQ(WordAt(bytes, 128), u32{'n'}); // units 62 and 63
}

TEST(FontFileFormat, FontWithoutBuffersAndFullDisksAreRefused) {
    CFontUniCode plain;
    EXPECT_EQ(Saved(plain), "");
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    EXPECT_FALSE(pFont->m_fnSaveToStream(nullptr));
    EXPECT_FALSE(pFont->m_fnSaveToFile(nullptr));
    EXPECT_FALSE(pFont->m_fnSaveToFileA(nullptr));
    EXPECT_FALSE(pFont->m_fnSaveToFile(u"no such folder/a.fnt"));
    ASSERT_TRUE(pFont->m_fnSaveToFileA("font_file_test.fnt"));
    std::FILE* const pReadOnly = std::fopen("font_file_test.fnt", "rb");
    ASSERT_NE(pReadOnly, nullptr);
    EXPECT_FALSE(pFont->m_fnSaveToStream(pReadOnly));
    std::fclose(pReadOnly);
    std::remove("font_file_test.fnt");
}

TEST(FontFileCheck, EachShortFileHasItsCode) {
    const std::string bytes = SmallFile();
    ASSERT_EQ(bytes.size(), g_uSmallFileBytes);
    CTestFont font;
    EXPECT_EQ(font.m_fnCheckMemoryFile(nullptr, nullptr), -1);
    EXPECT_EQ(Check(""), -2);
    EXPECT_EQ(Check(bytes.substr(0, 183)), -3);
    stMemoryStream stNoData = {nullptr, 500, 0};
    EXPECT_EQ(font.m_fnCheckMemoryFile(&stNoData, nullptr), -4);
    EXPECT_EQ(Check(bytes.substr(0, 4 * 32 + 247)), -6);
    EXPECT_EQ(Check(bytes.substr(0, 4 * 32 + 248)), -7);
    EXPECT_EQ(Check(bytes), 0);
    EXPECT_EQ(Check(bytes + "more"), 0);
}

TEST(FontFileCheck, OneByteShortOfTheTotalIsMinusSeven) {
    const std::string bytes = SmallFile();
    EXPECT_EQ(Check(bytes.substr(0, g_uSmallFileBytes - 1)), -7);
}

TEST(FontFileCheck, VersionFourIsMinusFive) {
    std::string bytes = SmallFile();
    SetWord(bytes, 0, 4);
    EXPECT_EQ(Check(bytes), -5);
    EXPECT_EQ(Check(bytes.substr(0, 184)), -5) << "before the sizes";
    CTestFont font;
    EXPECT_FALSE(Load(font, bytes));
}

TEST(FontFileCheck, StartsAtTheBeginningWhereverTheStreamStands) {
    const std::string bytes = SmallFile();
    CTestFont font;
    stMemoryStream stream = StreamOf(bytes);
    stream.m_uPosition = 600;
    EXPECT_EQ(font.m_fnCheckMemoryFile(&stream, nullptr), 0);
}

TEST(FontFileCheck, WithoutATextItTellsWhetherACellIsInUse) {
    const auto pFont = SmallFont();
    ASSERT_NE(pFont, nullptr);
    EXPECT_EQ(Check(Saved(*pFont)), 0);
    g_fnFontRemoveChar(pFont.get(), 'A');
    EXPECT_EQ(Check(Saved(*pFont)), 0);
    g_fnFontRemoveChar(pFont.get(), 'B');
    EXPECT_EQ(Check(Saved(*pFont)), 1);
}

TEST(FontFileCheck, WithATextItTellsWhetherACellIsNotNeeded) {
    const std::string bytes = SmallFile();
    EXPECT_EQ(Check(bytes, u"AB"), 1);
    EXPECT_EQ(Check(bytes, u"XBA"), 1) << "what is missing does not count";
    EXPECT_EQ(Check(bytes, u"A"), 0);
    EXPECT_EQ(Check(bytes, u" \t\r\n\u3000"), 0) << "blanks are no codes of the set";
}

TEST(FontFileCheck, TextBeyondTheGridIsZeroAtOnce) {
    const std::string bytes = SmallFile();
    EXPECT_EQ(Check(bytes, u"ABCD"), 1);
    EXPECT_EQ(Check(bytes, u"ABCDE"), 0);
    EXPECT_EQ(Check(bytes, u"AB CD \n"), 1) << "blanks take no cells";
}

TEST(FontFileCheck, TextWithoutCodesIsMinusNineButSizesGoFirst) {
    const std::string bytes = SmallFile();
    EXPECT_EQ(Check(bytes, u""), -9);
    EXPECT_EQ(Check(bytes.substr(0, 600), u""), -7);
}

TEST(FontFileCheck, TextWithALoneSurrogateIsMinusNine) {
    const std::string bytes = SmallFile();
    for (const std::u16string& text :
         {std::u16string{u'A', 0xD83D}, std::u16string{0xDE00, u'A'}, std::u16string{0xD83D, 0xD83D, 0xDE00}})
        EXPECT_EQ(Check(bytes, text.c_str()), -9);
    EXPECT_EQ(Check(bytes, u"AB\U0001F600"), 1) << "a pair is a code";
}

TEST(FontFileCheck, AtlasOfOnePixelHasOneLevel) {
    std::string bytes = SmallFile().substr(0, 184) + std::string(3 * 32 + 1, '\0');
    for (u32 u : {136u, 140u, 144u, 148u}) SetWord(bytes, u, 1);
    EXPECT_EQ(Check(bytes), 1);
    EXPECT_EQ(Check(bytes.substr(0, bytes.size() - 1)), -7);
    for (u32 u : {168u, 172u}) SetWord(bytes, u, 1); // sizes of the glyphs
    CTestFont font;
    ASSERT_TRUE(Load(font, bytes));
    EXPECT_EQ(font.m_uTexW, 1u);
}

TEST(FontFileCheck, HugeCountsDoNotOverflow) {
    std::string bytes = SmallFile();
    SetWord(bytes, 136, 0x10000);
    SetWord(bytes, 140, 0x10000); // 2 to the power 32 cells
    EXPECT_EQ(Check(bytes), -6);
    SetWord(bytes, 136, 0x8000000);
    SetWord(bytes, 140, 0x20); // 2 to the power 32 cells
    EXPECT_EQ(Check(bytes), -6);
    for (u32 u : {136u, 140u, 144u, 148u}) SetWord(bytes, u, 0xFFFFFFFF);
    EXPECT_EQ(Check(bytes), -6);
    SetWord(bytes, 136, 0);
    EXPECT_EQ(Check(bytes), -7);
    SetWord(bytes, 144, 0x80000000);
    SetWord(bytes, 148, 2); // 2 to the power 32 pixels
    EXPECT_EQ(Check(bytes), -7);
}

TEST(FontFileStream, ReadsWholeElementsAndNeverBeyondTheEnd) {
    const u8 auData[7] = {1, 2, 3, 4, 5, 6, 7};
    stMemoryStream stream = {auData, 7, 0};
    u8 auOut[8] = {};
    EXPECT_EQ(g_fnReadStream(auOut, 2, 2, &stream), 2u);
    EXPECT_EQ(stream.m_uPosition, 4u);
    EXPECT_EQ(g_fnReadStream(auOut, 2, 4, &stream), 1u) << "a byte is left over";
    EXPECT_EQ(auOut[2], 7);
    EXPECT_EQ(stream.m_uPosition, 7u);
    EXPECT_EQ(g_fnReadStream(auOut, 1, 1, &stream), 0u);
    stream.m_uPosition = 9;
    EXPECT_EQ(g_fnReadStream(auOut, 1, 1, &stream), 0u);
    stream.m_uPosition = 0;
    EXPECT_EQ(g_fnReadStream(auOut, 0, 1, &stream), 0u);
    EXPECT_EQ(g_fnReadStream(auOut, 1, 0, &stream), 0u);
}
