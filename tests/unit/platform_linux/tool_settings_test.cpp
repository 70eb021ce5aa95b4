// The settings file as tools write it.
#include "tests/support/settings_round_trip.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <thread>
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
    EXPECT_EQ(Text(), strOwn);
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

TEST_F(ToolSettingsFile, WhatIsWrittenForAWhileGoesAgain) { settings_round_trip::RunForAWhile(); }

TEST_F(ToolSettingsFile, TheFileOfBeforeComesBackToTheLastByte) {
    const std::string strOwn = "\xEF\xBB\xBF; mine\r\n[SOFTWARE\\Zarn\\ORVIN-OSD\\Camera]\r\nCapMode=1";
    Write(strOwn);
    TemporarySettings change;
    ASSERT_TRUE(change.Set({{"Camera", "CapMode", 2, "", false}, {"Camera", "DirPath", {}, "/x", false}}));
    EXPECT_EQ(SettingNumber("Camera", "CapMode"), 2u);
    ASSERT_TRUE(change.Restore());
    EXPECT_EQ(Text(), strOwn);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_file.parent_path()), {}), 1);
}

TEST_F(ToolSettingsFile, WithoutAFileNothingIsLeft) {
    {
        TemporarySettings change;
        ASSERT_TRUE(change.Set({{"Camera", "CapMode", 2, "", false}}));
    }
    EXPECT_FALSE(fs::exists(m_file.parent_path()));
}

TEST_F(ToolSettingsFile, ALinkStaysALinkAfterAWhile) {
    Write("[X]\n");
    fs::rename(m_file, m_root / "installed.ini");
    fs::create_symlink(m_root / "installed.ini", m_file);
    {
        TemporarySettings change;
        ASSERT_TRUE(change.Set({{"Camera", "CapMode", 2, "", false}}));
        EXPECT_FALSE(fs::is_symlink(m_file));
    }
    EXPECT_TRUE(fs::is_symlink(m_file));
    EXPECT_EQ(Text(), "[X]\n");
}

TEST_F(ToolSettingsFile, AChangeOfOthersMeanwhileStays) {
    Write("[SOFTWARE\\Zarn\\ORVIN-OSD\\Camera]\nCapMode = 1\n");
    {
        TemporarySettings change;
        ASSERT_TRUE(change.Set({{"Camera", "CapMode", 2, "", false}, {"Camera", "CapType", 3, "", false}}));
        ASSERT_TRUE(StoreSettings({{"FPSLimiter", "Enable", 1, "", false}}));
    }
    EXPECT_EQ(SettingNumber("Camera", "CapMode"), 1u);
    EXPECT_EQ(SettingNumber("Camera", "CapType"), std::nullopt);
    EXPECT_EQ(SettingNumber("FPSLimiter", "Enable"), 1u);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_file.parent_path()), {}), 1);
}

TEST_F(ToolSettingsFile, WhatAKilledOneLeftIsHealedByTheNext) {
    Write("[SOFTWARE\\Zarn\\ORVIN-OSD\\Camera]\nCapMode = 1\n");
    const pid_t iChild = fork();
    if (iChild == 0) {
        TemporarySettings change;
        change.Set({{"Camera", "CapMode", 2, "", false}});
        _exit(0); // as if killed
    }
    ASSERT_EQ(waitpid(iChild, nullptr, 0), iChild);
    EXPECT_EQ(SettingNumber("Camera", "CapMode"), 2u);
    {
        TemporarySettings change;
        ASSERT_TRUE(change.Set({{"Camera", "CapMode", 3, "", false}}));
    }
    EXPECT_EQ(SettingNumber("Camera", "CapMode"), 1u);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_file.parent_path()), {}), 1);
}

TEST_F(ToolSettingsFile, ASecondOneWaitsForTheFirst) {
    TemporarySettings first;
    ASSERT_TRUE(first.Set({{"Camera", "CapMode", 2, "", false}}));
    std::atomic<bool> bGone = false;
    bool bWaited = false;
    std::thread thread([&] {
        TemporarySettings second;
        second.Set({{"Camera", "CapMode", 3, "", false}});
        bWaited = bGone;
    });
    std::this_thread::yield();
    bGone = true;
    ASSERT_TRUE(first.Restore());
    thread.join();
    EXPECT_TRUE(bWaited);
    EXPECT_EQ(SettingNumber("Camera", "CapMode"), std::nullopt);
}
