#include "draw/mesh_gl.h"

#include "platform/gl_api.h"
#include "platform/surface.h"

CMesh_GL::~CMesh_GL() { CMesh_GL::m_fnRelease(); }

bool CMesh_GL::m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u32 uIndexSize) {
    if (!CMesh_Base::m_fnCreate(uStride, uVertexBytes, uIndexBytes, uIndexSize)) return false;
    m_uIndexType = uIndexSize == 2 ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT;
    return true;
}

/// Makes the name on first use and replaces the contents, if there are any.
static void FillBuffer(u32 uTarget, u32& uName, const void* pData, u32 uBytes) {
    if (!uName) glGenBuffers(1, &uName);
    if (!pData) return;
    glBindBuffer(uTarget, uName);
    glBufferData(uTarget, uBytes, pData, GL_STATIC_DRAW);
    glBindBuffer(uTarget, 0);
}

bool CMesh_GL::m_fnUpload(const void* pVertices, const void* pIndices) {
    FillBuffer(GL_ARRAY_BUFFER, m_uVB, pVertices, m_uVertexBytes);
    FillBuffer(GL_ELEMENT_ARRAY_BUFFER, m_uIB, pIndices, m_uIndexBytes);
    return true;
}

u32 CMesh_GL::m_fnGetVB() { return m_uVB; }
u32 CMesh_GL::m_fnGetIB() { return m_uIB; }

void CMesh_GL::m_fnBind() {
    glBindBuffer(GL_ARRAY_BUFFER, m_uVB);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_uIB);
}

// KEEP: the range arguments are index positions, not vertex numbers; they only bound what a driver may
// assume.
void CMesh_GL::m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32) {
    const std::size_t uOffset = static_cast<std::size_t>(uFirstIndex) * m_u8IndexSize;
    glDrawRangeElements(GL_TRIANGLES, uFirstIndex, uFirstIndex + uIndexCount,
                        static_cast<GLsizei>(uIndexCount), m_uIndexType,
                        reinterpret_cast<const void*>(uOffset));
}

// Without a current context (at unload) the names died with theirs.
void CMesh_GL::m_fnRelease() {
    const bool bContext = platform::CurrentContext() != nullptr;
    if (m_uVB && bContext) glDeleteBuffers(1, &m_uVB);
    if (m_uIB && bContext) glDeleteBuffers(1, &m_uIB);
    m_uVB = m_uIB = m_uIndexType = 0;
}

CMesh_Base* CreateMesh_GL() { return new CMesh_GL; }
