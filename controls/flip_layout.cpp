// From texts to quads: the states of a flip box.
#include "controls/code_points.h"
#include "controls/flip_box.h"
#include "controls/glyph_box.h"
#include "font/font_cell.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

namespace {

/// What becomes of one text of a list; null points without memory or for a bad text.
struct stDecoded {
    std::unique_ptr<u32[]> pCodePoints;
    u32 uLength = 0;
};

stDecoded Decode(const char16_t* wzText) {
    u32 uUnits = 0;
    if (!wzText || !g_fnMeasureUtf16(wzText, uUnits)) return {};
    stDecoded st{std::unique_ptr<u32[]>(new (std::nothrow) u32[std::size_t{uUnits} + 1])};
    if (st.pCodePoints) st.uLength = g_fnDecodeUtf16(wzText, st.pCodePoints.get());
    return st;
}

bool EndsLine(u32 uCode) { return uCode == '\r' || uCode == '\n' || uCode == 0; }

} // namespace

bool CFlipBox_Base::m_fnSetStates(std::span<const stFlipText> list) {
    if (list.empty()) return false;
    std::vector<stDecoded> texts;
    for (const stFlipText& st : list)
        if (!texts.emplace_back(Decode(st.wzText)).pCodePoints) return false;
    for (u32 u = 0; u < list.size(); ++u) m_mapStates.try_emplace(u);
    for (u32 u = 0; u < list.size(); ++u) {
        stFlipState& state = m_mapStates[u];
        state.m_pCodePoints = std::move(texts[u].pCodePoints);
        state.m_uTextLength = texts[u].uLength;
        state.m_uGlyphCount = g_fnCountGlyphs(state.m_pCodePoints.get(), state.m_uTextLength);
        std::copy_n(list[u].afColor, 4, state.m_afColor);
    }
    m_uTextSet = 1;
    MarkLayoutDirty();
    return true;
}

/// Glyphs of a state that the buffer holds: all of them, unless texts became longer after it was made.
u32 CFlipBox_Base::Room(const stFlipState& state) const {
    const u32 uVertices = m_uVertexBytes / sizeof(stTextVertex);
    if (state.m_uVertexBase >= uVertices) return 0;
    const u32 uLeft = (uVertices - state.m_uVertexBase) / g_uQuadVertices / (m_bShadow ? 2 : 1);
    return std::min(state.m_uGlyphCount, uLeft);
}

bool CFlipBox_Base::m_fnLayoutAll() {
    u32 uVertexBase = 0, uIndexBase = 0;
    for (auto& [uState, state] : m_mapStates) {
        state.m_uVertexBase = uVertexBase;
        state.m_uIndexBase = uIndexBase;
        if (!m_fnLayoutState(state)) return false;
        uVertexBase += state.m_uVertexCount;
        uIndexBase += state.m_uIndexCount;
    }
    return true;
}

/// Glyphs beyond the room take their space only. Quads that the text leaves free become empty: another state
/// may have stood there.
void CFlipBox_Base::PlaceGlyphs(stFlipState& state, u32 uQuad, u32 uQuadEnd) {
    static constexpr u32 c_uNothing = 0;
    const u32* pCode = state.m_pCodePoints ? state.m_pCodePoints.get() : &c_uNothing;
    f32 fPenX = 0;
    for (; !EndsLine(*pCode); ++pCode) {
        stGlyphBox st;
        const bool bBlank = g_fnTakesOnlySpace(*pCode);
        if (!g_fnAskGlyph(*m_pFont, *pCode == '\t' ? g_uIdeographicSpace : *pCode, m_fTextSize, st)) continue;
        if (!bBlank && uQuad < uQuadEnd)
            g_fnPutGlyph(g_fnVertexAt(m_pVertices.get(), uQuad++ * g_uQuadVertices), st, fPenX, m_fTextSize);
        fPenX += st.fWidth + m_fSpacingX;
        state.m_fTextWidth = std::max(state.m_fTextWidth, fPenX);
    }
    for (; uQuad < uQuadEnd; ++uQuad)
        std::memset(g_fnVertexAt(m_pVertices.get(), uQuad * g_uQuadVertices), 0, g_uQuadVertexBytes);
}

bool CFlipBox_Base::m_fnLayoutState(stFlipState& state) {
    if (!m_pFont || !m_pVertices) return false;
    const u32 uGlyphs = Room(state), uLayers = m_bShadow ? 2 : 1;
    const u32 uFirst = state.m_uVertexBase / g_uQuadVertices + (m_bShadow ? uGlyphs : 0);
    m_fLineStep = m_fTextSize + m_fSpacingY;
    state.m_fTextWidth = 0;
    state.m_fTextHeight = m_fTextSize;
    PlaceGlyphs(state, uFirst, uFirst + uGlyphs);
    if (m_bShadow) BuildShadow(state, uGlyphs);
    ColorState(state);
    state.m_uIndexCount = uGlyphs * uLayers * g_uQuadIndices;
    state.m_uVertexCount = uGlyphs * uLayers * g_uQuadVertices;
    state.m_uTriangleCount = uGlyphs * uLayers * 2;
    return m_fnExpandState(state);
}

/// The shadow's quads come first, so that they lie under the text's.
void CFlipBox_Base::BuildShadow(const stFlipState& state, u32 uGlyphs) {
    const u32 uVertices = uGlyphs * g_uQuadVertices;
    stTextVertex* const pShadow = g_fnVertexAt(m_pVertices.get(), state.m_uVertexBase);
    std::memcpy(pShadow, pShadow + uVertices, uVertices * sizeof *pShadow);
    g_fnMoveVertices(pShadow, uVertices, g_fShadowOffset, g_fShadowOffset);
}

void CFlipBox_Base::ColorState(const stFlipState& state) {
    const u32 uVertices = Room(state) * g_uQuadVertices;
    stTextVertex* pLayer = g_fnVertexAt(m_pVertices.get(), state.m_uVertexBase);
    if (m_bShadow) {
        g_fnColorVertices(pLayer, uVertices, m_afShadowColor);
        pLayer += uVertices;
    }
    g_fnColorVertices(pLayer, uVertices, state.m_afColor);
}

bool CFlipBox_Base::m_fnExpandState(stFlipState& state) {
    if (!m_pVertices) return false;
    // As of a text: a glyph draws one and a half times its nominal box.
    g_fnExpandQuads(g_fnVertexAt(m_pVertices.get(), state.m_uVertexBase), Room(state) * (m_bShadow ? 2 : 1),
                    g_fnCellOf(m_pFont));
    return true;
}
