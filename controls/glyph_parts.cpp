#include "controls/glyph_parts.h"

#include "draw/creation_table.h"

#include <algorithm>
#include <cstring>
#include <new>

bool CGlyphParts::MakeArrays(u32 uQuads) {
    const u32 uFloats = uQuads * g_uQuadVertices * g_uTextVertexFloats;
    m_pVertices.reset(new (std::nothrow) f32[uFloats]());
    m_pIndices.reset(new (std::nothrow) u32[uQuads * g_uQuadIndices]());
    const std::size_t uBytes = std::size_t{uFloats} * sizeof(f32);
    m_pVerticesOut = {reinterpret_cast<f32*>(platform::AllocatePages(uBytes)), {uBytes}};
    if (!m_pVertices || !m_pIndices || !m_pVerticesOut) return false;
    g_fnWriteQuadIndices(m_pIndices.get(), uQuads);
    return true;
}

bool CGlyphParts::MakeMesh(u32 uVertexBytes, u32 uIndexBytes) {
    m_pMesh.reset(g_stCreationTable.m_fnCreateMesh ? g_stCreationTable.m_fnCreateMesh() : nullptr);
    return m_pMesh && m_pMesh->m_fnCreate(sizeof(stTextVertex), uVertexBytes, uIndexBytes, sizeof(u32));
}

bool CGlyphParts::FillMesh() { return m_pMesh && m_pMesh->m_fnUpload(m_pVertices.get(), m_pIndices.get()); }

CFontUniCode* CGlyphParts::LoadFont(CFontUniCode** ppOut) const {
    if (ppOut) *ppOut = m_pFont;
    return m_pFont;
}

void CGlyphParts::ReleaseGlyphs() {
    m_pVertices.reset();
    m_pIndices.reset();
    m_pVerticesOut.reset();
    m_pMesh.reset();
}

bool CTextParts::MakeTextArrays(u32 uQuads) {
    const u32 uIndices = uQuads * g_uQuadIndices;
    // KEEP(profiles): as many entries as the indices have bytes, four times what is used.
    m_pIndicesOut.reset(new (std::nothrow) u32[uQuads * g_uQuadIndexBytes]());
    if (!MakeArrays(uQuads) || !m_pIndicesOut) return false;
    std::copy_n(m_pIndices.get(), uIndices, m_pIndicesOut.get());
    return true;
}

bool CTextParts::MakeEntity() {
    m_pEntity.reset(g_stCreationTable.m_fnCreateEntity ? g_stCreationTable.m_fnCreateEntity() : nullptr);
    return m_pEntity != nullptr;
}

void CTextParts::MoveOut(u32 uVertexBytes, f32 x, f32 y) {
    std::memcpy(m_pVerticesOut.get(), m_pVertices.get(), uVertexBytes);
    g_fnMoveVertices(g_fnVertexAt(m_pVerticesOut.get(), 0), uVertexBytes / sizeof(stTextVertex), x, y);
}

void CTextParts::CopyColorsOut(u32 uVertexBytes) {
    g_fnCopyColors(g_fnVertexAt(m_pVerticesOut.get(), 0), g_fnVertexAt(m_pVertices.get(), 0),
                   uVertexBytes / sizeof(stTextVertex));
}

void CTextParts::ReleaseText() {
    ReleaseGlyphs();
    m_pIndicesOut.reset();
    m_pEntity.reset();
    m_pShadowEntity.reset();
}
