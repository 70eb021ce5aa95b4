// From code points to quads: the layout pass of a text box.
#include "controls/code_points.h"
#include "controls/glyph_box.h"
#include "controls/text_box.h"

#include <cstring>

namespace {

/// One pass over the text of a box: a pen that moves right and from line to line.
class LayoutPass {
  public:
    LayoutPass(CTextBox_Base& box, bool bClip, f32 fStartX)
        : m_box(box), m_bClip(bClip && box.m_bAutoSize), m_fStartX(fStartX),
          m_fStep(box.m_fTextSize + box.m_fSpacingY), m_fPenX(0), m_fLineY(box.m_fTextSize),
          m_uQuad(box.m_bShadow ? box.m_uGlyphCapacity : 0),
          m_uQuadEnd(box.m_bShadow ? box.m_uGlyphCapacity * 2 : box.m_uGlyphCapacity) {
        box.m_fTextWidth = box.m_bAutoSize ? 0 : box.m_fSizeW;
        box.m_fTextHeight = box.m_fTextSize;
        box.m_fLineStep = m_fStep;
    }
    void Take(u32 uCode) {
        if (uCode == '\r') return;
        if (uCode == '\n')
            BreakLine();
        else
            Place(uCode == '\t' ? g_uIdeographicSpace : uCode, !g_fnTakesOnlySpace(uCode));
    }

  private:
    void BreakLine() {
        m_fLineY += m_fStep;
        m_box.m_fLineStep += m_fStep; // KEEP(profiles): the step between lines grows with each of them
        m_box.m_fTextHeight += m_fStep;
        m_fPenX = 0;
    }
    bool IsInWindow(f32 x) const { return x >= 0 && x <= m_box.m_fClipWidth; }
    bool Shows(const stGlyphBox& st) const {
        return IsInWindow(m_fPenX + m_fStartX) && IsInWindow(st.fWidth + m_fPenX + m_fStartX);
    }
    void Place(u32 uCode, bool bQuad) {
        stGlyphBox st;
        if (!g_fnAskGlyph(*m_box.m_pFont, uCode, m_box.m_fTextSize, st)) return;
        const bool bOverflow = st.fWidth + m_fPenX > m_box.m_fTextWidth;
        // KEEP(profiles): a hidden glyph has no width, so the pen moves by the spacing alone.
        if (m_bClip && !Shows(st)) st = {};
        if (bOverflow && m_box.m_bAutoSize) m_box.m_fTextWidth = st.fWidth + m_fPenX;
        // KEEP(profiles): also where the glyph stands first, which leaves an empty line.
        if (bOverflow && !m_box.m_bAutoSize) BreakLine();
        if (bQuad) Write(st);
        m_fPenX += st.fWidth + m_box.m_fSpacingX;
    }
    /// Glyphs beyond the room take their space only.
    void Write(const stGlyphBox& st) {
        if (m_uQuad >= m_uQuadEnd) return;
        g_fnPutGlyph(g_fnVertexAt(m_box.m_pVertices.get(), m_uQuad++ * g_uQuadVertices), st, m_fPenX,
                     m_fLineY);
    }

    CTextBox_Base& m_box;
    const bool m_bClip;
    const f32 m_fStartX;
    const f32 m_fStep;
    f32 m_fPenX, m_fLineY;
    u32 m_uQuad;
    const u32 m_uQuadEnd;
};

} // namespace

/// Where the text's left edge falls inside the clip window.
f32 CTextBox_Base::ClipStart() const {
    if (m_iAnchorCode == 7) return m_fAnchorX;
    if (m_iAnchorCode == 8) return (m_fClipWidth - m_fTextWidth) * 0.5f + m_fAnchorX;
    if (m_iAnchorCode == 9) return m_fClipWidth - m_fTextWidth - m_fAnchorX;
    return 0;
}

bool CTextBox_Base::m_fnBuildText() {
    if (!m_fnLayoutGlyphs(m_bFitToText, true, m_fClipWidth)) return false;
    // KEEP(profiles): the start serves the clip test alone; it never moves a quad.
    return m_bFitToText || m_fnLayoutGlyphs(true, false, ClipStart());
}

bool CTextBox_Base::m_fnLayoutGlyphs(bool bApplySize, bool bNoClip, f32 fStartX) {
    if (!m_pFont || !m_pVertices || !m_pCodePoints) return false;
    LayoutPass pass(*this, !bNoClip, fStartX);
    for (const u32* pCode = m_pCodePoints.get(); *pCode; ++pCode) pass.Take(*pCode);
    if (m_bShadow) BuildShadow();
    ColorLayers();
    const u32 uQuads = m_uGlyphCapacity * (m_bShadow ? 2 : 1);
    m_uIndexCount = uQuads * g_uQuadIndices;
    m_uVertexCount = uQuads * g_uQuadVertices;
    m_uTriangleCount = uQuads * 2;
    // KEEP(profiles): quads that the text did not reach keep what they held, and grow once more.
    m_fnExpandQuads();
    if (bApplySize) m_fnSetSize(m_fTextWidth, m_fTextHeight);
    return true;
}

/// The shadow's quads come first, so that they lie under the text's.
void CTextBox_Base::BuildShadow() {
    const u32 uVertices = m_uGlyphCapacity * g_uQuadVertices;
    stTextVertex* const pShadow = g_fnVertexAt(m_pVertices.get(), 0);
    std::memcpy(pShadow, pShadow + uVertices, uVertices * sizeof *pShadow);
    // KEEP(profiles): one canvas unit, whatever the text size; authors of profiles are told so.
    g_fnMoveVertices(pShadow, uVertices, g_fShadowOffset, g_fShadowOffset);
}

void CTextBox_Base::ColorLayers() {
    const u32 uVertices = m_uGlyphCapacity * g_uQuadVertices;
    stTextVertex* pLayer = g_fnVertexAt(m_pVertices.get(), 0);
    if (m_bShadow) {
        g_fnColorVertices(pLayer, uVertices, m_afShadowColor);
        pLayer += uVertices;
    }
    g_fnColorVertices(pLayer, uVertices, m_afTextColor);
}
