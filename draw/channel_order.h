#pragma once
// Pixels of four bytes from one order of channels into another.
#include "platform/types.h"

#include <cstddef>

/// Orders are four letters, such as "BGRA". A letter of the target that the source does not have, and "X",
/// becomes 255. The blocks may not overlap.
void g_fnReorderChannels(const u8* pFrom, const char* szFrom, u8* pTo, const char* szTo,
                         std::size_t uPixels) noexcept;
