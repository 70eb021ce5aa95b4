#pragma once
// The segment that all processes share. Win32: the image section "Shared". Linux: a POSIX shared object with
// a shared file lock held while mapped. Headless: plain memory.
#include "platform/segment.h"

namespace platform {

/// The shared segment; never null (a private block with the initial image when sharing is impossible).
stSharedSegment* SharedSegment() noexcept;

} // namespace platform
