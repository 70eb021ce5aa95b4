// Registry values, and settings files as the system's own profile calls read them.
#include "platform/ini_file.h"
#include "platform/settings_store.h"
#include "platform/win32/windows_api.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using platform::SettingsType;

const wchar_t* W(const char16_t* wz) { return reinterpret_cast<const wchar_t*>(wz); }

std::u16string U(const wchar_t* wz) { return reinterpret_cast<const char16_t*>(wz); }

constexpr char16_t g_wzKey[] = u"SOFTWARE\\ORVIN-OSD unit test";

struct Registry : ::testing::Test {
    void SetUp() override {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, W(g_wzKey));
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, W(g_wzKey), 0, nullptr, REG_OPTION_VOLATILE,
                                  KEY_ALL_ACCESS, nullptr, &m_hWriter, nullptr),
                  ERROR_SUCCESS);
        m_hKey = platform::OpenSettingsKey(g_wzKey);
        ASSERT_NE(m_hKey, nullptr);
    }
    void TearDown() override {
        platform::CloseSettingsKey(m_hKey);
        RegCloseKey(m_hWriter);
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, W(g_wzKey));
    }
    void Set(const char16_t* wzName, DWORD uType, const void* pBytes, u32 uBytes) {
        ASSERT_EQ(RegSetValueExW(m_hWriter, W(wzName), 0, uType, static_cast<const BYTE*>(pBytes), uBytes),
                  ERROR_SUCCESS);
    }
    void AddSubkey(const std::u16string& wstrName) {
        HKEY hKey = nullptr;
        RegCreateKeyExW(m_hWriter, W(wstrName.c_str()), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, &hKey, nullptr);
        RegCloseKey(hKey);
    }
    HKEY m_hWriter = nullptr;
    platform::SettingsKey m_hKey = nullptr;
};

} // namespace

TEST_F(Registry, ValuesComeWithTypeAndSize) {
    const u32 uNumber = 0xFFFFFFF7;
    Set(u"number", REG_DWORD, &uNumber, 4);
    Set(u"text", REG_SZ, u"ab", 6);
    Set(u"bytes", REG_BINARY, "xyz", 3);
    SettingsType eType{};
    u32 uValue = 0, uBytes = 4;
    EXPECT_TRUE(platform::QuerySettingsValue(m_hKey, u"NUMBER", eType, &uValue, uBytes));
    EXPECT_EQ(eType, SettingsType::Number);
    EXPECT_EQ(uValue, uNumber);
    char16_t wzText[8] = {};
    uBytes = sizeof wzText;
    EXPECT_TRUE(platform::QuerySettingsValue(m_hKey, u"text", eType, wzText, uBytes));
    EXPECT_EQ(eType, SettingsType::Text);
    EXPECT_EQ(uBytes, 6u);
    EXPECT_EQ(std::u16string(wzText), u"ab");
    uBytes = 4;
    EXPECT_TRUE(platform::QuerySettingsValue(m_hKey, u"bytes", eType, &uValue, uBytes));
    EXPECT_EQ(eType, SettingsType::Other);
    EXPECT_EQ(uBytes, 3u);
}

TEST_F(Registry, WhatIsMissingOrTooLongIsNotGiven) {
    Set(u"text", REG_SZ, u"ab", 6);
    SettingsType eType{};
    u32 uValue = 0, uBytes = 4;
    EXPECT_FALSE(platform::QuerySettingsValue(m_hKey, u"text", eType, &uValue, uBytes));
    uBytes = 4;
    EXPECT_FALSE(platform::QuerySettingsValue(m_hKey, u"none", eType, &uValue, uBytes));
    EXPECT_FALSE(platform::QuerySettingsValue(nullptr, u"text", eType, &uValue, uBytes));
    EXPECT_EQ(platform::OpenSettingsKey(u"SOFTWARE\\ORVIN-OSD no such key"), nullptr);
}

TEST_F(Registry, NamesAreListed) {
    const std::u16string wstrLongest(255, u'k');
    AddSubkey(u"a");
    AddSubkey(wstrLongest);
    Set(u"v", REG_SZ, u"", 2);
    std::vector<char16_t> name(16384);
    ASSERT_TRUE(platform::EnumSettingsSubkey(m_hKey, 0, name.data(), 256));
    EXPECT_EQ(std::u16string(name.data()), u"a");
    ASSERT_TRUE(platform::EnumSettingsSubkey(m_hKey, 1, name.data(), 256));
    EXPECT_EQ(std::u16string(name.data()), wstrLongest);
    EXPECT_FALSE(platform::EnumSettingsSubkey(m_hKey, 2, name.data(), 256));
    ASSERT_TRUE(platform::EnumSettingsValue(m_hKey, 0, name.data(), 16384));
    EXPECT_EQ(std::u16string(name.data()), u"v");
    EXPECT_FALSE(platform::EnumSettingsValue(m_hKey, 1, name.data(), 16384));
}

