#pragma once
// What the system tells of the machine by calls. On Linux files tell it, so there is no implementation there.
#include "platform/types.h"
#include <string>

namespace platform::tool {

/// Of all processors together since the start, 100 nanoseconds; the idle time is a part of the other. False
/// if the system does not tell.
bool ReadProcessorTimes(u64& uIdle, u64& uTotal);
/// The fastest processor's clock at this moment, and the nominal one, MHz; 0 where the system does not tell.
u32 FastestClock();
u32 NominalClock();
/// As its maker calls it; empty where the system does not tell.
std::string ProcessorName();
/// Bytes of memory. False if the system does not tell.
bool ReadMemorySize(u64& uFree, u64& uAll);

} // namespace platform::tool
