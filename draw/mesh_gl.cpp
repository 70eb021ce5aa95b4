#include "draw/mesh_gl.h"

#include "draw/left_names.h"
#include "platform/gl_api.h"

bool CMesh_GL::m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u8 u8IndexSize) {
    if (!CMesh_Base::m_fnCreate(uStride, uVertexBytes, uIndexBytes, u8IndexSize)) return false;
    m_uIndexType = u8IndexSize == 2 ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT;
    return true;
}

/// Contents change rarely or wholly, so the usage hint is the same for all.
static void Fill(GLenum eTarget, u32* puName, u32 uBytes, const void* pData) {
    if (*puName == 0) glGenBuffers(1, puName);
    if (!pData) return;
    glBindBuffer(eTarget, *puName);
    glBufferData(eTarget, uBytes, pData, GL_STATIC_DRAW);
    glBindBuffer(eTarget, 0);
}

bool CMesh_GL::m_fnUpload(const void* pVertices, const void* pIndices) {
    Fill(GL_ARRAY_BUFFER, &m_uVB, m_uVertexBytes, pVertices);
    Fill(GL_ELEMENT_ARRAY_BUFFER, &m_uIB, m_uIndexBytes, pIndices);
    return true;
}

u32 CMesh_GL::m_fnGetVB() { return m_uVB; }

u32 CMesh_GL::m_fnGetIB() { return m_uIB; }

void CMesh_GL::m_fnBind() {
    glBindBuffer(GL_ARRAY_BUFFER, m_uVB);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_uIB);
}

void CMesh_GL::m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32) {
    // Buffer name 0 means nothing to draw. Where the profile has client arrays it would mean addresses near
    // null in the application's memory, and drivers crash on those.
    if (m_uVB == 0 || m_uIB == 0) return;
    const std::uintptr_t uOffset = static_cast<std::uintptr_t>(uFirstIndex) * m_u8IndexSize;
    // KEEP(first version): the range is given in index positions, not vertex numbers; it only bounds what a
    // driver may assume.
    glDrawRangeElements(GL_TRIANGLES, uFirstIndex, uFirstIndex + uIndexCount,
                        static_cast<GLsizei>(uIndexCount), m_uIndexType,
                        reinterpret_cast<const void*>(uOffset));
}

static void Delete(u32* puName) {
    if (*puName != 0) g_fnDeleteName(NAMES_BUFFERS, *puName);
    *puName = 0;
}

void CMesh_GL::m_fnRelease() {
    Delete(&m_uVB);
    Delete(&m_uIB);
    m_uIndexType = 0;
}

CMesh_GL::~CMesh_GL() { CMesh_GL::m_fnRelease(); }

CMesh_Base* CreateMesh_GL() { return new CMesh_GL; }
