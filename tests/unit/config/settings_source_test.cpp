// Tables filled from OSD.ini and from the settings store.
#include "config/settings/settings.h"
#include "settings_fixture.h"

#include <algorithm>

namespace {

using platform::SettingsType;

stSettingBindingW IniRow(const char16_t* wzDefault, eSettingKind uKind, eSettingTarget uType, void* pTarget,
                         std::size_t uUnits = 0) {
    const stSettingRowW aRows[] = {{u"k", wzDefault, uKind, uType, pTarget, uUnits}};
    SettingTableW table;
    g_fnAddSettingsW(table, aRows);
    g_fnApplyIniSettings(u"s", table);
    return table.at(u"k");
}

stSettingBindingW KeyRow(const char16_t* wzDefault, eSettingKind uKind, eSettingTarget uType, void* pTarget,
                         std::size_t uUnits = 0) {
    const stSettingRowW aRows[] = {{u"k", wzDefault, uKind, uType, pTarget, uUnits}};
    SettingTableW table;
    g_fnAddSettingsW(table, aRows);
    g_fnApplyRegistrySettings(u"s", table, false);
    return table.at(u"k");
}

struct SettingsIni : SettingsTest {};
struct SettingsRegistry : SettingsTest {
    u32 NumberOf(SettingsType eType, std::vector<u8> vecBytes) {
        headless::SetSettingsBytes(Own(u"s").c_str(), u"k", eType, std::move(vecBytes));
        u32 uValue = 1;
        KeyRow(u"77", SETTING_DECIMAL, TARGET_U32, &uValue);
        return uValue;
    }
    std::u16string TextOf(SettingsType eType, const std::u16string& wstr, std::size_t uBytes) {
        std::vector<u8> vecBytes(uBytes);
        std::copy_n(reinterpret_cast<const u8*>(wstr.data()), uBytes, vecBytes.begin());
        headless::SetSettingsBytes(Own(u"s").c_str(), u"k", eType, std::move(vecBytes));
        char16_t wzText[200] = u"stale";
        KeyRow(u"dflt", SETTING_TEXT_LOCAL, TARGET_WIDE, wzText, 200);
        return wzText;
    }
};

} // namespace

TEST_F(SettingsIni, EachKindConvertsAsItsTargetSays) {
    u32 uValue = 0;
    f32 fValue = 0;
    char16_t wzText[20];
    Ini("[s]\nk=42\n");
    EXPECT_EQ(IniRow(u"7", SETTING_DECIMAL, TARGET_U32, &uValue).uFound, 1);
    EXPECT_EQ(uValue, 42u);
    IniRow(u"7", SETTING_HEX, TARGET_U32, &uValue);
    EXPECT_EQ(uValue, 0x42u);
    Ini("[s]\nk=2.5\n");
    IniRow(u"7", SETTING_FLOAT, TARGET_F32, &fValue);
    EXPECT_EQ(fValue, 2.5f);
    IniRow(u"", SETTING_TEXT, TARGET_WIDE, wzText, 20);
    EXPECT_EQ(std::u16string(wzText), u"2.5");
}

TEST_F(SettingsIni, AMissingFileSectionOrKeyGivesTheDefault) {
    u32 uValue = 0;
    for (const char* szFile : {"", "[t]\nk=1\n", "[s]\nl=1\n"}) {
        Ini(szFile);
        EXPECT_EQ(IniRow(u"7", SETTING_DECIMAL, TARGET_U32, &uValue).uFound, 0);
        EXPECT_EQ(uValue, 7u) << szFile;
    }
    m_folder.Remove("OSD.ini");
    IniRow(u"9", SETTING_DECIMAL, TARGET_U32, &uValue);
    EXPECT_EQ(uValue, 9u);
}

