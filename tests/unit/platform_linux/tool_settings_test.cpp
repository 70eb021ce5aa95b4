// The settings file as tools write it.
#include "tests/support/settings_round_trip.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace platform::tool;

namespace {

struct ToolSettingsFile : ::testing::Test {
    void SetUp() override {
        m_root = fs::temp_directory_path() / ("orvin-tool-settings-" + std::to_string(getpid()));
        m_file = m_root / "ZARN/Orvin Deck/ORVIN-OSD/Settings/settings.ini";
        fs::create_directories(m_file.parent_path().parent_path());
        setenv("ORVIN_OSD_APPDATA", m_root.c_str(), 1);
    }
    void TearDown() override {
        unsetenv("ORVIN_OSD_APPDATA");
        fs::remove_all(m_root);
    }
    void Write(const std::string& str) const {
        fs::create_directories(m_file.parent_path());
        std::ofstream(m_file, std::ios::binary) << str;
    }
    std::string Text() const {
        std::stringstream text;
        text << std::ifstream(m_file, std::ios::binary).rdbuf();
        return text.str();
    }
    fs::path m_root, m_file;
};

} // namespace

TEST_F(ToolSettingsFile, WhatIsWrittenIsRead) { settings_round_trip::Run(); }

TEST_F(ToolSettingsFile, TheFileIsLikeNewWhenAllIsTakenBack) {
    const std::string strOwn = "; mine\n[SOFTWARE\\Zarn\\ORVIN-OSD\\Camera]\nCapMode = 1\n";
    Write(strOwn);
    settings_round_trip::Run();
    EXPECT_EQ(Text(), strOwn + "\n");
}

TEST_F(ToolSettingsFile, TheSecondRootIsWrittenWhereThereIsOne) {
    Write("[SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD\\Camera]\nCapMode = 1\n");
    ASSERT_TRUE(StoreSettings({{"Camera", "CapMode", 2, "", false}}));
    EXPECT_EQ(Text(), "[SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD\\Camera]\nCapMode = 2\n");
}

TEST_F(ToolSettingsFile, ALinkToAnInstalledFileIsReplacedAndItsTargetStays) {
    Write("[SOFTWARE\\Zarn\\ORVIN-OSD\\Camera]\nCapMode = 1\n");
    fs::rename(m_file, m_root / "installed.ini");
    fs::create_symlink(m_root / "installed.ini", m_file);
    ASSERT_TRUE(StoreSettings({{"Camera", "CapMode", 2, "", false}}));
    EXPECT_EQ(SettingNumber("Camera", "CapMode"), 2u);
    EXPECT_FALSE(fs::is_symlink(m_file));
    std::stringstream text;
    text << std::ifstream(m_root / "installed.ini").rdbuf();
    EXPECT_EQ(text.str(), "[SOFTWARE\\Zarn\\ORVIN-OSD\\Camera]\nCapMode = 1\n");
}

TEST_F(ToolSettingsFile, AFileOfWideCharactersIsLeftAlone) {
    Write("\xFF\xFE[");
    EXPECT_FALSE(StoreSettings({{"Camera", "CapMode", 2, "", false}}));
    EXPECT_EQ(Text(), "\xFF\xFE[");
}

TEST_F(ToolSettingsFile, ATooLongFileIsNotMade) {
    const std::string strText(1 << 20, 'x');
    EXPECT_FALSE(StoreSettings({{"Camera", "DirPath", {}, strText, false}}));
    EXPECT_FALSE(fs::exists(m_file));
}

TEST_F(ToolSettingsFile, AFolderThatCannotBeWrittenSaysWhy) {
    fs::create_directories(m_file); // a folder where the file should be
    const Result st = StoreSettings({{"Camera", "CapMode", 2, "", false}});
    EXPECT_NE(st.strError.find("settings.ini"), std::string::npos) << st.strError;
    EXPECT_EQ(std::distance(fs::directory_iterator(m_file.parent_path()), {}), 1) << "nothing is left over";
}
