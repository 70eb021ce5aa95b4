#include "platform/process.h"
#include "platform/win32/windows_api.h"
#include <cstring>
#include <psapi.h>

#include "platform/win32/process_stamp.h"

// Not declared by the system headers, though opengl32 exports it; SwapBuffers of gdi32 looks it up by name.
extern "C" __declspec(dllimport) BOOL WINAPI wglSwapBuffers(HDC hdc);

namespace platform {

namespace {

constexpr u32 kModuleListBytes = 16384; // 2048 handles
constexpr u32 kModulePathChars = 520;

const char* FilePart(const char* szPath) {
    const char* pSlash = std::strrchr(szPath, '\\');
    return pSlash ? pSlash + 1 : szPath;
}

bool HasAnyName(HANDLE hProcess, HMODULE hModule, const char* const* aszNames, u32 uCount) {
    char szPath[kModulePathChars] = {};
    const DWORD uLength = GetModuleFileNameExA(hProcess, hModule, szPath, kModulePathChars);
    if (uLength == 0 || uLength >= kModulePathChars) return false;
    for (u32 i = 0; i < uCount; ++i)
        if (std::strlen(aszNames[i]) < kModulePathChars && _stricmp(FilePart(szPath), aszNames[i]) == 0)
            return true;
    return false;
}

bool WalkModules(HANDLE hProcess, HMODULE* phModules, const char* const* aszNames, u32 uCount) {
    DWORD uNeeded = 0;
    if (!EnumProcessModules(hProcess, phModules, kModuleListBytes, &uNeeded)) return false;
    const DWORD uBytes = uNeeded < kModuleListBytes ? uNeeded : kModuleListBytes;
    for (DWORD i = 0; i < uBytes / sizeof(HMODULE); ++i)
        if (HasAnyName(hProcess, phModules[i], aszNames, uCount)) return true;
    return false;
}

} // namespace

u32 CurrentProcessId() noexcept { return GetCurrentProcessId(); }
u32 CurrentThreadId() noexcept { return GetCurrentThreadId(); }

u32 ProcessStamp(u32 uProcessId) noexcept { return host::StampOf(uProcessId); }
bool IsProcessGone(u32 uProcessId, u32 uStamp) noexcept { return host::IsGone(uProcessId, uStamp); }

void ProcessPath(char* szOut, u32 uCapacity) noexcept {
    if (uCapacity == 0) return;
    szOut[0] = 0;
    GetModuleFileNameA(nullptr, szOut, uCapacity);
    szOut[uCapacity - 1] = 0; // a path that is too long comes back cut, on old systems without a terminator
}

void DuplicateCurrentThreadHandle() noexcept {
    // KEEP(first version): the duplicate is not stored and not closed.
    HANDLE hThread = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &hThread, SYNCHRONIZE,
                    FALSE, 0);
}

bool IsAnyModuleLoaded(const char* const* aszNames, u32 uCount) noexcept {
    HANDLE hProcess = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, GetCurrentProcessId());
    if (!hProcess) return false;
    // Not on the stack, which may be small, nor on the heap, whose lock a killed thread would take along.
    void* pList = VirtualAlloc(nullptr, kModuleListBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    const bool bFound = pList && WalkModules(hProcess, static_cast<HMODULE*>(pList), aszNames, uCount);
    if (pList) VirtualFree(pList, 0, MEM_RELEASE);
    if (!bFound) CloseHandle(hProcess); // KEEP(first version): a hit leaves the process handle open
    return bFound;
}

void* FindModule(const char* szName) noexcept { return GetModuleHandleA(szName); }
void* LoadModule(const char* szName) noexcept { return LoadLibraryA(szName); }

void* FindProc(void* hModule, const char* szName) noexcept {
    // A null handle would be searched in the program's own image, which is never meant here.
    if (!hModule) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(hModule), szName));
}

i32 ImportedSwapBuffers(void* hSurface) noexcept { return wglSwapBuffers(static_cast<HDC>(hSurface)); }
i32 ImportedDeleteContext(void* hContext) noexcept { return wglDeleteContext(static_cast<HGLRC>(hContext)); }

u32 RegisterMessage(const char* szName) noexcept { return RegisterWindowMessageA(szName); }

std::intptr_t CallNextMessageHook(void* hHook, i32 iCode, std::uintptr_t wParam,
                                  std::intptr_t lParam) noexcept {
    return CallNextHookEx(static_cast<HHOOK>(hHook), iCode, wParam, lParam);
}

bool UnhookMessageHook(void* hHook) noexcept { return UnhookWindowsHookEx(static_cast<HHOOK>(hHook)); }

void BroadcastMessage(u32 uMessage, std::uintptr_t wParam) noexcept {
    PostMessageA(HWND_BROADCAST, uMessage, wParam, 0);
}

bool HookMessageParam(std::intptr_t lParam, u32 uNumber, void** ppValue) noexcept {
    const MSG* pMessage = reinterpret_cast<const MSG*>(lParam);
    if (!pMessage || pMessage->message != uNumber) return false;
    *ppValue = reinterpret_cast<void*>(pMessage->lParam);
    return true;
}

} // namespace platform
