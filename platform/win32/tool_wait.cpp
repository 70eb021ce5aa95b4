// Win32: being asked to stop, the terminal, and the driver's library.
#include "platform/tool.h"
#include "platform/win32/tool.h"

namespace platform::tool {
namespace {

constexpr DWORD kFarewell = 4000; ///< milliseconds that a closing console leaves for the last publication

HANDLE g_hAskedToStop = nullptr;

BOOL WINAPI OnStopEvent(DWORD uEvent) {
    SetEvent(g_hAskedToStop);
    // The system ends the process as soon as the handler of a closing event returns; its own end comes first.
    if (uEvent != CTRL_C_EVENT && uEvent != CTRL_BREAK_EVENT) Sleep(kFarewell);
    return TRUE;
}

} // namespace

void CatchStop() {
    if (g_hAskedToStop == nullptr) g_hAskedToStop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (g_hAskedToStop != nullptr) SetConsoleCtrlHandler(OnStopEvent, TRUE);
}

bool WaitForStop(u32 uMilliseconds) {
    if (g_hAskedToStop != nullptr) return WaitForSingleObject(g_hAskedToStop, uMilliseconds) == WAIT_OBJECT_0;
    Sleep(uMilliseconds);
    return false;
}

bool IsTerminal() {
    const HANDLE hOut = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD uMode = 0;
    return GetConsoleMode(hOut, &uMode) && SetConsoleMode(hOut, uMode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

void* OpenNvmlLibrary() {
    HMODULE hModule = LoadLibraryExW(L"nvml.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    wchar_t wzPath[MAX_PATH] = {};
    constexpr const wchar_t* wzOldPlace = L"%ProgramFiles%\\NVIDIA Corporation\\NVSMI\\nvml.dll";
    if (hModule == nullptr && ExpandEnvironmentStringsW(wzOldPlace, wzPath, MAX_PATH) <= MAX_PATH)
        hModule = LoadLibraryW(wzPath);
    return hModule;
}

} // namespace platform::tool
