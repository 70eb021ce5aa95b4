#include "config/settings/settings_sensors.h"

#include "config/settings/sensor_table.h"
#include "platform/utf.h"

#include <algorithm>

stSensorDefinitions g_stSensors;

namespace {

constexpr u32 g_uDecimalsMax = 3;

using RegistryText = char16_t[g_uRegistryTextUnits];

struct SensorKey {
    RegistryText wzTitle, wzUnit, wzProfileTag, wzDataName;
    stSensorLanguageTags stTags;
    u32 uDecimals, uDivisor;
};

void ReadKey(const std::u16string& wstrName, SensorKey& st) {
    constexpr std::size_t N = g_uRegistryTextUnits;
    const auto text = [](const char16_t* wzName, RegistryText& wzTarget) {
        return stSettingRowW{wzName, u"", SETTING_TEXT_LOCAL, TARGET_WIDE, wzTarget, N};
    };
    const stSettingRowW aRows[] = {
        text(u"Title", st.wzTitle),
        text(u"Unit", st.wzUnit),
        text(u"Title LanguageXML TagName", st.stTags.wzCaptionTag),
        text(u"Unit LanguageXML TagName", st.stTags.wzUnitTag),
        text(u"OSDProfileXML TagName", st.wzProfileTag),
        text(u"DataName", st.wzDataName),
        {u"Display Digit After Decimal Point", u"0", SETTING_DECIMAL, TARGET_U32, &st.uDecimals},
        {u"Divisor", u"1", SETTING_DECIMAL, TARGET_U32, &st.uDivisor},
    };
    SettingTableW table;
    g_fnAddSettingsW(table, aRows);
    g_fnApplyRegistrySettings((u"Information Option\\Config\\Sensor\\" + wstrName).c_str(), table, false);
    g_fnFreeSettingsW(table);
}

/// ASCII letters only, as data names are compared byte by byte.
std::u16string UpperCase(std::u16string wstr) {
    for (char16_t& c : wstr)
        if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 0x20);
    return wstr;
}

/// The text of the key, or what stands in for an empty one. False if the record has no room for it.
bool TakeName(const char16_t* wzText, const std::u16string& wstrInstead, char (&szOut)[g_uSettingText]) {
    return platform::Utf16ToUtf8(*wzText ? wzText : wstrInstead.c_str(), szOut, g_uSettingText);
}

void AddSensor(const std::u16string& wstrName) {
    SensorKey stKey;
    stSensorDefinition st{};
    ReadKey(wstrName, stKey);
    if (!TakeName(stKey.wzDataName, UpperCase(wstrName), st.szDataName) ||
        !TakeName(stKey.wzProfileTag, wstrName, st.szProfileTag))
        return;
    std::copy(std::begin(stKey.wzTitle), std::end(stKey.wzTitle), st.wzCaption);
    std::copy(std::begin(stKey.wzUnit), std::end(stKey.wzUnit), st.wzUnit);
    st.uDecimals = std::min(stKey.uDecimals, g_uDecimalsMax);
    st.uDivisor = std::max(stKey.uDivisor, 1u);
    st.iTitleTextId = st.iValueNumberId = st.iUnitTextId = -1;
    g_stSensors.mapByName.insert_or_assign(st.szDataName, st);
    g_stSensors.mapTag.insert_or_assign(st.szProfileTag, st.szDataName);
    g_stSensors.mapLanguage.insert_or_assign(st.szDataName, stKey.stTags);
    g_stDisplay.mapFormat.insert_or_assign(st.szDataName, stDataFormat{st.uDecimals, st.uDivisor});
}

} // namespace

void g_fnReadSensorDefinitions() {
    g_stSensors.mapByName.clear();
    g_stSensors.mapTag.clear();
    g_stSensors.mapLanguage.clear();
    g_stDisplay.mapFormat.clear();
    std::vector<std::u16string> names;
    g_fnEnumRegistrySubkeys(u"Information Option\\Config\\Sensor", &names, nullptr, false);
    for (const std::u16string& wstrName : names)
        if (!wstrName.empty()) AddSensor(wstrName);
}
