#pragma once
// An empty settings store and a data folder of the test's own.
#include "config/settings/settings.h"
#include "frame/limiter.h"
#include "frame/update/statistics.h"
#include "platform/headless/test_controls.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace headless = platform::headless;

constexpr char16_t g_wzRoot[] = u"SOFTWARE\\Zarn\\ORVIN-OSD";
constexpr char16_t g_wzRootWow[] = u"SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD";
constexpr char16_t g_wzSuite[] = u"SOFTWARE\\Zarn\\OrvinDeck\\Setting";

class SettingsTest : public ::testing::Test {
  protected:
    void SetUp() override { g_fnProbeWowKeys(); }
    void TearDown() override {
        EXPECT_EQ(headless::OpenSettingsKeys(), 0u);
        headless::ResetAll();
        // Back to what a process without any settings works with.
        g_stSettings.uWowKeys = 1;
        g_fnLoadGlobalSettings();
        g_fnReadFeatureSwitches();
        g_fnReadSettingsBatch(200, 200);
    }
    void Ini(const std::string& strBytes) { m_folder.Write("OSD.ini", strBytes); }
    static std::u16string Own(const char16_t* wzSubkey) {
        return std::u16string(g_wzRoot) + u"\\" + wzSubkey;
    }
    static void Number(const char16_t* wzSubkey, const char16_t* wzName, u32 uValue) {
        headless::SetSettingsNumber(Own(wzSubkey).c_str(), wzName, uValue);
    }
    static void Text(const char16_t* wzSubkey, const char16_t* wzName, const std::u16string& wstrValue) {
        headless::SetSettingsText(Own(wzSubkey).c_str(), wzName, wstrValue.c_str());
    }

  private:
    struct Reset {
        Reset() { headless::ResetAll(); }
    } m_reset;

  protected:
    CTestDataFolder m_folder{false};
};
