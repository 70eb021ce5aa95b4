#include "companion/sensors/reading.h"

namespace companion::sensors {

std::string FullName(const std::string& strBase, u32 uIndex) {
    return strBase + "#" + std::to_string(uIndex);
}

std::optional<i32> Plausible(i64 iValue, i64 iLowest, i64 iHighest) {
    if (iValue < iLowest || iValue > iHighest) return std::nullopt;
    return static_cast<i32>(iValue);
}

std::optional<i32> Percent(u64 uPart, u64 uWhole) {
    if (uWhole == 0 || uPart > uWhole) return std::nullopt;
    return static_cast<i32>(static_cast<f64>(uPart) * 100.0 / static_cast<f64>(uWhole) + 0.5);
}

} // namespace companion::sensors
