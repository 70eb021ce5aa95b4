#include "draw/texture_reduce.h"

#include "draw/texture.h"
#include "platform/pages.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

static_assert(std::endian::native == std::endian::little, "bytes of a row are summed as words");

namespace {

/// Raised values of the form with gain.
constexpr f32 s_fGain = 1.5f;

/// The source pixels that one output pixel covers along one axis.
struct stSpan {
    u32 uFirst, uLast;
    f32 fLastWeight; ///< of uLast, unless it is uFirst too; all others weigh 1
    f32 Weight(u32 c) const { return c == uLast && c != uFirst ? fLastWeight : 1.0f; }
};

/// KEEP(profiles): an end that reaches the last pixel is held at it, so that this pixel weighs nothing.
std::vector<stSpan> MakeSpans(u32 uSide, u32 uNewSide) {
    std::vector<stSpan> spans(uNewSide);
    const f32 fScale = static_cast<f32>(static_cast<f64>(uNewSide) / uSide);
    const f32 fLimit = static_cast<f32>(uSide - 1);
    f32 fStart = 0.0f;
    for (u32 x = 0; x < uNewSide; ++x) {
        f32 fEnd = static_cast<f32>(x + 1) / fScale;
        if (fEnd >= fLimit) fEnd = fLimit;
        const u32 uLast = static_cast<u32>(fEnd);
        spans[x] = {static_cast<u32>(fStart), uLast, 1.0f - (static_cast<f32>(uLast) + 1.0f - fEnd)};
        fStart = fEnd;
    }
    return spans;
}

u8 ToByte(f32 fValue, bool bGain) {
    if (bGain) fValue = std::min(fValue * s_fGain, 255.0f);
    return static_cast<u8>(fValue);
}

struct stPicture {
    const u8* pPixels;
    u32 uWidth, uHeight, uChannels;
};

/// One output pixel of up to four channels.
void ReducePixel(const stPicture& source, const stSpan& across, const stSpan& down, bool bGain, u8* pOut) {
    f32 afSum[4] = {}, fWeights = 0.0f;
    for (u32 r = down.uFirst; r <= down.uLast; ++r) {
        const f32 fRow = down.Weight(r);
        const u8* pRow = source.pPixels + static_cast<std::size_t>(r) * source.uWidth * source.uChannels;
        for (u32 c = across.uFirst; c <= across.uLast; ++c) {
            const f32 fCover = across.Weight(c) * fRow;
            const f32 fWeight = fCover * fCover; // KEEP(profiles): squared.
            const u8* pPixel = pRow + static_cast<std::size_t>(c) * source.uChannels;
            for (u32 i = 0; i < source.uChannels; ++i) afSum[i] += static_cast<f32>(pPixel[i]) * fWeight;
            fWeights += fWeight;
        }
    }
    for (u32 i = 0; i < source.uChannels; ++i) pOut[i] = ToByte(afSum[i] / fWeights, bGain);
}

void ReduceAny(const stPicture& source, u32 uNewWidth, u32 uNewHeight, bool bGain, u8* pOut) {
    const std::vector<stSpan> across = MakeSpans(source.uWidth, uNewWidth);
    const std::vector<stSpan> down = MakeSpans(source.uHeight, uNewHeight);
    for (u32 y = 0; y < uNewHeight; ++y)
        for (u32 x = 0; x < uNewWidth; ++x, pOut += source.uChannels)
            ReducePixel(source, across[x], down[y], bGain, pOut);
}

/// Mean of uCount bytes, as the general road gives it for pixels that weigh 1. Single precision holds all of
/// these quotients exactly, so whole numbers do.
template <u32 uCount, bool bGain> u8 Mean(u32 uSum) {
    return static_cast<u8>(bGain ? std::min(uSum * 3 / (2 * uCount), 255u) : uSum / uCount);
}

/// Four such means of four bytes each, from eight bytes of two rows, in the quarters of one word.
template <bool bGain> u32 FourMeans(u64 uUpper, u64 uLower) {
    constexpr u64 uBytes = 0x00FF00FF00FF00FF, uOnes = 0x0001000100010001;
    u64 u = (uUpper & uBytes) + (uUpper >> 8 & uBytes) + (uLower & uBytes) + (uLower >> 8 & uBytes);
    if (bGain) {
        u = u * 3 >> 3 & 0x01FF01FF01FF01FF;
        const u64 uAbove = u >> 8 & uOnes;
        u |= (uAbove << 8) - uAbove; // held at 255
    } else {
        u >>= 2;
    }
    u &= uBytes;
    u = (u | u >> 8) & 0x0000FFFF0000FFFF;
    return static_cast<u32>(u | u >> 16);
}

/// Two rows into one; the last column stands alone, as its right neighbour weighs nothing.
template <bool bGain> void ReduceRows(const u8* pUpper, const u8* pLower, u32 uNewWidth, u8* pOut) {
    const u32 uLast = uNewWidth - 1;
    u32 x = 0;
    for (; x + 4 <= uLast; x += 4) {
        u64 uUpper, uLower;
        std::memcpy(&uUpper, pUpper + 2 * x, sizeof uUpper);
        std::memcpy(&uLower, pLower + 2 * x, sizeof uLower);
        const u32 uMeans = (uUpper | uLower) == 0 ? 0 : FourMeans<bGain>(uUpper, uLower);
        std::memcpy(pOut + x, &uMeans, sizeof uMeans);
    }
    for (; x < uLast; ++x) {
        const u32 uSum = 0u + pUpper[2 * x] + pUpper[2 * x + 1] + pLower[2 * x] + pLower[2 * x + 1];
        pOut[x] = Mean<4, bGain>(uSum);
    }
    pOut[uLast] = Mean<2, bGain>(0u + pUpper[2 * uLast] + pLower[2 * uLast]);
}

/// The last row, which stands alone too.
template <bool bGain> void ReduceLastRow(const u8* pUpper, u32 uNewWidth, u8* pOut) {
    const u32 uLast = uNewWidth - 1;
    for (u32 x = 0; x < uLast; ++x) pOut[x] = Mean<2, bGain>(0u + pUpper[2 * x] + pUpper[2 * x + 1]);
    pOut[uLast] = Mean<1, bGain>(pUpper[2 * uLast]);
}

/// Written only where it has to be, since a blank row takes no memory; where it is known to be blank, not
/// even looked at.
void ClearRow(u8* pRow, std::size_t uBytes, bool bBlank) {
    if (!bBlank && !platform::IsBlank(pRow, uBytes)) std::memset(pRow, 0, uBytes);
}

/// Rows of the next level that come from so many rows.
u32 HalvedRows(u32 uRows) { return uRows / 2 + uRows % 2; }

/// A glyph atlas, one byte a pixel and even sides, is reduced in the middle of a frame when a text brings a
/// new character. All weights are then 1 or 0, and much of the atlas is still blank.
template <bool bGain> void ReduceEven(const stPicture& source, u32 uRows, bool bBlank, u8* pOut) {
    const std::size_t uWidth = source.uWidth;
    const u32 uNewWidth = source.uWidth / 2, uNewHeight = source.uHeight / 2;
    const u32 uTouched = HalvedRows(std::min(uRows, source.uHeight));
    const u8* pRow = source.pPixels;
    for (u32 y = 0; y < std::min(uTouched, uNewHeight - 1); ++y, pRow += 2 * uWidth, pOut += uNewWidth)
        if (platform::IsBlank(pRow, 2 * uWidth))
            ClearRow(pOut, uNewWidth, bBlank);
        else
            ReduceRows<bGain>(pRow, pRow + uWidth, uNewWidth, pOut);
    if (uTouched >= uNewHeight) ReduceLastRow<bGain>(pRow, uNewWidth, pOut);
}

void ReduceLevel(const stPicture& source, bool bGain, u32 uRows, bool bBlank, u8* pOut) {
    const u32 uWidth = source.uWidth, uHeight = source.uHeight;
    const bool bEven = source.uChannels == 1 && uWidth % 2 == 0 && uHeight % 2 == 0;
    if (bEven && bGain)
        ReduceEven<true>(source, uRows, bBlank, pOut);
    else if (bEven)
        ReduceEven<false>(source, uRows, bBlank, pOut);
    else
        ReduceAny(source, g_fnLevelSide(uWidth, 1), g_fnLevelSide(uHeight, 1), bGain, pOut);
}

/// Rows that are as they have to be are not written, so that blank ones stay without memory.
void CopyRows(const u8* pFrom, std::size_t uRowBytes, u32 uRows, u8* pTo) {
    for (u32 y = 0; y < uRows; ++y, pFrom += uRowBytes, pTo += uRowBytes)
        if (std::memcmp(pFrom, pTo, uRowBytes) != 0) std::memcpy(pTo, pFrom, uRowBytes);
}

} // namespace

