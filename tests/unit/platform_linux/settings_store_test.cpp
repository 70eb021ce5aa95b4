// The settings file that stands for the registry.
#include "platform/settings_store.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

struct LinuxSettings : ::testing::Test {
    void SetUp() override {
        m_root = fs::temp_directory_path() / ("orvin-settings-" + std::to_string(getpid()));
        m_folder = m_root / "ZARN/Orvin Deck/ORVIN-OSD/Settings";
        fs::create_directories(m_folder);
        setenv("ORVIN_OSD_APPDATA", m_root.c_str(), 1);
    }
    void TearDown() override {
        unsetenv("ORVIN_OSD_APPDATA");
        fs::remove_all(m_root);
    }
    void Write(const std::string& strBytes) {
        std::ofstream(m_folder / "settings.ini", std::ios::binary | std::ios::trunc) << strBytes;
    }
    /// As a careful writer does it: a new file takes the old one's place.
    void Replace(const std::string& strBytes) {
        std::ofstream(m_folder / "new", std::ios::binary) << strBytes;
        fs::rename(m_folder / "new", m_folder / "settings.ini");
    }
    static std::optional<u32> Number(const char16_t* wzPath, const char16_t* wzName) {
        const platform::SettingsKey hKey = platform::OpenSettingsKey(wzPath);
        u32 uValue = 0, uBytes = sizeof uValue;
        platform::SettingsType eType{};
        const bool bFound = platform::QuerySettingsValue(hKey, wzName, eType, &uValue, uBytes);
        platform::CloseSettingsKey(hKey);
        return bFound ? std::optional<u32>(uValue) : std::nullopt;
    }
    fs::path m_root, m_folder;
};

} // namespace

TEST_F(LinuxSettings, AMissingFileHasNoKeys) {
    EXPECT_EQ(platform::OpenSettingsKey(u"k"), nullptr);
    fs::remove_all(m_root);
    EXPECT_EQ(platform::OpenSettingsKey(u"k"), nullptr);
    Number(u"k", u"v");
    platform::CloseSettingsKey(nullptr);
}

TEST_F(LinuxSettings, ValuesComeFromTheFileBesideTheDataFolder) {
    Write("[SOFTWARE\\Zarn\\ORVIN-OSD\\FPSLimiter]\nEnable=1\nFPSTarget=0x90\n");
    EXPECT_EQ(Number(u"software\\zarn\\orvin-osd\\fpslimiter", u"FPSTARGET"), 144u);
    EXPECT_EQ(Number(u"SOFTWARE\\Zarn\\ORVIN-OSD\\FPSLimiter", u"None"), std::nullopt);
    EXPECT_EQ(Number(u"SOFTWARE\\Zarn\\ORVIN-OSD", u"Enable"), std::nullopt);
}

TEST_F(LinuxSettings, AChangedFileIsReadAgain) {
    Write("[k]\nv=1\n");
    EXPECT_EQ(Number(u"k", u"v"), 1u);
    Replace("[k]\nv=2\n");
    EXPECT_EQ(Number(u"k", u"v"), 2u);
    Write("[k]\nv=333\n");
    EXPECT_EQ(Number(u"k", u"v"), 333u);
    fs::remove(m_folder / "settings.ini");
    EXPECT_EQ(Number(u"k", u"v"), std::nullopt);
}

TEST_F(LinuxSettings, AnOpenKeyKeepsWhatItShows) {
    Write("[k]\nv=1\n[k\\s]\n");
    const platform::SettingsKey hKey = platform::OpenSettingsKey(u"k");
    ASSERT_NE(hKey, nullptr);
    Replace("[other]\n");
    EXPECT_EQ(Number(u"k", u"v"), std::nullopt);
    u32 uValue = 0, uBytes = sizeof uValue;
    platform::SettingsType eType{};
    EXPECT_TRUE(platform::QuerySettingsValue(hKey, u"v", eType, &uValue, uBytes));
    EXPECT_EQ(uValue, 1u);
    char16_t wzName[256];
    EXPECT_TRUE(platform::EnumSettingsSubkey(hKey, 0, wzName, 256));
    EXPECT_EQ(std::u16string(wzName), u"s");
    EXPECT_FALSE(platform::EnumSettingsSubkey(hKey, 1, wzName, 256));
    EXPECT_TRUE(platform::EnumSettingsValue(hKey, 0, wzName, 256));
    EXPECT_EQ(std::u16string(wzName), u"v");
    EXPECT_FALSE(platform::EnumSettingsValue(hKey, 1, wzName, 256));
    platform::CloseSettingsKey(hKey);
}

TEST_F(LinuxSettings, APipeInTheFilesPlaceDoesNotBlock) {
    ASSERT_EQ(mkfifo((m_folder / "settings.ini").c_str(), 0600), 0);
    EXPECT_EQ(platform::OpenSettingsKey(u"k"), nullptr);
}
