// Every key: its default when it is left out, what it is held to, what follows from it.
#include "config/settings/intervals.h"
#include "config/settings/settings.h"
#include "settings_fixture.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>
#include <utility>

namespace {

enum class Source : u8 { Ini, Own, Suite };

/// A key with a value that differs from its default, and what its target shows for either.
struct Key {
    Source eSource;
    const char16_t* wzSection;
    const char16_t* wzName;
    u32 uGiven;
    f64 fGiven, fDefault;
    std::function<f64()> fnShown;
};

std::vector<Key> IniKeys() {
    const Source eIni = Source::Ini;
    return {
        {eIni, u"Info", u"MinHookScreenWidth", 5, 5, 200, [] { return g_stSettings.uMinHookScreenWidth; }},
        {eIni, u"Info", u"MinHookScreenHeight", 6, 6, 200, [] { return g_stSettings.uMinHookScreenHeight; }},
        {eIni, u"Info", u"DebugMode", 2, 1, 0, [] { return g_stSettings.bDebugMode; }},
        {eIni, u"Info", u"DebugMessageBox", 2, 1, 0, [] { return g_stSettings.bDebugMessageBox; }},
        {eIni, u"Info", u"DebugTime", 256, 1, 0, [] { return g_stSettings.bDebugTime; }},
        {eIni, u"Info", u"UseLanguageXMLString", 2, 1, 0, [] { return g_stSettings.bUseLanguageXMLString; }},
        {eIni, u"Settings", u"PressDetachTime", 500, 0.5, 0.05f,
         [] { return g_stSettings.fPressDetachSeconds; }},
        {eIni, u"Warning", u"Status0ColorR", 1, 1, 0, [] { return g_stSettings.aStatusColor[0].au8RGB[0]; }},
        {eIni, u"Warning", u"Status0ColorG", 2, 2, 0, [] { return g_stSettings.aStatusColor[0].au8RGB[1]; }},
        {eIni, u"Warning", u"Status0ColorB", 3, 3, 0, [] { return g_stSettings.aStatusColor[0].au8RGB[2]; }},
        {eIni, u"Warning", u"Status1ColorR", 4, 4, 255,
         [] { return g_stSettings.aStatusColor[1].au8RGB[0]; }},
        {eIni, u"Warning", u"Status1ColorG", 5, 5, 201,
         [] { return g_stSettings.aStatusColor[1].au8RGB[1]; }},
        {eIni, u"Warning", u"Status1ColorB", 6, 6, 14, [] { return g_stSettings.aStatusColor[1].au8RGB[2]; }},
        {eIni, u"Warning", u"TwinkleTime", 2500, 2.5, 1, [] { return g_stSettings.fWarningTwinkleSeconds; }},
        {eIni, u"Warning", u"Twinkle", 0, 0, 1, [] { return g_stSettings.bWarningTwinkle; }},
    };
}

std::vector<Key> VideoKeys(const char16_t* wzSubkey, const stVideoSource& st) {
    const Source eOwn = Source::Own;
    return {
        {eOwn, wzSubkey, u"FrameSize: W", 1, 1, 1280, [&] { return st.uFrameSizeW; }},
        {eOwn, wzSubkey, u"FrameSize: H", 2, 2, 720, [&] { return st.uFrameSizeH; }},
        {eOwn, wzSubkey, u"BufferSize: W", 3, 3, 640, [&] { return st.uBufferSizeW; }},
        {eOwn, wzSubkey, u"BufferSize: H", 4, 4, 360, [&] { return st.uBufferSizeH; }},
        {eOwn, wzSubkey, u"Update: I", 5, 5, 1000, [&] { return st.uUpdateInterval; }},
        {eOwn, wzSubkey, u"Update: F", 6, 6, 40, [&] { return st.uUpdateFrames; }},
        {eOwn, wzSubkey, u"Enable", 1, 1, 0, [&] { return st.uEnable; }},
        {eOwn, wzSubkey, u"Anchor", 0xFFFFFFF7, -9, 9, [&] { return st.iAnchor; }},
        {eOwn, wzSubkey, u"Position: X", 0xFFFFFFFF, -1, 0, [&] { return st.iPositionX; }},
        {eOwn, wzSubkey, u"Position: Y", 8, 8, 0, [&] { return st.iPositionY; }},
        {eOwn, wzSubkey, u"Alpha", 300, 44, 255, [&] { return st.uAlpha; }},
    };
}

std::vector<Key> CameraKeys() {
    const Source eOwn = Source::Own;
    return {
        {eOwn, u"Camera", u"CapMode", 1, 1, 2, [] { return g_uCapMode; }},
        {eOwn, u"Camera", u"CapType", 4, 4, 2, [] { return g_uCapType; }},
        {eOwn, u"Camera", u"FrameSize: W", 5, 5, 320, [] { return g_stSettings.stPhoto.uFrameSizeW; }},
        {eOwn, u"Camera", u"FrameSize: H", 6, 6, 240, [] { return g_stSettings.stPhoto.uFrameSizeH; }},
        {eOwn, u"Camera", u"IsShow", 1, 1, 0, [] { return g_stSettings.stPhoto.uIsShow; }},
        {eOwn, u"Camera", u"Anchor", 0xFFFFFFFD, -3, 1, [] { return g_stSettings.stPhoto.iAnchor; }},
        {eOwn, u"Camera", u"Position: X", 7, 7, 0, [] { return g_stSettings.stPhoto.iPositionX; }},
        {eOwn, u"Camera", u"Position: Y", 0xFFFFFFF8, -8, 0, [] { return g_stSettings.stPhoto.iPositionY; }},
        {eOwn, u"Camera", u"Alpha", 256 + 9, 9, 255, [] { return g_stSettings.stPhoto.uAlpha; }},
    };
}

std::vector<Key> OtherKeys() {
    const Source eOwn = Source::Own;
    const char16_t* const wzOption = u"Information Option";
    return {
        {eOwn, u"Video", u"Enable", 1, 1, 0, [] { return g_stSettings.bVideoEnable; }},
        {eOwn, u"Graph", u"Enable", 1, 1, 0, [] { return g_stSettings.bGraphEnable; }},
        {eOwn, u"Debug", u"Debug Num", 4, 4, 1, [] { return g_stSettings.stDebugRows.uRows; }},
        {eOwn, u"Debug", u"PanelColor: Red", 5, 5, 0, [] { return g_stSettings.stDebugRows.uRed; }},
        {eOwn, u"Debug", u"PanelColor: Green", 6, 6, 0, [] { return g_stSettings.stDebugRows.uGreen; }},
        {eOwn, u"Debug", u"PanelColor: Blue", 7, 7, 0, [] { return g_stSettings.stDebugRows.uBlue; }},
        {eOwn, u"Debug", u"PanelColor: Alpha", 8, 8, 255, [] { return g_stSettings.stDebugRows.uAlpha; }},
        {eOwn, u"Debug", u"PanelType", 2, 2, 0, [] { return g_stSettings.stDebugRows.uPanelType; }},
        {eOwn, u"FPSLimiter", u"Enable", 1, 1, 0, [] { return EnableFPSLimiter; }},
        {eOwn, u"FPSLimiter", u"FPSTarget", 144, 144, 60, [] { return FPS_Target; }},
        {eOwn, wzOption, u"UpdateFrameDataInterval", 70, 70, 1000, [] { return uFPSIntervalMs; }},
        {eOwn, wzOption, u"UpdateStatisticInterval", 80, 80, 1000, [] { return uDataIntervalMs; }},
        {eOwn, u"Information Option\\Card", u"Card Num", 3, 3, 1, [] { return g_fnReadCardNum(); }},
        {eOwn, u"Information Option\\Card\\7\\GPU Clock", u"IsSupport", 1, 1, 0,
         [] { return g_fnIsCardRowSupported(7, u"GPU Clock"); }},
        {eOwn, u"Information Option\\CPU\\CPU Usage", u"IsSupport", 2, 1, 0,
         [] { return g_fnIsCpuRowSupported(u"CPU Usage"); }},
        {eOwn, u"Information Option\\Sensor\\63\\caf\u00e9", u"IsSupport", 1, 1, 0,
         [] { return g_fnIsSensorSupported(63, "caf\xC3\xA9"); }},
        {Source::Suite, u"", u"Monitor: 12H Flag", 0, 1, 0, [] { return g_stSettings.bClock12H; }},
    };
}

std::vector<Key> AllKeys() {
    std::vector<Key> keys = IniKeys();
    const std::vector<Key> aMore[] = {CameraKeys(), OtherKeys(),
                                      VideoKeys(u"Video\\0", g_stSettings.aVideoSource[0]),
                                      VideoKeys(u"Video\\7", g_stSettings.aVideoSource[7])};
    for (const std::vector<Key>& more : aMore) keys.insert(keys.end(), more.begin(), more.end());
    return keys;
}

std::string Narrow(std::u16string_view wz) { return {wz.begin(), wz.end()}; }

std::string NameOf(const Key& key) { return Narrow(key.wzSection) + ' ' + Narrow(key.wzName); }

struct SettingsValues : SettingsTest {
    static void ReadAll() {
        g_fnProbeWowKeys();
        g_fnLoadGlobalSettings();
        g_fnReadFeatureSwitches();
        g_fnReadVideoSources();
        g_fnReadSettingsBatch(320, 240);
    }
    void Give(const Key& key) {
        if (key.eSource == Source::Ini)
            m_mapIni[Narrow(key.wzSection)] += Narrow(key.wzName) + "=" + std::to_string(key.uGiven) + "\n";
        else if (key.eSource == Source::Suite)
            headless::SetSettingsNumber(g_wzSuite, key.wzName, key.uGiven);
        else
            Number(key.wzSection, key.wzName, key.uGiven);
    }
    /// uLeftOut beyond the last key: gives all.
    void GiveAllBut(std::size_t uLeftOut) {
        const std::vector<Key> keys = AllKeys();
        headless::ClearSettings();
        m_mapIni.clear();
        for (std::size_t i = 0; i < keys.size(); ++i)
            if (i != uLeftOut) Give(keys[i]);
        std::string strBytes;
        for (const auto& [strSection, strLines] : m_mapIni) strBytes += "[" + strSection + "]\n" + strLines;
        Ini(strBytes);
        ReadAll();
    }
    /// Color components of the two warnings as their file's values give them.
    static u32 Color(u32 uStatus) { return g_stSettings.auWarningColor[uStatus]; }

