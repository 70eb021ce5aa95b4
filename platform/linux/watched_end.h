#pragma once
// The end of a process that still has blocks open which other programs write.

namespace platform::host {

/// Gives up this process's part in them: whose last user this was loses its name, as nobody would take it
/// away later. They can still be read.
void LeaveWatchedBlocks() noexcept;

} // namespace platform::host
