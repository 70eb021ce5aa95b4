// From a value to what a number box draws: digits, first indices, size. Nothing here touches a vertex.
#include "base/numbers.h"
#include "controls/num_box.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr u32 g_uDecimalsMax = 15;

/// Writes decimal digits, units first, until there are none or the room is used up; returns their count.
u32 PeelDigits(u64 uValue, u8* pDigits, u32 uRoom) {
    u32 uCount = 0;
    for (; uValue > 0 && uCount < uRoom; uValue /= 10) pDigits[uCount++] = static_cast<u8>(uValue % 10);
    if (uCount > 0) return uCount;
    pDigits[0] = 0;
    return 1;
}

} // namespace

void CNumBox_Base::m_fnSetInt(i32 iValue, u32 uPadDigits) { m_fnSetIntEx(iValue, uPadDigits, true); }

void CNumBox_Base::m_fnSetIntEx(i32 iValue, u32 uPadDigits, bool bHide) {
    uPadDigits = std::min(uPadDigits, g_uNumBoxPlaces);
    // KEEP(profiles): compared with the last integer, also if a float has been shown since.
    if (m_iDrawCount >= 1 && m_iValue == iValue && m_uPadDigits == uPadDigits) return;
    m_bNegative = iValue < 0;
    m_iValue = iValue;
    m_uDecimals = 0;
    if (uPadDigits != 0) m_fnSetDigitPad(uPadDigits, bHide);
    const i64 iWide = iValue;
    m_uIntDigits = PeelDigits(static_cast<u64>(iWide < 0 ? -iWide : iWide), m_au8Digits, g_uNumBoxPlaces);
    if (m_uPadDigits > m_uIntDigits) {
        std::fill(m_au8Digits + m_uIntDigits, m_au8Digits + g_uNumBoxPlaces,
                  static_cast<u8>(m_bPadBlank ? g_uGlyphBlank : 0));
        m_uIntDigits = m_uPadDigits;
    }
    m_fnBuildDrawList();
}

void CNumBox_Base::m_fnSetFloat(f32 fValue, u32 uDecimals) {
    // KEEP(profiles): other decimals alone change nothing.
    if (m_fValue == fValue && m_iDrawCount > 0) return;
    m_bNegative = fValue < 0;
    m_fValue = m_bPercent ? fValue * 100 : fValue;
    m_uDecimals = std::min(uDecimals, g_uDecimalsMax);
    f32 t = m_fValue * (m_bNegative ? -10.0f : 10.0f);
    // KEEP(profiles): cut off, not rounded, in single precision; "-0.0" is possible.
    for (u32 i = m_uDecimals; i > 0; t *= 10)
        m_au8Digits[--i] = static_cast<u8>(static_cast<u64>(g_fnTruncate<i64>(t)) % 10);
    m_uIntDigits = PeelDigits(static_cast<u64>(g_fnTruncate<i64>(std::fabs(m_fValue))),
                              m_au8Digits + m_uDecimals, g_uNumBoxPlaces - m_uDecimals);
    if (m_bPercent) m_fValue /= 100;
    m_fnBuildDrawList();
}

/// Cells beyond the list are dropped.
void CNumBox_Base::PutGlyph(u32 uCell, u32 uGlyph) {
    if (uCell < g_uNumBoxPlaces) m_auDrawIndex[uCell] = (uCell * m_uGlyphCount + uGlyph) * g_uQuadIndices;
}

void CNumBox_Base::m_fnBuildDrawList() {
    u32 uLast = m_uIntDigits + m_uDecimals - 1;
    // KEEP(profiles): the sign stands left of the padding.
    if (m_bNegative) {
        ++uLast;
        PutGlyph(0, g_uGlyphMinus);
    }
    u32 uIntLast = uLast;
    if (m_uDecimals != 0) {
        ++uLast;
        PutGlyph(uLast - m_uDecimals, g_uGlyphPoint);
        for (u32 i = 0; i < m_uDecimals; ++i) PutGlyph(uLast - i, m_au8Digits[i]);
        uIntLast = uLast - m_uDecimals - 1;
    }
    for (u32 j = 0; j < m_uIntDigits; ++j) PutGlyph(uIntLast - j, m_au8Digits[m_uDecimals + j]);
    u32 uCount = uLast + 1;
    if (m_bPercent) PutGlyph(uCount++, g_uGlyphPercent);
    m_iDrawCount = static_cast<i32>(std::min(uCount, m_uCellCount));
    m_fnUpdateSize();
    // A glyph with shadow takes twice the indices.
    for (i32 i = 0; m_bShadow && i < m_iDrawCount; ++i) m_auDrawIndex[i] *= 2;
    m_fnNoteChange();
}

void CNumBox_Base::m_fnUpdateSize() {
    const f32 fCells = static_cast<f32>(m_iDrawCount), fGaps = static_cast<f32>(m_iDrawCount - 1);
    m_fNumberH = m_fTextSize;
    m_fNumberW = fCells * m_fCellWidth * ScaledSize() + fGaps * m_fSpacingX;
    if (m_bAutoSize) m_fnSetSize(m_fNumberW, m_fNumberH);
}
