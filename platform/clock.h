#pragma once
// Time service. Two sources: the performance counter (ticks) and a steady clock (nanoseconds).
#include "platform/types.h"

namespace platform {

/// Performance counter reading, in ticks. Never fails.
i64 CounterNow() noexcept;
/// Ticks per second of CounterNow(); constant for the life of the process, never 0.
i64 CounterFrequency() noexcept;
/// Monotonic time in nanoseconds, converted from counter and frequency without overflow.
i64 SteadyNanoseconds() noexcept;
/// Time of day and date in the local time zone. Never fails; may read files on its first call.
struct stLocalTime {
    u32 uYear, uMonth, uDay;     ///< such as 2024, 1 to 12, 1 to 31
    u32 uHour, uMinute, uSecond; ///< 0 to 23, 0 to 59, 0 to 60
};
stLocalTime LocalTime() noexcept;
/// Milliseconds since the start of 1970, coordinated universal time.
i64 UnixMilliseconds() noexcept;
/// Blocks the calling thread for the given number of milliseconds. A pointer, so that a test can shorten
/// waits.
extern void (*g_fnSleepMilliseconds)(u32 uMilliseconds) noexcept;

} // namespace platform
