// What the companion tells every process through the settings store.
#include "config/settings/intervals.h"
#include "config/settings/limiter_settings.h"
#include "config/settings/settings.h"
#include "platform/folders.h"
#include "platform/utf.h"

#include <algorithm>
#include <string>

namespace {

void Apply(const char16_t* wzSubkey, std::span<const stSettingRowW> rows, bool bIsFullPath = false) {
    SettingTableW table;
    g_fnAddSettingsW(table, rows);
    g_fnApplyRegistrySettings(wzSubkey, table, bIsFullPath);
    g_fnFreeSettingsW(table);
}

constexpr stSettingRowW Number(const char16_t* wzKey, const char16_t* wzDefault, u32& uTarget) {
    return {wzKey, wzDefault, SETTING_DECIMAL, TARGET_U32, &uTarget};
}

constexpr stSettingRowW Signed(const char16_t* wzKey, const char16_t* wzDefault, i32& iTarget) {
    return {wzKey, wzDefault, SETTING_DECIMAL, TARGET_I32, &iTarget};
}

constexpr stSettingRowW Byte(const char16_t* wzKey, const char16_t* wzDefault, u8& uTarget) {
    return {wzKey, wzDefault, SETTING_DECIMAL, TARGET_U8, &uTarget};
}

template <std::size_t N>
constexpr stSettingRowW Text(const char16_t* wzKey, const char16_t* wzDefault, char16_t (&wzTarget)[N]) {
    return {wzKey, wzDefault, SETTING_TEXT_LOCAL, TARGET_WIDE, wzTarget, N};
}

u32 ReadNumber(const char16_t* wzSubkey, const char16_t* wzName, const char16_t* wzDefault) {
    u32 uValue = 0;
    const stSettingRowW aRows[] = {Number(wzName, wzDefault, uValue)};
    Apply(wzSubkey, aRows);
    return uValue;
}

/// Digits of a whole number.
std::u16string Digits(u32 uValue) {
    const std::string str = std::to_string(uValue);
    return {str.begin(), str.end()};
}

/// The suite's own key lies beside the overlay's.
const char16_t* SuiteKey() {
    return g_stSettings.uWowKeys ? u"SOFTWARE\\WOW6432Node\\Zarn\\OrvinDeck\\Setting"
                                 : u"SOFTWARE\\Zarn\\OrvinDeck\\Setting";
}

bool IsSupported(const std::u16string& wstrSubkey) {
    return ReadNumber((u"Information Option\\" + wstrSubkey).c_str(), u"IsSupport", u"0") != 0;
}

void ReadLanguageTag(const std::u16string& wstrSubkey, char16_t (&wzTag)[g_uRegistryTextUnits]) {
    const stSettingRowW aRows[] = {Text(u"LanguageXMLTagName", u"", wzTag)};
    Apply((u"Information Option\\" + wstrSubkey).c_str(), aRows);
}

void ReadVideoSource(u32 uSource) {
    stVideoSource& st = g_stSettings.aVideoSource[uSource];
    const stSettingRowW aRows[] = {
        Text(u"FileMappingName", u"", st.wzFileMappingName),
        Number(u"FrameSize: W", u"1280", st.uFrameSizeW),
        Number(u"FrameSize: H", u"720", st.uFrameSizeH),
        Number(u"BufferSize: W", u"640", st.uBufferSizeW),
        Number(u"BufferSize: H", u"360", st.uBufferSizeH),
        Number(u"Update: I", u"1000", st.uUpdateInterval),
        Number(u"Update: F", u"40", st.uUpdateFrames),
        Number(u"Enable", u"0", st.uEnable),
        Signed(u"Anchor", u"9", st.iAnchor),
        Signed(u"Position: X", u"0", st.iPositionX),
        Signed(u"Position: Y", u"0", st.iPositionY),
        Byte(u"Alpha", u"255", st.uAlpha),
    };
    Apply((u"Video\\" + Digits(uSource)).c_str(), aRows);
}

} // namespace

void g_fnReadFeatureSwitches() {
    g_stSettings.bVideoEnable = ReadNumber(u"Video", u"Enable", u"0") != 0;
    g_stSettings.bGraphEnable = ReadNumber(u"Graph", u"Enable", u"0") != 0;
}

void g_fnReadVideoSources() {
    for (u32 i = 0; i < g_uVideoSources; ++i) ReadVideoSource(i);
}

void g_fnReadDebugSettings() {
    stDebugPanel& st = g_stSettings.stDebugRows;
    const stSettingRowW aRows[] = {
        Number(u"Debug Num", u"1", st.uRows),
        Number(u"PanelColor: Red", u"0", st.uRed),
        Number(u"PanelColor: Green", u"0", st.uGreen),
        Number(u"PanelColor: Blue", u"0", st.uBlue),
        Number(u"PanelColor: Alpha", u"255", st.uAlpha),
        Number(u"PanelType", u"0", st.uPanelType),
    };
    Apply(u"Debug", aRows);
}

