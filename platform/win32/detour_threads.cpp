#include "platform/win32/detour_threads.h"
#include "platform/win32/detour_code.h"
#include "platform/win32/shutdown.h"
#include "platform/win32/windows_api.h"
#include <tlhelp32.h>

namespace platform {

namespace {

constexpr u32 kThreads = 4096;
constexpr DWORD kAccess = THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT | THREAD_SET_CONTEXT;

// A fixed table: the heap may not be touched once the first thread stands still.
HANDLE g_ahThreads[kThreads];
u32 g_uThreads = 0;

void OpenOtherThreads() {
    HANDLE hSnapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (hSnapshot == INVALID_HANDLE_VALUE) return;
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL bMore = Thread32First(hSnapshot, &entry); bMore && g_uThreads < kThreads;
         bMore = Thread32Next(hSnapshot, &entry)) {
        if (entry.th32OwnerProcessID != GetCurrentProcessId() || entry.th32ThreadID == GetCurrentThreadId())
            continue;
        HANDLE hThread = OpenThread(kAccess, FALSE, entry.th32ThreadID);
        if (hThread) g_ahThreads[g_uThreads++] = hThread;
    }
    CloseHandle(hSnapshot);
}

/// Suspending is only asked for by the call; reading the context waits until the thread really stands.
bool StopThread(HANDLE hThread) {
    if (SuspendThread(hThread) == static_cast<DWORD>(-1)) return false;
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    GetThreadContext(hThread, &context);
    return true;
}

/// A thread that can't be stopped (it has ended) is dropped from the table.
void StopThreads() {
    u32 uStopped = 0;
    for (u32 i = 0; i < g_uThreads; ++i) {
        if (StopThread(g_ahThreads[i]))
            g_ahThreads[uStopped++] = g_ahThreads[i];
        else
            CloseHandle(g_ahThreads[i]);
    }
    g_uThreads = uStopped;
}

const u8* NewPlace(const u8* pAt, const u8* pTarget, const stTrampolinePlan& plan, const u8* pTrampoline) {
    for (u32 i = 1; i < plan.m_uInstructions; ++i)
        if (pAt == pTarget + plan.m_auOldOffset[i]) return pTrampoline + plan.m_auNewOffset[i];
    return nullptr;
}

} // namespace

ThreadFreeze::ThreadFreeze() noexcept {
    g_uThreads = 0;
    if (IsProcessEnding()) return;
    OpenOtherThreads();
    StopThreads();
}

ThreadFreeze::~ThreadFreeze() {
    for (u32 i = 0; i < g_uThreads; ++i) ResumeThread(g_ahThreads[i]);
    for (u32 i = 0; i < g_uThreads; ++i) CloseHandle(g_ahThreads[i]);
    g_uThreads = 0;
}

void ThreadFreeze::MoveOut(const u8* pTarget, const stTrampolinePlan& plan, const u8* pTrampoline) noexcept {
    for (u32 i = 0; i < g_uThreads; ++i) {
        CONTEXT context{};
        context.ContextFlags = CONTEXT_CONTROL;
        if (!GetThreadContext(g_ahThreads[i], &context)) continue;
        const u8* pNew = NewPlace(reinterpret_cast<const u8*>(context.Rip), pTarget, plan, pTrampoline);
        if (!pNew) continue;
        context.Rip = reinterpret_cast<DWORD64>(pNew);
        SetThreadContext(g_ahThreads[i], &context);
    }
}

} // namespace platform
