// The library's entry point. Linked last, so that its constructor runs when the library's own objects stand.
#include "platform/linux/identity.h"
#include "platform/linux/thread_sleep.h"
#include "platform/process.h"
#include "shared/attach.h"
#include "shared/process_records.h"
#include <cerrno>
#include <dlfcn.h>
#include <pthread.h>

namespace {

/// A fork copies the process without its threads; the child is a process of its own with a record of its own.
void OnForkInChild() {
    platform::host::ForgetIdentity();
    platform::host::RenewLocksInChild();
    RegisterProcess(platform::CurrentProcessId(), platform::CurrentThreadId());
}

__attribute__((constructor)) void OnLoad() {
    const int iError = errno;
    OnEntry();
    // exec() replaces a program without a detach and keeps the process id.
    g_fnDropRecordsOfProcess(platform::CurrentProcessId());
    Dl_info stSelf{};
    OnProcessAttach(dladdr(reinterpret_cast<void*>(&OnLoad), &stSelf) ? stSelf.dli_fbase : nullptr);
    pthread_atfork(nullptr, nullptr, &OnForkInChild);
    errno = iError;
}

__attribute__((destructor)) void OnUnload() {
    OnEntry();
    OnProcessDetach();
}

} // namespace

/// The library stays mapped to the end of the process, and at that end other threads may still be in a swap.
/// So its static objects are never destroyed: registering their destructors does nothing.
extern "C" __attribute__((visibility("hidden"))) int __cxa_atexit(void (*)(void*), void*, void*) { return 0; }
