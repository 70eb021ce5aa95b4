// From the kernel and not from the heap, which hands used memory out again and writes the zeros itself.
#include "platform/pages.h"

#include <cstdlib>
#include <sys/mman.h>

namespace platform {

/// Below it a block shares its pages with others.
static constexpr std::size_t g_uPagesLeast = 16384;

u8* AllocatePages(std::size_t uBytes) noexcept {
    if (uBytes == 0) return nullptr;
    if (uBytes < g_uPagesLeast) return static_cast<u8*>(std::calloc(uBytes, 1));
    void* const p = mmap(nullptr, uBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) return nullptr;
    // A huge page would take 2 MB for the first byte written. Where there are none, the call just fails.
    madvise(p, uBytes, MADV_NOHUGEPAGE);
    return static_cast<u8*>(p);
}

void FreePages(u8* pBlock, std::size_t uBytes) noexcept {
    if (!pBlock) return;
    if (uBytes < g_uPagesLeast)
        std::free(pBlock);
    else
        munmap(pBlock, uBytes);
}

bool ForgetPages(u8* pBlock, std::size_t uBytes) noexcept {
    return pBlock && uBytes >= g_uPagesLeast && madvise(pBlock, uBytes, MADV_DONTNEED) == 0;
}

} // namespace platform
