#include "draw/channel_order.h"

#include <cstring>

namespace {

constexpr u32 g_uChannels = 4;
constexpr u32 g_uAbsent = 0xFFFFFFFF;

/// Which byte of a pixel of the source a letter stands for.
u32 PlaceOf(char cLetter, const char* szFrom) noexcept {
    const char* const pPlace = cLetter == 'X' ? nullptr : std::strchr(szFrom, cLetter);
    return pPlace ? static_cast<u32>(pPlace - szFrom) : g_uAbsent;
}

} // namespace

void g_fnReorderChannels(const u8* pFrom, const char* szFrom, u8* pTo, const char* szTo,
                         std::size_t uPixels) noexcept {
    u32 auPlace[g_uChannels];
    for (u32 i = 0; i < g_uChannels; ++i) auPlace[i] = PlaceOf(szTo[i], szFrom);
    for (std::size_t u = 0; u < uPixels * g_uChannels; u += g_uChannels)
        for (u32 i = 0; i < g_uChannels; ++i)
            pTo[u + i] = auPlace[i] == g_uAbsent ? u8{255} : pFrom[u + auPlace[i]];
}
