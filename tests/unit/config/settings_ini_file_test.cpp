// Settings files: their lines, encodings and bounds.
#include "platform/ini_file.h"

#include "platform/headless/test_controls.h"
#include "tests/support/odd_files.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

using platform::CIniFile;

namespace {

using Found = std::optional<std::u16string>;

Found Value(std::string_view bytes, std::u16string_view wzSection, std::u16string_view wzKey) {
    const CIniFile file = CIniFile::Parse(bytes);
    const platform::IniEntry* const pEntry = file.Find(wzSection, wzKey);
    return pEntry ? Found(std::u16string(pEntry->m_wzValue)) : std::nullopt;
}

Found InS(std::string_view line) { return Value("[s]\n" + std::string(line), u"s", u"k"); }

std::string Wide(std::u16string_view wz, bool bBigEndian) {
    std::string str;
    for (const char16_t c : wz) {
        const char chLow = static_cast<char>(c & 0xFF), chHigh = static_cast<char>(c >> 8);
        str += bBigEndian ? chHigh : chLow;
        str += bBigEndian ? chLow : chHigh;
    }
    return str;
}

} // namespace

TEST(IniFile, WhatIsNoPlainFileReadsAsEmpty) {
    const CTestDataFolder folder(false);
    const std::string strPath = folder.Path("odd.ini");
    const std::u16string wzPath(strPath.begin(), strPath.end());
    ForEachOddFile(strPath, [&](const char* szKind) {
        EXPECT_EQ(CIniFile::Load(wzPath.c_str()).Sections(), 0u) << szKind;
    });
}

TEST(IniFile, ValuesAreFoundBySectionAndKey) {
    const std::string str = "[a]\r\nx=1\r\ny=2\r\n[b]\r\nx=3\r\n";
    EXPECT_EQ(Value(str, u"a", u"x"), u"1");
    EXPECT_EQ(Value(str, u"a", u"y"), u"2");
    EXPECT_EQ(Value(str, u"b", u"x"), u"3");
    EXPECT_EQ(Value(str, u"b", u"y"), std::nullopt);
    EXPECT_EQ(Value(str, u"c", u"x"), std::nullopt);
}

TEST(IniFile, NamesAreComparedWithoutCase) {
    EXPECT_EQ(Value("[InFo]\nDEBUGmode=1\n", u"Info", u"DebugMode"), u"1");
}

TEST(IniFile, FirstSectionAndFirstKeyCount) {
    EXPECT_EQ(Value("[s]\nk=1\nk=2\n[s]\nk=3\nl=4\n", u"s", u"k"), u"1");
    EXPECT_EQ(Value("[s]\nk=1\n[s]\nl=4\n", u"s", u"l"), std::nullopt);
}

TEST(IniFile, BlanksAroundNamesAndValuesGo) {
    EXPECT_EQ(Value("  \t[ s\t] \n  k \t=\t  a b  \x1A\n", u"s", u"k"), u"a b");
}

TEST(IniFile, OnePairOfQuotesGoes) {
    EXPECT_EQ(InS("k=\" a \""), u" a ");
    EXPECT_EQ(InS("k=' a '"), u" a ");
    EXPECT_EQ(InS("k=\"\"a\"\""), u"\"a\"");
    EXPECT_EQ(InS("k=\"\""), u"");
    EXPECT_EQ(InS("k=\"a'"), u"\"a'");
    EXPECT_EQ(InS("k=\""), u"\"");
    EXPECT_EQ(InS("k=a\""), u"a\"");
}

TEST(IniFile, CommentsAreLinesThatBeginWithASemicolon) {
    EXPECT_EQ(InS(" ;k=1\nk=2"), u"2");
    EXPECT_EQ(InS("k=1 ; no comment"), u"1 ; no comment");
    EXPECT_EQ(Value(";[s]\nk=1", u"s", u"k"), std::nullopt);
}

TEST(IniFile, TheFirstEqualsSignDivides) {
    EXPECT_EQ(InS("k=a=b"), u"a=b");
    EXPECT_EQ(InS("k="), u"");
    EXPECT_EQ(InS("=1"), std::nullopt);
}

TEST(IniFile, AKeyWithoutAValueHidesLaterOnes) {
    EXPECT_EQ(InS("k"), std::nullopt);
    EXPECT_EQ(InS("k\nk=2"), std::nullopt);
}

TEST(IniFile, KeysBeforeAnySectionAreNobodys) { EXPECT_EQ(Value("k=1\n[s]\n", u"", u"k"), std::nullopt); }

TEST(IniFile, ASectionEndsAtTheLastBracketOfItsLine) {
    EXPECT_EQ(Value("[a]b] tail\nk=1\n", u"a]b", u"k"), u"1");
    EXPECT_EQ(Value("[s]\n[open\nk=1\n", u"s", u"k"), u"1");
}

TEST(IniFile, LinesEndAtAnyLineEnd) {
    EXPECT_EQ(Value("[s]\rj=1\rk=2", u"s", u"k"), u"2");
    EXPECT_EQ(Value("[s]\n\n\r\n\rk=2", u"s", u"k"), u"2");
}

