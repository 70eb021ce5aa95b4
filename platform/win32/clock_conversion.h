#pragma once
// Counter ticks to nanoseconds.
#include "platform/types.h"

namespace platform {

/// Whole seconds and the rest are converted apart: ticks times 10^9 in one product would overflow after a
/// quarter of an hour at 10 MHz. iFrequency is in ticks per second, above 0 and below 9.2 GHz.
constexpr i64 TicksToNanoseconds(i64 iTicks, i64 iFrequency) noexcept {
    constexpr i64 iBillion = 1000000000;
    return iTicks / iFrequency * iBillion + iTicks % iFrequency * iBillion / iFrequency;
}

} // namespace platform
