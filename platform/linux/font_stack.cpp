#include "platform/linux/font_stack.h"
#include "platform/types.h"
#include <csignal>
#include <pthread.h>

namespace platform::host {
namespace {

constexpr std::size_t g_uWanted = 256 * 1024, g_uOwnStack = 1024 * 1024;

struct Call {
    void (*m_fn)(void*);
    void* m_pArgument;
};

void* RunCall(void* pCall) {
    const Call& stCall = *static_cast<Call*>(pCall);
    stCall.m_fn(stCall.m_pArgument);
    return nullptr;
}

/// Lowest address of this thread's stack; 0 if nobody knows. For the main thread a list of the process is
/// read.
std::uintptr_t LowestOfStack() noexcept {
    pthread_attr_t stAttributes;
    if (pthread_getattr_np(pthread_self(), &stAttributes) != 0) return 0;
    void* pLowest = nullptr;
    std::size_t uBytes = 0;
    const bool bKnown = pthread_attr_getstack(&stAttributes, &pLowest, &uBytes) == 0;
    pthread_attr_destroy(&stAttributes);
    return bKnown ? reinterpret_cast<std::uintptr_t>(pLowest) : 0;
}

bool HasRoom() noexcept {
    static thread_local const std::uintptr_t s_uLowest = LowestOfStack();
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) - s_uLowest >= g_uWanted;
}

/// With every signal blocked: the host's handlers expect the host's threads.
bool RunElsewhere(Call& stCall) noexcept {
    pthread_attr_t stAttributes;
    pthread_t thread;
    sigset_t stAll, stOld;
    sigfillset(&stAll);
    pthread_attr_init(&stAttributes);
    pthread_sigmask(SIG_SETMASK, &stAll, &stOld);
    const bool bStarted = pthread_attr_setstacksize(&stAttributes, g_uOwnStack) == 0 &&
                          pthread_create(&thread, &stAttributes, &RunCall, &stCall) == 0;
    pthread_sigmask(SIG_SETMASK, &stOld, nullptr);
    pthread_attr_destroy(&stAttributes);
    return bStarted && pthread_join(thread, nullptr) == 0;
}

} // namespace

void RunWithStack(void (*fn)(void*), void* pArgument) noexcept {
    Call stCall{fn, pArgument};
    if (HasRoom() || !RunElsewhere(stCall)) fn(pArgument);
}

} // namespace platform::host