TEST_F(SettingsIni, AValueWithoutDigitsIs0AndNotTheDefault) {
    u32 uValue = 5;
    for (const char* szFile : {"[s]\nk=\n", "[s]\nk=on\n", "[s]\nk=\"\"\n"}) {
        Ini(szFile);
        uValue = 5;
        IniRow(u"7", SETTING_DECIMAL, TARGET_U32, &uValue);
        EXPECT_EQ(uValue, 0u) << szFile;
    }
}

TEST_F(SettingsIni, AValueIsCutTo259Characters) {
    char16_t wzText[400];
    Ini("[s]\nk=" + std::string(300, 'x') + "\n");
    IniRow(u"", SETTING_TEXT, TARGET_WIDE, wzText, 400);
    EXPECT_EQ(std::u16string(wzText), std::u16string(259, u'x'));
    // 258 letters, then a pair of which only half would fit
    Ini("[s]\nk=" + std::string(258, 'x') + "\xF0\x9F\x8E\xAE\n");
    IniRow(u"", SETTING_TEXT, TARGET_WIDE, wzText, 400);
    EXPECT_EQ(std::u16string(wzText), std::u16string(258, u'x'));
}

TEST_F(SettingsIni, TheMapKeyIsLookedUpNotTheName) {
    u32 uValue = 0;
    const stSettingRowW aRows[] = {{u"k", u"7", SETTING_DECIMAL, TARGET_U32, &uValue, 0, u"other"}};
    SettingTableW table;
    g_fnAddSettingsW(table, aRows);
    Ini("[s]\nother=1\nk=2\n");
    g_fnApplyIniSettings(u"s", table);
    EXPECT_EQ(uValue, 2u);
}

TEST_F(SettingsIni, WithoutADataFolderDefaultsApply) {
    u32 uValue = 0;
    Ini("[s]\nk=1\n");
    headless::SetCommonDataFolder(u"");
    IniRow(u"7", SETTING_DECIMAL, TARGET_U32, &uValue);
    EXPECT_EQ(uValue, 7u);
}

TEST_F(SettingsIni, TextOfANamedSection) {
    char16_t wzText[8] = u"stale";
    Ini("[caf\xE9]\nText=\"  hello\"\n");
    g_fnReadIniText("caf\xE9", wzText, 8);
    EXPECT_EQ(std::u16string(wzText), u"  hello");
    Ini("[a]\nText=0123456789\n");
    g_fnReadIniText("a", wzText, 8);
    EXPECT_EQ(std::u16string(wzText), u"0123456");
    g_fnReadIniText("b", wzText, 8);
    EXPECT_EQ(std::u16string(wzText), u"");
    g_fnReadIniText(std::string(5000, 'x').c_str(), wzText, 8);
    EXPECT_EQ(std::u16string(wzText), u"");
}

TEST_F(SettingsRegistry, NumbersAreStoredByTheirTargetsWidth) {
    Number(u"s", u"k", 0xFFFFFFF7);
    u8 auByte[2] = {0, 0x55};
    u16 auWord[2] = {0, 0x5555};
    i32 iValue = 0;
    EXPECT_EQ(KeyRow(u"7", SETTING_DECIMAL, TARGET_U8, auByte).uFound, 1);
    EXPECT_EQ(auByte[0], 0xF7);
    EXPECT_EQ(auByte[1], 0x55);
    KeyRow(u"7", SETTING_DECIMAL, TARGET_I16, auWord);
    EXPECT_EQ(auWord[0], 0xFFF7);
    EXPECT_EQ(auWord[1], 0x5555);
    KeyRow(u"7", SETTING_DECIMAL, TARGET_I32, &iValue);
    EXPECT_EQ(iValue, -9);
}

TEST_F(SettingsRegistry, ANumberOfWrongTypeOrSizeCountsAsMissing) {
    EXPECT_EQ(NumberOf(SettingsType::Number, {1, 2, 0, 0}), 0x201u);
    EXPECT_EQ(NumberOf(SettingsType::Other, {1, 2, 0, 0}), 0x201u);
    EXPECT_EQ(NumberOf(SettingsType::Text, {'1', 0, 0, 0}), 77u);
    EXPECT_EQ(NumberOf(SettingsType::Number, {}), 77u);
    EXPECT_EQ(NumberOf(SettingsType::Number, {1, 2, 3}), 77u);
    EXPECT_EQ(NumberOf(SettingsType::Other, {1, 0, 0, 0, 0, 0, 0, 0}), 77u);
    EXPECT_EQ(NumberOf(SettingsType::Other, std::vector<u8>(1'000'000, 1)), 77u);
}

