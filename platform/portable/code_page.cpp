// For systems without code pages: a byte is the code of its character.
#include "platform/code_page.h"

#include <algorithm>

namespace platform {

u32 CodePageToUtf16(const char* pBytes, u32 uBytes, char16_t* pOut, u32 uCapacity) noexcept {
    const u32 uUnits = std::min(uBytes, uCapacity);
    std::transform(pBytes, pBytes + uUnits, pOut, [](char c) { return static_cast<u8>(c); });
    return uUnits;
}

} // namespace platform
