// Win32: what the system tells of a program that may be opened.
#include "platform/tool_process.h"
#include "platform/win32/tool.h"
#include <psapi.h>

namespace platform::tool {
namespace {

constexpr DWORD kMostModules = 4096;

std::vector<std::string> ModulesOf(HANDLE hProcess) {
    std::vector<HMODULE> listModules(kMostModules);
    std::vector<std::string> listPaths;
    DWORD uBytes = 0;
    const DWORD uRoom = static_cast<DWORD>(listModules.size() * sizeof(HMODULE));
    if (!EnumProcessModules(hProcess, listModules.data(), uRoom, &uBytes)) return listPaths;
    listModules.resize((uBytes < uRoom ? uBytes : uRoom) / sizeof(HMODULE));
    std::wstring wzPath(32768, L'\0');
    for (const HMODULE hModule : listModules)
        if (GetModuleFileNameExW(hProcess, hModule, wzPath.data(), 32767) != 0)
            listPaths.push_back(FromWide(wzPath.c_str()));
    return listPaths;
}

bool IsInContainer(HANDLE hProcess) {
    HANDLE hToken = nullptr;
    DWORD uAnswer = 0, uBytes = 0;
    if (!OpenProcessToken(hProcess, TOKEN_QUERY, &hToken)) return false;
    const bool bTold = GetTokenInformation(hToken, TokenIsAppContainer, &uAnswer, sizeof uAnswer, &uBytes);
    CloseHandle(hToken);
    return bTold && uAnswer != 0;
}

} // namespace

ProcessTraits InspectTraits(u32 uProcessId) {
    ProcessTraits st;
    const HANDLE hProcess = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, uProcessId);
    if (hProcess == nullptr) {
        st.bOtherUser = GetLastError() == ERROR_ACCESS_DENIED; // or it has higher rights
        return st;
    }
    BOOL bWow64 = FALSE;
    st.b32Bit = IsWow64Process(hProcess, &bWow64) && bWow64;
    if (IsInContainer(hProcess)) st.strSandbox = "AppContainer";
    st.listModules = ModulesOf(hProcess);
    CloseHandle(hProcess);
    return st;
}

} // namespace platform::tool