  private:
    std::map<std::string, std::string> m_mapIni;
};

constexpr std::size_t g_uNone = ~std::size_t{0};

} // namespace

TEST_F(SettingsValues, AllKeysGiven) {
    GiveAllBut(g_uNone);
    for (const Key& key : AllKeys()) EXPECT_EQ(key.fnShown(), key.fGiven) << NameOf(key);
}

TEST_F(SettingsValues, NoKeyGiven) {
    GiveAllBut(g_uNone); // so that no target holds its default by chance
    headless::ClearSettings();
    m_folder.Remove("OSD.ini");
    ReadAll();
    for (const Key& key : AllKeys()) EXPECT_EQ(key.fnShown(), key.fDefault) << NameOf(key);
}

TEST_F(SettingsValues, AKeyLeftOutTakesItsDefaultAndNoOtherDoes) {
    const std::vector<Key> keys = AllKeys();
    for (std::size_t uLeftOut = 0; uLeftOut < keys.size(); ++uLeftOut) {
        GiveAllBut(g_uNone);
        GiveAllBut(uLeftOut);
        for (std::size_t i = 0; i < keys.size(); ++i)
            EXPECT_EQ(keys[i].fnShown(), i == uLeftOut ? keys[i].fDefault : keys[i].fGiven)
                << NameOf(keys[i]) << " without " << NameOf(keys[uLeftOut]);
    }
}

