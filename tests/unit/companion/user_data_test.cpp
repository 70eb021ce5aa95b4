#include "companion/user_data.h"
#include <fstream>
#include <gtest/gtest.h>

namespace fs = std::filesystem;
using namespace companion;

namespace {

/// Installed data with one profile, and a user's place that does not exist yet.
class UserData : public testing::Test {
  protected:
    void SetUp() override {
        m_pathRoot = fs::temp_directory_path() / ("orvin-user-data-" + std::to_string(m_uNumber++));
        fs::remove_all(m_pathRoot);
        Write(Installed() / "Data" / "OSD.ini", "installed");
        Write(Installed() / "Data" / "Profiles" / "Default" / "OSD.xml", "installed");
        Write(Installed() / "Settings" / "settings.ini", "installed");
        std::error_code error;
        fs::create_symlink(Installed(), m_pathRoot / "link", error);
        if (error) GTEST_SKIP() << "this system makes no links, and its packages need none";
    }
    void TearDown() override { fs::remove_all(m_pathRoot); }

    fs::path Installed() const { return m_pathRoot / "installed"; }
    fs::path User() const { return m_pathRoot / "home" / "ZARN" / "Deck" / "OSD"; }
    static void Write(const fs::path& path, const char* szText) {
        fs::create_directories(path.parent_path());
        std::ofstream(path) << szText;
    }
    static std::string Read(const fs::path& path) {
        std::string strText;
        std::ifstream(path) >> strText;
        return strText;
    }
    void Link() const { EXPECT_TRUE(LinkUserData(Installed(), User())); }

    fs::path m_pathRoot;
    static inline unsigned m_uNumber = 0;
};

} // namespace

TEST_F(UserData, EverythingInstalledIsSeenInTheUsersPlace) {
    Link();
    EXPECT_EQ(Read(User() / "Data" / "OSD.ini"), "installed");
    EXPECT_EQ(Read(User() / "Data" / "Profiles" / "Default" / "OSD.xml"), "installed");
    EXPECT_EQ(Read(User() / "Settings" / "settings.ini"), "installed");
    EXPECT_FALSE(fs::is_symlink(User() / "Data" / "Profiles")); // own profiles go beside
}

TEST_F(UserData, OwnFilesComeFirstAndStay) {
    Write(User() / "Data" / "OSD.ini", "own");
    Write(User() / "Data" / "Profiles" / "Default" / "OSD.xml", "own");
    Link();
    Link();
    EXPECT_EQ(Read(User() / "Data" / "OSD.ini"), "own");
    EXPECT_EQ(Read(User() / "Data" / "Profiles" / "Default" / "OSD.xml"), "own");
    EXPECT_EQ(Read(Installed() / "Data" / "OSD.ini"), "installed");
    EXPECT_TRUE(UnlinkUserData(Installed(), User()));
    EXPECT_EQ(Read(User() / "Data" / "OSD.ini"), "own");
    EXPECT_FALSE(fs::exists(User() / "Settings"));
}

TEST_F(UserData, WhatIsNotInstalledAnyMoreGoes) {
    Link();
    fs::create_symlink("/nowhere", User() / "Data" / "mine"); // a dead link of the user's own
    fs::remove_all(Installed() / "Data" / "Profiles" / "Default");
    Write(Installed() / "Data" / "Profiles" / "New" / "OSD.xml", "new");
    Link();
    EXPECT_FALSE(fs::is_symlink(User() / "Data" / "Profiles" / "Default"));
    EXPECT_EQ(Read(User() / "Data" / "Profiles" / "New" / "OSD.xml"), "new");
    EXPECT_TRUE(fs::is_symlink(User() / "Data" / "mine"));
}

TEST_F(UserData, TakenBackNothingIsLeft) {
    Link();
    EXPECT_TRUE(UnlinkUserData(Installed(), User()));
    EXPECT_FALSE(fs::exists(m_pathRoot / "home" / "ZARN"));
    EXPECT_TRUE(fs::exists(m_pathRoot / "home"));
    EXPECT_EQ(Read(Installed() / "Data" / "OSD.ini"), "installed");
}

TEST_F(UserData, APlaceThatCannotBeMadeIsToldOf) {
    Write(m_pathRoot / "home", "a file");
    const Result st = LinkUserData(Installed(), User());
    EXPECT_FALSE(st);
    EXPECT_NE(st.strError.find("cannot make"), std::string::npos);
}

TEST_F(UserData, SettingsThatSayWhatTheInstalledOnesSayAreALinkAgain) {
    Link();
    const fs::path pathFile = User() / "Settings" / "settings.ini";
    fs::remove(pathFile);
    Write(pathFile, "own");
    RelinkSettings(Installed(), User());
    EXPECT_FALSE(fs::is_symlink(pathFile));
    EXPECT_EQ(Read(pathFile), "own");
    Write(pathFile, "installed");
    RelinkSettings(Installed(), User());
    EXPECT_TRUE(fs::is_symlink(pathFile));
    EXPECT_EQ(Read(Installed() / "Settings" / "settings.ini"), "installed");
}
