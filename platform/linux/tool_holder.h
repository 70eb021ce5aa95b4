#pragma once
// Linux: keeps the shared segment while a program is being entered.
#include "platform/types.h"

namespace platform::tool {

/// Starts a process of its own that keeps the segment's contents, for as long as a process of that id, which
/// is about to replace its image, lives without the library in its new one: the lock on the segment ends with
/// the old image.
void HoldSegmentFor(u32 uProcessId);

} // namespace platform::tool