void g_fnReduceLevel(const u8* pSource, u32 uWidth, u32 uHeight, u32 uChannels, bool bGain, u8* pOut) {
    if (uWidth == 0 || uHeight == 0 || uChannels == 0 || uChannels > 4) return;
    ReduceLevel({pSource, uWidth, uHeight, uChannels}, bGain, uHeight, false, pOut);
}

bool g_fnFillChain(CTexture_Base& texture, const u8* pSource, u32 uFrame, u32 uRows, bool bBlank) {
    const u32 uBytes = texture.m_uBytesPerPixel;
    if (!pSource || (uBytes != 1 && uBytes != 4)) return false;
    u8* pLevel = nullptr;
    texture.m_fnGetLevel(&pLevel, uFrame, 0);
    if (!pLevel) return false;
    uRows = std::min(uRows, texture.m_uHeight);
    if (pLevel != pSource)
        CopyRows(pSource, static_cast<std::size_t>(texture.m_uWidth) * uBytes, uRows, pLevel);
    u32 uWidth = texture.m_uWidth, uHeight = texture.m_uHeight;
    // KEEP(profiles): the width alone ends the walk; what is left of a tall chain stays as it is.
    for (u32 uLevel = 1; uWidth >= 2; ++uLevel) {
        u8* pNext = nullptr;
        texture.m_fnGetLevel(&pNext, uFrame, uLevel);
        if (!pNext) break;
        ReduceLevel({pLevel, uWidth, uHeight, uBytes}, uBytes == 1, uRows, bBlank, pNext);
        uRows = HalvedRows(uRows);
        uWidth = g_fnLevelSide(uWidth, 1);
        uHeight = g_fnLevelSide(uHeight, 1);
        pLevel = pNext;
    }
    return true;
}
