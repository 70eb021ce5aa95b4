#pragma once
// From UTF-16 to the code points that text is laid out from.
#include "platform/types.h"

constexpr u32 g_uIdeographicSpace = 0x3000;
/// Most glyphs of a control: above this the sizes in bytes would leave 32 bits.
constexpr u32 g_uGlyphsMax = 1u << 20;

/// Counts the units before the terminator. False if a surrogate stands alone.
bool g_fnMeasureUtf16(const char16_t* wzText, u32& uUnits);
/// Writes the zero-terminated code points of a valid text; returns their count.
u32 g_fnDecodeUtf16(const char16_t* wzText, u32* pOut);
/// Code points that need a quad, at least 1: blanks and line ends need none.
u32 g_fnCountGlyphs(const u32* pCodePoints, u32 uCount);
/// Takes space and shows nothing.
inline bool g_fnTakesOnlySpace(u32 uCode) {
    return uCode == ' ' || uCode == '\t' || uCode == g_uIdeographicSpace;
}
