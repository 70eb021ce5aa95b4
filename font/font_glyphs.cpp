// Records and cells: who has one, what is known of it, who gets the next.
#include "font/kept_glyphs.h"
#include "font/waiting_glyphs.h"
#include "platform/pages.h"

#include <algorithm>
#include <cstring>

/// Blanks have records of their own behind those of the grid.
static constexpr u32 g_uSpace = 32, g_uWideSpace = 12288;

template <typename T> static void Put(T* pOut, T value) {
    if (pOut) *pOut = value;
}

i32 CFontUniCode::m_fnFindChar(u32 uCode) {
    const auto it = m_mapCharIndex.find(uCode);
    return it == m_mapCharIndex.end() ? -1 : static_cast<i32>(it->second);
}

void CFontUniCode::m_fnAddSpaces() {
    if (!m_pChars) return;
    AddSpace(g_uSpace, m_uNum_Characters);
    AddSpace(g_uWideSpace, m_uNum_Characters + 1);
}

void CFontUniCode::AddSpace(u32 uCode, u32 uIndex) {
    m_mapCharIndex[uCode] = uIndex;
    const char16_t wcBlank = static_cast<char16_t>(uCode);
    const bool bOwn = !m_hFontCalib || platform::FontHasGlyph(m_hDC, m_hFont, &wcBlank, 1);
    const i32 iAdvance = platform::GlyphExtent(m_hDC, bOwn ? m_hFont : m_hFontCalib, &wcBlank, 1);
    // KEEP(profiles): the code of these records stays 0.
    stFontChar& st = m_pChars[uIndex];
    st.m_fYOffset = st.m_fTexX = st.m_fTexY = st.m_fHScale = 0.0f;
    st.m_fWScale = static_cast<f32>(iAdvance) / static_cast<f32>(m_uFontSize);
}

/// Index of the first record without a code, -1 when the grid is full.
i32 CFontUniCode::FirstFreeRecord() const {
    if (!m_pChars) return -1;
    const stFontChar* const pFirst = m_pChars;
    const stFontChar* const pEnd = pFirst + m_uNum_Characters;
    const stFontChar* const p =
        std::find_if(pFirst, pEnd, [](const stFontChar& st) { return st.m_u32_Char_UTF32_LE == 0; });
    return p == pEnd ? -1 : static_cast<i32>(p - pFirst);
}

/// The cell of a record is its index, read row by row.
void CFontUniCode::PlaceRecord(u32 uIndex, f32* pX, f32* pY, f32* pZ) {
    const u32 x = uIndex % m_uLayoutW, uRow = uIndex / m_uLayoutW;
    const u32 y = uRow % m_uLayoutH, uLayer = uRow / m_uLayoutH;
    *pX = static_cast<f32>(x);
    *pY = static_cast<f32>(y);
    *pZ = static_cast<f32>(
        1u << std::min(uLayer, 31u)); // KEEP(profiles): 2 or more for the blanks behind the grid
    stFontChar& st = m_pChars[uIndex];
    st.m_fTexX = *pX / static_cast<f32>(m_uLayoutW);
    st.m_fTexY = *pY / static_cast<f32>(m_uLayoutW); // KEEP(profiles): columns here too
    st.m_fTexZ = 0.0f;
}

void CFontUniCode::m_fnAddChar(u32 uCode, f32* pX, f32* pY, f32* pZ) {
    const i32 iFound = m_fnFindChar(uCode);
    const i32 iIndex = iFound >= 0 ? iFound : FirstFreeRecord();
    if (iIndex < 0) {
        *pX = *pY = *pZ = -1.0f;
        return;
    }
    stFontChar& st = m_pChars[iIndex];
    if (iFound < 0) {
        m_mapCharIndex[uCode] = static_cast<u32>(iIndex);
        st.m_u32_Char_UTF32_LE = uCode;
        m_bDirty = true;
    }
    st.m_uCharAge = m_uCharAge;
    PlaceRecord(static_cast<u32>(iIndex), pX, pY, pZ);
    if (iFound >= 0) return;
    const bool bKept = g_fnTakeKeptGlyph(*this, uCode, st);
    if (!bKept && m_bMayWait) return m_vecWaiting.push_back(uCode);
    if (!bKept) m_fnRasterizeChar(uCode);
    m_fnPutCharBuffInCell(uCode, pX, pY, pZ);
}

bool CFontUniCode::m_fnUploadAtlasAll(const u8* const*) { return true; }

bool CFontUniCode::m_fnUploadAtlas() { return true; }

bool CFontUniCode::m_fnPutCharBuffInCell(u32, f32* pX, f32* pY, f32*) {
    if (!m_fnTakeAtlas() || !m_pCharBuff || !(*pX >= 0.0f) || !(*pY >= 0.0f)) return false;
    const u32 uCellW = m_uTexW / m_uLayoutW, uCellH = m_uTexH / m_uLayoutH;
    if (*pX >= static_cast<f32>(m_uLayoutW) || *pY >= static_cast<f32>(m_uLayoutH)) return false;
    const u32 uColumn = static_cast<u32>(*pX * static_cast<f32>(uCellW));
    const u32 uTop = static_cast<u32>(*pY * static_cast<f32>(uCellH));
    const u32 uCols = std::min(uCellW, m_uTexW - std::min(m_uTexW, uColumn));
    const u32 uRows = std::min({uCellH, static_cast<u32>(m_iCharBuffH), m_uTexH - std::min(m_uTexH, uTop)});
    for (u32 i = 0; i < uRows; ++i) {
        u8* const pTo = m_pAtlas + static_cast<u64>(uTop + i) * m_uTexW + uColumn;
        const u8* const pFrom = m_pCharBuff + static_cast<u64>(i) * uCellW;
        // Blank rows stay without memory; those behind the last one with ink are not even looked at.
        if (platform::IsBlank(pFrom, uCols) && (uTop + i >= m_uAtlasRows || platform::IsBlank(pTo, uCols)))
            continue;
        std::memcpy(pTo, pFrom, uCols);
        m_uAtlasRows = std::max(m_uAtlasRows, uTop + i + 1);
    }
    if (m_bAutoUpload) {
        m_fnUploadAtlas();
        m_bDirty = false;
    }
    return true;
}

