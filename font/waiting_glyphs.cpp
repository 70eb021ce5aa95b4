#include "font/waiting_glyphs.h"

#include "base/host_care.h"

#include <algorithm>
#include <utility>

/// Each takes some fifty microseconds.
static constexpr u32 c_uGlyphsAFrame = 8;

static struct stWaitingGlyphs {
    bool bAny = false;  ///< some font has work left
    bool bLeft = false; ///< uploads are left to g_fnTendGlyphs
} g_stWaitingGlyphs;

bool g_fnMayGlyphsWait() noexcept { return g_stHostCare.bOuterGuard; }
void g_fnNoteWaitingGlyphs() noexcept { g_stWaitingGlyphs = {true, true}; }
bool g_fnAreUploadsLeft() noexcept { return g_stWaitingGlyphs.bLeft; }
void g_fnLeaveUploads() noexcept { g_stWaitingGlyphs.bLeft = g_stWaitingGlyphs.bAny; }
void g_fnResetWaitingGlyphs() noexcept { g_stWaitingGlyphs = {}; }

bool CFontUniCode::m_fnIsWaiting(u32 uCode) const noexcept {
    return std::ranges::find(m_vecWaiting, uCode) != m_vecWaiting.end();
}

void CFontUniCode::m_fnDrawWaiting(u32 uCode) {
    const auto it = std::ranges::find(m_vecWaiting, uCode);
    if (it == m_vecWaiting.end()) return;
    m_vecWaiting.erase(it);
    const bool bUpload = std::exchange(m_bAutoUpload, m_bAutoUpload && !g_fnAreUploadsLeft());
    f32 x = -1.0f, y = -1.0f, z = -1.0f;
    PlaceRecord(m_mapCharIndex.at(uCode), &x, &y, &z);
    m_bDirty = true;
    m_fnRasterizeChar(uCode);
    m_fnPutCharBuffInCell(uCode, &x, &y, &z);
    m_bAutoUpload = bUpload;
}

void CFontUniCode::m_fnDrawSomeWaiting(u32* puMost) {
    for (; *puMost && !m_vecWaiting.empty(); --*puMost) m_fnDrawWaiting(m_vecWaiting.back());
}

/// A font whose last glyph has come.
static void Finish(CFontUniCode& font) {
    font.m_vecWaiting.shrink_to_fit();
    font.m_fnRest();
    font.m_fnPackAtlas();
}

/// False once nothing is left to do.
static bool Tend(CFontUniCode& font, u32* puMost) {
    const bool bWaited = !font.m_vecWaiting.empty();
    font.m_fnDrawSomeWaiting(puMost);
    if (font.m_bDirty) font.m_bDirty = !font.m_fnUploadAtlas();
    if (bWaited && font.m_vecWaiting.empty()) Finish(font);
    return !font.m_vecWaiting.empty();
}

static bool TendAll(CFontUniCode** ppFont, u32 uFonts) {
    u32 uMost = c_uGlyphsAFrame;
    bool bAny = false;
    for (u32 u = 0; ppFont && u < uFonts; ++u)
        if (ppFont[u]) bAny |= Tend(*ppFont[u], &uMost);
    return bAny;
}

void g_fnTendGlyphs(CFontUniCode** ppFont, u32 uFonts) noexcept {
    if (!g_stWaitingGlyphs.bAny) return;
    try {
        g_stWaitingGlyphs.bLeft = true; // one upload a font
        g_stWaitingGlyphs = {TendAll(ppFont, uFonts), false};
    } catch (...) { // no memory: the next frame tries again
        g_stWaitingGlyphs.bLeft = false;
    }
}
