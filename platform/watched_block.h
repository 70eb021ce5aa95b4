#pragma once
// Named blocks of shared memory that other programs write and the overlay only reads. Whoever comes first
// makes the block, of zeros, and it goes with the last program that has it open. Nothing is locked: what is
// read may be half of one writing and half of the next.
#include "platform/types.h"

namespace platform {

/// Opens a block, or makes it where there is none. Null for an empty name, for a block that is smaller, and
/// for one that may not be read.
void* OpenWatchedBlock(const char16_t* wzName, u32 uBytes) noexcept;
/// Copies the block's first uBytes, at most those that it was opened with. False, with anything in the
/// output, once somebody has made the block smaller than that.
bool ReadWatchedBlock(void* hBlock, void* pTo, u32 uBytes) noexcept;
/// Whether reading a block is a call of the system, as it is where a view of one could fault.
bool IsWatchedReadACall() noexcept;
/// Null does nothing.
void CloseWatchedBlock(void* hBlock) noexcept;

} // namespace platform