void g_fnReadCameraSettings(u32 uPhotoW, u32 uPhotoH) {
    stCameraPhoto& st = g_stSettings.stPhoto;
    const std::u16string wstrW = Digits(uPhotoW), wstrH = Digits(uPhotoH);
    const stSettingRowW aRows[] = {
        Text(u"DirPath", u"", g_wzShotFolder),
        Number(u"CapMode", u"2", g_uCapMode),
        Number(u"CapType", u"2", g_uCapType),
        Text(u"FilePath", u"", st.wzFilePath),
        Number(u"FrameSize: W", wstrW.c_str(), st.uFrameSizeW),
        Number(u"FrameSize: H", wstrH.c_str(), st.uFrameSizeH),
        Number(u"IsShow", u"0", st.uIsShow),
        Signed(u"Anchor", u"1", st.iAnchor),
        Signed(u"Position: X", u"0", st.iPositionX),
        Signed(u"Position: Y", u"0", st.iPositionY),
        Byte(u"Alpha", u"255", st.uAlpha),
    };
    Apply(u"Camera", aRows);
    if (!g_wzShotFolder[0]) g_fnResolveDataPath(g_wzShotFolder, u"");
}

void g_fnReadLanguageFileName() {
    const stSettingRowW aRows[] = {Text(u"LanguageXMLFileName", u"X", g_stSettings.wzLanguageFileName)};
    Apply(u"Information Option", aRows);
}

void g_fnReadClockSetting() {
    u32 uFlag = 0;
    const stSettingRowW aRows[] = {Number(u"Monitor: 12H Flag", u"3", uFlag)};
    Apply(SuiteKey(), aRows, true);
    g_stSettings.bClock12H = std::min(uFlag, 1u) == 0;
}

void g_fnReadIntervals() {
    // KEEP(files): the second row's key and the name of its value differ, and the name decides, as stores in
    // use have that one.
    const stSettingRowW aRows[] = {
        Number(u"UpdateFrameDataInterval", u"1000", uFPSIntervalMs),
        {u"UpdateMonitorDataInterval", u"1000", SETTING_DECIMAL, TARGET_U32, &uDataIntervalMs, 0,
         u"UpdateStatisticInterval"},
    };
    Apply(u"Information Option", aRows);
    g_fnSetupIntervals();
}

void g_fnReadLimiterSettings() {
    const stSettingRowW aRows[] = {
        Number(u"Enable", u"0", EnableFPSLimiter),
        Number(u"FPSTarget", u"60", FPS_Target),
    };
    Apply(u"FPSLimiter", aRows);
    g_fnTavo_Apply_FPS_Limiter();
}

void g_fnReadSettingsBatch(u32 uPhotoW, u32 uPhotoH) {
    g_fnReadDebugSettings();
    g_fnReadCameraSettings(uPhotoW, uPhotoH);
    g_fnReadLanguageFileName();
    g_fnReadClockSetting();
    g_fnReadIntervals();
    g_fnReadLimiterSettings();
}

u32 g_fnReadCardNum() { return ReadNumber(u"Information Option\\Card", u"Card Num", u"1"); }

bool g_fnIsCardRowSupported(u32 uCard, const char16_t* wzRow) {
    return IsSupported(u"Card\\" + Digits(uCard) + u"\\" + wzRow);
}

bool g_fnIsCpuRowSupported(const char16_t* wzRow) { return IsSupported(std::u16string(u"CPU\\") + wzRow); }

bool g_fnIsSensorSupported(u32 uGroup, const char* szDataName) {
    char16_t wzName[g_uSettingText];
    if (!platform::Utf8ToUtf16(szDataName, wzName, g_uSettingText)) return false;
    return IsSupported(u"Sensor\\" + Digits(uGroup) + u"\\" + wzName);
}

void g_fnReadCardLanguageTag(const char16_t* wzRow, char16_t (&wzTag)[g_uRegistryTextUnits]) {
    ReadLanguageTag(std::u16string(u"Card\\Default\\") + wzRow, wzTag);
}

void g_fnReadRowLanguageTag(const char16_t* wzRow, char16_t (&wzTag)[g_uRegistryTextUnits]) {
    ReadLanguageTag(wzRow, wzTag);
}

bool g_fnResolveInstallPath(char16_t* wzOut, const char16_t* wzName) noexcept try {
    char16_t wzFolder[g_uRegistryTextUnits];
    const stSettingRowW aRows[] = {Text(u"OrvinDeck Install Path", u"", wzFolder)};
    Apply(SuiteKey(), aRows, true);
    wzOut[0] = 0;
    const std::u16string wstrPath = std::u16string(wzFolder) + platform::g_cPathSeparator + wzName;
    if (!wzFolder[0] || wstrPath.size() >= g_uDataPathCapacity) return false;
    wzOut[wstrPath.copy(wzOut, wstrPath.size())] = 0;
    return true;
} catch (...) { // no memory
    wzOut[0] = 0;
    return false;
}
