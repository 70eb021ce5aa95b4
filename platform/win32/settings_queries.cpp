// Values and subkeys of an open key of the registry.
#include "platform/settings_store.h"
#include "platform/win32/windows_api.h"

namespace platform {
namespace {

const wchar_t* Wide(const char16_t* wz) { return reinterpret_cast<const wchar_t*>(wz); }
wchar_t* Wide(char16_t* wz) { return reinterpret_cast<wchar_t*>(wz); }
HKEY Key(SettingsKey hKey) { return static_cast<HKEY>(hKey); }

SettingsType TypeOf(DWORD uType) {
    if (uType == REG_DWORD) return SettingsType::Number;
    const bool bText = uType == REG_SZ || uType == REG_EXPAND_SZ || uType == REG_MULTI_SZ;
    return bText ? SettingsType::Text : SettingsType::Other;
}

} // namespace

bool QuerySettingsValue(SettingsKey hKey, const char16_t* wzName, SettingsType& eType, void* pOut,
                        u32& uBytes) noexcept {
    DWORD uType = 0, uSize = uBytes;
    if (!hKey || RegQueryValueExW(Key(hKey), Wide(wzName), nullptr, &uType, static_cast<BYTE*>(pOut),
                                  &uSize) != ERROR_SUCCESS)
        return false;
    eType = TypeOf(uType);
    uBytes = uSize;
    return true;
}

bool EnumSettingsSubkey(SettingsKey hKey, u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept {
    DWORD uUnits = uCapacity;
    return hKey && RegEnumKeyExW(Key(hKey), uIndex, Wide(wzOut), &uUnits, nullptr, nullptr, nullptr,
                                 nullptr) == ERROR_SUCCESS;
}

bool EnumSettingsValue(SettingsKey hKey, u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept {
    DWORD uUnits = uCapacity;
    return hKey && RegEnumValueW(Key(hKey), uIndex, Wide(wzOut), &uUnits, nullptr, nullptr, nullptr,
                                 nullptr) == ERROR_SUCCESS;
}

} // namespace platform
