#include "draw/texture_reduce.h"

#include "draw/texture.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

/// Raised values of the form with gain.
constexpr f32 s_fGain = 1.5f;

/// The source pixels that one output pixel covers along one axis.
struct stSpan {
    u32 uFirst, uLast;
    f32 fLastWeight; ///< of uLast, unless it is uFirst too; all others weigh 1
    f32 Weight(u32 c) const { return c == uLast && c != uFirst ? fLastWeight : 1.0f; }
};

/// KEEP: an end that reaches the last pixel is held at it, so that this pixel weighs nothing.
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
            const f32 fWeight = fCover * fCover; // KEEP: squared.
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

/// Of a sum of uCount bytes: what the general road gives for uCount pixels that weigh 1.
template <u32 uCount> constexpr std::array<u8, 255 * uCount + 1> MakeMeans(bool bGain) {
    std::array<u8, 255 * uCount + 1> au{};
    for (u32 uSum = 0; uSum <= 255 * uCount; ++uSum) {
        const f32 fMean = static_cast<f32>(uSum) / static_cast<f32>(uCount);
        au[uSum] = static_cast<u8>(bGain ? std::min(fMean * s_fGain, 255.0f) : fMean);
    }
    return au;
}

/// Means of one, two and four pixels.
struct stMeans {
    std::array<u8, 255 + 1> au1;
    std::array<u8, 2 * 255 + 1> au2;
    std::array<u8, 4 * 255 + 1> au4;
};
constexpr stMeans s_astMeans[2] = {{MakeMeans<1>(false), MakeMeans<2>(false), MakeMeans<4>(false)},
                                   {MakeMeans<1>(true), MakeMeans<2>(true), MakeMeans<4>(true)}};

/// A glyph atlas, one byte a pixel and even sides, is reduced in the middle of a frame when a text brings a
/// new character. All weights are then 1 or 0: blocks of 2 by 2, of which those at the right and lower edge
/// lose their second column and row.
void ReduceEven(const stPicture& source, const stMeans& means, u8* pOut) {
    const u32 uWidth = source.uWidth, uNewWidth = uWidth / 2, uNewHeight = source.uHeight / 2;
    for (u32 y = 0; y < uNewHeight; ++y, pOut += uNewWidth) {
        const u8* pUpper = source.pPixels + static_cast<std::size_t>(y) * 2 * uWidth;
        const u8* pLower = pUpper + uWidth;
        const u8 u8Corner = pUpper[uWidth - 2];
        if (y + 1 == uNewHeight) {
            for (u32 x = 0; x + 1 < uNewWidth; ++x) pOut[x] = means.au2[pUpper[2 * x] + pUpper[2 * x + 1]];
            pOut[uNewWidth - 1] = means.au1[u8Corner];
            continue;
        }
        for (u32 x = 0; x + 1 < uNewWidth; ++x)
            pOut[x] = means.au4[pUpper[2 * x] + pUpper[2 * x + 1] + pLower[2 * x] + pLower[2 * x + 1]];
        pOut[uNewWidth - 1] = means.au2[u8Corner + pLower[uWidth - 2]];
    }
}

} // namespace

void g_fnReduceLevel(const u8* pSource, u32 uWidth, u32 uHeight, u32 uChannels, bool bGain, u8* pOut) {
    if (uWidth == 0 || uHeight == 0 || uChannels == 0 || uChannels > 4) return;
    const stPicture source{pSource, uWidth, uHeight, uChannels};
    if (uChannels == 1 && uWidth % 2 == 0 && uHeight % 2 == 0)
        ReduceEven(source, s_astMeans[bGain], pOut);
    else
        ReduceAny(source, g_fnLevelSide(uWidth, 1), g_fnLevelSide(uHeight, 1), bGain, pOut);
}

bool g_fnFillChain(CTexture_Base& texture, const u8* pSource, u32 uFrame) {
    const u32 uBytes = texture.m_uBytesPerPixel;
    if (!pSource || (uBytes != 1 && uBytes != 4)) return false;
    u8* pLevel = nullptr;
    texture.m_fnGetLevel(&pLevel, uFrame, 0);
    if (!pLevel) return false;
    if (pLevel != pSource) std::memcpy(pLevel, pSource, texture.m_uFrameBytes);
    u32 uWidth = texture.m_uWidth, uHeight = texture.m_uHeight;
    // KEEP: the width alone ends the walk; what is left of a tall chain stays as it is.
    for (u32 uLevel = 1; uWidth >= 2; ++uLevel) {
        u8* pNext = nullptr;
        texture.m_fnGetLevel(&pNext, uFrame, uLevel);
        if (!pNext) break;
        g_fnReduceLevel(pLevel, uWidth, uHeight, uBytes, uBytes == 1, pNext);
        uWidth = g_fnLevelSide(uWidth, 1);
        uHeight = g_fnLevelSide(uHeight, 1);
        pLevel = pNext;
    }
    return true;
}
