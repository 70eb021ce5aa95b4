#include "config/fixed/variables.h"

#include "base/numbers.h"
#include "config/items/item_reader.h"
#include "config/settings/setting_binding.h"
#include "font/font_unicode.h"

#include <cmath>
#include <cstring>

stVariables g_stVariables;
stFileVariables g_stFileVariables;

namespace {

template <class T> T Load(const void* pValue) {
    T value;
    std::memcpy(&value, pValue, sizeof value);
    return value;
}

/// Name and value of a "Variable", both as wide as the target type says.
template <class T>
void ReadVariable(const tinyxml2::XMLElement& element, eSettingTarget uType, T (&szName)[g_uSettingText],
                  T (&szValue)[g_uSettingText]) {
    SettingTable table;
    const stSettingRow aRows[] = {
        {"Name", "", SETTING_TEXT, uType, szName, g_uSettingText},
        {"Value", "", SETTING_TEXT, uType, szValue, g_uSettingText},
    };
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(&element, table);
    g_fnFreeSettings(table);
}

/// All children "Variable"; one without a name can't be asked for.
template <class T, class Map>
void ReadVariables(const tinyxml2::XMLElement* pParent, eSettingTarget uType, Map& map) {
    map.clear();
    for (auto* p = g_fnFirstElement(pParent, "Variable"); p; p = g_fnNextElement(p, "Variable")) {
        T szName[g_uSettingText] = {}, szValue[g_uSettingText] = {};
        ReadVariable(*p, uType, szName, szValue);
        if (szName[0]) map.insert_or_assign(szName, szValue);
    }
}

i32 ProfileNumber(std::string_view szName) {
    const auto it = g_stFileVariables.mapProfile.find(szName);
    if (it == g_stFileVariables.mapProfile.end()) return 0;
    return static_cast<i32>(static_cast<u32>(g_fnParseDecimal(it->second.c_str())));
}

void AddColumnWidthSum() {
    const i64 iSum = static_cast<i64>(ProfileNumber("ColumnWidth#1")) + ProfileNumber("ColumnWidth#2");
    g_stFileVariables.mapProfile[g_szColumnWidthSum] = std::to_string(iSum);
}

i32 Percent(const std::string& szValue) {
    return static_cast<i32>(static_cast<u32>(g_fnParseDecimal(szValue.c_str())));
}

i32 Percent(const std::u16string& wzValue) {
    std::string szAscii;
    for (const char16_t c : wzValue) {
        if (c >= 0x80) break; // ends a number
        szAscii += static_cast<char>(c);
    }
    return Percent(szAscii);
}

} // namespace

void g_fnRegisterVariable(std::string_view szName, const void* pValue, u8 uTargetType) {
    g_stVariables.mapByName.insert_or_assign(std::string(szName), stVariable{pValue, uTargetType});
}

void g_fnRegisterVariables() {
    g_stVariables.mapByName.clear();
    g_fnClearFileVariables();
    g_fnRegisterVariable("CPUNum", &g_stVariables.uCPUNum, TARGET_U32);
    g_fnRegisterVariable("GPUNum", &g_stVariables.uGPUNum, TARGET_U32);
    g_fnRegisterVariable("Align#2.x", &g_stVariables.iAlign2X, TARGET_I32);
    g_fnRegisterVariable("Align#2.y", &g_stVariables.iAlign2Y, TARGET_I32);
}

i32 g_fnReadVariable(std::string_view szName) {
    const auto it = g_stVariables.mapByName.find(szName);
    if (it == g_stVariables.mapByName.end() || !it->second.pValue) return 0;
    const void* p = it->second.pValue;
    switch (it->second.uTargetType) {
    case TARGET_I8:
        return Load<i8>(p);
    case TARGET_U8:
        return Load<u8>(p);
    case TARGET_I16:
        return Load<i16>(p);
    case TARGET_U16:
        return Load<u16>(p);
    case TARGET_I32:
    case TARGET_U32:
        return Load<i32>(p);
    case TARGET_F32:
        return g_fnTruncate<i32>(Load<f32>(p));
    case TARGET_U64:
        return static_cast<i32>(static_cast<u32>(Load<u64>(p)));
    default:
        return 0;
    }
}

void g_fnReadProfileVariables(const tinyxml2::XMLElement* pInfo) {
    ReadVariables<char>(g_fnFirstElement(pInfo, "CustomSettings"), TARGET_TEXT, g_stFileVariables.mapProfile);
    AddColumnWidthSum();
    g_fnHandOverFontScales();
}

void g_fnReadPresetVariables(const tinyxml2::XMLElement* pPreset) {
    ReadVariables<char16_t>(pPreset, TARGET_WIDE, g_stFileVariables.mapPreset);
    g_fnHandOverFontScales();
}

void g_fnHandOverFontScales() {
    g_mapFontScalePercent.clear();
    for (const auto& [wzName, wzValue] : g_stFileVariables.mapPreset)
        g_mapFontScalePercent[wzName] = Percent(wzValue);
    for (const auto& [szName, szValue] : g_stFileVariables.mapProfile) {
        char16_t wzName[g_uSettingText];
        g_fnDecodeUtf8(szName.c_str(), wzName, g_uSettingText);
        g_mapFontScalePercent[wzName] = Percent(szValue);
    }
}

void g_fnClearFileVariables() {
    g_stFileVariables.mapProfile.clear();
    g_stFileVariables.mapPreset.clear();
    g_mapFontScalePercent.clear();
}
