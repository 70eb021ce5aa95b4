#include "controls/text_file.h"

#include "shared/process_records.h"
#include "tests/support/odd_files.h"
#include "tests/support/test_data_folder.h"
#include "tests/unit/controls/text_fixture.h"

#include <filesystem>

namespace {

class TextFile : public TextTest {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        std::filesystem::create_directories(m_folder.Path("Profiles/Mine"));
        g_fnSetProfileName(u"Mine");
    }
    void TearDown() override {
        g_wzProfileName[0] = g_wzProfileFolder[0] = 0;
        TextTest::TearDown();
    }
    /// The text of a memo file of these bytes; "(none)" for none.
    std::u16string Load(const std::string& strBytes) {
        m_folder.Write("Profiles/Mine/memo.txt", strBytes);
        char16_t wzPath[g_uProfilePathCapacity];
        EXPECT_TRUE(g_fnCheckMemoFile(u"memo.txt", wzPath));
        const auto wzText = g_fnLoadTextFromFile(wzPath);
        return wzText ? wzText.get() : u"(none)";
    }
    CTestDataFolder m_folder{false};
};

using namespace std::string_literals;

TEST_F(TextFile, MarksTellUtf16OfEitherOrderAndUtf8) {
    EXPECT_EQ(Load("\xFF\xFE"
                   "A\0\xAC\x20\x3D\xD8\x00\xDE"s),
              u"A\u20AC\U0001F600");
    EXPECT_EQ(Load("\xFE\xFF"
                   "\0A\x20\xAC\xD8\x3D\xDE\x00"s),
              u"A\u20AC\U0001F600");
    EXPECT_EQ(Load("\xEF\xBB\xBF"
                   "A\xE2\x82\xAC\xF0\x9F\x98\x80"),
              u"A\u20AC\U0001F600");
}

TEST_F(TextFile, ValidUtf8NeedsNoMark) {
    EXPECT_EQ(Load("plain"), u"plain");
    EXPECT_EQ(Load("\xC3\xA4\xE2\x82\xAC"), u"\u00E4\u20AC");
    EXPECT_EQ(Load("x\xEF\xBF\xBDy"), u"x\uFFFDy");
}

TEST_F(TextFile, OtherBytesAreTheCodePages) {
    EXPECT_EQ(Load("caf\xE9 \xFC"), u"caf\u00E9 \u00FC");
    EXPECT_EQ(Load("\xC3"), u"\u00C3");
    EXPECT_EQ(Load("\xED\xA0\x80"), u"\u00ED\u00A0\u0080");
}

TEST_F(TextFile, AHalfUnitAtTheEndIsDropped) {
    EXPECT_EQ(Load("\xFF\xFE"
                   "A\0B"s),
              u"A");
}

TEST_F(TextFile, LineEndsStay) { EXPECT_EQ(Load("one\r\ntwo\n"), u"one\r\ntwo\n"); }

TEST_F(TextFile, AnEmptyTextIsNone) {
    EXPECT_EQ(Load(""), u"(none)");
    EXPECT_EQ(Load("\xFF\xFE"), u"(none)");
    EXPECT_EQ(Load("\xFF\xFE"
                   "A"),
              u"(none)");
    EXPECT_EQ(Load("\xEF\xBB\xBF"), u"(none)");
    EXPECT_EQ(Load("\0text"s), u"(none)");
}

TEST_F(TextFile, AFileAboveTheLimitIsCutAtALinesEnd) {
    EXPECT_EQ(Load(std::string(g_uTextFileBytesMax, 'a')), std::u16string(g_uTextFileBytesMax, u'a'));
    EXPECT_EQ(Load("one\ntwo\r\n" + std::string(g_uTextFileBytesMax, 'a')), u"one\ntwo\r");
    std::string strUnits = "\xFF\xFE"
                           "A\0\n\0B\0\n\0"s;
    for (u32 i = 0; i < g_uTextFileBytesMax / 2; ++i) strUnits += "\x0A\x0A"; // a letter, not two line ends
    EXPECT_EQ(Load(strUnits), u"A\nB");
    EXPECT_EQ(Load("\xFE\xFF"
                   "\0A\0\n"s +
                   std::string(g_uTextFileBytesMax, '\x0A')),
              u"A");
}

TEST_F(TextFile, ALineAboveTheLimitIsCutBehindAWholeCharacter) {
    EXPECT_EQ(Load(std::string(g_uTextFileBytesMax + 1, 'a')), std::u16string(g_uTextFileBytesMax, u'a'));
    const std::u16string wzMost(g_uTextFileBytesMax - 2, u'a');
    const std::string strMost(wzMost.begin(), wzMost.end());
    EXPECT_EQ(Load(strMost + "\xE2\x82\xAC and more"), wzMost) << "a third of it would fall away";
    EXPECT_EQ(Load(strMost + "\xF0\x9F\x98\x80 and more"), wzMost);
    EXPECT_EQ(Load(strMost + "\xC3\xA4 and more"), wzMost + u"\u00E4");
    std::string strUnits = "\xFF\xFE";
    for (u32 i = 0; i < g_uTextFileBytesMax / 4; ++i) strUnits += "\x3D\xD8\x00\xDE"s;
    EXPECT_EQ(Load(strUnits + strUnits.substr(2)).size(), g_uTextFileBytesMax / 2 - 2) << "no half pair";
}

