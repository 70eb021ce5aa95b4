// One glyph at a time: drawing into the canvas, measuring, copying.
#include "base/log.h"
#include "font/font_unicode.h"
#include "platform/pages.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

/// UTF-16 of one code point.
struct stUnits {
    char16_t m_awc[2];
    u32 m_uCount;
};

static stUnits UnitsOf(u32 uCode) {
    // KEEP(profiles): the range without a text starts in the middle of the leading surrogates, at 55808.
    if (uCode > 0x10FFFF || (uCode >= 55808 && uCode <= 57343)) return {};
    if (uCode <= 0xFFFF) return {{static_cast<char16_t>(uCode)}, 1};
    const u32 u = uCode - 0x10000;
    return {{static_cast<char16_t>(0xD800 + (u >> 10)), static_cast<char16_t>(0xDC00 + (u & 0x3FF))}, 2};
}

/// Raised by half, held to 255.
static constexpr std::array<u8, 256> MakeGainTable() {
    std::array<u8, 256> a{};
    for (u32 i = 0; i < 256; ++i)
        a[i] = static_cast<u8>(std::min(255.0f, std::max(0.0f, static_cast<f32>(i) * 1.5f)));
    return a;
}
static constexpr std::array<u8, 256> g_auGain = MakeGainTable();

/// The first byte of each pixel, through a table of 256 that leaves 0 as it is (null: all as it is).
void CFontUniCode::ReadCanvas(const u8* pTable) {
    if (!m_pCanvas || !m_pDib) return;
    constexpr u64 uRun = 64; // most of a cell is blank, so pixels are looked at by runs first
    std::memset(m_pCanvas + m_uInkFirst, 0, m_uInkEnd - m_uInkFirst);
    const auto [iTop, iEnd] = platform::ReadGlyphBitmap(m_hDC, m_iCharBuffW, m_iCharBuffH, m_pDib);
    // KEEP(profiles): pixels are taken one after the other, without regard to the padding of rows: a cell
    // width that four does not divide gives slanted glyphs.
    const u64 uPixels = static_cast<u64>(m_iCanvasW) * static_cast<u64>(m_iCanvasH);
    const u64 uPitch = (static_cast<u64>(m_iCharBuffW) * 3 + 3) / 4 * 4;
    m_uInkFirst = std::min((static_cast<u64>(iTop) * uPitch + 2) / 3, uPixels);
    m_uInkEnd = std::min((static_cast<u64>(iEnd) * uPitch + 2) / 3, uPixels);
    for (u64 uFirst = m_uInkFirst; uFirst < m_uInkEnd; uFirst += uRun) {
        const u64 uLast = std::min(uFirst + uRun, m_uInkEnd);
        if (platform::IsBlank(m_pDib + uFirst * 3, (uLast - uFirst) * 3)) continue;
        for (u64 i = uFirst; i < uLast; ++i) m_pCanvas[i] = pTable ? pTable[m_pDib[i * 3]] : m_pDib[i * 3];
    }
}

void CFontUniCode::m_fnDrawString(const char16_t* wzText, platform::GlyphFont* pFont) {
    const u64 uUnits = wzText ? std::char_traits<char16_t>::length(wzText) : 0;
    platform::ClearGlyphBitmap(m_hDC);
    platform::DrawGlyphs(m_hDC, pFont, wzText, static_cast<u32>(uUnits), iGDI_DrawRefY);
    ReadCanvas(g_auGain.data());
}

void CFontUniCode::m_fnDrawChar(u32 uCode, platform::GlyphFont* pFont) {
    const stUnits st = UnitsOf(uCode);
    const char16_t wzText[3] = {st.m_awc[0], st.m_awc[1], 0};
    m_fnDrawString(wzText, pFont);
}

void CFontUniCode::m_fnDrawCharRaw(u32 uCode, platform::GlyphFont* pFont) {
    g_fnLog("iGDI_DrawRefY: %i\n", iGDI_DrawRefY);
    g_fnLog("m_iCharBuffW: %i\n", m_iCharBuffW);
    g_fnLog("m_iCharBuffH: %i\n", m_iCharBuffH);
    const stUnits st = UnitsOf(uCode);
    platform::DrawGlyphs(m_hDC, pFont, st.m_awc, st.m_uCount, iGDI_DrawRefY);
    ReadCanvas(nullptr);
}

void CFontUniCode::m_fnDrawCharMain(u32 uCode) { m_fnDrawChar(uCode, m_hFont); }

void CFontUniCode::m_fnRasterizeChar(u32 uCode) {
    const i32 iIndex = m_fnFindChar(uCode);
    m_fnDrawChar(uCode, m_hFont);
    i32 iLeft = 0, iTop = 0, iW = 0, iH = 0;
    m_fnInkBox(&iLeft, &iTop, &iW, &iH);
    const stUnits st = UnitsOf(uCode);
    // KEEP(profiles): the advance counts from the canvas's left edge, so that overhang is cut on both sides.
    iW = platform::GlyphExtent(m_hDC, m_hFont, st.m_awc, st.m_uCount);
    if (st.m_uCount && !platform::FontHasGlyph(m_hDC, m_hFont, st.m_awc, st.m_uCount))
        g_fnLog("font has no glyph for %u", uCode);
    if (iIndex >= 0) {
        const f32 fNominal = static_cast<f32>(m_uFontSize);
        m_pChars[iIndex].m_fYOffset = static_cast<f32>(iH - iGDI_DrawRefY + iTop) / fNominal;
        m_pChars[iIndex].m_fWScale = static_cast<f32>(iW + 1) / fNominal;
        m_pChars[iIndex].m_fHScale =
            static_cast<f32>(iH + 1) / fNominal; // KEEP(profiles): negative without ink
    }
    m_fnCanvasToCharBuff(0, iTop, iW, iH);
}

