#pragma once
// Large zeroed blocks that take memory only where they are written, such as pictures that stay mostly blank.
#include "platform/types.h"

#include <cstddef>
#include <cstring>

namespace platform {

/// Zeros. Null for no bytes or without memory. Small blocks come from the heap.
u8* AllocatePages(std::size_t uBytes) noexcept;
/// Null does nothing. The size is that of the allocation.
void FreePages(u8* pBlock, std::size_t uBytes) noexcept;

/// Makes such a block zeros again and gives its memory back until it is written, where the system can; small
/// blocks stay as they are. False if it stays.
bool ForgetPages(u8* pBlock, std::size_t uBytes) noexcept;

/// For an owning pointer to such a block.
struct PagesDeleter {
    std::size_t uBytes = 0;
    void operator()(void* pBlock) const noexcept { FreePages(static_cast<u8*>(pBlock), uBytes); }
};

/// Whether all bytes are 0. Compares them with themselves, one byte on: as fast as memory is read.
inline bool IsBlank(const u8* pBytes, std::size_t uBytes) noexcept {
    return uBytes == 0 || (pBytes[0] == 0 && std::memcmp(pBytes, pBytes + 1, uBytes - 1) == 0);
}

} // namespace platform
