#include "platform/threads.h"
#include "platform/win32/shutdown.h"
#include "platform/win32/windows_api.h"
#include <atomic>
#include <new>

namespace platform {

namespace {

/// What a ThreadHandle points to. It lives as long as the process, since nobody says when a handle is done
/// with; a process starts two or three.
struct stThread {
    HANDLE m_hThread = nullptr;
    HMODULE m_hModule = nullptr; ///< reference that keeps this library mapped while the thread runs
    ThreadFunction m_fnThread = nullptr;
    void* m_pArgument = nullptr;
    std::atomic<bool> m_bEntered{false}; ///< out of the loader, which it passes ahead of its first own step
    std::atomic<bool> m_bStop{false};    ///< to leave at once
    std::atomic<bool> m_bLeaving{false}; ///< from here on the thread itself gives the reference back
};

DWORD WINAPI ThreadStart(void* pParameter) {
    stThread* pThread = static_cast<stThread*>(pParameter);
    pThread->m_bEntered.store(true);
    const u32 uResult = pThread->m_bStop.load() ? 0 : pThread->m_fnThread(pThread->m_pArgument);
    HMODULE hModule = pThread->m_hModule;
    pThread->m_bLeaving.store(true);
    // Returning would run code of a library that may be gone once the reference is dropped.
    FreeLibraryAndExitThread(hModule, uResult);
}

HMODULE ReferenceThisModule() {
    HMODULE hModule = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const char*>(&ThreadStart),
                       &hModule);
    return hModule;
}

/// A thread without a handle gives its record back itself.
DWORD WINAPI DetachedStart(void* pParameter) {
    stThread* const pThread = static_cast<stThread*>(pParameter);
    HMODULE const hModule = pThread->m_hModule;
    const u32 uResult = pThread->m_fnThread(pThread->m_pArgument);
    delete pThread;
    FreeLibraryAndExitThread(hModule, uResult);
}

/// The thread's record, with a reference of the library; null without memory.
stThread* MakeRecord(ThreadFunction fnThread, void* pArgument) {
    stThread* const pThread = new (std::nothrow) stThread;
    if (!pThread) return nullptr;
    pThread->m_fnThread = fnThread;
    pThread->m_pArgument = pArgument;
    pThread->m_hModule = ReferenceThisModule();
    if (pThread->m_hModule) return pThread;
    delete pThread;
    return nullptr;
}

void DropRecord(stThread* pThread) {
    FreeLibrary(pThread->m_hModule);
    delete pThread;
}

/// Suspends and waits until the thread really stands still: the context can only be read then.
bool Suspend(HANDLE hThread) {
    if (SuspendThread(hThread) == static_cast<DWORD>(-1)) return false;
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    GetThreadContext(hThread, &context);
    return true;
}

CRITICAL_SECTION* Section(void* pImpl) { return static_cast<CRITICAL_SECTION*>(pImpl); }

} // namespace

ThreadHandle StartThread(ThreadFunction fnThread, void* pArgument) noexcept {
    stThread* const pThread = MakeRecord(fnThread, pArgument);
    if (!pThread) return nullptr;
    pThread->m_hThread = CreateThread(nullptr, 0, ThreadStart, pThread, 0, nullptr);
    if (pThread->m_hThread) return pThread;
    DropRecord(pThread);
    return nullptr;
}

bool StartDetachedThread(ThreadFunction fnThread, void* pArgument) noexcept {
    stThread* const pThread = fnThread ? MakeRecord(fnThread, pArgument) : nullptr;
    if (!pThread) return false;
    // Suspended, since its record is gone as soon as it has run.
    HANDLE const hThread = CreateThread(nullptr, 0, DetachedStart, pThread, CREATE_SUSPENDED, nullptr);
    if (!hThread) {
        DropRecord(pThread);
        return false;
    }
    SetThreadPriority(hThread, THREAD_PRIORITY_BELOW_NORMAL);
    ResumeThread(hThread);
    CloseHandle(hThread);
    return true;
}

void KillThread(ThreadHandle hThread) noexcept {
    stThread* pThread = static_cast<stThread*>(hThread);
    if (!pThread || !pThread->m_hThread) return;
    const bool bSuspended = Suspend(pThread->m_hThread);
    if (bSuspended && (!pThread->m_bEntered.load() || pThread->m_bLeaving.load())) {
        // It is inside the loader, on its way in or giving its reference back; killed there it would take the
        // loader's lock along.
        pThread->m_bStop.store(true);
        ResumeThread(pThread->m_hThread);
    } else if (!pThread->m_bLeaving.load()) {
        TerminateThread(pThread->m_hThread, 0);
        if (!IsProcessEnding()) FreeLibrary(pThread->m_hModule);
    }
    CloseHandle(pThread->m_hThread);
    pThread->m_hThread = nullptr;
}

bool StopRequested() noexcept { return false; }

void CriticalSection::Initialize(u32 uSpinCount) noexcept {
    if (m_pImpl) return;
    CRITICAL_SECTION* pSection = new (std::nothrow) CRITICAL_SECTION;
    if (pSection) InitializeCriticalSectionAndSpinCount(pSection, uSpinCount);
    m_pImpl = pSection;
}

void CriticalSection::Enter() noexcept {
    if (!m_pImpl || TryEnterCriticalSection(Section(m_pImpl))) return;
    // At process end the holder is dead and will never leave.
    if (!IsProcessEnding()) EnterCriticalSection(Section(m_pImpl));
}

void CriticalSection::Leave() noexcept {
    if (m_pImpl) LeaveCriticalSection(Section(m_pImpl));
}

void CriticalSection::Delete() noexcept {
    if (!m_pImpl) return;
    DeleteCriticalSection(Section(m_pImpl));
    delete Section(m_pImpl);
    m_pImpl = nullptr;
}

} // namespace platform
