#include "companion/profile_commands.h"
#include "companion/profile_folder.h"
#include "platform/tool.h"
#include "tests/support/odd_files.h"
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace companion;
namespace fs = std::filesystem;

namespace {

void Write(const fs::path& path, const std::string& strText) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << strText;
}

std::string Read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

/// A data folder with profiles in it.
class CompanionProfiles : public ::testing::Test {
  protected:
    void SetUp() override {
        m_path = PathOfText(platform::tool::TempFolder()) /
                 ("orvin-profiles-" + std::to_string(platform::tool::OwnProcessId()));
        fs::remove_all(m_path);
        Write(m_path / "Profiles/Plain/OSD.xml", "<OSD/>");
        Write(m_path / "Profiles/Plain/memo.txt", "memo");
        Write(m_path / "Profiles/Plain/deep/more.txt", "more");
        Write(m_path / "Profiles/Bare/readme.txt", "no profile");
    }
    void TearDown() override { fs::remove_all(m_path); }

    fs::path m_path;
};

} // namespace

TEST(CompanionProfileName, PlainFolderNamesAreTaken) {
    for (const char* szGood : {"Default", "My Profile", "a", "Größe", "..a", "a.b", "\xF0\x9F\x8E\xAE"})
        EXPECT_EQ(ProfileNameFault(szGood), "") << szGood;
    EXPECT_EQ(ProfileNameFault(std::string(511, 'p')), "");
}

TEST(CompanionProfileName, WhatLeavesTheProfilesFolderIsRefused) {
    for (const char* szBad :
         {"", ".", "..", "../x", "..\\x", "a/b", "a\\b", "/etc", "C:", "C:x", "\\\\server"})
        EXPECT_NE(ProfileNameFault(szBad), "") << szBad;
}

TEST(CompanionProfileName, WhatNoFolderCanBeCalledIsRefused) {
    for (const char* szBad :
         {"a*", "a?", "a\"b", "<a>", "a|b", "a\nb", "a\x7F", "a.", "a ", " a", "...", "\xFF"})
        EXPECT_NE(ProfileNameFault(szBad), "") << szBad;
    EXPECT_NE(ProfileNameFault(std::string(512, 'p')), "");
    EXPECT_NE(ProfileNameFault("\xC2\x85"), "") << "a control character above ASCII";
}

TEST(CompanionProfileName, LengthIsCountedInUtf16) {
    std::string strPairs;
    for (int i = 0; i < 256; ++i) strPairs += "\xF0\x9F\x8E\xAE"; // two units each
    EXPECT_NE(ProfileNameFault(strPairs), "");
    EXPECT_EQ(ProfileNameFault(strPairs.substr(4)), "");
}

TEST_F(CompanionProfiles, ListHoldsFoldersWithADocument) {
    Write(m_path / "Profiles/Another/OSD.xml", "");
    EXPECT_EQ(ProfileNames(m_path), (std::vector<std::string>{"Another", "Plain"}));
    EXPECT_TRUE(ProfileNames(m_path / "nowhere").empty());
}

TEST_F(CompanionProfiles, FoundByName) {
    ProfilePlace st;
    ASSERT_TRUE(FindProfile(m_path, "Plain", st));
    EXPECT_EQ(st.strName, "Plain");
    EXPECT_EQ(st.pathFolder, m_path / "Profiles" / "Plain");
    EXPECT_EQ(FindProfile(m_path, "Bare", st).iCode, kNotFound);
    EXPECT_EQ(FindProfile(m_path, "Nowhere", st).iCode, kNotFound);
    EXPECT_EQ(FindProfile(m_path, "", st).iCode, kNotFound);
}

TEST_F(CompanionProfiles, FoundByThePathOfTheFolderOrOfTheDocument) {
    for (const char* szForm : {"", "/", "/OSD.xml", "/../Plain"}) {
        ProfilePlace st;
        ASSERT_TRUE(FindProfile("nowhere", TextOfPath(m_path / "Profiles" / "Plain") + szForm, st)) << szForm;
        EXPECT_EQ(st.strName, "Plain") << szForm;
        EXPECT_TRUE(fs::equivalent(st.pathFolder, m_path / "Profiles" / "Plain")) << szForm;
    }
    ProfilePlace st;
    const Result stResult = FindProfile("nowhere", TextOfPath(m_path / "Profiles" / "Bare"), st);
    EXPECT_EQ(stResult.iCode, kNotFound);
    EXPECT_NE(stResult.strError.find("OSD.xml"), std::string::npos);
}

