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
/// Blocks the calling thread for the given number of milliseconds. A pointer, so that a test can shorten
/// waits.
extern void (*g_fnSleepMilliseconds)(u32 uMilliseconds) noexcept;

} // namespace platform
