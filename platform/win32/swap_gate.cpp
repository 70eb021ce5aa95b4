#include "platform/win32/gate.h"
#include "platform/win32/windows_api.h"
#include <atomic>

namespace platform {
namespace {

constinit CGate g_clGate;
std::atomic<DWORD> g_uHolder{0};  ///< thread whose swap holds a reference of the library
std::atomic<DWORD> g_uStamped{0}; ///< thread whose real swap is to be timed
void (*g_fnAhead)(void*) noexcept = nullptr;

using LockLoader = LONG(NTAPI*)(ULONG uFlags, ULONG* puState, ULONG_PTR* puCookie);
using UnlockLoader = LONG(NTAPI*)(ULONG uFlags, ULONG_PTR uCookie);
constexpr ULONG kTryOnly = 2, kLocked = 1;

template <class Function> Function FromSystem(const char* szModule, const char* szName) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(szModule), szName)));
}

LockLoader g_fnLockLoader = nullptr;
UnlockLoader g_fnUnlockLoader = nullptr;

u32 GoAhead(void* hdc) {
    g_fnAhead(hdc);
    const DWORD uSelf = GetCurrentThreadId();
    DWORD uHolder = uSelf, uStamped = uSelf;
    const u32 uRelease = g_uHolder.compare_exchange_strong(uHolder, 0) ? g_uGateRelease : 0;
    return uRelease | (g_uStamped.compare_exchange_strong(uStamped, 0) ? g_uGateStamp : 0);
}

HMODULE ReferenceLibrary() {
    HMODULE hModule = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const char*>(&GoAhead),
                       &hModule);
    return hModule;
}

} // namespace

void* SwapGate(const stSwapGateWay& stWay) noexcept {
    g_fnLockLoader = FromSystem<LockLoader>("ntdll.dll", "LdrLockLoaderLock");
    g_fnUnlockLoader = FromSystem<UnlockLoader>("ntdll.dll", "LdrUnlockLoaderLock");
    g_fnAhead = stWay.m_fnAhead;
    void* const pGate = g_clGate.m_fnMake(&GoAhead, stWay.m_fnDrain);
    return pGate ? pGate : reinterpret_cast<void*>(stWay.m_fnSwap);
}

void OpenSwapGate(void* fnReal) noexcept { g_clGate.m_fnOpen(fnReal); }
void CloseSwapGate() noexcept { g_clGate.m_fnClose(); }

bool HoldLibraryForSwap() noexcept {
    if (!g_clGate.m_fnIsOpen() || g_uHolder) return g_uHolder != 0 || !g_clGate.m_fnIsMade();
    ULONG uState = 0;
    ULONG_PTR uCookie = 0;
    // Only tried: an unload that stands behind this lock may be waiting for this very thread.
    if (g_fnLockLoader && (g_fnLockLoader(kTryOnly, &uState, &uCookie) != 0 || uState != kLocked))
        return false;
    if (ReferenceLibrary()) g_uHolder = GetCurrentThreadId();
    if (g_fnUnlockLoader && g_fnLockLoader) g_fnUnlockLoader(0, uCookie);
    return g_uHolder != 0;
}

void StampSwap() noexcept {
    if (!g_clGate.m_fnIsOpen()) return;
    g_clGate.m_fnClearStamp();
    g_uStamped = GetCurrentThreadId();
}

i64 SwapStamp() noexcept { return g_clGate.m_fnStamp(); }

} // namespace platform
