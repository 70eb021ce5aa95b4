// Win32: being asked to stop, standard input, the terminal, and the driver's library.
#include "platform/tool.h"
#include "platform/tool_input.h"
#include "platform/win32/tool.h"
#include <atomic>

namespace platform::tool {
namespace {

constexpr DWORD kFarewell = 4000; ///< milliseconds that a closing console leaves for the last publication

HANDLE g_hAskedToStop = nullptr;
/// The thread that waits for input, for as long as it does.
std::atomic<HANDLE> g_hReader = nullptr;

/// A read that begins now is ended as well: its thread looks at the event once more after it has said that it
/// reads.
void EndReading() {
    while (const HANDLE hReader = g_hReader.load()) {
        CancelSynchronousIo(hReader);
        Sleep(1);
    }
}

/// Of the one thread that reads; kept, so that what ends a read never has a handle that is closed.
HANDLE OwnThread() {
    HANDLE hSelf = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &hSelf, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    return hSelf;
}

BOOL WINAPI OnStopEvent(DWORD uEvent) {
    SetEvent(g_hAskedToStop);
    EndReading();
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

bool IsInputTerminal() {
    DWORD uMode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &uMode) != 0;
}

u32 ReadInput(void* pTo, u32 uBytes) {
    static const HANDLE hSelf = OwnThread();
    g_hReader = hSelf;
    u32 uDone = 0;
    while (uDone < uBytes && !WaitForStop(0)) {
        DWORD uGot = 0;
        const bool bRead = ReadFile(GetStdHandle(STD_INPUT_HANDLE), static_cast<u8*>(pTo) + uDone,
                                    uBytes - uDone, &uGot, nullptr) != 0;
        if (!bRead || uGot == 0) break;
        uDone += uGot;
    }
    g_hReader = nullptr;
    return uDone;
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
