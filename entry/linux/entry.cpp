// The library's entry point.
#include "entry/linux/entry.h"
#include "entry/attach.h"
#include "platform/linux/identity.h"
#include "platform/linux/thread_sleep.h"
#include "platform/process.h"
#include "shared/process_records.h"
#include <cerrno>
#include <dlfcn.h>
#include <pthread.h>

namespace {

/// A fork copies the process without its threads; the child is a process of its own, with a record of its own
/// once it swaps.
void OnForkInChild() {
    platform::host::ForgetIdentity();
    platform::host::RenewLocksInChild();
    g_fnOweRecord();
}

} // namespace

void platform::host::OnLibraryLoad() noexcept {
    const int iError = errno;
    OnEntry();
    // exec() replaces a program without a detach and keeps the process id.
    g_fnDropRecordsOfProcess(platform::CurrentProcessId());
    Dl_info stSelf{};
    OnProcessAttach(dladdr(reinterpret_cast<void*>(&OnLibraryLoad), &stSelf) ? stSelf.dli_fbase : nullptr);
    pthread_atfork(nullptr, nullptr, &OnForkInChild);
    errno = iError;
}

/// The library is never unloaded, so this is the end of the process, which another thread may not notice for
/// a while yet.
void platform::host::OnLibraryUnload() noexcept {
    const int iError = errno;
    OnProcessEnd();
    errno = iError;
}

/// The library stays mapped to the end of the process, and at that end other threads may still be in a swap.
/// So its static objects are never destroyed: registering their destructors does nothing.
extern "C" __attribute__((visibility("hidden"))) int __cxa_atexit(void (*)(void*), void*, void*) { return 0; }
