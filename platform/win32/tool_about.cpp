// Windows: the machine in words.
#include "platform/tool_about.h"
#include "platform/win32/windows_api.h"

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