TEST_F(SettingsValues, TextsAndTheirDefaults) {
    char16_t wzTag[g_uRegistryTextUnits], wzPath[g_uDataPathCapacity];
    Text(u"Video\\3", u"FileMappingName", u"frames");
    Text(u"Camera", u"DirPath", u"/shots");
    Text(u"Camera", u"FilePath", u"/photo.png");
    Text(u"Information Option", u"LanguageXMLFileName", u"en.xml");
    Text(u"Information Option\\Card\\Default\\GPU Clock", u"LanguageXMLTagName", u"gpu");
    Text(u"Information Option\\Frame Time", u"LanguageXMLTagName", u"ft");
    headless::SetSettingsText(g_wzSuite, u"OrvinDeck Install Path", u"/suite");
    ReadAll();
    EXPECT_EQ(std::u16string(g_stSettings.aVideoSource[3].wzFileMappingName), u"frames");
    EXPECT_EQ(std::u16string(g_wzShotFolder), u"/shots");
    EXPECT_EQ(std::u16string(g_stSettings.stPhoto.wzFilePath), u"/photo.png");
    EXPECT_EQ(std::u16string(g_stSettings.wzLanguageFileName), u"en.xml");
    g_fnReadCardLanguageTag(u"GPU Clock", wzTag);
    EXPECT_EQ(std::u16string(wzTag), u"gpu");
    g_fnReadRowLanguageTag(u"Frame Time", wzTag);
    EXPECT_EQ(std::u16string(wzTag), u"ft");
    EXPECT_TRUE(g_fnResolveInstallPath(wzPath, u"en.xml"));
    EXPECT_EQ(std::u16string(wzPath), u"/suite/en.xml");

    headless::ClearSettings();
    ReadAll();
    EXPECT_EQ(std::u16string(g_stSettings.aVideoSource[3].wzFileMappingName), u"");
    EXPECT_EQ(std::u16string(g_stSettings.stPhoto.wzFilePath), u"");
    EXPECT_EQ(std::u16string(g_stSettings.wzLanguageFileName), u"X");
    g_fnReadCardLanguageTag(u"GPU Clock", wzTag);
    EXPECT_EQ(std::u16string(wzTag), u"");
    g_fnReadRowLanguageTag(u"Frame Time", wzTag);
    EXPECT_EQ(std::u16string(wzTag), u"");
}