TEST_F(CompanionProfiles, NewCopiesTheWholeFolder) {
    ASSERT_TRUE(CopyProfile(m_path, "Mine", "Plain"));
    EXPECT_EQ(Read(m_path / "Profiles/Mine/OSD.xml"), "<OSD/>");
    EXPECT_EQ(Read(m_path / "Profiles/Mine/memo.txt"), "memo");
    EXPECT_EQ(Read(m_path / "Profiles/Mine/deep/more.txt"), "more");
}

TEST_F(CompanionProfiles, NewFromAPathOutsideOfTheDataFolder) {
    const fs::path pathData = m_path / "other";
    ASSERT_TRUE(CopyProfile(pathData, "Mine", TextOfPath(m_path / "Profiles" / "Plain")));
    EXPECT_EQ(Read(pathData / "Profiles/Mine/OSD.xml"), "<OSD/>");
}

TEST_F(CompanionProfiles, NewRefusesWhatExistsAndLeavesIt) {
    const Result stResult = CopyProfile(m_path, "Bare", "Plain");
    EXPECT_EQ(stResult.iCode, kFailed);
    EXPECT_NE(stResult.strError.find("exists"), std::string::npos);
    EXPECT_FALSE(fs::exists(m_path / "Profiles/Bare/OSD.xml"));
    EXPECT_EQ(CopyProfile(m_path, "Plain", "Plain").iCode, kFailed);
}

TEST_F(CompanionProfiles, NewRefusesNamesAndSourcesThatAreNone) {
    EXPECT_EQ(CopyProfile(m_path, "../Out", "Plain").iCode, kUsage);
    EXPECT_EQ(CopyProfile(m_path, "Mine", "Nowhere").iCode, kNotFound);
    EXPECT_EQ(CopyProfile(m_path, "Mine", "Bare").iCode, kNotFound);
    EXPECT_FALSE(fs::exists(m_path / "Out"));
    EXPECT_FALSE(fs::exists(m_path / "Profiles/Mine"));
}

TEST_F(CompanionProfiles, NewRefusesAFolderThatWouldHoldTheCopy) {
    Write(m_path / "OSD.xml", "<OSD/>");
    EXPECT_EQ(CopyProfile(m_path, "Mine", TextOfPath(m_path)).iCode, kFailed);
    EXPECT_FALSE(fs::exists(m_path / "Profiles/Mine"));
}

TEST_F(CompanionProfiles, AChosenDataFolderMustExist) {
    fs::path path;
    EXPECT_TRUE(FindDataFolder(TextOfPath(m_path), path));
    EXPECT_EQ(path, m_path);
    EXPECT_EQ(FindDataFolder(TextOfPath(m_path / "nowhere"), path).iCode, kNotFound);
}

TEST(CompanionProfileName, ANameWithoutAFolderIsRefusedUnlessForced) {
    const std::string strName = "no profile of that name " + std::to_string(platform::tool::OwnProcessId());
    const Result stRefused = NeedProfileFolder(strName, false);
    EXPECT_EQ(stRefused.iCode, kNotFound);
    EXPECT_NE(stRefused.strError.find("there is no "), std::string::npos);
    EXPECT_NE(stRefused.strError.find("--force"), std::string::npos);
    EXPECT_TRUE(NeedProfileFolder(strName, true));
    EXPECT_TRUE(NeedProfileFolder("", false)); // the default profile
}

TEST(CompanionDataFolder, LiesBelowTheCommonFolder) {
    fs::path path;
    ASSERT_TRUE(FindDataFolder("", path));
    const std::string strText = path.generic_string();
    EXPECT_TRUE(strText.ends_with("/ZARN/Orvin Deck/ORVIN-OSD/Data")) << strText;
}

TEST(ProfileFolder, ReadFileReadsPlainFilesAloneAndNoMoreThanAskedFor) {
    const fs::path path = PathOfText(platform::tool::TempFolder()) /
                          ("orvin-odd-" + std::to_string(platform::tool::OwnProcessId()));
    ForEachOddFile(TextOfPath(path), [&](const char* szKind) {
        std::string str = "x";
        const bool bPlain = std::string(szKind).starts_with("file");
        EXPECT_EQ(ReadFile(path, 100, str), bPlain) << szKind;
        EXPECT_EQ(str.size(), bPlain ? 100u : 0u) << szKind;
    });
}
