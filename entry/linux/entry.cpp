// The library's entry point.
#include "entry/linux/entry.h"
#include "capture/screenshot.h"
#include "entry/attach.h"
#include "platform/linux/exit_order.h"
#include "platform/linux/host_gl.h"
#include "platform/linux/identity.h"
#include "platform/linux/thread_sleep.h"
#include "platform/linux/watched_end.h"
#include "platform/process.h"
#include "shared/process_records.h"
#include <cerrno>
#include <dlfcn.h>
#include <pthread.h>

using namespace platform;

namespace {

constexpr u32 c_uPatienceForShots = 3000; ///< milliseconds

/// A fork copies the process without its threads; the child is a process of its own, with a record of its own
/// once it swaps.
void OnForkInChild() {
    host::ForgetIdentity();
    host::RenewLocksInChild();
    g_fnForgetShots();
    g_fnOweRecord();
}

/// Swaps of other threads go straight to the driver from now on, without a question to it.
void LetSwapsPass() noexcept {
    preload::SwapLink* const pLink = host::Link();
    if (!pLink) return;
    pLink->m_fnDetour.store(nullptr, std::memory_order_release);
    pLink->m_fnContextGone.store(nullptr, std::memory_order_release);
}

} // namespace

void platform::host::OnLibraryLoad() noexcept {
    const int iError = errno;
    OnEntry();
    SetEnd(&OnLibraryUnload);
    EndAheadOfOthers();
    // exec() replaces a program without a detach and keeps the process id.
    g_fnDropRecordsOfProcess(platform::CurrentProcessId());
    Dl_info stSelf{};
    OnProcessAttach(dladdr(reinterpret_cast<void*>(&OnLibraryLoad), &stSelf) ? stSelf.dli_fbase : nullptr);
    pthread_atfork(nullptr, nullptr, &OnForkInChild);
    errno = iError;
}

/// The library is never unloaded, so this is the end of the process, which another thread may not notice for
/// a while yet. Whichever place in the order comes first has it.
void platform::host::OnLibraryUnload() noexcept {
    static std::atomic<bool> bDone{false};
    if (bDone.exchange(true)) return;
    const int iError = errno;
    LetSwapsPass();
    // A picture that is being written gets whole, and its library is not ended under it.
    g_fnWaitForShots(c_uPatienceForShots);
    OnProcessEnd();
    host::LeaveWatchedBlocks();
    errno = iError;
}

/// The library stays mapped to the end of the process, and at that end other threads may still be in a swap.
/// So its static objects are never destroyed: registering their destructors does nothing.
extern "C" __attribute__((visibility("hidden"))) int __cxa_atexit(void (*)(void*), void*, void*) { return 0; }
