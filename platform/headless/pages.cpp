#include "platform/pages.h"

#include <cstdlib>

namespace platform {

u8* AllocatePages(std::size_t uBytes) noexcept {
    return uBytes ? static_cast<u8*>(std::calloc(uBytes, 1)) : nullptr;
}

void FreePages(u8* pBlock, std::size_t) noexcept { std::free(pBlock); }

bool ForgetPages(u8*, std::size_t) noexcept { return false; }

} // namespace platform
