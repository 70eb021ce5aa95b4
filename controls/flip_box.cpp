#include "controls/flip_box.h"

#include "controls/code_points.h"
#include "draw/upload.h"
#include "font/font_unicode.h"

#include <algorithm>

CFlipBox_Base::CFlipBox_Base() : m_uGlyphTotal(0), m_uCurrentState(0) {
    m_uType = g_uTypeFlipBox;
    m_bAutoSize = true;
    m_mapStates.try_emplace(0);
    CFlipBox_Base::m_fnSelectState(0);
    m_fnSetPosition(0, 0, 0);
    CFlipBox_Base::m_fnSetTextColorF(0.5f, 0.5f, 0.5f, 1);
    m_fnSetSize(0, 0);
    m_uVertexBase = m_uIndexBase = 0;
}

CFlipBox_Base::~CFlipBox_Base() { CFlipBox_Base::m_fnRelease(); }

bool CFlipBox_Base::m_fnAllocBuffers() {
    m_uGlyphTotal = 0;
    for (const auto& [uState, state] : m_mapStates) {
        if (state.m_uGlyphCount > g_uGlyphsMax - m_uGlyphTotal) return false;
        m_uGlyphTotal += state.m_uGlyphCount;
    }
    m_uGlyphTotal = std::max(m_uGlyphTotal, 1u);
    const u32 uQuads = m_uGlyphTotal * (m_bShadow ? 2 : 1);
    m_uVertexBytes = uQuads * g_uQuadVertexBytes;
    m_uIndexBytes = uQuads * g_uQuadIndexBytes;
    return MakeTextArrays(uQuads);
}

bool CFlipBox_Base::m_fnCreateEntity() { return MakeEntity(); }

void CFlipBox_Base::m_fnRefreshVertices() {
    if (!HasArrays()) return;
    if (m_bLayoutDirty) m_fnLayoutAll();
    if (m_bPositionDirty) MoveOut(m_uVertexBytes, m_fPosX, m_fPosY);
    if (m_bColorDirty) {
        for (const auto& [uState, state] : m_mapStates) ColorState(state);
        CopyColorsOut(m_uVertexBytes);
    }
    m_bLayoutDirty = m_bPositionDirty = m_bColorDirty = false;
}

void CFlipBox_Base::m_fnFlush() {
    if (!HasArrays() || !IsDirty()) return;
    m_fnRefreshVertices();
    m_fnUploadMesh();
    g_fnUploadControlVertices(m_pVerticesOut.get(), m_uVertexBase * static_cast<u32>(sizeof(stTextVertex)),
                              m_uVertexBytes);
}

void CFlipBox_Base::ColorChanged() {
    m_bColorDirty = true;
    m_fnNoteChange();
    m_fnFlush();
}

void CFlipBox_Base::m_fnMarkPositionDirty() {
    m_bPositionDirty = true;
    m_fnFlush();
}

bool CFlipBox_Base::m_fnSelectState(u32 uState) {
    if (uState != 0 && uState >= m_mapStates.size()) return false;
    stFlipState& state = m_mapStates[uState];
    const bool bOther = uState != m_uCurrentState || m_uIndexCount != state.m_uIndexCount ||
                        !std::equal(m_afTextColor, m_afTextColor + 4, state.m_afColor);
    m_uCurrentState = uState;
    m_fTextWidth = state.m_fTextWidth;
    m_fTextHeight = state.m_fTextHeight;
    m_uIndexCount = state.m_uIndexCount;
    m_uTriangleCount = state.m_uTriangleCount;
    // KEEP(first version): this one goes the other way. Nothing counts on it until the next layout sets it
    // anew.
    state.m_uVertexCount = m_uVertexCount;
    std::copy_n(state.m_afColor, 4, m_afTextColor);
    m_fnSetSize(m_fTextWidth, m_fTextHeight);
    if (bOther) m_fnNoteChange();
    return true;
}

CFlipBox_Base::stShown CFlipBox_Base::m_fnShown() const {
    const auto it = m_mapStates.find(m_uCurrentState);
    const u32 uIndices = m_uIndexBytes / sizeof(u32);
    if (it == m_mapStates.end() || it->second.m_uIndexBase >= uIndices) return {0, 0};
    return {it->second.m_uIndexBase, std::min(m_uIndexCount, uIndices - it->second.m_uIndexBase)};
}

u32 CFlipBox_Base::m_fnGetCurrentState() { return m_uCurrentState; }
f32 CFlipBox_Base::m_fnGetTextWidth() { return m_fTextWidth; }

void CFlipBox_Base::m_fnSetFont(CFontUniCode* pFont) {
    if (pFont) m_pFont = pFont;
}

CFontUniCode* CFlipBox_Base::m_fnGetFont(CFontUniCode** ppOut) { return LoadFont(ppOut); }

void CFlipBox_Base::m_fnSetShadow(bool bShadow) {
    if (!m_pVertices) m_bShadow = bShadow;
}

void CFlipBox_Base::m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a) {
    g_fnStoreColorF(m_afTextColor, r, g, b, a);
    ColorChanged();
}

void CFlipBox_Base::m_fnSetTextColorF2(f32 r, f32 g, f32 b, f32 a) {
    CFlipBox_Base::m_fnSetTextColorF(r, g, b, a);
}

void CFlipBox_Base::m_fnDrawText(CDraw_Base*, const f32*, const f32*) {}

void CFlipBox_Base::m_fnRelease() {
    ReleaseText();
    m_uVertexBytes = m_uIndexBytes = 0;
    for (auto& [uState, state] : m_mapStates) {
        state.m_pCodePoints.reset();
        state.m_uTextLength = state.m_uGlyphCount = 0;
        state.m_uIndexCount = state.m_uVertexCount = state.m_uTriangleCount = 0;
    }
    m_fnNoteChange();
}

f32 CFlipBox_Base::m_fnGetLineStep() { return m_fLineStep; }

void CFlipBox_Base::m_fnOnMoved() {
    // The mesh stays as it is: the entity places it.
    if (m_pEntity) m_pEntity->m_fnSetPosition(m_fPosX, m_fPosY, m_fPosZ);
}

void CFlipBox_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawText(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afTextColor);
}

bool CFlipBox_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    return m_pFont && m_fnAllocBuffers() && m_fnLayoutAll() && m_fnCreateEntity() && m_fnCreateMesh() &&
           m_fnUploadMesh() && m_fnSelectState(m_uCurrentState);
}
