#include "merged/mesh_merged.h"

#include <cstring>
#include <new>

CMergedSink* g_pMergedSink = nullptr;

bool CMesh_Merged::m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u8 u8IndexSize) {
    if (!CMesh_Base::m_fnCreate(uStride, uVertexBytes, uIndexBytes, u8IndexSize)) return false;
    m_fnRelease();
    return true;
}

static bool Keep(std::unique_ptr<u8[]>& pTo, const void* pFrom, u32 uBytes) {
    if (!pFrom) return true;
    if (!pTo) pTo.reset(new (std::nothrow) u8[uBytes]);
    if (pTo) std::memcpy(pTo.get(), pFrom, uBytes);
    return pTo != nullptr;
}

bool CMesh_Merged::m_fnUpload(const void* pVertices, const void* pIndices) {
    m_bVertices |= pVertices != nullptr;
    m_bIndices |= pIndices != nullptr;
    if (m_u8IndexSize != sizeof(u16)) return true;
    return Keep(m_pVertices, pVertices, m_uVertexBytes) && Keep(m_pIndices, pIndices, m_uIndexBytes);
}

void CMesh_Merged::m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32) {
    const u32 uIndices = m_u8IndexSize != 0 ? m_uIndexBytes / m_u8IndexSize : 0;
    if (!g_pMergedSink || !m_bVertices || !m_bIndices || uFirstIndex > uIndices) return;
    const u32 uLeft = uIndices - uFirstIndex;
    g_pMergedSink->m_fnTakeDraw(*this, uIndexCount < uLeft ? uIndexCount : uLeft, uFirstIndex);
}

void CMesh_Merged::m_fnRelease() {
    m_pVertices.reset();
    m_pIndices.reset();
    m_bVertices = m_bIndices = false;
}

CMesh_Base* CreateMesh_Merged() { return new CMesh_Merged; }
