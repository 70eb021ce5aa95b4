#include "config/fixed/attribute_value.h"

#include "config/fixed/variables.h"
#include "config/settings/setting_binding.h"
#include "controls/align_row.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

stFontScale g_stFontScale;

namespace {

/// Read to the first character that no number has.
f64 NumberOf(std::string_view szText) { return g_fnParseFloat(std::string(szText).c_str()); }

bool IsFinal(std::string_view szName) { return szName == "Align#2.x" || szName == "Align#2.y"; }

} // namespace

void g_fnReadFontScale(const tinyxml2::XMLElement* pInfo) {
    SettingTable table;
    const stSettingRow aRows[] = {{"FontScale", "100", SETTING_DECIMAL, TARGET_I32, &g_stFontScale.iPercent}};
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(pInfo, table);
    g_fnFreeSettings(table);
    g_stFontScale.fFactor = g_fGlyphGapUnit = static_cast<f32>(g_stFontScale.iPercent * 0.01);
}

bool g_fnIsPlainNumber(std::string_view szText) {
    if (szText.starts_with('-')) szText.remove_prefix(1);
    if (std::count(szText.begin(), szText.end(), '.') > 1) return false;
    bool bDigit = false;
    for (const char c : szText) {
        if (c == '.') continue;
        if (c < '0' || c > '9') return false;
        bDigit = true;
    }
    return bDigit;
}

stAttributeValue g_fnReadAttribute(std::string_view szText) {
    if (g_fnIsPlainNumber(szText)) return {NumberOf(szText), false};
    const auto it = g_stFileVariables.mapProfile.find(szText);
    if (it != g_stFileVariables.mapProfile.end()) return {NumberOf(it->second), false};
    return {static_cast<f64>(g_fnReadVariable(szText)), IsFinal(szText)};
}

f64 g_fnScaleAttribute(const stAttributeValue& st) {
    return st.bFinal ? st.fValue : st.fValue * g_stFontScale.iPercent / 100.0;
}

f64 g_fnScaleSize(std::string_view szSize, std::string_view szFactor) {
    stAttributeValue stSize = g_fnReadAttribute(szSize);
    const stAttributeValue stFactor = g_fnReadAttribute(szFactor);
    if (stFactor.fValue != 0) stSize.fValue *= stFactor.fValue;
    stSize.bFinal = stSize.bFinal || stFactor.bFinal;
    return g_fnScaleAttribute(stSize);
}

i32 g_fnCutToWhole(f64 fValue) {
    constexpr f64 fLeast = -2147483648.0, fMost = 2147483647.0;
    return std::isnan(fValue) ? 0 : static_cast<i32>(std::clamp(fValue, fLeast, fMost));
}
