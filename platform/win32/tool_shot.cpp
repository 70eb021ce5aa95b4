// Win32: settings are values of the registry.
#include "platform/tool_shot.h"
#include "platform/tool.h"
#include "platform/win32/image_com.h"
#include "platform/win32/tool.h"
#include <vector>

namespace platform::tool {
namespace {

constexpr const wchar_t* kRoots[] = {L"SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD", L"SOFTWARE\\Zarn\\ORVIN-OSD"};
constexpr const wchar_t* kNames[] = {L"DirPath", L"CapMode", L"CapType"};
constexpr DWORD kFolderBytes = 256; ///< more than that programs do not read

/// As programs look: where the first key exists, the second one does not count.
std::wstring Root() {
    HKEY hKey = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kRoots[0], 0, KEY_READ, &hKey) != ERROR_SUCCESS) return kRoots[1];
    RegCloseKey(hKey);
    return kRoots[0];
}

struct Value {
    bool bThere = false;
    DWORD uType = 0;
    std::vector<BYTE> vecBytes;
};

Value ReadValue(HKEY hKey, const wchar_t* wzName) {
    Value st;
    DWORD uBytes = 0;
    if (!hKey || RegQueryValueExW(hKey, wzName, nullptr, &st.uType, nullptr, &uBytes) != ERROR_SUCCESS)
        return st;
    st.vecBytes.resize(uBytes);
    st.bThere =
        RegQueryValueExW(hKey, wzName, nullptr, &st.uType, st.vecBytes.data(), &uBytes) == ERROR_SUCCESS;
    st.vecBytes.resize(st.bThere ? uBytes : 0);
    return st;
}

void TakeNumber(HKEY hKey, const wchar_t* wzName, u32& uOut) {
    const Value st = ReadValue(hKey, wzName);
    if (st.bThere && st.uType == REG_DWORD && st.vecBytes.size() == 4)
        uOut = st.vecBytes[0] | static_cast<u32>(st.vecBytes[1]) << 8 |
               static_cast<u32>(st.vecBytes[2]) << 16 | static_cast<u32>(st.vecBytes[3]) << 24;
}

bool WriteNumber(HKEY hKey, const wchar_t* wzName, u32 uValue) {
    return RegSetValueExW(hKey, wzName, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&uValue), 4) ==
           ERROR_SUCCESS;
}

bool WriteText(HKEY hKey, const wchar_t* wzName, const std::wstring& wstr) {
    return RegSetValueExW(hKey, wzName, 0, REG_SZ, reinterpret_cast<const BYTE*>(wstr.c_str()),
                          static_cast<DWORD>((wstr.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

} // namespace

struct ShotSettingsChange::Memory {
    bool bChanged = false;
    HKEY hKey = nullptr;
    std::wstring wstrKey;
    std::vector<std::wstring> listMade; ///< keys that were not there, the deepest last
    Value aValues[3];
};

ShotSettings ReadShotSettings() {
    ShotSettings st;
    HKEY hKey = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, (Root() + L"\\Camera").c_str(), 0, KEY_READ, &hKey) !=
        ERROR_SUCCESS)
        return st;
    const Value folder = ReadValue(hKey, kNames[0]);
    if (folder.bThere && folder.uType == REG_SZ && folder.vecBytes.size() <= kFolderBytes) {
        std::wstring wstr(reinterpret_cast<const wchar_t*>(folder.vecBytes.data()),
                          folder.vecBytes.size() / sizeof(wchar_t));
        st.strFolder = FromWide(std::wstring(wstr.c_str()).c_str());
    }
    TakeNumber(hKey, kNames[1], st.uMode);
    TakeNumber(hKey, kNames[2], st.uType);
    RegCloseKey(hKey);
    return st;
}

ShotSettingsChange::ShotSettingsChange() : m_pMemory(new Memory) {}

ShotSettingsChange::~ShotSettingsChange() {
    Restore();
    delete m_pMemory;
}

Result ShotSettingsChange::Set(const ShotSettings& stSettings) {
    Memory& st = *m_pMemory;
    st.wstrKey = Root() + L"\\Camera";
    for (size_t u = st.wstrKey.find(L'\\'); u != std::wstring::npos; u = st.wstrKey.find(L'\\', u + 1)) {
        HKEY hPart = nullptr;
        const std::wstring wstrPart = st.wstrKey.substr(0, u);
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, wstrPart.c_str(), 0, KEY_READ, &hPart) == ERROR_SUCCESS)
            RegCloseKey(hPart);
        else
            st.listMade.push_back(wstrPart);
    }
    DWORD uWhich = 0;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, st.wstrKey.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr,
                        &st.hKey, &uWhich) != ERROR_SUCCESS) {
        st.listMade.clear();
        return Result::Fail("the settings in the registry cannot be changed; that takes an administrator");
    }
    if (uWhich == REG_CREATED_NEW_KEY) st.listMade.push_back(st.wstrKey);
    for (u32 u = 0; u < 3; ++u) st.aValues[u] = ReadValue(st.hKey, kNames[u]);
    st.bChanged = true;
    const bool bSet = WriteText(st.hKey, kNames[0], ToWide(stSettings.strFolder)) &&
                      WriteNumber(st.hKey, kNames[1], stSettings.uMode) &&
                      WriteNumber(st.hKey, kNames[2], stSettings.uType);
    return bSet ? Result{} : Result::Fail("the settings in the registry cannot be changed");
}

Result ShotSettingsChange::Restore() {
    Memory& st = *m_pMemory;
    if (!st.bChanged) return {};
    st.bChanged = false;
    bool bBack = true;
    for (u32 u = 0; u < 3; ++u) {
        const Value& value = st.aValues[u];
        const LONG iCode = value.bThere
                               ? RegSetValueExW(st.hKey, kNames[u], 0, value.uType, value.vecBytes.data(),
                                                static_cast<DWORD>(value.vecBytes.size()))
                               : RegDeleteValueW(st.hKey, kNames[u]);
        bBack = bBack && (iCode == ERROR_SUCCESS || iCode == ERROR_FILE_NOT_FOUND);
    }
    RegCloseKey(st.hKey);
    while (!st.listMade.empty()) { // one that holds something by now stays
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, st.listMade.back().c_str());
        st.listMade.pop_back();
    }
    return bBack ? Result{} : Result::Fail("the settings in the registry could not be given back");
}

bool HasHeifEncoder() {
    const com::CCom stCom;
    com::CRef<IWICImagingFactory> factory;
    com::CRef<IWICBitmapEncoder> encoder;
    return SUCCEEDED(com::MakeFactory(factory)) &&
           SUCCEEDED(factory->CreateEncoder(GUID_ContainerFormatHeif, nullptr, encoder.Out()));
}

bool IsFolder(const std::string& strPath) {
    const DWORD uWhat = GetFileAttributesW(ToWide(strPath).c_str());
    return uWhat != INVALID_FILE_ATTRIBUTES && (uWhat & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// Whether a file can be made there only a trial tells.
bool CanWriteTo(const std::string& strFolder) {
    const std::wstring wstrFile =
        ToWide(strFolder) + L"\\orvin-osd." + std::to_wstring(GetCurrentProcessId()) + L".try";
    const HANDLE hFile = CreateFileW(wstrFile.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                     FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (hFile == INVALID_HANDLE_VALUE) return false;
    CloseHandle(hFile);
    return true;
}

} // namespace platform::tool
