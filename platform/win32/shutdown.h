#pragma once
// Whether the process is on its way out.

namespace platform {

/// True once the process has begun to end: every other thread is gone by then, perhaps while it held a lock,
/// so nothing may wait for one any more. False while a library is merely unloaded.
bool IsProcessEnding() noexcept;

} // namespace platform
