#include "controls/flip_box.h"

#include "controls/code_points.h"
#include "draw/creation_table.h"
#include "draw/upload.h"
#include "font/font_unicode.h"

#include <algorithm>
#include <cstring>
#include <new>

CFlipBox_Base::CFlipBox_Base()
    : m_uGlyphTotal(0), m_uTextSet(0), m_uIndexCount(0), m_uVertexCount(0), m_uTriangleCount(0),
      m_fTextWidth(0), m_fTextHeight(0), m_pFont(nullptr), m_fLineStep(0), m_uCurrentState(0) {
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
    const u32 uFloats = m_uVertexBytes / sizeof(f32);
    m_pVertices.reset(new (std::nothrow) f32[uFloats]());
    m_pIndices.reset(new (std::nothrow) u32[m_uIndexBytes / sizeof(u32)]());
    m_pVerticesOut.reset(new (std::nothrow) f32[uFloats]());
    // KEEP(profiles): as many entries as m_uIndexBytes says bytes, four times what is used.
    m_pIndicesOut.reset(new (std::nothrow) u32[m_uIndexBytes]());
    if (!m_pVertices || !m_pIndices || !m_pVerticesOut || !m_pIndicesOut) return false;
    g_fnWriteQuadIndices(m_pIndices.get(), uQuads);
    std::memcpy(m_pIndicesOut.get(), m_pIndices.get(), m_uIndexBytes);
    return true;
}

bool CFlipBox_Base::m_fnCreateEntity() {
    m_pEntity.reset(g_stCreationTable.m_fnCreateEntity ? g_stCreationTable.m_fnCreateEntity() : nullptr);
    return m_pEntity != nullptr;
}

bool CFlipBox_Base::m_fnCreateMesh() {
    m_pMesh.reset(g_stCreationTable.m_fnCreateMesh ? g_stCreationTable.m_fnCreateMesh() : nullptr);
    return m_pMesh && m_pMesh->m_fnCreate(sizeof(stTextVertex), m_uVertexBytes, m_uIndexBytes, sizeof(u32));
}

bool CFlipBox_Base::m_fnUploadMesh() {
    m_fnNoteChange();
    return m_pMesh && m_pMesh->m_fnUpload(m_pVertices.get(), m_pIndices.get());
}

void CFlipBox_Base::m_fnSetQuadTex(stTextVertex* pQuad, f32 u0, f32 v0, f32 u1, f32 v1) {
    g_fnSetQuadTexture(pQuad, u0, v0, u1, v1);
}

void CFlipBox_Base::m_fnRefreshVertices() {
    if (!m_pVertices || !m_pVerticesOut) return;
    const u32 uVertices = m_uVertexBytes / sizeof(stTextVertex);
    stTextVertex* const pIn = g_fnVertexAt(m_pVertices.get(), 0);
    stTextVertex* const pOut = g_fnVertexAt(m_pVerticesOut.get(), 0);
    if (m_bLayoutDirty) m_fnLayoutAll();
    if (m_bPositionDirty) {
        std::memcpy(pOut, pIn, m_uVertexBytes);
        g_fnMoveVertices(pOut, uVertices, m_fPosX, m_fPosY);
    }
    if (m_bColorDirty) {
        for (const auto& [uState, state] : m_mapStates) ColorState(state);
        g_fnCopyColors(pOut, pIn, uVertices);
    }
    m_bLayoutDirty = m_bPositionDirty = m_bColorDirty = false;
}

void CFlipBox_Base::m_fnFlush() {
    if (!m_pVertices || !m_pVerticesOut) return;
    if (!IsDirty()) return;
    m_fnRefreshVertices();
    m_fnUploadMesh();
    g_fnUploadControlVertices(m_pVerticesOut.get(), m_uVertexBase * static_cast<u32>(sizeof(stTextVertex)),
                              m_uVertexBytes);
}

