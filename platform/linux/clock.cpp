#include "platform/clock.h"
#include "platform/linux/thread_sleep.h"
#include <ctime>

namespace platform {

i64 SteadyNanoseconds() noexcept {
    timespec st{};
    clock_gettime(CLOCK_MONOTONIC, &st);
    return static_cast<i64>(st.tv_sec) * 1000000000 + st.tv_nsec;
}

i64 CounterNow() noexcept { return SteadyNanoseconds(); }
i64 CounterFrequency() noexcept { return 1000000000; }

void (*g_fnSleepMilliseconds)(u32) noexcept = &host::SleepUnlessStopped;

} // namespace platform
