// The machine-wide switches of OSD.ini.
#include "config/settings/settings.h"
#include "platform/code_page.h"
#include "platform/log.h"

#include <algorithm>
#include <cstring>

namespace {

void Apply(const char16_t* wzSection, std::span<const stSettingRowW> rows) {
    SettingTableW table;
    g_fnAddSettingsW(table, rows);
    g_fnApplyIniSettings(wzSection, table);
    g_fnFreeSettingsW(table);
}

constexpr stSettingRowW Decimal(const char16_t* wzKey, const char16_t* wzDefault, u32& uTarget) {
    return {wzKey, wzDefault, SETTING_DECIMAL, TARGET_U32, &uTarget};
}

void ReadInfo() {
    u32 uDebugMode = 0, uMessageBox = 0, uDebugTime = 0, uLanguage = 0;
    const stSettingRowW aRows[] = {
        Decimal(u"MinHookScreenWidth", u"200", g_stSettings.uMinHookScreenWidth),
        Decimal(u"MinHookScreenHeight", u"200", g_stSettings.uMinHookScreenHeight),
        Decimal(u"DebugMode", u"0", uDebugMode),
        Decimal(u"DebugMessageBox", u"0", uMessageBox),
        Decimal(u"DebugTime", u"0", uDebugTime),
        Decimal(u"UseLanguageXMLString", u"0", uLanguage),
    };
    Apply(u"Info", aRows);
    g_stSettings.bDebugMode = uDebugMode != 0;
    g_stSettings.bDebugMessageBox = uMessageBox != 0;
    g_stSettings.bDebugTime = uDebugTime != 0;
    g_stSettings.bUseLanguageXMLString = uLanguage != 0;
}

f32 Seconds(u32 uMilliseconds) { return static_cast<f32>(uMilliseconds) / 1000.0f; }

void ReadTimes() {
    u32 uPressDetach = 0;
    const stSettingRowW aRows[] = {Decimal(u"PressDetachTime", u"0", uPressDetach)};
    Apply(u"Settings", aRows);
    g_stSettings.fPressDetachSeconds = std::clamp(Seconds(uPressDetach), 0.05f, 2.5f);
}

void TakeColor(const u32 (&auRGB)[3], stStatusColor& stColor) {
    for (u32 i = 0; i < 3; ++i) {
        stColor.au8RGB[i] = static_cast<u8>(std::min(auRGB[i], 255u));
        stColor.afRGB[i] = stColor.au8RGB[i] / 255.0f;
    }
}

void ReadWarning() {
    u32 auColor[2][3] = {}, uTime = 0, uTwinkle = 0;
    const stSettingRowW aRows[] = {
        Decimal(u"Status0ColorR", u"0", auColor[0][0]),   Decimal(u"Status0ColorG", u"0", auColor[0][1]),
        Decimal(u"Status0ColorB", u"0", auColor[0][2]),   Decimal(u"Status1ColorR", u"255", auColor[1][0]),
        Decimal(u"Status1ColorG", u"201", auColor[1][1]), Decimal(u"Status1ColorB", u"14", auColor[1][2]),
        Decimal(u"TwinkleTime", u"1000", uTime),          Decimal(u"Twinkle", u"1", uTwinkle),
    };
    Apply(u"Warning", aRows);
    for (u32 i = 0; i < 2; ++i) {
        TakeColor(auColor[i], g_stSettings.aStatusColor[i]);
        const u8* const pRGB = g_stSettings.aStatusColor[i].au8RGB;
        g_stSettings.auWarningColor[i] = static_cast<u32>(pRGB[0] << 16 | pRGB[1] << 8 | pRGB[2]);
    }
    g_stSettings.fWarningTwinkleSeconds = Seconds(uTime);
    g_stSettings.bWarningTwinkle = uTwinkle != 0;
}

} // namespace

bool g_fnReadGlobalSettingsINI() {
    ReadInfo();
    ReadTimes();
    ReadWarning();
    return true;
}

void g_fnReportGlobalSettingsFailure() {
    if (g_stSettings.bDebugMessageBox) platform::ShowMessageBox(u"g_fnReadGlobalSettingsINI fail", "Error");
}

void g_fnLoadGlobalSettings() {
    // KEEP(first version): the reading cannot fail; the check of its result stays.
    if (!g_fnReadGlobalSettingsINI()) g_fnReportGlobalSettingsFailure();
}

void g_fnReadIniText(const char* szSection, char16_t* wzOut, u32 uUnits) {
    char16_t wzSection[g_uSettingText];
    const u32 uBytes = static_cast<u32>(std::min<std::size_t>(std::strlen(szSection), g_uSettingText - 1));
    wzSection[platform::CodePageToUtf16(szSection, uBytes, wzSection, g_uSettingText - 1)] = 0;
    const stSettingRowW aRows[] = {{u"Text", u"", SETTING_TEXT_LOCAL, TARGET_WIDE, wzOut, uUnits}};
    Apply(wzSection, aRows);
}
