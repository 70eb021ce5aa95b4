#include "font/kept_glyphs.h"

#include "font/packed_pixels.h"
#include "platform/pages.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace {

/// All that decides how a glyph comes out, and how its cell is found.
using Kind = std::tuple<std::u16string, i32, u32, u32, u32, u32, i32, i32, i32, u8, f32, f32>;

Kind KindOf(const CFontUniCode& font) {
    return {font.m_wzFontName,  font.m_iFontWeight, font.m_uLayoutW,   font.m_uLayoutH,
            font.m_uTexW,       font.m_uTexH,       font.m_iCharBuffW, font.m_iCharBuffH,
            font.iGDI_DrawRefY, font.m_u8Threshold, font.m_fDpiScaleX, font.m_fDpiScaleY};
}

/// What the first steps of a font measure.
struct stMeasures {
    u32 uDescent, uCalibSize;
    f32 fCalibRatio;
    u32 auBlockBox[4];
    f32 afSpaces[2]; ///< widths of the two blanks
};

struct stGlyph {
    u32 uCell;
    f32 fYOffset, fWScale, fHScale;
};

using Pixels = std::unique_ptr<u8[], platform::PagesDeleter>;

struct stKeptFont {
    Kind kind;
    stMeasures stMeasured;
    std::map<u32, stGlyph> mapGlyphs; ///< by code point
    CPackedPixels packed;
    Pixels pPixels; ///< unpacked, once one is asked for
    std::size_t uBytes;
};

/// More fonts than one layout has of one kind are not needed; more than it has at all cannot be.
constexpr std::size_t g_uMostKeptFonts = 64;

/// Never destroyed: the host may still draw while the process ends.
std::vector<stKeptFont>& All() {
    static auto* const p = new std::vector<stKeptFont>;
    return *p;
}

stKeptFont* Find(const CFontUniCode& font) {
    if (All().empty()) return nullptr;
    const Kind kind = KindOf(font);
    const auto it = std::ranges::find_if(All(), [&](const stKeptFont& st) { return st.kind == kind; });
    return it == All().end() ? nullptr : &*it;
}

stMeasures MeasuresOf(const CFontUniCode& font) {
    stMeasures st{font.m_uDescent, font.m_uCalibSize, font.m_fCalibRatio, {}, {}};
    std::ranges::copy(font.m_uBlockBox, st.auBlockBox);
    for (u32 u = 0; u < 2; ++u) st.afSpaces[u] = font.m_pChars[font.m_uNum_Characters + u].m_fWScale;
    return st;
}

std::map<u32, stGlyph> GlyphsOf(const CFontUniCode& font) {
    std::map<u32, stGlyph> map;
    for (const auto& [uCode, uIndex] : font.m_mapCharIndex) {
        const stFontChar& st = font.m_pChars[uIndex];
        if (uIndex < font.m_uNum_Characters && st.m_u32_Char_UTF32_LE == uCode && !font.m_fnIsWaiting(uCode))
            map[uCode] = {uIndex, st.m_fYOffset, st.m_fWScale, st.m_fHScale};
    }
    return map;
}

void Keep(CFontUniCode& font) {
    const std::size_t uBytes = std::size_t{font.m_uTexW} * font.m_uAtlasRows;
    if (uBytes == 0 || font.m_bFromFile || !font.m_pChars || Find(font)) return;
    if (All().size() == g_uMostKeptFonts) return;
    stKeptFont st{KindOf(font), MeasuresOf(font), GlyphsOf(font), {}, nullptr, uBytes};
    if (font.m_fnGivePackedAtlas(st.packed)) All().push_back(std::move(st));
}

const u8* PixelsOf(stKeptFont& st) noexcept {
    if (!st.pPixels) st.pPixels = Pixels(platform::AllocatePages(st.uBytes), {st.uBytes});
    if (st.pPixels) st.packed.Give(st.pPixels.get());
    return st.pPixels.get();
}

/// Copies a cell, as far as the kept rows reach.
void CopyCell(const CFontUniCode& font, const stKeptFont& st, const u8* pPixels, u32 uCell) noexcept {
    const u32 uCellW = font.m_uTexW / font.m_uLayoutW, uCellH = font.m_uTexH / font.m_uLayoutH;
    const std::size_t uRows = st.uBytes / font.m_uTexW;
    const u32 uLeft = uCell % font.m_uLayoutW * uCellW, uTop = uCell / font.m_uLayoutW * uCellH;
    for (u32 y = 0; y < std::min(uCellH, static_cast<u32>(font.m_iCharBuffH)) && uTop + y < uRows; ++y)
        std::memcpy(font.m_pCharBuff + std::size_t{y} * uCellW,
                    pPixels + std::size_t{uTop + y} * font.m_uTexW + uLeft, uCellW);
}

} // namespace

void g_fnKeepGlyphs(CFontUniCode& font) noexcept {
    try {
        Keep(font);
    } catch (...) { // no memory: it is drawn again
    }
}

void g_fnDropKeptGlyphs() noexcept {
    All().clear();
    All().shrink_to_fit();
}

bool g_fnHasKeptGlyphs() noexcept { return !All().empty(); }

bool g_fnIsKindKept(const CFontUniCode& font) noexcept { return Find(font) != nullptr; }

bool g_fnTakeKeptMeasures(CFontUniCode& font) noexcept {
    const stKeptFont* const pKept = Find(font);
    if (!pKept || !font.m_pChars) return false;
    const stMeasures& st = pKept->stMeasured;
    font.m_uDescent = st.uDescent;
    font.m_uCalibSize = st.uCalibSize;
    font.m_fCalibRatio = st.fCalibRatio;
    std::ranges::copy(st.auBlockBox, font.m_uBlockBox);
    for (u32 u = 0; u < 2; ++u) {
        font.m_mapCharIndex[u == 0 ? 32 : 12288] = font.m_uNum_Characters + u;
        font.m_pChars[font.m_uNum_Characters + u].m_fWScale = st.afSpaces[u];
    }
    return true;
}

bool g_fnTakeKeptGlyph(CFontUniCode& font, u32 uCode, stFontChar& stRecord) noexcept {
    stKeptFont* const pKept = Find(font);
    if (!pKept || !font.m_pCharBuff) return false;
    const auto it = pKept->mapGlyphs.find(uCode);
    const u8* const pPixels = it == pKept->mapGlyphs.end() ? nullptr : PixelsOf(*pKept);
    if (!pPixels) return false;
    stRecord.m_fYOffset = it->second.fYOffset;
    stRecord.m_fWScale = it->second.fWScale;
    stRecord.m_fHScale = it->second.fHScale;
    font.m_fnClearCharBuff();
    CopyCell(font, *pKept, pPixels, it->second.uCell);
    return true;
}
