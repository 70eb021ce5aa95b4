#include "draw/shape_meshes.h"

#include "draw/creation_table.h"

namespace {

constexpr u32 g_uStride = sizeof(stShapeVertex);

constexpr u16 g_aRectIndices[g_uRectIndexCount] = {0, 1, 2, 0, 2, 3};
constexpr u16 g_aFrameIndices[g_uFrameIndexCount] = {0, 1, 5, 0, 5, 4, 1, 2, 6, 1, 6, 5,
                                                     2, 3, 7, 2, 7, 6, 3, 0, 4, 3, 4, 7};
constexpr u16 g_aBorderIndices[g_uBorderIndexCount] = {
    0, 1, 5,  0, 5,  4,  1,  2,  6,  1,  6,  5,  2,  3,  7,  2,  7,  6,  3,  0,  4,  3,  4,  7, // ring
    8, 9, 10, 8, 10, 11, 12, 13, 14, 12, 14, 15, 16, 17, 18, 16, 18, 19, 20, 21, 22, 20, 22, 23};

/// Four corners of a box with the quad's texture coordinates.
void WriteQuad(stShapeVertex* pOut, f32 fLeft, f32 fTop, f32 fRight, f32 fBottom) {
    pOut[0] = {{fLeft, fTop}, {0, 0}};
    pOut[1] = {{fRight, fTop}, {1, 0}};
    pOut[2] = {{fRight, fBottom}, {1, 1}};
    pOut[3] = {{fLeft, fBottom}, {0, 1}};
}

/// A square of side c with texture coordinate 0 at every vertex.
void WriteSquare(stShapeVertex* pOut, f32 fLeft, f32 fTop, f32 fRight, f32 fBottom) {
    WriteQuad(pOut, fLeft, fTop, fRight, fBottom);
    for (u32 i = 0; i < 4; ++i) pOut[i].v2Tex0[0] = pOut[i].v2Tex0[1] = 0;
}

/// Outer, then inner ring. A thickness above half the size crosses over; nothing rejects it.
void WriteRing(stShapeVertex* pOut, f32 w, f32 h, f32 e, f32 t) {
    WriteQuad(pOut, -e, -e, w + e, h + e);
    WriteQuad(pOut + 4, t - e, t - e, w - t + e, h - t + e);
}

bool AllocMesh(std::unique_ptr<CMesh_Base>& pMesh, u32 uStride, u32 uVertices, u32 uIndices) {
    if (pMesh) return true;
    pMesh.reset(g_stCreationTable.m_fnCreateMesh ? g_stCreationTable.m_fnCreateMesh() : nullptr);
    return pMesh && pMesh->m_fnCreate(uStride, uStride * uVertices, uIndices * sizeof(u16), sizeof(u16));
}

i32 Upload(CMesh_Base* pMesh, const stShapeVertex* pVertices, const u16* pIndices) {
    return pMesh && pMesh->m_fnUpload(pVertices, pIndices) ? 1 : 0;
}

void Draw(CMesh_Base* pMesh, u32 uIndexCount) {
    if (pMesh) pMesh->m_fnDraw(uIndexCount, 0, 0);
}

} // namespace

bool CRect_Mesh_Base::m_fnCreateExpanded(f32 w, f32 h, f32 e) {
    m_fW = w;
    m_fH = h;
    m_fOutset = e;
    stShapeVertex aVertices[g_uRectVertexCount];
    WriteQuad(aVertices, -e, -e, w + e, h + e);
    return m_fnAllocMesh(g_uStride) && m_fnUpload(aVertices);
}

bool CRect_Mesh_Base::m_fnCreate(f32 w, f32 h) {
    m_fW = w;
    m_fH = h;
    stShapeVertex aVertices[g_uRectVertexCount];
    WriteQuad(aVertices, 0, 0, w, h);
    return m_fnAllocMesh(g_uStride) && m_fnUpload(aVertices);
}

bool CRect_Mesh_Base::m_fnAllocMesh(u32 uStride) {
    return AllocMesh(m_pMesh, uStride, g_uRectVertexCount, g_uRectIndexCount);
}
i32 CRect_Mesh_Base::m_fnUpload(const stShapeVertex* pVertices) {
    return Upload(m_pMesh.get(), pVertices, g_aRectIndices);
}
void CRect_Mesh_Base::m_fnBind() { m_pMesh->m_fnBind(); }
void CRect_Mesh_Base::m_fnDraw() { Draw(m_pMesh.get(), g_uRectIndexCount); }
void CRect_Mesh_Base::m_fnReleaseMesh() { m_pMesh.reset(); }

bool CBorder_Mesh_Base::m_fnCreate(f32 w, f32 h, f32 e, f32 t, f32 c) {
    m_fW = w;
    m_fH = h;
    m_fOutset = e;
    m_fThickness = t;
    m_fCornerSize = c;
    stShapeVertex aVertices[g_uBorderVertexCount];
    WriteRing(aVertices, w, h, e, t);
    WriteSquare(aVertices + 8, 0, 0, c, c);
    WriteSquare(aVertices + 12, w - c, 0, w, c);
    WriteSquare(aVertices + 16, w - c, h - c, w, h);
    WriteSquare(aVertices + 20, 0, h - c, c, h);
    return m_fnAllocMesh(g_uStride) && m_fnUpload(aVertices);
}

bool CBorder_Mesh_Base::m_fnAllocMesh(u32 uStride) {
    return AllocMesh(m_pMesh, uStride, g_uBorderVertexCount, g_uBorderIndexCount);
}
i32 CBorder_Mesh_Base::m_fnUpload(const stShapeVertex* pVertices) {
    return Upload(m_pMesh.get(), pVertices, g_aBorderIndices);
}
void CBorder_Mesh_Base::m_fnBind() { m_pMesh->m_fnBind(); }
void CBorder_Mesh_Base::m_fnDraw() { Draw(m_pMesh.get(), g_uBorderIndexCount); }
void CBorder_Mesh_Base::m_fnReleaseMesh() { m_pMesh.reset(); }

bool CFrame_Mesh_Base::m_fnCreate(f32 w, f32 h, f32 e, f32 t) {
    m_fW = w;
    m_fH = h;
    m_fOutset = e;
    m_fThickness = t;
    stShapeVertex aVertices[g_uFrameVertexCount];
    WriteRing(aVertices, w, h, e, t);
    return m_fnAllocMesh(g_uStride) && m_fnUpload(aVertices);
}

bool CFrame_Mesh_Base::m_fnAllocMesh(u32 uStride) {
    return AllocMesh(m_pMesh, uStride, g_uFrameVertexCount, g_uFrameIndexCount);
}
i32 CFrame_Mesh_Base::m_fnUpload(const stShapeVertex* pVertices) {
    return Upload(m_pMesh.get(), pVertices, g_aFrameIndices);
}
void CFrame_Mesh_Base::m_fnBind() { m_pMesh->m_fnBind(); }
void CFrame_Mesh_Base::m_fnDraw() { Draw(m_pMesh.get(), g_uFrameIndexCount); }
void CFrame_Mesh_Base::m_fnReleaseMesh() { m_pMesh.reset(); }