TEST_F(SettingsValues, AColorComponentAbove255IsHeldTo255) {
    Ini("[Warning]\nStatus1ColorG=300\nStatus0ColorR=-1\nStatus0ColorB=51\n");
    g_fnReadGlobalSettingsINI();
    EXPECT_EQ(g_stSettings.aStatusColor[1].au8RGB[1], 255);
    EXPECT_EQ(g_stSettings.aStatusColor[1].afRGB[1], 1.0f);
    EXPECT_EQ(g_stSettings.aStatusColor[0].au8RGB[0], 255); // a negative number counts as a very large one
    EXPECT_EQ(g_stSettings.aStatusColor[0].afRGB[2], 0.2f);
    EXPECT_EQ(Color(0), 0xFF0033u);
    EXPECT_EQ(Color(1), 0xFFFF0Eu);
}

TEST_F(SettingsValues, DefaultColorsAreBlackAndAmberInAllForms) {
    g_fnReadGlobalSettingsINI();
    EXPECT_EQ(Color(0), 0x000000u);
    EXPECT_EQ(Color(1), 0xFFC90Eu);
    EXPECT_EQ(g_stSettings.aStatusColor[0].afRGB[0], 0.0f);
    EXPECT_EQ(g_stSettings.aStatusColor[1].afRGB[0], 1.0f);
    EXPECT_EQ(g_stSettings.aStatusColor[1].afRGB[1], 201.0f / 255.0f);
    EXPECT_EQ(g_stSettings.aStatusColor[1].afRGB[2], 14.0f / 255.0f);
}

TEST_F(SettingsValues, PressDetachTimeIsHeldToItsRange) {
    const std::pair<const char*, f32> aCases[] = {{"0", 0.05f},   {"49", 0.05f},  {"50", 0.05f},
                                                  {"51", 0.051f}, {"2500", 2.5f}, {"9000", 2.5f},
                                                  {"-1", 2.5f}};
    for (const auto& [szTime, fSeconds] : aCases) {
        Ini(std::string("[Settings]\nPressDetachTime=") + szTime + "\n");
        g_fnReadGlobalSettingsINI();
        EXPECT_FLOAT_EQ(g_stSettings.fPressDetachSeconds, fSeconds) << szTime;
    }
}