TEST_F(TextFile, WhatIsNoPlainFileIsNone) {
    const std::string strPath = m_folder.Path("Profiles/Mine/odd.txt");
    ForEachOddFile(strPath, [&](const char* szKind) {
        char16_t wzPath[g_uProfilePathCapacity];
        ASSERT_TRUE(g_fnResolveProfilePath(wzPath, u"odd.txt"));
        EXPECT_EQ(g_fnCheckMemoFile(u"odd.txt"), std::string_view(szKind).starts_with("file")) << szKind;
        EXPECT_EQ(g_fnLoadTextFromFile(wzPath), nullptr) << szKind;
    });
}

TEST_F(TextFile, NamesThatLeaveTheProfileFolderAreRefused) {
    std::filesystem::create_directories(m_folder.Path("Profiles/Mine/sub"));
    m_folder.Write("Profiles/Mine/a..b.txt", "in");
    m_folder.Write("secret.txt", "out");
    const std::string strFull = m_folder.Path("secret.txt");
    EXPECT_TRUE(g_fnCheckMemoFile(u"a..b.txt"));
    EXPECT_TRUE(g_fnCheckMemoFile(u".\\a..b.txt"));
    char16_t wzPath[g_uProfilePathCapacity] = u"x";
    for (const std::u16string& wz :
         {u"..\\..\\secret.txt"s, u"../../secret.txt"s, u"sub\\..\\..\\..\\secret.txt"s,
          u"..\\Mine\\a..b.txt"s, u".. \\a"s, u"...\\a"s, u".."s, u"\\a"s, u"/a"s, u"\\\\server\\share\\a"s,
          u"C:a"s, u"C:\\a"s, std::u16string(strFull.begin(), strFull.end())}) {
        EXPECT_FALSE(g_fnResolveProfilePath(wzPath, wz.c_str())) << strFull;
        EXPECT_EQ(wzPath[0], 0);
        EXPECT_FALSE(g_fnCheckMemoFile(wz.c_str()));
        CTextBox_Base box;
        EXPECT_FALSE(box.m_fnLoadText(wz.c_str(), false));
    }
}

TEST_F(TextFile, AMissingFileIsNone) {
    EXPECT_FALSE(g_fnCheckMemoFile(u"absent.txt"));
    char16_t wzPath[g_uProfilePathCapacity];
    ASSERT_TRUE(g_fnResolveProfilePath(wzPath, u"absent.txt"));
    EXPECT_EQ(g_fnLoadTextFromFile(wzPath), nullptr);
}

TEST_F(TextFile, NamesAreThoseOfTheProfileFolder) {
    char16_t wzPath[g_uProfilePathCapacity];
    ASSERT_TRUE(g_fnResolveProfilePath(wzPath, u"sub\\memo.txt"));
    const std::u16string_view path(wzPath);
    EXPECT_TRUE(path.ends_with(u"/Data/Profiles/Mine/sub/memo.txt"));
    EXPECT_FALSE(g_fnResolveProfilePath(wzPath, std::u16string(250, u'x').c_str()));
    EXPECT_EQ(wzPath[0], 0);
}

TEST_F(TextFile, AProfileThatIsNoFolderHasNoFiles) {
    char16_t wzPath[g_uProfilePathCapacity];
    g_fnSetProfileName(u"..");
    EXPECT_FALSE(g_fnResolveProfilePath(wzPath, u"memo.txt"));
    EXPECT_FALSE(g_fnCheckMemoFile(u"memo.txt"));
}

TEST_F(TextFile, ATextBoxLoadsByNameOrByFullPath) {
    m_folder.Write("Profiles/Mine/memo.txt", "hello");
    CTextBox_Base box;
    EXPECT_TRUE(box.m_fnLoadText(u"memo.txt", false));
    EXPECT_EQ(std::u16string(box.m_wzText.get()), u"hello");
    char16_t wzPath[g_uProfilePathCapacity];
    ASSERT_TRUE(g_fnCheckMemoFile(u"memo.txt", wzPath));
    m_folder.Write("Profiles/Mine/memo.txt", "again");
    EXPECT_TRUE(box.m_fnLoadText(wzPath, true));
    EXPECT_EQ(std::u16string(box.m_wzText.get()), u"again");
    EXPECT_FALSE(box.m_fnLoadText(u"absent.txt", false));
    EXPECT_FALSE(box.m_fnLoadText(nullptr, true));
    m_folder.Write("Profiles/Mine/memo.txt", "");
    EXPECT_FALSE(box.m_fnLoadText(wzPath, true));
    EXPECT_EQ(std::u16string(box.m_wzText.get()), u"again");
}

TEST_F(TextFile, ALoneSurrogateInAFileLeavesTheOldText) {
    m_folder.Write("Profiles/Mine/memo.txt", "\xFF\xFE"
                                             "A\0\x00\xD8"s);
    CTextBox_Base box;
    box.m_fnSetTextW(u"old");
    EXPECT_FALSE(box.m_fnLoadText(u"memo.txt", false));
    EXPECT_EQ(std::u16string(box.m_wzText.get()), u"old");
}

} // namespace