TEST_F(SettingsRegistry, ATextOfWrongTypeOrSizeCountsAsMissing) {
    const std::u16string wstr127 = std::u16string(127, u'x'), wstr128 = wstr127 + u"x";
    EXPECT_EQ(TextOf(SettingsType::Text, u"ab", 6), u"ab");
    EXPECT_EQ(TextOf(SettingsType::Text, wstr127, 256), wstr127);
    EXPECT_EQ(TextOf(SettingsType::Text, wstr128, 258), u"dflt");
    EXPECT_EQ(TextOf(SettingsType::Number, u"ab", 4), u"dflt");
    EXPECT_EQ(TextOf(SettingsType::Other, u"ab", 6), u"dflt");
    EXPECT_EQ(TextOf(SettingsType::Text, std::u16string(50000, u'y'), 100000), u"dflt");
}

TEST_F(SettingsRegistry, AnUnterminatedTextEndsWithItsBytes) {
    EXPECT_EQ(TextOf(SettingsType::Text, u"ab", 4), u"ab");
    EXPECT_EQ(TextOf(SettingsType::Text, u"abc", 5), u"ab"); // half a unit goes
    EXPECT_EQ(TextOf(SettingsType::Text, u"", 0), u"");
    EXPECT_EQ(TextOf(SettingsType::Text, std::u16string(127, u'x'), 254), std::u16string(127, u'x'));
    EXPECT_EQ(TextOf(SettingsType::Text, std::u16string(128, u'x'), 256), u"dflt"); // no room for the mark
    EXPECT_EQ(TextOf(SettingsType::Text, std::u16string(u"a\0b", 3), 6), u"a");
}

TEST_F(SettingsRegistry, TheNameIsLookedUpNotTheMapKey) {
    Number(u"s", u"k", 1);
    Number(u"s", u"other", 2);
    u32 uValue = 0;
    const stSettingRowW aRows[] = {{u"k", u"7", SETTING_DECIMAL, TARGET_U32, &uValue, 0, u"other"}};
    SettingTableW table;
    g_fnAddSettingsW(table, aRows);
    g_fnApplyRegistrySettings(u"s", table, false);
    EXPECT_EQ(uValue, 2u);
}

TEST_F(SettingsRegistry, OtherKindsAndTargetsStoreNothing) {
    Number(u"s", u"k", 5);
    u32 uValue = 99;
    for (const eSettingKind uKind : {SETTING_HEX, SETTING_FLOAT, SETTING_TEXT}) {
        EXPECT_EQ(KeyRow(u"7", uKind, TARGET_U32, &uValue).uFound, 0);
        EXPECT_EQ(uValue, 99u);
    }
    u64 uWide[2] = {99, 99};
    for (const eSettingTarget uType : {TARGET_F32, TARGET_U64, TARGET_TEXT})
        EXPECT_EQ(KeyRow(u"7", SETTING_DECIMAL, uType, uWide, 8).uFound, 1);
    EXPECT_EQ(uWide[0], 99u);
    EXPECT_EQ(KeyRow(u"7", SETTING_DECIMAL, TARGET_U32, nullptr).uFound, 1);
}

TEST_F(SettingsRegistry, AKeyThatCannotBeOpenedLeavesDefaults) {
    u32 uValue = 0;
    char16_t wzText[8] = u"stale";
    EXPECT_EQ(KeyRow(u"7", SETTING_DECIMAL, TARGET_U32, &uValue).uFound, 0);
    EXPECT_EQ(uValue, 7u);
    KeyRow(u"none", SETTING_TEXT_LOCAL, TARGET_WIDE, wzText, 8);
    EXPECT_EQ(std::u16string(wzText), u"none");
}

