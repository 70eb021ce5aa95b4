#include "platform/linux/exit_order.h"
#include "platform/types.h"
#include <atomic>
#include <dlfcn.h>

namespace platform::host {
namespace {

constexpr u32 c_uTimes = 2;

std::atomic<void (*)() noexcept> g_fnEnd{nullptr};
std::atomic<u32> g_uTimes{0};

void OnExit(void*) {
    if (const auto fnEnd = g_fnEnd.load()) fnEnd();
}

} // namespace

void SetEnd(void (*fnEnd)() noexcept) noexcept { g_fnEnd = fnEnd; }

void EndAheadOfOthers() noexcept {
    using Register = int (*)(void (*)(void*), void*, void*);
    if (!g_fnEnd.load() || g_uTimes.load() >= c_uTimes || g_uTimes++ >= c_uTimes) return;
    // Looked up, since the library has a function of this name that keeps its own objects from being
    // destroyed.
    const auto fnRegister = reinterpret_cast<Register>(dlsym(RTLD_DEFAULT, "__cxa_atexit"));
    if (fnRegister) fnRegister(&OnExit, nullptr, nullptr);
}

} // namespace platform::host
