#pragma once
// Large zeroed blocks that take memory only where they are written, such as pictures that stay mostly blank.
#include "platform/types.h"

#include <cstddef>

namespace platform {

/// Zeros. Null for no bytes or without memory. Small blocks come from the heap.
u8* AllocatePages(std::size_t uBytes) noexcept;
/// Null does nothing. The size is that of the allocation.
void FreePages(u8* pBlock, std::size_t uBytes) noexcept;

} // namespace platform
