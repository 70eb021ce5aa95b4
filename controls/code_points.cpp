#include "controls/code_points.h"

#include <algorithm>

namespace {

bool IsHighSurrogate(char16_t c) { return (c & 0xFC00) == 0xD800; }
bool IsLowSurrogate(char16_t c) { return (c & 0xFC00) == 0xDC00; }
bool NeedsQuad(u32 uCode) { return !g_fnTakesOnlySpace(uCode) && uCode != '\n' && uCode != '\r'; }

} // namespace

bool g_fnMeasureUtf16(const char16_t* wzText, u32& uUnits) {
    for (uUnits = 0; wzText[uUnits]; ++uUnits) {
        if (IsLowSurrogate(wzText[uUnits])) return false;
        if (IsHighSurrogate(wzText[uUnits]) && !IsLowSurrogate(wzText[++uUnits])) return false;
    }
    return true;
}

u32 g_fnDecodeUtf16(const char16_t* wzText, u32* pOut) {
    u32 uCount = 0;
    while (*wzText) {
        u32 c = *wzText++;
        if (IsHighSurrogate(static_cast<char16_t>(c)))
            c = 0x10000 + ((c - 0xD800) << 10) + (*wzText++ - 0xDC00u);
        pOut[uCount++] = c;
    }
    pOut[uCount] = 0;
    return uCount;
}

u32 g_fnCountGlyphs(const u32* pCodePoints, u32 uCount) {
    const auto uGlyphs = std::count_if(pCodePoints, pCodePoints + uCount, NeedsQuad);
    return std::max(static_cast<u32>(uGlyphs), 1u);
}
