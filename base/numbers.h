#pragma once
// Conversions between numbers that a plain cast leaves undefined, and one that the log needs.
#include "platform/types.h"

#include <algorithm>
#include <cstdint>
#include <limits>

/// Towards zero. What no Int holds becomes its nearest one, and no number becomes 0.
template <class Int> constexpr Int g_fnTruncate(f32 fValue) noexcept {
    constexpr f32 fEnd = -static_cast<f32>(std::numeric_limits<Int>::min()); // the first that is too large
    static_assert(fEnd > 0, "a signed type");
    if (fValue != fValue) return 0;
    if (fValue >= fEnd) return std::numeric_limits<Int>::max();
    return fValue < -fEnd ? std::numeric_limits<Int>::min() : static_cast<Int>(fValue);
}

/// To single precision. What is too large becomes the largest, and no number becomes 0.
constexpr f32 g_fnNarrow(f64 fValue) noexcept {
    constexpr f64 fMost = std::numeric_limits<f32>::max();
    return fValue != fValue ? 0.0f : static_cast<f32>(std::clamp(fValue, -fMost, fMost));
}

/// The low half of an address, which is what the log shows of one.
inline u32 g_fnLow32(const void* p) noexcept { return static_cast<u32>(reinterpret_cast<std::uintptr_t>(p)); }
