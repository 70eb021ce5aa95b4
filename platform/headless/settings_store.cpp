#include "platform/settings_store.h"
#include "platform/headless/state.h"
#include "platform/settings_tree.h"

namespace platform {

using headless::Get;

SettingsKey OpenSettingsKey(const char16_t* wzPath) noexcept {
    std::lock_guard lock(Get().m_lock);
    Get().m_vecAskedKeys.emplace_back(wzPath);
    COpenSettingsKey* const pKey = COpenSettingsKey::Open(Get().m_pSettings, wzPath);
    Get().m_uOpenKeys += pKey != nullptr;
    return pKey;
}

void CloseSettingsKey(SettingsKey hKey) noexcept {
    if (!hKey) return;
    std::lock_guard lock(Get().m_lock);
    --Get().m_uOpenKeys;
    delete static_cast<COpenSettingsKey*>(hKey);
}

namespace headless {

static void Store(const char16_t* wzPath, const char16_t* wzName, SettingsValue value) {
    std::lock_guard lock(Get().m_lock);
    SettingsNode* const pNode = Get().m_pSettings->AddKey(wzPath);
    if (!pNode || !wzName) return;
    pNode->m_mapValues.erase(wzName);
    Get().m_pSettings->AddValue(*pNode, wzName, std::move(value));
}

void AddSettingsKey(const char16_t* wzPath) { Store(wzPath, nullptr, {}); }

void SetSettingsNumber(const char16_t* wzPath, const char16_t* wzName, u32 uValue) {
    Store(wzPath, wzName, MakeSettingsNumber(uValue));
}

void SetSettingsText(const char16_t* wzPath, const char16_t* wzName, const char16_t* wzValue) {
    Store(wzPath, wzName, MakeSettingsText(wzValue));
}

void SetSettingsBytes(const char16_t* wzPath, const char16_t* wzName, SettingsType eType,
                      std::vector<u8> vecBytes) {
    Store(wzPath, wzName, {eType, std::move(vecBytes)});
}

void ClearSettings() {
    std::lock_guard lock(Get().m_lock);
    Get().m_pSettings = std::make_shared<CSettingsTree>();
}

std::vector<std::u16string> AskedSettingsKeys() { return Get().m_vecAskedKeys; }

u32 OpenSettingsKeys() { return Get().m_uOpenKeys; }

} // namespace headless
} // namespace platform
