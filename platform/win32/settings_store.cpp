#include "platform/settings_store.h"
#include "platform/win32/windows_api.h"

namespace platform {

SettingsKey OpenSettingsKey(const char16_t* wzPath) noexcept {
    HKEY hKey = nullptr;
    static_assert(KEY_READ == 131097);
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t*>(wzPath), 0, KEY_READ, &hKey) ==
                   ERROR_SUCCESS
               ? hKey
               : nullptr;
}

void CloseSettingsKey(SettingsKey hKey) noexcept {
    if (hKey) RegCloseKey(static_cast<HKEY>(hKey));
}

} // namespace platform