TEST(IniFile, EncodingGoesByMarkThenByValidity) {
    const std::u16string_view wz = u"[s]\r\nk=\u00e9\u4e2d\r\n";
    EXPECT_EQ(Value("\xFF\xFE" + Wide(wz, false), u"s", u"k"), u"\u00e9\u4e2d");
    EXPECT_EQ(Value("\xFE\xFF" + Wide(wz, true), u"s", u"k"), u"\u00e9\u4e2d");
    EXPECT_EQ(Value("\xEF\xBB\xBF[s]\nk=\xC3\xA9\xE4\xB8\xAD", u"s", u"k"), u"\u00e9\u4e2d");
    EXPECT_EQ(InS("k=\xC3\xA9\xE4\xB8\xAD"), u"\u00e9\u4e2d");
    EXPECT_EQ(InS("k=caf\xE9"), u"caf\u00e9"); // Latin-1 stands for the code page here
}

TEST(IniFile, WrongBytesBehindAMarkAreReplaced) {
    EXPECT_EQ(Value("\xEF\xBB\xBF[s]\nk=a\xFFz", u"s", u"k"), u"a\uFFFDz");
    EXPECT_EQ(InS("k=a\xEF\xBF\xBDz"), u"a\uFFFDz");
}

TEST(IniFile, CodesBeyond16BitsBecomePairs) { EXPECT_EQ(InS("k=\xF0\x9F\x8E\xAE"), u"\U0001F3AE"); }

TEST(IniFile, AByteTooManyOfWideTextIsDropped) {
    EXPECT_EQ(Value("\xFF\xFE" + Wide(u"[s]\nk=ab", false) + "c", u"s", u"k"), u"ab");
}

TEST(IniFile, BytesWithoutSenseGiveNothing) {
    std::string strAll;
    for (int i = 0; i < 4096; ++i) strAll += static_cast<char>(i * 37 + i / 256);
    EXPECT_EQ(Value(strAll, u"s", u"k"), std::nullopt);
    for (const char* sz : {"", "[", "]", "[]", "=", "==", "[=", "\xFF\xFE", "\xFE\xFF", "\xEF\xBB\xBF",
                           "\xEF", "[\n]\n=\n", "\"", "\n", "\r", ";"})
        EXPECT_EQ(Value(sz, u"s", u"k"), std::nullopt) << sz;
    EXPECT_EQ(Value(std::string("[s]\nk=1\0zz\n", 11), u"s", u"k"), std::u16string(u"1\0zz", 4));
}

TEST(IniFile, ATruncatedFileGivesWhatIsThere) {
    const std::string strWhole = "[s]\nj=12\nk=\"ab\"\n";
    for (std::size_t u = 0; u <= strWhole.size(); ++u) {
        const CIniFile file = CIniFile::Parse(strWhole.substr(0, u));
        ASSERT_LE(file.Sections(), 1u);
    }
    EXPECT_EQ(Value(strWhole.substr(0, 14), u"s", u"k"), u"\"ab");
}

namespace {
struct IniFileOnDisk : ::testing::Test {
    void SetUp() override { platform::headless::ResetAll(); }
    void TearDown() override { platform::headless::ResetAll(); }
    CIniFile Load(const std::string& strBytes) {
        m_folder.Write("f.ini", strBytes);
        return LoadPath(m_folder.Path("f.ini"));
    }
    static CIniFile LoadPath(const std::string& strPath) {
        return CIniFile::Load(std::filesystem::path(strPath).u16string().c_str());
    }
    CTestDataFolder m_folder{false};
};
} // namespace

TEST_F(IniFileOnDisk, MissingFileAndFolderReadAsEmpty) {
    EXPECT_EQ(LoadPath(m_folder.Path("none.ini")).Sections(), 0u);
    EXPECT_EQ(LoadPath(m_folder.Path("")).Sections(), 0u);
    EXPECT_EQ(LoadPath("").Sections(), 0u);
}

TEST_F(IniFileOnDisk, ALineOf10MegabytesIsReadToTheBound) {
    const CIniFile file = Load("[s]\nj=1\nk=" + std::string(10'000'000, 'x') + "\nl=2\n");
    ASSERT_NE(file.Find(u"s", u"k"), nullptr);
    EXPECT_EQ(file.Find(u"s", u"k")->m_wzValue.size(), platform::g_uIniBytesMax - 10);
    EXPECT_EQ(file.Find(u"s", u"j")->m_wzValue, u"1");
    EXPECT_EQ(file.Find(u"s", u"l"), nullptr);
}

TEST_F(IniFileOnDisk, AMillionLinesAreReadToTheBound) {
    std::string strBytes = "[s]\n";
    for (int i = 0; i < 1'000'000; ++i) strBytes += "[]\na=\n";
    const CIniFile file = Load(strBytes + "[t]\nk=1\n");
    EXPECT_EQ(file.Sections(), 1 + (platform::g_uIniBytesMax - 4 + 5) / 6);
    EXPECT_EQ(file.Find(u"t", u"k"), nullptr);
}
