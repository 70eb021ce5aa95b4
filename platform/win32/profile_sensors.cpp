// What the registry says of the machine.
#include "platform/profile_sensors.h"
#include "platform/headless/test_controls.h"
#include <algorithm>
#include <windows.h>

namespace platform::tool {
namespace {

constexpr const wchar_t* kRoots[] = {L"SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD", L"SOFTWARE\\Zarn\\ORVIN-OSD"};
constexpr const wchar_t* kBelow = L"Information Option";
constexpr const char16_t* kTarget = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option";
constexpr const char16_t* kLanguage = u"LanguageXMLFileName";
constexpr DWORD kMostKeys = 4096, kMostValues = 64;
constexpr u32 kDeepest = 8;

class Key {
  public:
    Key(HKEY hParent, const wchar_t* wzPath) {
        if (RegOpenKeyExW(hParent, wzPath, 0, KEY_READ, &m_hKey) != ERROR_SUCCESS) m_hKey = nullptr;
    }
    ~Key() {
        if (m_hKey) RegCloseKey(m_hKey);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    HKEY Get() const { return m_hKey; }

  private:
    HKEY m_hKey = nullptr;
};

std::u16string Units(const wchar_t* wz) { return {wz, wz + lstrlenW(wz)}; }

/// A value of a key. Of the topmost one only the language counts.
void TakeValue(HKEY hKey, DWORD u, const std::u16string& wstrPath, bool& bHardware) {
    wchar_t wzName[256], wzText[256] = L"";
    DWORD uUnits = 256, uType = 0, uBytes = sizeof wzText - sizeof(wchar_t);
    if (RegEnumValueW(hKey, u, wzName, &uUnits, nullptr, &uType, reinterpret_cast<BYTE*>(wzText), &uBytes) !=
        ERROR_SUCCESS)
        return;
    const std::u16string wstrName = Units(wzName);
    if (wstrPath == kTarget && wstrName != kLanguage) return;
    bHardware |= wstrName == u"IsSupport";
    DWORD uNumber = 0, uNumberBytes = sizeof uNumber;
    if (uType == REG_SZ)
        headless::SetSettingsText(wstrPath.c_str(), wstrName.c_str(), Units(wzText).c_str());
    else if (uType == REG_DWORD &&
             RegQueryValueExW(hKey, wzName, nullptr, nullptr, reinterpret_cast<BYTE*>(&uNumber),
                              &uNumberBytes) == ERROR_SUCCESS)
        headless::SetSettingsNumber(wstrPath.c_str(), wstrName.c_str(), uNumber);
}

/// A key with all below it.
void TakeKey(HKEY hKey, const std::u16string& wstrPath, u32 uDepth, DWORD& uKeysLeft, bool& bHardware) {
    headless::AddSettingsKey(wstrPath.c_str());
    DWORD uValues = 0;
    RegQueryInfoKeyW(hKey, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &uValues, nullptr, nullptr,
                     nullptr, nullptr);
    for (DWORD u = 0; u < std::min(uValues, kMostValues); ++u) TakeValue(hKey, u, wstrPath, bHardware);
    for (DWORD u = 0; uDepth < kDeepest && uKeysLeft > 0; ++u, --uKeysLeft) {
        wchar_t wzName[256];
        DWORD uUnits = 256;
        if (RegEnumKeyExW(hKey, u, wzName, &uUnits, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return;
        const Key below(hKey, wzName);
        if (below.Get())
            TakeKey(below.Get(), wstrPath + u'\\' + Units(wzName), uDepth + 1, uKeysLeft, bHardware);
    }
}

} // namespace

bool TakeMachineOfSystem() {
    // As the overlay looks: where the first key exists, the second one does not count.
    const Key wow(HKEY_LOCAL_MACHINE, kRoots[0]), plain(HKEY_LOCAL_MACHINE, kRoots[1]);
    const Key info(wow.Get() ? wow.Get() : plain.Get(), kBelow);
    bool bHardware = false;
    DWORD uKeysLeft = kMostKeys;
    if (info.Get()) TakeKey(info.Get(), kTarget, 0, uKeysLeft, bHardware);
    return bHardware;
}

} // namespace platform::tool
