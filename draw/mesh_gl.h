#pragma once
#include "draw/mesh.h"

/// Mesh in GL buffers. The context that made them must be current at release.
class CMesh_GL : public virtual CMesh_Base {
  public:
    CMesh_GL() = default;
    ~CMesh_GL() override;

    bool m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u32 uIndexSize) override;
    bool m_fnUpload(const void* pVertices, const void* pIndices) override;
    u32 m_fnGetVB() override;
    u32 m_fnGetIB() override;
    void m_fnBind() override;
    void m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32 uIgnored) override;
    void m_fnRelease() override;

    u32 m_uVB = 0, m_uIB = 0;
    u32 m_uIndexType = 0;
};

/// Entry of the creation table; null when memory runs out.
CMesh_Base* CreateMesh_GL();