TEST_F(SettingsValues, TwinkleTimeIsNotHeldToAnyRange) {
    Ini("[Warning]\nTwinkleTime=0\n");
    g_fnReadGlobalSettingsINI();
    EXPECT_EQ(g_stSettings.fWarningTwinkleSeconds, 0.0f);
    Ini("[Warning]\nTwinkleTime=86400000\n");
    g_fnReadGlobalSettingsINI();
    EXPECT_EQ(g_stSettings.fWarningTwinkleSeconds, 86400.0f);
}

TEST_F(SettingsValues, IntervalsAreHeldTo10To10000) {
    const u32 aauCases[][2] = {{0, 10},        {5, 10},        {10, 10},
                               {10000, 10000}, {20000, 10000}, {0xFFFFFFFF, 10000}};
    for (const auto& [uGiven, uHeld] : aauCases) {
        Number(u"Information Option", u"UpdateFrameDataInterval", uGiven);
        Number(u"Information Option", u"UpdateStatisticInterval", uGiven);
        g_fnReadIntervals();
        EXPECT_EQ(uFPSIntervalMs, uHeld) << uGiven;
        EXPECT_EQ(uDataIntervalMs, uHeld) << uGiven;
    }
}

TEST_F(SettingsValues, WhatFollowsFromTheIntervalsActsAtOnce) {
    Number(u"Information Option", u"UpdateFrameDataInterval", 250);
    Number(u"Information Option", u"UpdateStatisticInterval", 2000);
    g_fnReadIntervals();
    EXPECT_EQ(fFPSInterval, 0.25f);
    EXPECT_EQ(fDataInterval, 2.0f);
    EXPECT_EQ(uFPSRingSize, 5u);
    headless::ClearSettings();
    g_fnReadIntervals();
    EXPECT_EQ(fFPSInterval, 1.0f);
    EXPECT_EQ(fDataInterval, 1.0f);
    EXPECT_EQ(uFPSRingSize, 2u);
}

TEST_F(SettingsValues, TheDataIntervalIsNotReadUnderItsTablesKey) {
    Number(u"Information Option", u"UpdateMonitorDataInterval", 50);
    g_fnReadIntervals();
    EXPECT_EQ(uDataIntervalMs, 1000u);
}

TEST_F(SettingsValues, ATargetOf0TurnsTheLimiterOff) {
    Number(u"FPSLimiter", u"Enable", 1);
    Number(u"FPSLimiter", u"FPSTarget", 0);
    g_fnReadLimiterSettings();
    EXPECT_EQ(EnableFPSLimiter, 0u);
    Number(u"FPSLimiter", u"FPSTarget", 50);
    g_fnReadLimiterSettings();
    EXPECT_EQ(EnableFPSLimiter, 1u);
    EXPECT_EQ(Frametime_Target_Sec, 1.0f / 50.0f);
}

TEST_F(SettingsValues, TheClockHas24HoursUnlessTheFlagIs0) {
    g_stSettings.bClock12H = true;
    g_fnReadClockSetting(); // absent
    EXPECT_FALSE(g_stSettings.bClock12H);
    const std::pair<u32, bool> aCases[] = {
        {0, true}, {1, false}, {2, false}, {3, false}, {0xFFFFFFFF, false}};
    for (const auto& [uFlag, b12H] : aCases) {
        headless::SetSettingsNumber(g_wzSuite, u"Monitor: 12H Flag", uFlag);
        g_fnReadClockSetting();
        EXPECT_EQ(g_stSettings.bClock12H, b12H) << uFlag;
    }
}

TEST_F(SettingsValues, ALanguageFileNameOf128CharactersFallsBack) {
    Text(u"Information Option", u"LanguageXMLFileName", std::u16string(127, u'n'));
    g_fnReadLanguageFileName();
    EXPECT_EQ(std::u16string(g_stSettings.wzLanguageFileName), std::u16string(127, u'n'));
    Text(u"Information Option", u"LanguageXMLFileName", std::u16string(128, u'n'));
    g_fnReadLanguageFileName();
    EXPECT_EQ(std::u16string(g_stSettings.wzLanguageFileName), u"X");
}