void CFontUniCode::m_fnMeasureChar(u32 uCode, i32* piW, i32* piH) {
    i32 iLeft = 0, iTop = 0;
    m_fnDrawChar(uCode, m_hFont);
    m_fnInkBox(&iLeft, &iTop, piW, piH);
}

void CFontUniCode::m_fnMeasureSpace(f32* pOut) {
    m_fnDrawString(u"I I", m_hFont);
    i32 iGap = 0;
    m_fnInkGap(&iGap);
    *pOut = static_cast<f32>(iGap) / static_cast<f32>(m_uFontSize);
}

/// First place that is not 0, by words; iCount if there is none.
static i32 SkipZeros(const u8* p, i32 iCount) {
    i32 i = 0;
    for (u64 u = 0; i + 8 <= iCount; i += 8) {
        std::memcpy(&u, p + i, sizeof u);
        if (u) break;
    }
    while (i < iCount && p[i] == 0) ++i;
    return i;
}

/// The place behind the last one that is not 0.
static i32 SkipZerosFromEnd(const u8* p, i32 iCount) {
    for (u64 u = 0; iCount >= 8; iCount -= 8) {
        std::memcpy(&u, p + iCount - 8, sizeof u);
        if (u) break;
    }
    while (iCount > 0 && p[iCount - 1] == 0) --iCount;
    return iCount;
}

void CFontUniCode::m_fnInkBox(i32* piLeft, i32* piTop, i32* piW, i32* piH) {
    i32 iLeft = m_iCanvasW - 1, iTop = m_iCanvasH - 1, iRight = 0, iBottom = 0;
    for (i32 y = 0; m_pCanvas && y < m_iCanvasH; ++y) {
        const u8* const pRow = m_pCanvas + static_cast<i64>(y) * m_iCanvasW;
        i32 iFirst = SkipZeros(pRow, m_iCanvasW);
        if (iFirst == m_iCanvasW) continue;
        i32 iLast = SkipZerosFromEnd(pRow, m_iCanvasW) - 1;
        while (iFirst <= iLast && pRow[iFirst] <= m_u8Threshold) ++iFirst;
        while (iLast > iFirst && pRow[iLast] <= m_u8Threshold) --iLast;
        if (iFirst > iLast) continue;
        iLeft = std::min(iLeft, iFirst);
        iTop = std::min(iTop, y);
        iRight = std::max(iRight, iLast);
        iBottom = std::max(iBottom, y);
    }
    *piLeft = iLeft;
    *piTop = iTop;
    *piW = iRight - iLeft + 1;
    *piH = iBottom - iTop + 1;
}

void CFontUniCode::m_fnInkGap(i32* piOut) {
    *piOut = 0;
    i32 iEnd = -1; // first column behind the first run
    for (i32 x = 0; m_pCanvas && x < m_iCanvasW; ++x) {
        bool bInk = false;
        for (i32 y = 0; y < m_iCanvasH && !bInk; ++y)
            bInk = m_pCanvas[static_cast<i64>(y) * m_iCanvasW + x] > m_u8Threshold;
        if (bInk && iEnd >= 0 && x > iEnd) {
            *piOut = x - iEnd;
            return;
        }
        if (bInk) iEnd = x + 1;
    }
}

void CFontUniCode::m_fnClearCharBuff() {
    if (m_pCharBuff)
        std::memset(m_pCharBuff, 0, static_cast<u64>(m_iCharBuffW) * static_cast<u64>(m_iCharBuffH));
}

/// Copies a box of one picture to another of the same size, if it lies inside both. Nothing for a box
/// without extent.
static void CopyBox(const u8* pFrom, i32 iX, i32 iY, u8* pTo, i32 iToX, i32 iToY, i32 iW, i32 iH, i32 iSizeW,
                    i32 iSizeH) {
    if (!pFrom || !pTo || iW <= 0 || iH <= 0 || iX > iSizeW - iW || iY > iSizeH - iH) return;
    for (i32 i = 0; i < iH; ++i)
        std::memcpy(pTo + static_cast<i64>(iToY + i) * iSizeW + iToX,
                    pFrom + static_cast<i64>(iY + i) * iSizeW + iX, static_cast<u32>(iW));
}

void CFontUniCode::m_fnCanvasToCharBuff(i32 iX, i32 iY, i32 iW, i32 iH) {
    m_fnClearCharBuff();
    CopyBox(m_pCanvas, std::max(iX, 0), std::max(iY, 0), m_pCharBuff, 0, 0, std::min(iW, m_iCharBuffW),
            std::min(iH, m_iCharBuffH), m_iCanvasW, m_iCanvasH);
}

void CFontUniCode::m_fnCanvasToCharBuffCentred(i32 iX, i32 iY, i32 iW, i32 iH) {
    m_fnClearCharBuff();
    const i32 iCols = std::min(iW, m_iCharBuffW), iRows = std::min(iH, m_iCharBuffH);
    CopyBox(m_pCanvas, std::max(iX, 0), std::max(iY, 0), m_pCharBuff, (m_iCharBuffW - iCols) / 2,
            (m_iCharBuffH - iRows) / 2, iCols, iRows, m_iCanvasW, m_iCanvasH);
}
