#include "merged/draw_text_merged.h"

#include "controls/control.h"
#include "draw/glyph_quads.h"
#include "font/font_unicode.h"
#include "merged/merged_programs.h"
#include "platform/gl_api.h"

#include <algorithm>
#include <cstring>

/// Room that a control has at least, as far as its mesh reaches: numbers come and go in it, up to eight cells
/// with their shadows.
static constexpr u32 g_uLeastQuads = 16;

CDrawText_Merged::~CDrawText_Merged() { CDrawText_Merged::m_fnRelease(); }

bool CDrawText_Merged::m_fnInitialize() {
    ProgramInUse().m_fnStopUsing();
    return true;
}

/// Built when first asked for: few profiles change between the two.
const GLProgram& CDrawText_Merged::ProgramInUse() {
    KeptProgram& pProgram = g_bTextGlow ? m_pProgramGlow : m_pProgramText;
    if (!pProgram)
        pProgram = g_fnBuildMergedProgram("DrawMerged_GL_T.vs",
                                          g_bTextGlow ? "DrawMerged_GL_TG.fs" : "DrawMerged_GL_T.fs");
    return *pProgram;
}

void CDrawText_Merged::m_fnOnResize() {
    if (m_pProgramText) g_fnSetMergedProjection(*m_pProgramText);
    if (m_pProgramGlow) g_fnSetMergedProjection(*m_pProgramGlow);
}

void CDrawText_Merged::m_fnSetDrawConstants(const stDrawConstants* pConstants) {
    m_stConstants = *pConstants;
}

void CDrawText_Merged::m_fnSetWorld(const stDrawConstants* pConstants) {
    m_stConstants.m_pWorld = pConstants->m_pWorld;
}

void CDrawText_Merged::m_fnSetColor(const stDrawConstants* pConstants) {
    m_stConstants.m_pColor = pConstants->m_pColor;
}

void CDrawText_Merged::m_fnResetFontLists() {
    CDrawText_Base::m_fnResetFontLists();
    m_aEntries.clear();
    m_aRuns.clear();
    m_bLaidOut = false;
}

void CDrawText_Merged::m_fnTakeDraw(const CMesh_Merged& mesh, u32 uCount, u32 uFirst) {
    // What is blended with an alpha of 0 changes no pixel.
    if (m_stConstants.m_pColor[3] == 0.0f || mesh.m_uVertexStride != sizeof(stTextVertex)) return;
    CControl& control = *m_stPlace.pControl;
    const auto* const pVertices = static_cast<const u8*>(control.m_fnGetVertexData());
    const u32 uQuads = std::min(mesh.m_uVertexBytes, control.m_fnGetVertexBytes()) / g_uQuadVertexBytes;
    const u32 uQuad = uFirst / g_uQuadIndices, uEnd = uQuad + uCount / g_uQuadIndices;
    if (!pVertices || uEnd > uQuads) return;
    if (m_bMeasure) {
        m_uMeasuredQuads += uEnd - uQuad;
        m_stPlace.uQuadEnd = m_stPlace.uQuad + std::max(m_uMeasuredQuads, std::min(uQuads, g_uLeastQuads));
        return;
    }
    for (u32 u = uQuad; u < uEnd; ++u) TakeQuad(pVertices + std::size_t{u} * g_uQuadVertexBytes);
}

void CDrawText_Merged::TakeQuad(const void* pQuad) {
    if (m_stPlace.uQuad == m_stPlace.uQuadEnd) {
        m_bOverflow = true;
        return;
    }
    stTextVertex astVertices[g_uQuadVertices];
    std::memcpy(astVertices, pQuad, sizeof astVertices);
    const f32 *pWorld = m_stConstants.m_pWorld, *pColor = m_stConstants.m_pColor;
    for (u32 i = 0; i < g_uQuadVertices; ++i) {
        const stTextVertex& st = astVertices[i];
        // One rounding, as in the product of world matrix and place.
        const f32 afVertex[g_uMergedTextFloats] = {st.x + pWorld[12],
                                                   st.y + pWorld[13],
                                                   pWorld[14],
                                                   1,
                                                   pColor[0],
                                                   pColor[1],
                                                   pColor[2],
                                                   pColor[3],
                                                   st.u,
                                                   st.v,
                                                   st.r,
                                                   st.g,
                                                   st.b,
                                                   st.a};
        m_stream.m_fnPutVertex(m_stPlace.uQuad * g_uQuadVertices + i, afVertex);
    }
    ++m_stPlace.uQuad;
}