TEST_F(SettingsValues, AnEmptyScreenshotFolderBecomesTheDataFolder) {
    char16_t wzData[g_uDataPathCapacity];
    ASSERT_TRUE(g_fnResolveDataPath(wzData, u""));
    for (const bool bGiven : {false, true}) {
        if (bGiven) Text(u"Camera", u"DirPath", u"");
        g_fnReadCameraSettings(1, 1);
        EXPECT_EQ(std::u16string(g_wzShotFolder), wzData) << bGiven;
    }
}

TEST_F(SettingsValues, AnUnknownOrOverlongInstallFolderGivesNoPath) {
    char16_t wzPath[g_uDataPathCapacity] = u"stale";
    EXPECT_FALSE(g_fnResolveInstallPath(wzPath, u"x"));
    EXPECT_EQ(wzPath[0], 0);
    headless::SetSettingsText(g_wzSuite, u"OrvinDeck Install Path", u"/s");
    EXPECT_TRUE(g_fnResolveInstallPath(wzPath, std::u16string(256, u'n').c_str()));
    EXPECT_EQ(std::u16string(wzPath).size(), 259u);
    EXPECT_FALSE(g_fnResolveInstallPath(wzPath, std::u16string(257, u'n').c_str()));
    EXPECT_EQ(wzPath[0], 0);
    headless::SetSettingsText(g_wzSuite, u"OrvinDeck Install Path", std::u16string(128, u's').c_str());
    EXPECT_FALSE(g_fnResolveInstallPath(wzPath, u"x"));
}

TEST_F(SettingsValues, AFailureIsShownOnlyWhereMessageBoxesAreAskedFor) {
    g_fnReadGlobalSettingsINI();
    g_fnReportGlobalSettingsFailure();
    EXPECT_TRUE(headless::MessageBoxes().empty());
    Ini("[Info]\nDebugMessageBox=1\n");
    EXPECT_TRUE(g_fnReadGlobalSettingsINI());
    g_fnReportGlobalSettingsFailure();
    ASSERT_EQ(headless::MessageBoxes().size(), 1u);
    EXPECT_EQ(headless::MessageBoxes()[0].first, u"g_fnReadGlobalSettingsINI fail");
    EXPECT_EQ(headless::MessageBoxes()[0].second, "Error");
}

TEST_F(SettingsValues, ReadingAlwaysSucceedsAndSaysNothing) {
    const std::string aFiles[] = {"", "[Info", std::string(5000, '\xFF'), std::string(2 << 20, '[')};
    for (const std::string& strFile : aFiles) {
        Ini(strFile);
        g_fnLoadGlobalSettings();
    }
    headless::SetCommonDataFolder(u"");
    EXPECT_TRUE(g_fnReadGlobalSettingsINI());
    EXPECT_TRUE(headless::MessageBoxes().empty());
}

TEST_F(SettingsValues, OverlongSensorNamesAreNotSupported) {
    EXPECT_FALSE(g_fnIsSensorSupported(0, std::string(5000, 's').c_str()));
    EXPECT_FALSE(g_fnIsCardRowSupported(0xFFFFFFFF, std::u16string(5000, u'r').c_str()));
}

TEST_F(SettingsValues, TheBatchReadsInItsOrder) {
    g_fnReadSettingsBatch(1, 1);
    const std::u16string aOrder[] = {
        Own(u"Debug"),     Own(u"Camera"), Own(u"Information Option"), g_wzSuite, Own(u"Information Option"),
        Own(u"FPSLimiter")};
    std::vector<std::u16string> asked = headless::AskedSettingsKeys();
    ASSERT_GE(asked.size(), std::size(aOrder));
    asked.erase(asked.begin(), asked.end() - std::size(aOrder));
    EXPECT_TRUE(std::equal(asked.begin(), asked.end(), aOrder));
}
