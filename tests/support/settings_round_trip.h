#pragma once
// What a tool writes into the machine's settings is what the library reads there.
#include "platform/settings_store.h"
#include "platform/tool_settings.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace settings_round_trip {

constexpr const char* c_szKey = "Round Trip";
constexpr const char16_t* c_wzPath = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Round Trip\\Below";

struct Read {
    bool bThere = false;
    platform::SettingsType eType{};
    u32 uBytes = 0;
    u8 auBytes[64] = {};
};

inline Read ReadBack(const char16_t* wzName) {
    Read st;
    st.uBytes = sizeof st.auBytes;
    const platform::SettingsKey hKey = platform::OpenSettingsKey(c_wzPath);
    st.bThere = platform::QuerySettingsValue(hKey, wzName, st.eType, st.auBytes, st.uBytes);
    platform::CloseSettingsKey(hKey);
    return st;
}

inline void Run() {
    using namespace platform::tool;
    const std::string strBelow = std::string(c_szKey) + "\\Below";
    ASSERT_TRUE(StoreSettings({{strBelow, "Number", 0xFFFFFFF0u, "", false},
                               {strBelow, "Text", {}, "7 \xC3\xA4\"", false},
                               {strBelow, "Empty", {}, "", false}}));
    EXPECT_EQ(ReadBack(u"number").eType, platform::SettingsType::Number);
    EXPECT_EQ(SettingNumber(strBelow, "NUMBER"), 0xFFFFFFF0u);
    const Read text = ReadBack(u"Text");
    EXPECT_EQ(text.eType, platform::SettingsType::Text);
    EXPECT_EQ(text.uBytes, 10u) << "four units and the end mark";
    EXPECT_EQ(SettingText(strBelow, "Text"), "7 \xC3\xA4\"");
    EXPECT_EQ(SettingNumber(strBelow, "Text"), std::nullopt);
    EXPECT_EQ(SettingText(strBelow, "Number"), std::nullopt);
    EXPECT_EQ(SettingText(strBelow, "Empty"), "");
    EXPECT_EQ(SettingKeys(c_szKey), std::vector<std::string>{"Below"});

    const Setting stOld = CurrentSetting(strBelow, "Number");
    ASSERT_TRUE(StoreSettings({{strBelow, "Number", 5, "", false}, {strBelow, "Text", {}, "", true}}));
    EXPECT_EQ(SettingNumber(strBelow, "Number"), 5u);
    EXPECT_FALSE(ReadBack(u"Text").bThere);
    ASSERT_TRUE(StoreSettings({stOld}));
    EXPECT_EQ(SettingNumber(strBelow, "Number"), 0xFFFFFFF0u);
    EXPECT_TRUE(CurrentSetting(strBelow, "none").bRemoved);
    EXPECT_FALSE(StoreSettings({{strBelow, "Number", 6, "", false}, {strBelow, "Text", {}, "a\nb", false}}));
    EXPECT_EQ(SettingNumber(strBelow, "Number"), 0xFFFFFFF0u) << "all of them or none";

    ASSERT_TRUE(RemoveSettingKeys({c_szKey, "Never There"}));
    EXPECT_EQ(platform::OpenSettingsKey(c_wzPath), nullptr);
    EXPECT_TRUE(SettingKeys(c_szKey).empty());
}

/// Values for a while: those that stood there come back, others go with the keys that were made for them.
inline void RunForAWhile() {
    using namespace platform::tool;
    const std::string strBelow = std::string(c_szKey) + "\\Below";
    ASSERT_TRUE(StoreSettings({{c_szKey, "Kept", 1, "", false}}));
    {
        TemporarySettings change;
        ASSERT_TRUE(change.Set({{c_szKey, "Kept", 2, "", false}, {strBelow, "New", {}, "x", false}}));
        EXPECT_EQ(SettingNumber(c_szKey, "Kept"), 2u);
        EXPECT_EQ(SettingText(strBelow, "New"), "x");
    }
    EXPECT_EQ(SettingNumber(c_szKey, "Kept"), 1u);
    EXPECT_EQ(SettingText(strBelow, "New"), std::nullopt);
    EXPECT_TRUE(SettingKeys(c_szKey).empty());
    ASSERT_TRUE(RemoveSettingKeys({c_szKey}));
}

} // namespace settings_round_trip
