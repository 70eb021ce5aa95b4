#pragma once
// A copy of the shared segment and bounded ways to read it. Any process may have written anything into it.
#include "companion/diagnosis.h"
#include "platform/segment.h"
#include <memory>
#include <optional>
#include <vector>

namespace companion {

/// A private copy, so that what is read does not change while it is decoded.
std::unique_ptr<stSharedSegment> Snapshot(const void* pSegment);

using RecordTable = stProcessRecord[g_uProcessRecordCount];

/// Slot of the first live record of a process; none for process id 0.
std::optional<u32> FindRecord(const RecordTable& aTable, u32 uProcessId);

bool IsFull(const RecordTable& aTable);
u32 LiveCount(const RecordTable& aTable);

/// One process that holds a record in either table.
struct Instance {
    u32 uProcessId = 0;
    u32 uThreadId = 0;
    std::optional<u32> uCommandSlot;
    std::optional<u32> uStatusSlot;
    bool bCommandWaiting = false;
    u32 uApiCode = 0;
    f32 fFrameTime = 0.0f; ///< milliseconds
};

/// All instances, status records first; a process id that occurs twice is listed once.
std::vector<Instance> Instances(const stSharedSegment& stSegment);

/// The part of a diagnosis that the segment tells about a process.
void AddSegmentEvidence(const stSharedSegment& stSegment, u32 uProcessId, Evidence& stEvidence);

/// "12.34" for a usable number of milliseconds, else "-".
std::string FrameTimeText(f32 fMilliseconds);

} // namespace companion