TEST_F(SettingsRegistry, FullPathsAreNotUnderTheOwnRoot) {
    headless::SetSettingsNumber(u"a\\b", u"k", 3);
    u32 uValue = 0;
    const stSettingRowW aRows[] = {{u"k", u"7", SETTING_DECIMAL, TARGET_U32, &uValue}};
    SettingTableW table;
    g_fnAddSettingsW(table, aRows);
    g_fnApplyRegistrySettings(u"A\\B", table, true);
    EXPECT_EQ(uValue, 3u);
    EXPECT_EQ(headless::AskedSettingsKeys().back(), u"A\\B");
}

TEST_F(SettingsRegistry, TheProbeChoosesTheView) {
    g_fnProbeWowKeys();
    EXPECT_EQ(headless::AskedSettingsKeys().back(), g_wzRootWow);
    EXPECT_EQ(g_stSettings.uWowKeys, 0u);
    headless::SetSettingsNumber(u"SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD\\Graph", u"Enable", 1);
    headless::SetSettingsNumber(u"SOFTWARE\\WOW6432Node\\Zarn\\OrvinDeck\\Setting", u"Monitor: 12H Flag", 0);
    g_fnReadFeatureSwitches();
    EXPECT_FALSE(g_stSettings.bGraphEnable);
    g_fnProbeWowKeys();
    EXPECT_EQ(g_stSettings.uWowKeys, 1u);
    g_fnReadFeatureSwitches();
    g_fnReadClockSetting();
    EXPECT_TRUE(g_stSettings.bGraphEnable);
    EXPECT_TRUE(g_stSettings.bClock12H);
}

TEST_F(SettingsRegistry, BeforeTheFirstProbeThe32BitViewIsRead) {
    g_stSettings.uWowKeys = 1;
    g_fnReadFeatureSwitches();
    EXPECT_EQ(headless::AskedSettingsKeys().back(), std::u16string(g_wzRootWow) + u"\\Graph");
}

TEST_F(SettingsRegistry, NamesOfSubkeysAndValuesAreAppended) {
    headless::AddSettingsKey(Own(u"l\\b").c_str());
    headless::AddSettingsKey(Own(u"l\\A").c_str());
    headless::AddSettingsKey(Own(u"l\\a\\deeper").c_str());
    Number(u"l", u"v", 1);
    Text(u"l", u"w", u"x");
    std::vector<std::u16string> subkeys{u"before"}, values;
    g_fnEnumRegistrySubkeys(u"l", &subkeys, &values, false);
    EXPECT_EQ(subkeys, (std::vector<std::u16string>{u"before", u"A", u"b"}));
    EXPECT_EQ(values, (std::vector<std::u16string>{u"v", u"w"}));
    g_fnEnumRegistrySubkeys(Own(u"l").c_str(), nullptr, &values, true);
    EXPECT_EQ(values.size(), 4u);
    g_fnEnumRegistrySubkeys(u"l", nullptr, nullptr, false);
    g_fnEnumRegistrySubkeys(u"none", &subkeys, &values, false);
    EXPECT_EQ(subkeys.size(), 3u);
    EXPECT_EQ(values.size(), 4u);
}

TEST_F(SettingsRegistry, TheLongestNamesAreListed) {
    const std::u16string wstrKey(255, u'k'), wstrValue(16383, u'v');
    headless::AddSettingsKey((Own(u"l\\") + wstrKey).c_str());
    Number(u"l", wstrValue.c_str(), 1);
    std::vector<std::u16string> subkeys, values;
    g_fnEnumRegistrySubkeys(u"l", &subkeys, &values, false);
    ASSERT_EQ(subkeys.size(), 1u);
    ASSERT_EQ(values.size(), 1u);
    EXPECT_EQ(subkeys[0], wstrKey);
    EXPECT_EQ(values[0], wstrValue);
}
