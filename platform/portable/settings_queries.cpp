// Keys of a settings tree that a back-end has opened.
#include "platform/settings_store.h"
#include "platform/settings_tree.h"

namespace platform {

static COpenSettingsKey* Key(SettingsKey hKey) { return static_cast<COpenSettingsKey*>(hKey); }

bool QuerySettingsValue(SettingsKey hKey, const char16_t* wzName, SettingsType& eType, void* pOut,
                        u32& uBytes) noexcept {
    return hKey && Key(hKey)->Query(wzName, eType, pOut, uBytes);
}

bool EnumSettingsSubkey(SettingsKey hKey, u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept {
    return hKey && Key(hKey)->Subkey(uIndex, wzOut, uCapacity);
}

bool EnumSettingsValue(SettingsKey hKey, u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept {
    return hKey && Key(hKey)->Value(uIndex, wzOut, uCapacity);
}

} // namespace platform
