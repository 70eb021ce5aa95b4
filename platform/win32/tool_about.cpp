// Windows: the machine in words.
#include "platform/tool_about.h"
#include "platform/win32/tool.h"

namespace platform::tool {
namespace {

/// The version that is, where GetVersionEx would tell programs an old one.
bool ReadVersion(RTL_OSVERSIONINFOW& st) {
    using Function = LONG(NTAPI*)(RTL_OSVERSIONINFOW*);
    const auto fnRead = reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetVersion")));
    st.dwOSVersionInfoSize = sizeof st;
    return fnRead && fnRead(&st) == 0;
}

} // namespace

std::string SystemText() {
    RTL_OSVERSIONINFOW st{};
    if (!ReadVersion(st)) return {};
    std::string str =
        "Windows " + std::to_string(st.dwMajorVersion) + "." + std::to_string(st.dwMinorVersion);
    return str.append(".").append(std::to_string(st.dwBuildNumber));
}

std::string HomeFolder() {
    wchar_t wzPath[MAX_PATH] = {};
    const DWORD uLength = GetEnvironmentVariableW(L"USERPROFILE", wzPath, MAX_PATH);
    return uLength > 0 && uLength < MAX_PATH ? FromWide(wzPath) : std::string();
}

std::vector<std::string> PersonNames() {
    wchar_t wzName[257] = {};
    const DWORD uLength = GetEnvironmentVariableW(L"USERNAME", wzName, 257);
    if (uLength > 0 && uLength < 257) return {FromWide(wzName)};
    return {};
}

std::string ProcessorText() {
    char szName[256] = {};
    DWORD uBytes = sizeof szName - 1;
    const LONG iError = RegGetValueA(HKEY_LOCAL_MACHINE, "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0",
                                     "ProcessorNameString", RRF_RT_REG_SZ, nullptr, szName, &uBytes);
    std::string str = iError == ERROR_SUCCESS ? szName : "";
    while (str.ends_with(' ')) str.pop_back();
    return str;
}

} // namespace platform::tool
