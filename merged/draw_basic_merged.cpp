#include "merged/draw_basic_merged.h"

#include "controls/control.h"
#include "controls/osd_manager.h"
#include "draw/backdrop.h"
#include "draw/first_draws.h"
#include "draw/shape_meshes.h"
#include "draw/texture_gl.h"
#include "merged/merged_programs.h"
#include "platform/gl_api.h"

#include <cstring>
#include <string>

CDrawBasic_Merged::~CDrawBasic_Merged() { CDrawBasic_Merged::m_fnRelease(); }

bool CDrawBasic_Merged::m_fnInitialize() {
    m_pProgramColor = g_fnBuildMergedProgram("DrawMerged_GL_C.vs", "DrawMerged_GL_C.fs");
    BuildBlurPrograms();
    m_pProgramColor->m_fnStopUsing();
    return true;
}

void CDrawBasic_Merged::BuildBlurPrograms() {
    m_uBlurProgramCount = 0;
    // KEEP(profiles): a diameter that is noted later, or a key that no diameter stands for, waits for another
    // batcher.
    for (const auto& [uDiameter, uPanels] : g_mapBlurDiameters) {
        if (uDiameter > g_uMaxBlurDiameter) break; // has no key, so nothing could be drawn with it
        const ShaderDefines defines = {{"_CIRCLE_BLUR_DIAMETER_", std::to_string(uDiameter)}};
        m_uBlurDiameters[m_uBlurProgramCount] = uDiameter;
        m_pProgramBlur[m_uBlurProgramCount] =
            g_fnBuildMergedProgram("DrawMerged_GL_Tex.vs", "DrawMerged_GL_CB.fs", &defines);
        ++m_uBlurProgramCount;
    }
}

void CDrawBasic_Merged::m_fnOnResize() {
    if (m_pProgramColor) g_fnSetMergedProjection(*m_pProgramColor);
    if (m_pProgramTexture) g_fnSetMergedProjection(*m_pProgramTexture);
    for (u32 i = 0; i < m_uBlurProgramCount; ++i)
        if (m_pProgramBlur[i]) g_fnSetMergedProjection(*m_pProgramBlur[i]);
}

void CDrawBasic_Merged::m_fnSetDrawConstants(const stDrawConstants* pConstants) {
    m_stConstants = *pConstants;
}

void CDrawBasic_Merged::m_fnSetWorld(const stDrawConstants* pConstants) {
    m_stConstants.m_pWorld = pConstants->m_pWorld;
}

void CDrawBasic_Merged::m_fnSetColor(const stDrawConstants* pConstants) {
    m_stConstants.m_pColor = pConstants->m_pColor;
}

