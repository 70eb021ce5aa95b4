// The vertices of a number box: the whole character table in every cell.
#include "controls/num_box.h"
#include "font/font_cell.h"
#include "font/font_unicode.h"

#include <cstring>

namespace {

/// Cells that m_fnBuildGlyphs fills. KEEP(profiles): this, not m_uCellCount; authors of profiles are told of
/// eight.
constexpr u32 g_uCellsBuilt = 8;

bool IsBlank(char16_t c) { return c == u' ' || c == u'\u3000'; }

} // namespace

/// Left edge of a glyph in its cell.
f32 CNumBox_Base::GlyphLeft(f32 fScaled, f32 fRelativeWidth) const {
    // KEEP(profiles): the cell's width counts twice.
    const f32 fRoom = (m_fCellWidth - fRelativeWidth) * fScaled * m_fCellWidth;
    if (m_uAlign == g_uAlignRight) return fRoom;
    return m_uAlign == g_uAlignMiddle ? fRoom * 0.5f : 0;
}

/// Writes the text's quad of a glyph of the first cell.
void CNumBox_Base::BuildGlyph(u32 uGlyph, f32 fScaled) {
    const u32 uFirst = uGlyph * m_uVerticesPerGlyph + (m_bShadow ? g_uQuadVertices : 0);
    stTextVertex* const pQuad = g_fnVertexAt(m_pVertices.get(), uFirst);
    f32 u0, v0, z, u1, v1, fOffset, fWidth, fHeight;
    // What the font can't give, or has no ink, is as empty as a blank.
    if (IsBlank(m_wzCharset[uGlyph]) ||
        !m_pFont->m_fnGetCharInfo(m_wzCharset[uGlyph], &u0, &v0, &z, &u1, &v1, &fOffset, &fWidth, &fHeight) ||
        !(fHeight > 0)) {
        g_fnSetQuadRect(pQuad, {});
        m_fnSetQuadTex(pQuad, 0, 0, 0, 0);
        return;
    }
    const f32 fLeft = GlyphLeft(fScaled, fWidth);
    const f32 fBottom = fOffset * m_fTextSize + m_fTextSize;
    g_fnSetQuadRect(pQuad, {fLeft, fBottom - m_fTextSize * fHeight, fScaled * fWidth + fLeft, fBottom});
    m_fnSetQuadTex(pQuad, u0, v0, u1, v1);
}

/// Copies the text's quad of each glyph of the first cell to the place in front of it.
void CNumBox_Base::BuildShadows() {
    stTextVertex* pShadow = g_fnVertexAt(m_pVertices.get(), 0);
    for (u32 i = 0; i < m_uGlyphCount; ++i, pShadow += 2 * g_uQuadVertices) {
        std::memcpy(pShadow, pShadow + g_uQuadVertices, g_uQuadVertexBytes);
        g_fnMoveVertices(pShadow, g_uQuadVertices, g_fShadowOffset, g_fShadowOffset);
    }
}

void CNumBox_Base::ColorGlyphs(u32 uGlyphs) {
    stTextVertex* pQuad = g_fnVertexAt(m_pVertices.get(), 0);
    for (u32 i = 0; i < uGlyphs; ++i, pQuad += g_uQuadVertices) {
        if (m_bShadow) {
            g_fnColorVertices(pQuad, g_uQuadVertices, m_afShadowColor);
            pQuad += g_uQuadVertices;
        }
        g_fnColorVertices(pQuad, g_uQuadVertices, m_afTextColor);
    }
}

void CNumBox_Base::CopyCells(f32 fScaled) {
    const f32 fStep = fScaled * m_fCellWidth + m_fSpacingX;
    const u32 uVertices = m_uGlyphCount * m_uVerticesPerGlyph;
    stTextVertex* const pFirst = g_fnVertexAt(m_pVertices.get(), 0);
    for (u32 d = 1; d < g_uCellsBuilt; ++d) {
        std::memcpy(pFirst + d * uVertices, pFirst, uVertices * sizeof *pFirst);
        g_fnMoveVertices(pFirst + d * uVertices, uVertices, static_cast<f32>(d) * fStep, 0);
    }
}

bool CNumBox_Base::m_fnBuildGlyphs() {
    if (!m_pFont || !m_pVertices || !m_wzCharset) return false;
    const u32 uLayers = m_bShadow ? 2 : 1;
    m_uIndicesPerGlyph = g_uQuadIndices * uLayers;
    m_uVerticesPerGlyph = g_uQuadVertices * uLayers;
    m_uTrianglesPerGlyph = 2 * uLayers;
    const f32 fScaled = ScaledSize();
    for (u32 uGlyph = 0; uGlyph < m_uGlyphCount; ++uGlyph) BuildGlyph(uGlyph, fScaled);
    if (m_bShadow) BuildShadows();
    ColorGlyphs(m_uGlyphCount);
    m_fnExpandQuads();
    CopyCells(fScaled);
    return true;
}

bool CNumBox_Base::m_fnExpandQuads() {
    if (!m_pVertices) return false;
    g_fnExpandQuads(g_fnVertexAt(m_pVertices.get(), 0), m_uGlyphCount * (m_bShadow ? 2 : 1),
                    g_fnCellOf(m_pFont));
    return true;
}
