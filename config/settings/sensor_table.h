#pragma once
// What a data name means: decimals and divisor by sensor, and which cards, CPUs and sensors a layout shows.
// The settings reader fills it; until then it knows no sensor, one card and one CPU.
#include "platform/types.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// How a raw value becomes the shown one.
struct stDataFormat {
    u32 uDecimals = 0;
    u32 uDivisor = 1; ///< 0 counts as 1
};

constexpr u32 g_uDisplayMax = 20;
/// Card number shown at a display position.
extern i32 g_iCardOfDisplay[g_uDisplayMax];

/// A sensor row of the layouts with fixed tables.
struct stSensorRow {
    std::string szBaseName;
    u32 uOrdinal = 0; ///< by first showing, 0 to 1023: its distance from the first id of the extension
    u32 uGroup = 0;   ///< 0 to 63: instance of its boxes and index of its data name
};

struct stDisplayTable {
    std::map<std::string, stDataFormat, std::less<>> mapFormat; ///< sensors by base name, such as "GPU_CLK"
    u32 uCards = 1, uCpus = 1;                                  ///< on display, 0 to g_uDisplayMax each
    std::vector<stSensorRow> listSensorRows;
};
extern stDisplayTable g_stDisplay;

/// True for the base names that the program knows without a sensor table.
bool g_fnIsBuiltInDataName(std::string_view szBaseName) noexcept;
/// The part of a data full name before its last '#'; the whole name without one.
std::string_view g_fnDataBaseName(std::string_view szDataFullName) noexcept;
/// Format of a data full name: the sensor's, else plain for a built-in name. False for any other name; the
/// format is plain then.
bool g_fnFindDataFormat(std::string_view szDataFullName, stDataFormat& stFormat) noexcept;