void CDrawBasic_Merged::m_fnTakeDraw(const CMesh_Merged& mesh, u32 uCount, u32 uFirst) {
    // What is blended with an alpha of 0 changes no pixel. Frosted shapes are opaque whatever their colour's.
    if (m_uPass != g_uPassBlur && m_stConstants.m_pColor[3] == 0.0f) return;
    if (!mesh.m_pVertices || !mesh.m_pIndices || mesh.m_uVertexStride != sizeof(stShapeVertex)) return;
    const u32 uVertices = mesh.m_uVertexBytes / static_cast<u32>(sizeof(stShapeVertex));
    const u32 uIndices = mesh.m_uIndexBytes / static_cast<u32>(sizeof(u16));
    stEntry& st = m_stPlace;
    if (m_bMeasure) {
        // Room for the whole mesh: graphs and charts show a growing part of theirs.
        st.uVertexEnd += uVertices;
        st.uIndexEnd += uIndices;
        return;
    }
    if (uVertices > st.uVertexEnd - st.uVertex || uCount > st.uIndexEnd - st.uIndex) {
        m_bOverflow = true;
        return;
    }
    const f32 *pWorld = m_stConstants.m_pWorld, *pColor = m_stConstants.m_pColor;
    f32 afVertex[g_uMergedShapeFloats] = {0,         0,         pWorld[14], 1, pColor[0],
                                          pColor[1], pColor[2], pColor[3],  0, 0};
    for (u32 i = 0; i < uVertices; ++i) {
        stShapeVertex stVertex;
        std::memcpy(&stVertex, mesh.m_pVertices.get() + i * sizeof stVertex, sizeof stVertex);
        // One rounding, as in the product of world matrix and place.
        afVertex[0] = stVertex.m_afPos[0] + pWorld[12];
        afVertex[1] = stVertex.m_afPos[1] + pWorld[13];
        afVertex[8] = stVertex.m_afTex[0];
        afVertex[9] = stVertex.m_afTex[1];
        m_stream.m_fnPutVertex(st.uVertex + i, afVertex);
    }
    for (u32 i = 0; i < uCount; ++i) {
        u16 uIndex;
        std::memcpy(&uIndex, mesh.m_pIndices.get() + (uFirst + i) * sizeof uIndex, sizeof uIndex);
        m_stream.m_fnPutIndex(st.uIndex + i, st.uVertex + uIndex);
    }
    if (m_bPassOn) {
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(uCount), GL_UNSIGNED_INT,
                       reinterpret_cast<const void*>(std::uintptr_t{st.uIndex} * sizeof(u32)));
    }
    st.uVertex += uVertices;
    st.uIndex += uCount;
}

bool CDrawBasic_Merged::m_fnIsDrawing() const { return m_bPassOn; }

void CDrawBasic_Merged::m_fnNotePicture() { m_bPicture = true; }

void CDrawBasic_Merged::Ask(CControl& control) {
    g_pMergedSink = this;
    control.m_fnRender(this);
    g_pMergedSink = nullptr;
}

/// Gives each control of a list room for what it draws now.
void CDrawBasic_Merged::AddRun(DrawKey pKey, u32 uPass, const GLProgram* pProgram) {
    const ControlList* pList = g_pOSDManager ? g_pOSDManager->m_fnGetDrawList(pKey) : nullptr;
    if (!pList || pList->empty()) return;
    m_uPass = uPass;
    stRun run{pProgram, uPass, static_cast<u32>(m_aEntries.size()), 0, m_stPlace.uIndexEnd, 0, false};
    m_bPicture = false;
    for (CControl* pControl : *pList) {
        if (!pControl) continue;
        m_stPlace.pControl = pControl;
        m_stPlace.uVertex = m_stPlace.uVertexEnd;
        m_stPlace.uIndex = m_stPlace.uIndexEnd;
        Ask(*pControl);
        m_aEntries.push_back(m_stPlace);
    }
    run.uEntryEnd = static_cast<u32>(m_aEntries.size());
    run.uIndexEnd = m_stPlace.uIndexEnd;
    run.bPictures = m_bPicture;
    m_aRuns.push_back(run);
}

void CDrawBasic_Merged::LayOut() {
    m_bLaidOut = false;
    m_uListsSeen = g_uDrawListChanges;
    m_aEntries.clear();
    m_aRuns.clear();
    m_stPlace = {};
    m_bMeasure = true;
    for (u32 i = 0; i < m_uBlurProgramCount; ++i)
        AddRun(g_keyBlurByDiameter[m_uBlurDiameters[i]], g_uPassBlur, m_pProgramBlur[i].get());
    AddRun(g_keyColorList, g_uPassColor, m_pProgramColor.get());
    AddRun(g_keyTextureList, g_uPassTexture, nullptr);
    m_bMeasure = false;
    m_stream.m_fnReserve(m_stPlace.uVertexEnd, m_stPlace.uIndexEnd);
    for (stEntry& entry : m_aEntries) entry.pControl->m_bChanged = true;
    m_bLaidOut = true;
}

void CDrawBasic_Merged::Write(stEntry& entry) {
    entry.pControl->m_bChanged = false;
    m_stPlace = entry;
    Ask(*entry.pControl);
    // What is left of the room becomes triangles without an area.
    for (u32 u = m_stPlace.uIndex; u < entry.uIndexEnd; ++u) m_stream.m_fnPutIndex(u, entry.uVertex);
}