void CFontUniCode::m_fnGetCharSize(u32 uCode, f32* pW, f32* pH) {
    const i32 iIndex = m_fnFindChar(uCode);
    if (iIndex >= 0) {
        m_fnDrawWaiting(uCode);
        Put(pW, m_pChars[iIndex].m_fWScale);
        Put(pH, m_pChars[iIndex].m_fHScale);
        return;
    }
    // KEEP(files): the size of the ink here, against the advance, and both a pixel more, in a record.
    i32 iW = 0, iH = 0;
    m_fnMeasureChar(uCode, &iW, &iH);
    Put(pW, static_cast<f32>(iW) / static_cast<f32>(m_uFontSize));
    Put(pH, static_cast<f32>(iH) / static_cast<f32>(m_uFontSize));
}

bool CFontUniCode::m_fnGetCharInfo(u32 uCode, f32* pX, f32* pY, f32* pZ, f32* pXR, f32* pYB, f32* pYOff,
                                   f32* pW, f32* pH) {
    i32 iIndex = m_fnFindChar(uCode);
    if (iIndex < 0) {
        g_fnFontAddChar(this, uCode);
        iIndex = m_fnFindChar(uCode);
    }
    if (iIndex < 0) return false;
    m_fnDrawWaiting(uCode);
    const stFontChar& st = m_pChars[iIndex];
    Put(pX, st.m_fTexX);
    Put(pY, st.m_fTexY);
    Put(pZ, st.m_fTexZ);
    // Half of a length in nominal sizes is that length in cells; the texel more is the one of the measure.
    Put(pXR,
        st.m_fWScale * 0.5f / static_cast<f32>(m_uLayoutW) + st.m_fTexX + 1.0f / static_cast<f32>(m_uTexW));
    Put(pYB,
        st.m_fHScale * 0.5f / static_cast<f32>(m_uLayoutH) + st.m_fTexY + 1.0f / static_cast<f32>(m_uTexH));
    Put(pYOff, st.m_fYOffset);
    Put(pW, st.m_fWScale);
    Put(pH, st.m_fHScale);
    return true;
}

bool g_fnFontAddChar(CFontUniCode* pFont, u32 uCode) {
    if (uCode == 0) return true;
    f32 x = -1.0f, y = -1.0f, z = -1.0f;
    pFont->m_fnAddChar(uCode, &x, &y, &z);
    return x != -1.0f && y != -1.0f && z != -1.0f;
}

bool g_fnIsBlankCode(u32 uCode) {
    return uCode == 0 || uCode == 9 || uCode == 10 || uCode == 13 || uCode == g_uSpace ||
           uCode == g_uWideSpace;
}

/// Adds codes in order at the cost of one upload.
template <typename T> static void AddBatch(CFontUniCode* pFont, const T& codes) {
    pFont->m_bAutoUpload = false;
    pFont->m_bMayWait = g_fnMayGlyphsWait();
    for (const u32 uCode : codes)
        if (!g_fnIsBlankCode(uCode)) g_fnFontAddChar(pFont, uCode);
    pFont->m_bMayWait = false;
    pFont->m_bAutoUpload = true;
    if (!pFont->m_vecWaiting.empty()) return g_fnNoteWaitingGlyphs();
    if (!pFont->m_bDirty) return;
    pFont->m_fnUploadAtlas();
    pFont->m_bDirty = false;
    pFont->m_fnRest();
}

/// A surrogate without its partner stands as a code of its own. False if there is one.
static bool Decode(const char16_t* wzText, std::u32string& codes) {
    bool bWhole = true;
    codes.clear();
    for (; wzText && *wzText; ++wzText) {
        const bool bPair = *wzText >= 0xD800 && *wzText < 0xDC00 && wzText[1] >= 0xDC00 && wzText[1] < 0xE000;
        bWhole = bWhole && (bPair || *wzText < 0xD800 || *wzText >= 0xE000);
        if (bPair)
            codes += 0x10000 + ((wzText[0] - 0xD800u) << 10) + (wzText[1] - 0xDC00u), ++wzText;
        else
            codes += *wzText;
    }
    return bWhole;
}

bool g_fnToCodes(const char16_t* wzText, std::u32string& codes) {
    if (!Decode(wzText, codes)) codes.clear();
    return !codes.empty();
}

void g_fnFontAddText(CFontUniCode* pFont, const char16_t* wzText) {
    std::u32string codes;
    Decode(wzText, codes);
    AddBatch(pFont, codes);
}

void g_fnFontAddCodes(CFontUniCode* pFont, const std::u32string& codes) { AddBatch(pFont, codes); }

void g_fnFontAddSet(CFontUniCode* pFont, const std::set<u32>& codes) { AddBatch(pFont, codes); }

bool g_fnFontRemoveChar(CFontUniCode* pFont, u32 uCode) {
    // KEEP(profiles): the blanks too; added again, one takes an ordinary cell.
    const i32 iIndex = pFont->m_fnFindChar(uCode);
    if (iIndex < 0) return false;
    pFont->m_pChars[iIndex].m_u32_Char_UTF32_LE = 0;
    pFont->m_mapCharIndex.erase(uCode);
    std::erase(pFont->m_vecWaiting, uCode);
    return true;
}
