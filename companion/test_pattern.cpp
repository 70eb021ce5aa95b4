#include "companion/test_pattern.h"
#include <algorithm>
#include <cstring>

namespace companion {
namespace {

constexpr u32 kBars = 8;
constexpr u8 kColors[kBars][3] = {{255, 255, 255}, {255, 255, 0}, {0, 255, 255}, {0, 255, 0},
                                  {255, 0, 255},   {255, 0, 0},   {0, 0, 255},   {0, 0, 0}};
constexpr u32 kPicturesAcross = 120;

/// A row of pixels; fnColor answers red, green and blue of a column.
template <class Color> void DrawRow(u8* pRow, u32 uWidth, Color fnColor) {
    for (u32 x = 0; x < uWidth; ++x) {
        u8 au8Color[4] = {0, 0, 0, 255};
        fnColor(x, au8Color);
        std::memcpy(pRow + std::size_t{x} * 4, au8Color, 4);
    }
}

} // namespace

void DrawTestPattern(u8* pPixels, u32 uWidth, u32 uHeight, u32 uFrame) {
    if (uWidth == 0 || uHeight == 0) return;
    const std::size_t uRowBytes = std::size_t{uWidth} * 4;
    const u32 uRamp = uHeight - uHeight / 4;
    const u32 uLine = static_cast<u32>(u64{uFrame % kPicturesAcross} * uWidth / kPicturesAcross);
    const u32 uLineEnd = uLine + std::max(uWidth / 64, 1u);
    const auto fnLine = [&](u32 x, u8* pColor) {
        if (x >= uLine && x < uLineEnd) std::memset(pColor, 255, 3);
    };
    const auto fnBars = [&](u32 x, u8* pColor) {
        std::memcpy(pColor, kColors[u64{x} * kBars / uWidth], 3);
        fnLine(x, pColor);
    };
    const auto fnRamp = [&](u32 x, u8* pColor) {
        std::memset(pColor, static_cast<int>(u64{x} * 255 / std::max(uWidth - 1, 1u)), 3);
        fnLine(x, pColor);
    };
    // All rows of a part are alike.
    for (u32 y = 0; y < uHeight; ++y) {
        u8* const pRow = pPixels + y * uRowBytes;
        if (y == 0 && uRamp > 0)
            DrawRow(pRow, uWidth, fnBars);
        else if (y == uRamp)
            DrawRow(pRow, uWidth, fnRamp);
        else
            std::memcpy(pRow, pRow - uRowBytes, uRowBytes);
    }
}

} // namespace companion
