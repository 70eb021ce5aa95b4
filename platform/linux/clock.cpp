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

// The C library reads the zone's file on the first call of the process and keeps it: no system call later.
stLocalTime LocalTime() noexcept {
    const time_t tNow = time(nullptr);
    tm st{};
    localtime_r(&tNow, &st);
    return {static_cast<u32>(st.tm_year + 1900), static_cast<u32>(st.tm_mon + 1),
            static_cast<u32>(st.tm_mday),        static_cast<u32>(st.tm_hour),
            static_cast<u32>(st.tm_min),         static_cast<u32>(st.tm_sec)};
}

i64 UnixMilliseconds() noexcept {
    timespec st{};
    clock_gettime(CLOCK_REALTIME, &st);
    return static_cast<i64>(st.tv_sec) * 1000 + st.tv_nsec / 1000000;
}

void (*g_fnSleepMilliseconds)(u32) noexcept = &host::SleepUnlessStopped;

} // namespace platform