void CDrawText_Merged::Ask(CControl& control) {
    g_pMergedSink = this;
    control.m_fnRender(this);
    g_pMergedSink = nullptr;
}

void CDrawText_Merged::AddRun(u32 uFont) {
    stRun run{m_pFonts[uFont], m_stPlace.uQuadEnd, 0};
    for (u32 i = 0; i < m_uControlCounts[uFont]; ++i) {
        m_stPlace.pControl = m_pControls[uFont][i];
        m_stPlace.uQuad = m_stPlace.uQuadEnd;
        m_uMeasuredQuads = 0;
        Ask(*m_stPlace.pControl);
        m_aEntries.push_back(m_stPlace);
    }
    run.uQuadEnd = m_stPlace.uQuadEnd;
    m_aRuns.push_back(run);
}

void CDrawText_Merged::LayOut() {
    m_bLaidOut = false;
    m_aEntries.clear();
    m_aRuns.clear();
    m_stPlace = {};
    m_bMeasure = true;
    for (u32 i = 0; i < m_uFontCount; ++i)
        if (m_pFonts[i]) AddRun(i);
    m_bMeasure = false;
    const u32 uQuads = m_stPlace.uQuadEnd;
    m_stream.m_fnReserve(uQuads * g_uQuadVertices, uQuads * g_uQuadIndices);
    static constexpr u32 auCorner[g_uQuadIndices] = {0, 1, 2, 0, 2, 3};
    for (u32 u = 0; u < uQuads * g_uQuadIndices; ++u)
        m_stream.m_fnPutIndex(u, u / g_uQuadIndices * g_uQuadVertices + auCorner[u % g_uQuadIndices]);
    for (stEntry& entry : m_aEntries) entry.pControl->m_bChanged = true;
    m_bLaidOut = true;
}

void CDrawText_Merged::Write(stEntry& entry) {
    static constexpr f32 c_afNothing[g_uMergedTextFloats] = {};
    entry.pControl->m_bChanged = false;
    m_stPlace = entry;
    Ask(*entry.pControl);
    // What is left of the room becomes quads without an area.
    for (u32 u = m_stPlace.uQuad * g_uQuadVertices; u < entry.uQuadEnd * g_uQuadVertices; ++u)
        m_stream.m_fnPutVertex(u, c_afNothing);
}

void CDrawText_Merged::WriteChanged() {
    m_bOverflow = false;
    m_uChangesSeen = g_uControlChanges;
    for (stEntry& entry : m_aEntries)
        if (entry.pControl->m_bChanged) Write(entry);
}

void CDrawText_Merged::Update() {
    // KEEP(profiles): the lists are taken once. What is attached or detached later neither shows nor vanishes
    // until there is another batcher.
    if (!m_pFonts[0]) {
        m_fnBuildFontLists();
        m_bLaidOut = false;
    }
    if (!m_bLaidOut || m_uChangesSeen != g_uControlChanges) {
        if (!m_bLaidOut) LayOut();
        WriteChanged();
    }
    // A control has outgrown its room. Measured now, all fit.
    if (m_bOverflow) {
        LayOut();
        WriteChanged();
    }
}

void CDrawText_Merged::m_fnRender() {
    Update();
    bool bBound = false;
    for (const stRun& run : m_aRuns) {
        if (run.uQuad == run.uQuadEnd) continue;
        if (!bBound) {
            ProgramInUse().m_fnUse();
            m_stream.m_fnBind();
            g_fnActivateMergedUnit();
        }
        bBound = true;
        run.pFont->m_fnBindTexture(m_uTextureUnit);
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>((run.uQuadEnd - run.uQuad) * g_uQuadIndices),
                       GL_UNSIGNED_INT,
                       reinterpret_cast<const void*>(std::uintptr_t{run.uQuad} * g_uQuadIndexBytes));
    }
    if (bBound) g_fnUnbindMergedStream();
}

void CDrawText_Merged::m_fnRelease() {
    m_pProgramText.reset();
    m_pProgramGlow.reset();
    m_stream.m_fnRelease();
}

CDrawText_Base* CreateDrawText_Merged() { return new CDrawText_Merged; }
