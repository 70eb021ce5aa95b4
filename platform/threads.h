#pragma once
// Threads and the one lock of the hook state.
#include "platform/types.h"

#include <atomic>

namespace platform {

using ThreadHandle = void*;
using ThreadFunction = u32 (*)(void* pArgument);

/// Starts a thread; null on failure. The thread keeps this library mapped until it ends.
ThreadHandle StartThread(ThreadFunction fnThread, void* pArgument) noexcept;
/// Starts a thread that nobody will ask for again, below the program's own threads in priority where the
/// system has that; there may be any number of them. It keeps this library mapped until it ends. False on
/// failure.
bool StartDetachedThread(ThreadFunction fnThread, void* pArgument) noexcept;
/// Win32: suspend, terminate with code 0, close. Linux: raises the stop flag that StopRequested() reports,
/// and forgets the thread without waiting.
void KillThread(ThreadHandle hThread) noexcept;
/// True in a thread that KillThread was called for (always false on Win32).
bool StopRequested() noexcept;

/// Non-recursive lock with an explicit life, since it is made at process attach. Before Initialize it locks
/// nothing.
struct CriticalSection {
    std::atomic<void*> m_pImpl{nullptr};
    void Initialize(u32 uSpinCount) noexcept;
    void Enter() noexcept;
    void Leave() noexcept;
    /// Ends its life. Where a thread can't be killed, one that was told to stop may still stand at the lock,
    /// so its memory stays, for the next Initialize.
    void Delete() noexcept;
};

} // namespace platform