namespace {

/// A file of its own for each text: the system keeps what it read for a while.
std::filesystem::path FileOf(const std::string& strBytes) {
    static int s_iNumber = 0;
    const std::string strName =
        "orvin-ini-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++s_iNumber) + ".ini";
    const std::filesystem::path path = std::filesystem::temp_directory_path() / strName;
    std::FILE* const pFile = _wfopen(path.c_str(), L"wb");
    std::fwrite(strBytes.data(), 1, strBytes.size(), pFile);
    std::fclose(pFile);
    return path;
}

constexpr wchar_t g_wzMissing[] = L"(missing)";

std::u16string BySystem(const std::filesystem::path& path, const char16_t* wzSection, const char16_t* wzKey) {
    wchar_t wzValue[260];
    GetPrivateProfileStringW(W(wzSection), W(wzKey), g_wzMissing, wzValue, 260, path.c_str());
    return U(wzValue);
}

std::u16string ByReader(const std::filesystem::path& path, const char16_t* wzSection, const char16_t* wzKey) {
    const platform::CIniFile file = platform::CIniFile::Load(U(path.c_str()).c_str());
    const platform::IniEntry* const pEntry = file.Find(wzSection, wzKey);
    return pEntry ? std::u16string(pEntry->m_wzValue.substr(0, 259)) : U(g_wzMissing);
}

std::string WideBytes(std::u16string_view wz) {
    return "\xFF\xFE" + std::string(reinterpret_cast<const char*>(wz.data()), wz.size() * 2);
}

} // namespace

TEST(IniAgainstTheSystem, BothReadTheSame) {
    const std::string aFiles[] = {
        "",
        "[s]\r\nk=1\r\n",
        "[S]\r\nK=1\r\n",
        "[s]\nk=1\n",
        "  [s]  \n  k  =  a b  \n",
        "[s]\nk=\"a\"\n",
        "[s]\nk='a'\n",
        "[s]\nk=\"a'\n",
        "[s]\nk=\"\"a\"\"\n",
        "[s]\nk=\"\n",
        "[s]\nk=\" a \"  \n",
        "[s]\nk=\n",
        "[s]\nk\n",
        "[s]\nk = = a\n",
        "[s]\n;k=1\nk=2\n",
        "[s]\n ; k=1\nk=2\n",
        "[s]\nk=1 ; more\n",
        "[s]\n#k=1\nk=2\n",
        "[s]\nk=1\nk=2\n",
        "[s]\nj=1\n[s]\nk=2\n",
        "[s]\nk=1\n[s]\nk=2\n",
        ";[s]\nk=1\n",
        "[t]\nk=1\n[s]\nk=2",
        "[s]\n\n\n\tk\t=\t1\t\n",
        "[s]\nk=caf\xE9\n",
        "\xEF\xBB\xBF[s]\nk=\xC3\xA9\n",
        "[s]\nk=" + std::string(300, 'x') + "\n",
        WideBytes(u"[s]\r\nk=\u00e9\u4e2d\r\n"),
        "[s] tail\nk=1\n",
        "[s\nk=1\n",
        "[a]b]\nk=1\n",
        "[s]\nk=1\x1A\n",
        "[ s ]\nk=1\n",
        "[s]\nk\nk=2\n",
        "[s]\rk=1\r",
        "[s]\nk=1\vj=2\n",
        "k=1\n[s]\n",
        "[s]\nk=''\n",
        "x[s]\nk=1\n",
        "[s]\n\"k\"=1\n",
        "[s]\n=1\nk=2\n",
        "[s]\nk=1\n\x1A\nj=2\n",
    };
    for (const std::string& strFile : aFiles) {
        const std::filesystem::path path = FileOf(strFile);
        for (const char16_t* wzSection : {u"s", u"t", u"a]b"})
            for (const char16_t* wzKey : {u"k", u"j"})
                EXPECT_EQ(ByReader(path, wzSection, wzKey), BySystem(path, wzSection, wzKey)) << strFile;
        std::filesystem::remove(path);
    }
}
