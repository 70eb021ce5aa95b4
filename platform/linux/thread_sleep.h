#pragma once
#include "platform/types.h"

namespace platform::host {

/// Sleeps; a thread that KillThread() was called for wakes at once.
void SleepUnlessStopped(u32 uMilliseconds) noexcept;
/// After a fork: the child has only the forking thread, and locks may stand as another thread left them.
void RenewLocksInChild() noexcept;

} // namespace platform::host