void CFlipBox_Base::MarkColorDirty() {
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

CFontUniCode* CFlipBox_Base::m_fnGetFont(CFontUniCode** ppOut) {
    if (ppOut) *ppOut = m_pFont;
    return m_pFont;
}

void CFlipBox_Base::m_fnSetShadow(bool bShadow) {
    if (!m_pVertices) m_bShadow = bShadow;
}

void CFlipBox_Base::m_fnSetTextColorF(f32 r, f32 g, f32 b, f32 a) {
    g_fnStoreColorF(m_afTextColor, r, g, b, a);
    MarkColorDirty();
}

void CFlipBox_Base::m_fnSetTextColor(u32 uRGB, u8 a) {
    g_fnStoreColor(m_afTextColor, uRGB, a);
    MarkColorDirty();
}

void CFlipBox_Base::m_fnSetTextColorB(u8 r, u8 g, u8 b, u8 a) {
    g_fnStoreColorB(m_afTextColor, r, g, b, a);
    MarkColorDirty();
}

void CFlipBox_Base::m_fnSetTextColorF2(f32 r, f32 g, f32 b, f32 a) {
    CFlipBox_Base::m_fnSetTextColorF(r, g, b, a);
}

void CFlipBox_Base::m_fnSetShadowColor(u32 uRGB, u8 a) {
    g_fnStoreColor(m_afShadowColor, uRGB, a);
    MarkColorDirty();
}

void CFlipBox_Base::m_fnSetShadowColorB(u8 r, u8 g, u8 b, u8 a) {
    g_fnStoreColorB(m_afShadowColor, r, g, b, a);
    MarkColorDirty();
}

void CFlipBox_Base::m_fnSetShadowColorF(f32 r, f32 g, f32 b, f32 a) {
    g_fnStoreColorF(m_afShadowColor, r, g, b, a);
    MarkColorDirty();
}

void CFlipBox_Base::m_fnGetTextColor(f32* pR, f32* pG, f32* pB, f32* pA) {
    g_fnLoadColor(m_afTextColor, pR, pG, pB, pA);
}

void CFlipBox_Base::m_fnGetShadowColor(f32* pR, f32* pG, f32* pB, f32* pA) {
    g_fnLoadColor(m_afShadowColor, pR, pG, pB, pA);
}

void CFlipBox_Base::m_fnSetTextSize(f32 fSize) {
    StoreTextSize(fSize);
    m_fnFlush();
}

f32 CFlipBox_Base::m_fnGetTextSize(f32* pOut) { return LoadTextSize(pOut); }

void CFlipBox_Base::m_fnSetSpacing(f32 x, f32 y) {
    StoreSpacing(x, y);
    m_fnFlush();
}

void CFlipBox_Base::m_fnGetSpacing(f32* pX, f32* pY) { LoadSpacing(pX, pY); }

void CFlipBox_Base::m_fnDrawText(CDraw_Base*, const f32*, const f32*) {}

void CFlipBox_Base::m_fnRelease() {
    m_pVertices.reset();
    m_pIndices.reset();
    m_pVerticesOut.reset();
    m_pIndicesOut.reset();
    m_uVertexBytes = m_uIndexBytes = 0;
    for (auto& [uState, state] : m_mapStates) {
        state.m_pCodePoints.reset();
        state.m_uTextLength = state.m_uGlyphCount = 0;
        state.m_uIndexCount = state.m_uVertexCount = state.m_uTriangleCount = 0;
    }
    m_pEntity.reset();
    m_pShadowEntity.reset();
    m_pMesh.reset();
    m_fnNoteChange();
}

f32 CFlipBox_Base::m_fnGetLineStep() { return m_fLineStep; }

void* CFlipBox_Base::m_fnGetVertexData() { return m_pVertices.get(); }
void* CFlipBox_Base::m_fnGetIndexData() { return m_pIndices.get(); }

void CFlipBox_Base::m_fnOnMoved() {
    // The mesh stays as it is: the entity places it.
    if (m_pEntity) m_pEntity->m_fnSetPosition(m_fPosX, m_fPosY, m_fPosZ);
}

const void* CFlipBox_Base::m_fnGetDrawKey() { return m_pFont; }

void CFlipBox_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawText(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afTextColor);
}

bool CFlipBox_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    return m_pFont && m_fnAllocBuffers() && m_fnLayoutAll() && m_fnCreateEntity() && m_fnCreateMesh() &&
           m_fnUploadMesh() && m_fnSelectState(m_uCurrentState);
}
