#include "config/settings/sensor_table.h"

#include <algorithm>

stDisplayTable g_stDisplay;

i32 g_iCardOfDisplay[g_uDisplayMax] = {};

/// Base names without a number behind them, in byte order.
static constexpr std::string_view g_aBuiltInNames[] = {
    "CPU_CLK",      "CPU_TEMP",    "CPU_USAGE",      "EXT_FAN1_DUTY", "EXT_FAN1_RPM",  "EXT_FAN2_DUTY",
    "EXT_FAN2_RPM", "FAN1_DUTY",   "FAN1_RPM",       "FAN2_DUTY",     "FAN2_RPM",      "FAN3_DUTY",
    "FAN3_RPM",     "FAN4_DUTY",   "FAN4_RPM",       "GPU_CLK",       "GPU_TEMP",      "GPU_USAGE",
    "GPU_VOLTAGE",  "LOAD_LINE",   "POWER_DETECTOR", "POWER_TARGET",  "VDDCI_VOLTAGE", "VOLTAGE_0_95",
    "VOLTAGE_1_8",  "VOLTAGE_3_3", "VRAM_CLK",       "VRAM_USAGE_MB", "VRAM_USAGE_P",  "VRAM_VOLTAGE",
};
static_assert(std::is_sorted(std::begin(g_aBuiltInNames), std::end(g_aBuiltInNames)));

/// Families of six, numbered from 1.
static constexpr std::string_view g_aPinFamilies[] = {"POWER_PIN_", "POWER_MB_PIN_", "PIN_", "MB_PIN_"};

static bool IsPinName(std::string_view szName) noexcept {
    if (szName.empty() || szName.back() < '1' || szName.back() > '6') return false;
    szName.remove_suffix(1);
    return std::find(std::begin(g_aPinFamilies), std::end(g_aPinFamilies), szName) !=
           std::end(g_aPinFamilies);
}

bool g_fnIsBuiltInDataName(std::string_view szBaseName) noexcept {
    return std::binary_search(std::begin(g_aBuiltInNames), std::end(g_aBuiltInNames), szBaseName) ||
           IsPinName(szBaseName);
}

std::string_view g_fnDataBaseName(std::string_view szDataFullName) noexcept {
    return szDataFullName.substr(0, szDataFullName.rfind('#'));
}

bool g_fnFindDataFormat(std::string_view szDataFullName, stDataFormat& stFormat) noexcept {
    const std::string_view szBase = g_fnDataBaseName(szDataFullName);
    const auto it = g_stDisplay.mapFormat.find(szBase);
    stFormat = it != g_stDisplay.mapFormat.end() ? it->second : stDataFormat{};
    return it != g_stDisplay.mapFormat.end() || g_fnIsBuiltInDataName(szBase);
}
