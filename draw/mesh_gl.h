#pragma once
// Mesh of the OpenGL flavour. Every operation but m_fnCreate needs the context current.
#include "draw/mesh.h"

class CMesh_GL : public virtual CMesh_Base {
  public:
    bool m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u8 u8IndexSize) override;
    /// Makes the buffer names on first use.
    bool m_fnUpload(const void* pVertices, const void* pIndices) override;
    u32 m_fnGetVB() override;
    u32 m_fnGetIB() override;
    void m_fnBind() override;
    void m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32 uIgnored) override;
    void m_fnRelease() override;
    ~CMesh_GL() override;

    u32 m_uVB = 0;
    u32 m_uIB = 0;
    u32 m_uIndexType = 0; ///< GL_UNSIGNED_SHORT or GL_UNSIGNED_INT
};

/// Entry of the creation table; null when out of memory.
CMesh_Base* CreateMesh_GL();
