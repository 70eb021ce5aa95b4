#include "draw/shape_meshes.h"

#include "draw/creation_table.h"

constexpr u32 g_uShapeStride = sizeof(stShapeVertex);
constexpr u32 g_uRectVertices = 4, g_uRectIndices = 6;
constexpr u32 g_uFrameVertices = 8, g_uFrameIndices = 24;
constexpr u32 g_uBorderVertices = 24, g_uBorderIndices = 48;

static const u16 g_auRectIndices[g_uRectIndices] = {0, 1, 2, 0, 2, 3};
/// A frame uses the first 24.
static const u16 g_auBorderIndices[g_uBorderIndices] = {
    0, 1, 5,  0, 5,  4,  1,  2,  6,  1,  6,  5,  2,  3,  7,  2,  7,  6,  3,  0,  4,  3,  4,  7,
    8, 9, 10, 8, 10, 11, 12, 13, 14, 12, 14, 15, 16, 17, 18, 16, 18, 19, 20, 21, 22, 20, 22, 23};

/// Top-left, top-right, bottom-right, bottom-left, with the whole picture on it.
static void WriteQuad(stShapeVertex* pOut, f32 fLeft, f32 fTop, f32 fRight, f32 fBottom) {
    pOut[0] = {{fLeft, fTop}, {0.0f, 0.0f}};
    pOut[1] = {{fRight, fTop}, {1.0f, 0.0f}};
    pOut[2] = {{fRight, fBottom}, {1.0f, 1.0f}};
    pOut[3] = {{fLeft, fBottom}, {0.0f, 1.0f}};
}

/// Corner squares take one texel of a picture only.
static void WriteSquare(stShapeVertex* pOut, f32 fLeft, f32 fTop, f32 fRight, f32 fBottom) {
    WriteQuad(pOut, fLeft, fTop, fRight, fBottom);
    for (u32 i = 0; i < 4; ++i) pOut[i].m_afTex[0] = pOut[i].m_afTex[1] = 0.0f;
}

static void WriteRing(stShapeVertex* pOut, f32 w, f32 h, f32 e, f32 t) {
    WriteQuad(pOut, 0.0f - e, 0.0f - e, w + e, h + e); // not -e, which is a negative 0 without an outset
    WriteQuad(pOut + 4, t - e, t - e, w - t + e, h - t + e);
}

static void WriteCorners(stShapeVertex* pOut, f32 w, f32 h, f32 c) {
    WriteSquare(pOut, 0.0f, 0.0f, c, c);
    WriteSquare(pOut + 4, w - c, 0.0f, w, c);
    WriteSquare(pOut + 8, w - c, h - c, w, h);
    WriteSquare(pOut + 12, 0.0f, h - c, c, h);
}

/// A mesh that could not be set up is dropped, so that a later call tries again.
static bool AllocMesh(std::unique_ptr<CMesh_Base>& pMesh, u32 uStride, u32 uVertices, u32 uIndices) {
    if (pMesh) return true;
    if (g_stCreationTable.m_fnCreateMesh) pMesh.reset(g_stCreationTable.m_fnCreateMesh());
    if (!pMesh) return false;
    if (pMesh->m_fnCreate(uStride, uStride * uVertices, uIndices * static_cast<u32>(sizeof(u16)),
                          sizeof(u16)))
        return true;
    pMesh.reset();
    return false;
}

bool CRect_Mesh_Base::m_fnCreateExpanded(f32 w, f32 h, f32 e) {
    m_fWidth = w;
    m_fHeight = h;
    m_fOutset = e;
    if (!m_fnAllocMesh(g_uShapeStride)) return false;
    stShapeVertex aVertices[g_uRectVertices];
    WriteQuad(aVertices, 0.0f - e, 0.0f - e, w + e, h + e);
    return m_fnUpload(aVertices);
}

bool CRect_Mesh_Base::m_fnCreate(f32 w, f32 h) {
    m_fWidth = w;
    m_fHeight = h;
    if (!m_fnAllocMesh(g_uShapeStride)) return false;
    stShapeVertex aVertices[g_uRectVertices];
    WriteQuad(aVertices, 0.0f, 0.0f, w, h);
    return m_fnUpload(aVertices);
}

bool CRect_Mesh_Base::m_fnAllocMesh(u32 uStride) {
    return AllocMesh(m_pMesh, uStride, g_uRectVertices, g_uRectIndices);
}

bool CRect_Mesh_Base::m_fnUpload(const void* pVertices) {
    return m_pMesh && m_pMesh->m_fnUpload(pVertices, g_auRectIndices);
}

void CRect_Mesh_Base::m_fnBind() { m_pMesh->m_fnBind(); }

void CRect_Mesh_Base::m_fnDraw() {
    if (m_pMesh) m_pMesh->m_fnDraw(g_uRectIndices, 0, 0);
}

void CRect_Mesh_Base::m_fnReleaseMesh() { m_pMesh.reset(); }

bool CBorder_Mesh_Base::m_fnCreate(f32 w, f32 h, f32 e, f32 t, f32 c) {
    m_fWidth = w;
    m_fHeight = h;
    m_fOutset = e;
    m_fThickness = t;
    m_fCornerSize = c;
    if (!m_fnAllocMesh(g_uShapeStride)) return false;
    stShapeVertex aVertices[g_uBorderVertices];
    WriteRing(aVertices, w, h, e, t);
    WriteCorners(aVertices + g_uFrameVertices, w, h, c);
    return m_fnUpload(aVertices);
}

bool CBorder_Mesh_Base::m_fnAllocMesh(u32 uStride) {
    return AllocMesh(m_pMesh, uStride, g_uBorderVertices, g_uBorderIndices);
}

bool CBorder_Mesh_Base::m_fnUpload(const void* pVertices) {
    return m_pMesh && m_pMesh->m_fnUpload(pVertices, g_auBorderIndices);
}

void CBorder_Mesh_Base::m_fnBind() { m_pMesh->m_fnBind(); }

void CBorder_Mesh_Base::m_fnDraw() {
    if (m_pMesh) m_pMesh->m_fnDraw(g_uBorderIndices, 0, 0);
}

void CBorder_Mesh_Base::m_fnReleaseMesh() { m_pMesh.reset(); }

bool CFrame_Mesh_Base::m_fnCreate(f32 w, f32 h, f32 e, f32 t) {
    m_fWidth = w;
    m_fHeight = h;
    m_fOutset = e;
    m_fThickness = t;
    if (!m_fnAllocMesh(g_uShapeStride)) return false;
    stShapeVertex aVertices[g_uFrameVertices];
    WriteRing(aVertices, w, h, e, t);
    return m_fnUpload(aVertices);
}

bool CFrame_Mesh_Base::m_fnAllocMesh(u32 uStride) {
    return AllocMesh(m_pMesh, uStride, g_uFrameVertices, g_uFrameIndices);
}

bool CFrame_Mesh_Base::m_fnUpload(const void* pVertices) {
    return m_pMesh && m_pMesh->m_fnUpload(pVertices, g_auBorderIndices);
}

void CFrame_Mesh_Base::m_fnBind() { m_pMesh->m_fnBind(); }

void CFrame_Mesh_Base::m_fnDraw() {
    if (m_pMesh) m_pMesh->m_fnDraw(g_uFrameIndices, 0, 0);
}

void CFrame_Mesh_Base::m_fnReleaseMesh() { m_pMesh.reset(); }
