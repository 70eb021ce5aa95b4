#pragma once
// A font that counts what leaves it, and may be given a picture in place of drawn text.
#include "font/font_unicode.h"

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class CTestFont : public CFontUniCode {
  public:
    bool m_fnUploadAtlas() override {
        ++m_uUploads;
        return true;
    }
    void m_fnDrawString(const char16_t* wzText, platform::GlyphFont* pFont) override {
        m_aDrawn.emplace_back(wzText);
        m_aDrawnWith.push_back(pFont);
        CFontUniCode::m_fnDrawString(wzText, pFont);
        if (!m_fnPaint) return;
        std::fill_n(m_pCanvas, m_iCanvasW * m_iCanvasH, u8{0});
        m_fnPaint();
    }
    /// Puts ink into a box of the canvas.
    void m_fnInk(i32 iX, i32 iY, i32 iW, i32 iH, u8 uValue = 255) {
        for (i32 y = iY; y < iY + iH; ++y)
            for (i32 x = iX; x < iX + iW; ++x) m_pCanvas[y * m_iCanvasW + x] = uValue;
    }
    const stFontChar& m_fnRecord(u32 uCode) { return m_pChars[m_fnFindChar(uCode)]; }

    u32 m_uUploads = 0;
    std::vector<std::u16string> m_aDrawn;
    std::vector<platform::GlyphFont*> m_aDrawnWith;
    std::function<void()> m_fnPaint; ///< fills the cleared canvas instead of the rasteriser
};

/// A grid of uLayout * uLayout cells of uCell pixels, not initialised yet.
inline std::unique_ptr<CTestFont> NewFont(u32 uLayout, u32 uCell, const char16_t* wzFace = u"DejaVu Sans") {
    auto pFont = std::make_unique<CTestFont>();
    pFont->m_fnSetLayout(uLayout, uLayout, 0);
    pFont->m_fnSetTexSize(uLayout * uCell, uLayout * uCell);
    pFont->m_fnSetFontName(wzFace);
    return pFont;
}

/// The same, ready for glyphs.
inline std::unique_ptr<CTestFont> ReadyFont(u32 uLayout, u32 uCell, const char16_t* wzFace = u"DejaVu Sans") {
    auto pFont = NewFont(uLayout, uCell, wzFace);
    if (!pFont->m_fnInitialize(false)) return nullptr;
    pFont->m_aDrawn.clear();
    pFont->m_aDrawnWith.clear();
    return pFont;
}

/// Whether two fonts of one size have the same cells, records and codes.
inline bool AreAlike(CTestFont& a, CTestFont& b) {
    const std::size_t uBytes = std::size_t{a.m_uTexW} * a.m_uTexH;
    const std::size_t uRecords = (a.m_uNum_Characters + 2) * sizeof(stFontChar);
    return std::memcmp(a.m_fnTakeAtlas(), b.m_fnTakeAtlas(), uBytes) == 0 &&
           std::memcmp(a.m_pChars, b.m_pChars, uRecords) == 0 && a.m_mapCharIndex == b.m_mapCharIndex;
}