void CDrawBasic_Merged::WriteChanged() {
    m_bOverflow = false;
    m_uChangesSeen = g_uControlChanges;
    for (stRun& run : m_aRuns) {
        m_uPass = run.uPass;
        m_bPicture = run.bPictures;
        for (u32 u = run.uEntry; u < run.uEntryEnd; ++u)
            if (m_aEntries[u].pControl->m_bChanged) Write(m_aEntries[u]);
        run.bPictures = m_bPicture;
    }
}

void CDrawBasic_Merged::Update() {
    if (!m_bLaidOut || m_uListsSeen != g_uDrawListChanges) {
        LayOut();
        WriteChanged();
    } else if (m_uChangesSeen != g_uControlChanges) {
        WriteChanged();
    }
    // A control has outgrown its room. Measured now, all fit.
    if (m_bOverflow) {
        LayOut();
        WriteChanged();
    }
}

void CDrawBasic_Merged::m_fnRender() {
    Update();
    bool bBound = false, bBackdropBound = false;
    for (const stRun& run : m_aRuns) {
        if (run.uIndex == run.uIndexEnd && !run.bPictures) continue;
        if (run.uPass == g_uPassBlur && !g_bCaptureBackdrop) continue;
        if (!g_fnMayDraw(run.pProgram)) continue;
        if (!bBound) m_stream.m_fnBind();
        bBound = true;
        if (run.uPass == g_uPassTexture)
            DrawPictures(run);
        else
            Draw(run, bBackdropBound);
    }
    if (bBound) g_fnUnbindMergedStream();
}

/// All frosted shapes look through the same copy. Of its parameters, making the copy sets the border
/// otherwise each time.
void CDrawBasic_Merged::BindBackdrop() {
    static const GLfloat afBorder[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    g_fnActivateMergedUnit();
    glBindTexture(GL_TEXTURE_2D, g_uCopyTexture);
    if (m_uSampledCopy == g_uCopyTexture)
        glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, afBorder);
    else
        g_fnSetDrawSampling(GL_LINEAR);
    m_uSampledCopy = g_uCopyTexture;
}

void CDrawBasic_Merged::Draw(const stRun& run, bool& bBackdropBound) {
    run.pProgram->m_fnUse();
    if (run.uPass == g_uPassBlur && !bBackdropBound) BindBackdrop();
    bBackdropBound |= run.uPass == g_uPassBlur;
    glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(run.uIndexEnd - run.uIndex), GL_UNSIGNED_INT,
                   reinterpret_cast<const void*>(std::uintptr_t{run.uIndex} * sizeof(u32)));
}

/// Each picture binds a texture of its own, so each is a draw of its own.
void CDrawBasic_Merged::DrawPictures(const stRun& run) {
    if (!m_pProgramTexture)
        m_pProgramTexture = g_fnBuildMergedProgram("DrawMerged_GL_Tex.vs", "DrawMerged_GL_Tex.fs");
    m_pProgramTexture->m_fnUse();
    g_fnActivateMergedUnit();
    m_uPass = g_uPassTexture;
    m_bPassOn = true;
    m_uItemIndex = 0;
    for (u32 u = run.uEntry; u < run.uEntryEnd; ++u) {
        m_stPlace = m_aEntries[u];
        Ask(*m_aEntries[u].pControl);
        ++m_uItemIndex;
    }
    m_uItemIndex = 0;
    m_bPassOn = false;
}

void CDrawBasic_Merged::m_fnRelease() {
    m_pProgramColor.reset();
    m_pProgramTexture.reset();
    for (auto& pProgram : m_pProgramBlur) pProgram.reset();
    m_stream.m_fnRelease();
}

CDrawBasic_Base* CreateDrawBasic_Merged() { return new CDrawBasic_Merged; }
