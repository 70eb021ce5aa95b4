#pragma once
// Named blocks of shared memory.
#include "platform/types.h"

namespace platform {

/// Creates or opens a named block with read-write protection. Null handle on failure. A new block is zero.
void* CreateNamedMapping(const char* szName, u32 uBytes) noexcept;
void* OpenNamedMapping(const char16_t* wzName) noexcept;
/// Maps uBytes with all access; null on failure.
void* MapView(void* hMapping, u32 uBytes) noexcept;
void UnmapView(void* pView) noexcept;
/// Linux: also removes the name if this process created it.
void CloseMapping(void* hMapping) noexcept;
/// Linux: removes the blocks of this user that carry the id of a process which does not exist any more.
/// Elsewhere blocks end with the last handle to them.
void RemoveDeadMappings() noexcept;

} // namespace platform
