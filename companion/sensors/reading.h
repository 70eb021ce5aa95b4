#pragma once
// One value that a sensor offers under a data name.
#include "platform/types.h"
#include <optional>
#include <string>

namespace companion::sensors {

/// A reading. Values are whole numbers in szUnit; a reading without a value could not be taken this time.
struct Reading {
    std::string strName;       ///< data full name, "GPU_CLK#0"
    const char* szUnit = "";   ///< "MHz", "C", "%", "MB", "RPM", "mV", "W"; a literal
    std::string strSource;     ///< where it comes from, for people
    std::optional<i32> iValue; ///< empty: not to be had at present
};

/// A piece of hardware whose index stands in data names.
struct Hardware {
    const char* szKind; ///< "gpu", "cpu"; a literal
    u32 uIndex = 0;
    std::string strName; ///< as its maker calls it; empty where nothing tells
};

/// "BASE#INDEX".
std::string FullName(const std::string& strBase, u32 uIndex);

/// iValue if it lies in the range that is plausible for its kind (itself within an i32), else empty.
std::optional<i32> Plausible(i64 iValue, i64 iLowest, i64 iHighest);

/// uPart of uWhole in whole percent, halves up; empty for a whole of 0 or a part above it.
std::optional<i32> Percent(u64 uPart, u64 uWhole);

} // namespace companion::sensors
