// Windows: the settings are values of the registry.
#include "platform/tool_settings.h"
#include "platform/win32/tool.h"
#include "platform/win32/windows_api.h"
#include <algorithm>
#include <cstring>

namespace platform::tool {
namespace {

constexpr wchar_t kWowRoot[] = L"SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD";
constexpr wchar_t kRoot[] = L"SOFTWARE\\Zarn\\ORVIN-OSD";
constexpr DWORD kLongestName = 256; ///< units of a key's name with its end mark

/// A key that closes itself.
class Key {
  public:
    explicit Key(HKEY hKey) : m_hKey(hKey) {}
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (m_hKey) RegCloseKey(m_hKey);
    }
    HKEY Get() const { return m_hKey; }

  private:
    HKEY m_hKey;
};

HKEY OpenToRead(const std::wstring& wstrPath) {
    HKEY hKey = nullptr;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, wstrPath.c_str(), 0, KEY_READ, &hKey);
    return hKey;
}

/// The overlay looks below the first root where it exists.
std::wstring PathOf(const std::string& strKey) {
    const Key wow(OpenToRead(kWowRoot));
    const std::wstring wstrRoot = wow.Get() ? kWowRoot : kRoot;
    if (strKey.starts_with('\\')) return wstrRoot.substr(0, wstrRoot.rfind(L'\\')) + ToWide(strKey);
    return wstrRoot + L"\\" + ToWide(strKey);
}

Result CannotWrite(const std::wstring& wstrPath, LSTATUS iStatus) {
    return Result::Fail("cannot write HKEY_LOCAL_MACHINE\\" + FromWide(wstrPath.c_str()) +
                        (iStatus == ERROR_ACCESS_DENIED ? "; this takes an administrator" : ""));
}

LSTATUS Store(HKEY hKey, const Setting& st) {
    const std::wstring wstrName = ToWide(st.strName), wstrText = ToWide(st.strText);
    if (st.bRemoved) {
        const LSTATUS iStatus = RegDeleteValueW(hKey, wstrName.c_str());
        return iStatus == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : iStatus;
    }
    const BYTE* const pBytes = st.uNumber ? reinterpret_cast<const BYTE*>(&*st.uNumber)
                                          : reinterpret_cast<const BYTE*>(wstrText.c_str());
    const std::size_t uBytes = st.uNumber ? sizeof(u32) : (wstrText.size() + 1) * sizeof(wchar_t);
    return RegSetValueExW(hKey, wstrName.c_str(), 0, st.uNumber ? REG_DWORD : REG_SZ, pBytes,
                          static_cast<DWORD>(uBytes));
}

/// Without storing it is only tried whether the key can be written. A key is not made for a value to remove.
Result OpenAndStore(const Setting& st, bool bStore) {
    HKEY hKey = nullptr;
    const std::wstring wstrPath = PathOf(st.strKey);
    LSTATUS iStatus = st.bRemoved
                          ? RegOpenKeyExW(HKEY_LOCAL_MACHINE, wstrPath.c_str(), 0, KEY_SET_VALUE, &hKey)
                          : RegCreateKeyExW(HKEY_LOCAL_MACHINE, wstrPath.c_str(), 0, nullptr, 0,
                                            KEY_SET_VALUE, nullptr, &hKey, nullptr);
    const Key key(hKey);
    if (st.bRemoved && iStatus == ERROR_FILE_NOT_FOUND) return {};
    if (iStatus == ERROR_SUCCESS && bStore) iStatus = Store(hKey, st);
    return iStatus == ERROR_SUCCESS ? Result{} : CannotWrite(wstrPath, iStatus);
}

std::wstring TextOf(const std::vector<BYTE>& vecBytes) {
    std::wstring wstr(vecBytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(wstr.data(), vecBytes.data(), wstr.size() * sizeof(wchar_t));
    return wstr.substr(0, wstr.find(L'\0'));
}

} // namespace

Setting CurrentSetting(const std::string& strKey, const std::string& strName) {
    Setting st{strKey, strName, {}, {}, true};
    const Key key(OpenToRead(PathOf(strKey)));
    const std::wstring wstrName = ToWide(strName);
    DWORD uType = 0, uBytes = 0;
    if (!key.Get() || RegQueryValueExW(key.Get(), wstrName.c_str(), nullptr, &uType, nullptr, &uBytes))
        return st;
    std::vector<BYTE> vecBytes(uBytes);
    if (RegQueryValueExW(key.Get(), wstrName.c_str(), nullptr, &uType, vecBytes.data(), &uBytes)) return st;
    vecBytes.resize(uBytes);
    if (uType == REG_SZ) st.strText = FromWide(TextOf(vecBytes).c_str());
    u32 uNumber = 0;
    if (uType == REG_DWORD && uBytes == sizeof uNumber) {
        std::memcpy(&uNumber, vecBytes.data(), sizeof uNumber);
        st.uNumber = uNumber;
    }
    st.bRemoved = uType != REG_SZ && !st.uNumber;
    return st;
}

