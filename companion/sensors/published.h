#pragma once
// What stands in the current bank of the shared segment, read back.
//
// The name tree does not hold every character of its names. The companion therefore lays the names as text
// behind the values that it publishes: the mark "NAME" as u32 behind the last value, then the names in the
// order of their values, each with its zero, and an empty one at the end. Behind them stands who published
// and when: the mark "FEED", the process and its stamp as u32 each, and the milliseconds of the system's
// clock as u64. Programs never look there.
#include "platform/segment.h"
#include "platform/types.h"
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace companion::sensors {

constexpr u32 g_uNamesMark = 0x454D414E; ///< "NAME"
constexpr u32 g_uFeedMark = 0x44454546;  ///< "FEED"

/// Who published, and when.
struct Publication {
    u32 uProcessId = 0; ///< of the feed that keeps the values moving; 0: they were published once
    u32 uStamp = 0;     ///< that tells the process from a later one of its id
    u64 uTime = 0;      ///< milliseconds since 1970 of the last values
};

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

/// Who published what stands in the current bank; nothing if that is not told there.
std::optional<Publication> ReadPublication(const stSharedSegment& stSegment);

/// Appends marks, names and who published to the values; without effect if they do not fit into the raw
/// block.
void AppendNames(const std::map<std::string, u32>& mapOffsets, const Publication& stBy,
                 std::vector<u8>& aRaw);
/// Writes another time of publication into what AppendNames has ended.
void SetTime(u64 uTime, std::vector<u8>& aRaw);

} // namespace companion::sensors
