#include "config/settings/settings_care.h"

#include "base/host_care.h"
#include "config/settings/settings.h"

#include <iterator>

void g_fnReadHostCare() {
    static constexpr const char16_t* awzKeys[] = {u"OuterGuard",      u"StayWithSurface",
                                                  u"LimiterRecovery", u"RestoreAfterFailure",
                                                  u"MergedDraw",      u"CarefulShots"};
    bool stHostCare::*const apbSwitches[] = {&stHostCare::bOuterGuard,      &stHostCare::bStayWithSurface,
                                             &stHostCare::bLimiterRecovery, &stHostCare::bRestoreAfterFailure,
                                             &stHostCare::bMergedDraw,      &stHostCare::bCarefulShots};
    u32 auValues[std::size(awzKeys)] = {};
    SettingTableW table;
    for (std::size_t i = 0; i < std::size(awzKeys); ++i) {
        const stSettingRowW row = {awzKeys[i], u"0", SETTING_DECIMAL, TARGET_U32, &auValues[i]};
        g_fnAddSettingsW(table, {&row, 1});
    }
    g_fnApplyIniSettings(u"HostCare", table);
    g_fnFreeSettingsW(table);
    for (std::size_t i = 0; i < std::size(awzKeys); ++i) g_stHostCare.*apbSwitches[i] = auValues[i] != 0;
}
