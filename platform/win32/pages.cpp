// From the system and not from the heap, which hands used memory out again and writes the zeros itself.
#include "platform/pages.h"
#include "platform/win32/windows_api.h"

#include <cstdlib>

namespace platform {

/// Below it a block shares its pages with others.
static constexpr std::size_t g_uPagesLeast = 65536;

u8* AllocatePages(std::size_t uBytes) noexcept {
    if (uBytes == 0) return nullptr;
    if (uBytes < g_uPagesLeast) return static_cast<u8*>(std::calloc(uBytes, 1));
    return static_cast<u8*>(VirtualAlloc(nullptr, uBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
}

void FreePages(u8* pBlock, std::size_t uBytes) noexcept {
    if (!pBlock) return;
    if (uBytes < g_uPagesLeast)
        std::free(pBlock);
    else
        VirtualFree(pBlock, 0, MEM_RELEASE);
}

bool ForgetPages(u8*, std::size_t) noexcept { return false; }

} // namespace platform
