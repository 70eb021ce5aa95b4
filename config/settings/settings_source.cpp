// The two sources of settings: tables filled from OSD.ini and from the settings store.
#include "config/settings/settings.h"
#include "platform/folders.h"
#include "platform/ini_file.h"
#include "platform/settings_store.h"

#include <algorithm>
#include <cstring>
#include <string_view>

// KEEP(files): the 32-bit view counts until somebody has looked.
namespace {

constexpr char16_t g_wzOwnRoot[] = u"SOFTWARE\\Zarn\\ORVIN-OSD";
constexpr char16_t g_wzOwnRootWow[] = u"SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD";
constexpr u32 g_uIniValueUnits = 260; ///< terminator included

class CKey {
  public:
    CKey(const char16_t* wzSubkey, bool bIsFullPath) : m_hKey(Open(wzSubkey, bIsFullPath)) {}
    CKey(const CKey&) = delete;
    CKey& operator=(const CKey&) = delete;
    ~CKey() { platform::CloseSettingsKey(m_hKey); }
    platform::SettingsKey Get() const { return m_hKey; }

  private:
    static platform::SettingsKey Open(const char16_t* wzSubkey, bool bIsFullPath) {
        if (bIsFullPath) return platform::OpenSettingsKey(wzSubkey);
        const std::u16string wstrRoot(g_stSettings.uWowKeys ? g_wzOwnRootWow : g_wzOwnRoot);
        return platform::OpenSettingsKey((wstrRoot + u"\\" + wzSubkey).c_str());
    }

    platform::SettingsKey m_hKey;
};

/// Decimal digits of a 32-bit value.
void PrintNumber(u32 uValue, char16_t (&wzOut)[11]) {
    char16_t* pEnd = wzOut;
    do *pEnd++ = static_cast<char16_t>(u'0' + uValue % 10);
    while (uValue /= 10);
    std::reverse(wzOut, pEnd);
    *pEnd = 0;
}

using ValueText = char16_t[g_uRegistryTextUnits];

/// A value that is a text, or not of 32 bits, counts as missing.
bool QueryNumber(platform::SettingsKey hKey, const char16_t* wzName, ValueText& wzOut) {
    platform::SettingsType eType{};
    u32 uValue = 0, uBytes = sizeof uValue;
    if (!platform::QuerySettingsValue(hKey, wzName, eType, &uValue, uBytes)) return false;
    if (eType == platform::SettingsType::Text || uBytes != sizeof uValue) return false;
    char16_t wzDigits[11];
    PrintNumber(uValue, wzDigits);
    std::copy_n(wzDigits, std::size(wzDigits), wzOut);
    return true;
}

/// The end mark needs a place within the limit, whether the stored value has one or not.
bool QueryText(platform::SettingsKey hKey, const char16_t* wzName, ValueText& wzOut) {
    platform::SettingsType eType{};
    u32 uBytes = sizeof wzOut;
    if (!platform::QuerySettingsValue(hKey, wzName, eType, wzOut, uBytes)) return false;
    if (eType != platform::SettingsType::Text) return false;
    char16_t* const pEnd = wzOut + uBytes / sizeof(char16_t);
    char16_t* const pMark = std::find(wzOut, pEnd, u'\0');
    if (pMark == std::end(wzOut)) return false;
    *pMark = 0;
    return true;
}

bool IsStoredFromRegistry(u8 uTargetType) {
    return (uTargetType >= TARGET_I8 && uTargetType <= TARGET_U32) || uTargetType == TARGET_WIDE;
}

void ApplyRegistryRow(platform::SettingsKey hKey, stSettingBindingW& row) {
    ValueText wzText;
    const bool bNumber = row.uKind == SETTING_DECIMAL;
    row.uFound = 0;
    // KEEP(files): rows of any other kind keep what their target held.
    if (!bNumber && row.uKind != SETTING_TEXT_LOCAL) return;
    const bool bFound = bNumber ? QueryNumber(hKey, row.wzName, wzText) : QueryText(hKey, row.wzName, wzText);
    row.uFound = bFound;
    if (IsStoredFromRegistry(row.uTargetType)) g_fnStoreSettingW(row, bFound ? wzText : nullptr);
}

/// Terminated copy with room to spare; a cut leaves no half of a pair.
void CutIniValue(std::u16string_view value, char16_t (&wzOut)[g_uIniValueUnits]) {
    std::size_t uUnits = value.copy(wzOut, g_uIniValueUnits - 1);
    if (uUnits < value.size() && (wzOut[uUnits - 1] & 0xFC00) == 0xD800) --uUnits;
    wzOut[uUnits] = 0;
}

using EnumFunction = bool (*)(platform::SettingsKey, u32, char16_t*, u32) noexcept;

void AppendNames(platform::SettingsKey hKey, EnumFunction fnEnum, u32 uNameMax,
                 std::vector<std::u16string>& names) {
    std::u16string wstrName(uNameMax, 0);
    for (u32 u = 0; u < g_uEnumNamesMax && fnEnum(hKey, u, wstrName.data(), uNameMax + 1); ++u)
        names.emplace_back(wstrName.c_str());
}

} // namespace

void g_fnProbeWowKeys() {
    const CKey key(g_wzOwnRootWow, true);
    g_stSettings.uWowKeys = key.Get() != nullptr;
}

void g_fnApplyIniSettings(const char16_t* wzSection, SettingTableW& table) {
    char16_t wzPath[g_uDataPathCapacity], wzValue[g_uIniValueUnits];
    g_fnResolveDataPath(wzPath, u"OSD.ini");
    const platform::CIniFile file = platform::CIniFile::Load(wzPath);
    for (auto& [wstrKey, row] : table) {
        const platform::IniEntry* const pEntry = file.Find(wzSection, wstrKey);
        if (pEntry) CutIniValue(pEntry->m_wzValue, wzValue);
        g_fnStoreSettingW(row, pEntry ? wzValue : nullptr);
    }
}

void g_fnApplyRegistrySettings(const char16_t* wzSubkey, SettingTableW& table, bool bIsFullPath) {
    const CKey key(wzSubkey, bIsFullPath);
    for (auto& [wstrKey, row] : table) ApplyRegistryRow(key.Get(), row);
}

void g_fnEnumRegistrySubkeys(const char16_t* wzSubkey, std::vector<std::u16string>* pSubkeys,
                             std::vector<std::u16string>* pValues, bool bIsFullPath) {
    const CKey key(wzSubkey, bIsFullPath);
    if (pSubkeys)
        AppendNames(key.Get(), platform::EnumSettingsSubkey, platform::g_uSettingsKeyNameMax, *pSubkeys);
    if (pValues)
        AppendNames(key.Get(), platform::EnumSettingsValue, platform::g_uSettingsValueNameMax, *pValues);
}