std::vector<std::string> SettingKeys(const std::string& strKey) {
    std::vector<std::string> list;
    const Key key(OpenToRead(PathOf(strKey)));
    wchar_t wzName[kLongestName];
    for (DWORD u = 0, uUnits = kLongestName;
         key.Get() &&
         RegEnumKeyExW(key.Get(), u, wzName, &uUnits, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++u, uUnits = kLongestName)
        list.push_back(FromWide(wzName));
    return list;
}

Result StoreSettings(const std::vector<Setting>& listSettings) {
    for (const Setting& st : listSettings)
        if (Result stResult = CheckSetting(st); !stResult) return stResult;
    for (const bool bStore : {false, true})
        for (const Setting& st : listSettings)
            if (Result stResult = OpenAndStore(st, bStore); !stResult) return stResult;
    return {};
}

Result RemoveSettingKeys(const std::vector<std::string>& listKeys) {
    for (const std::string& strKey : listKeys) {
        const std::wstring wstrPath = PathOf(strKey);
        const LSTATUS iStatus = RegDeleteTreeW(HKEY_LOCAL_MACHINE, wstrPath.c_str());
        if (iStatus != ERROR_SUCCESS && iStatus != ERROR_FILE_NOT_FOUND)
            return CannotWrite(wstrPath, iStatus);
    }
    return {};
}

struct TemporarySettings::Memory {
    struct Value {
        std::string strKey, strName;
        bool bThere = false;
        DWORD uType = 0;
        std::vector<BYTE> vecBytes;
    };
    HANDLE hMutex = nullptr;
    std::vector<Value> listFormer;
    std::vector<std::wstring> listMade; ///< keys that were not there, the deepest last

    void Remember(const Setting& setting);
    bool GiveBack(const Value& value) const;
    ~Memory() {
        if (!hMutex) return;
        ReleaseMutex(hMutex);
        CloseHandle(hMutex);
    }
};

/// The value whatever its type, and which of the keys above it there are not.
void TemporarySettings::Memory::Remember(const Setting& setting) {
    Value value{setting.strKey, setting.strName, false, 0, {}};
    const std::wstring wstrKey = PathOf(setting.strKey), wstrName = ToWide(setting.strName);
    DWORD uBytes = 0;
    const Key key(OpenToRead(wstrKey));
    if (key.Get() &&
        !RegQueryValueExW(key.Get(), wstrName.c_str(), nullptr, &value.uType, nullptr, &uBytes)) {
        value.vecBytes.resize(uBytes);
        value.bThere = !RegQueryValueExW(key.Get(), wstrName.c_str(), nullptr, &value.uType,
                                         value.vecBytes.data(), &uBytes);
        value.vecBytes.resize(value.bThere ? uBytes : 0);
    }
    listFormer.push_back(value);
    for (std::size_t u = 0; u != std::wstring::npos;) {
        u = wstrKey.find(L'\\', u + 1);
        const std::wstring wstrPart = wstrKey.substr(0, u);
        const bool bKnown = std::find(listMade.begin(), listMade.end(), wstrPart) != listMade.end();
        if (!bKnown && !Key(OpenToRead(wstrPart)).Get()) listMade.push_back(wstrPart);
    }
}

bool TemporarySettings::Memory::GiveBack(const Value& value) const {
    HKEY hKey = nullptr;
    const std::wstring wstrName = ToWide(value.strName);
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, PathOf(value.strKey).c_str(), 0, KEY_SET_VALUE, &hKey))
        return !value.bThere;
    const Key key(hKey);
    const LSTATUS iStatus =
        value.bThere ? RegSetValueExW(hKey, wstrName.c_str(), 0, value.uType, value.vecBytes.data(),
                                      static_cast<DWORD>(value.vecBytes.size()))
                     : RegDeleteValueW(hKey, wstrName.c_str());
    return iStatus == ERROR_SUCCESS || iStatus == ERROR_FILE_NOT_FOUND;
}

TemporarySettings::TemporarySettings() : m_pMemory(std::make_unique<Memory>()) {}

TemporarySettings::~TemporarySettings() { Restore(); }

Result TemporarySettings::Set(const std::vector<Setting>& listSettings) {
    m_pMemory->hMutex = CreateMutexW(nullptr, FALSE, L"ORVIN-OSD temporary settings");
    if (m_pMemory->hMutex) WaitForSingleObject(m_pMemory->hMutex, INFINITE);
    for (const Setting& st : listSettings) m_pMemory->Remember(st);
    return StoreSettings(listSettings);
}

Result TemporarySettings::Restore() {
    bool bBack = true;
    for (const Memory::Value& value : m_pMemory->listFormer) bBack = m_pMemory->GiveBack(value) && bBack;
    while (!m_pMemory->listMade.empty()) { // one that holds something by now stays
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, m_pMemory->listMade.back().c_str());
        m_pMemory->listMade.pop_back();
    }
    m_pMemory = std::make_unique<Memory>();
    return bBack ? Result{} : Result::Fail("the settings in the registry could not be given back");
}

} // namespace platform::tool
