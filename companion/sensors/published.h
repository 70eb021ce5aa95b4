#pragma once
// What stands in the current bank of the shared segment, read back.
//
// The name tree does not hold every character of its names. The companion therefore lays the names as text
// behind the values that it publishes: the mark "NAME" as u32 behind the last value, then the names in the
// order of their values, each with its zero, and an empty one at the end. Programs never look there.
#include "platform/segment.h"
#include "platform/types.h"
#include <map>
#include <string>
#include <vector>

namespace companion::sensors {

constexpr u32 g_uNamesMark = 0x454D414E; ///< "NAME"

struct PublishedValue {
    std::string strName; ///< "?" for characters that are not known
    u32 uOffset = 0;     ///< in the raw block
    i32 iValue = 0;
    bool bWhole = true;  ///< every character of the name is known
    bool bInRoom = true; ///< false: the offset lies outside of the raw block, so there is no value
};

/// Everything in the current bank, by name. Takes any bytes.
std::vector<PublishedValue> ReadPublished(const stSharedSegment& stSegment);

/// Bank that is current, 0 or 1.
u32 CurrentBank(const stSharedSegment& stSegment);

/// True if strName can be the name of which the tree shows strKnown.
bool FitsName(const std::string& strName, const std::string& strKnown);

/// Appends mark and names to the values; without effect if they do not fit into the raw block.
void AppendNames(const std::map<std::string, u32>& mapOffsets, std::vector<u8>& aRaw);

} // namespace companion::sensors
