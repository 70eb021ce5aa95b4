#pragma once
// One vertex buffer and one index buffer, owned by the control that draws with them.
#include "draw/aligned_allocation.h"
#include "platform/types.h"

/// Sizes and index width; the buffers belong to the flavour. Render thread only.
class CMesh_Base : public CAlignedAllocationPolicy<int, 16> {
  public:
    CMesh_Base() = default;
    CMesh_Base(const CMesh_Base&) = delete;
    CMesh_Base& operator=(const CMesh_Base&) = delete;

    /// Stores stride, sizes in bytes and bytes an index (2 or 4). False, and nothing stored, for another
    /// width.
    virtual bool m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u8 u8IndexSize);
    /// Replaces the contents of both buffers as a whole; a null pointer leaves that buffer's contents alone.
    virtual bool m_fnUpload(const void* pVertices, const void* pIndices);
    /// Buffers can't be mapped: always null.
    virtual void* m_fnLockVertices();
    virtual void* m_fnLockIndices();
    /// Names of the buffers in the flavour's API; 0 before the first upload.
    virtual u32 m_fnGetVB();
    virtual u32 m_fnGetIB();
    virtual void m_fnBind();
    /// Draws triangles from the bound buffers; counts in indices.
    virtual void m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32 uIgnored);
    virtual void m_fnReserved8();
    /// Gives the buffers back; needs the context that made them.
    virtual void m_fnRelease();
    virtual ~CMesh_Base() = default;

    u32 m_uVertexStride = 0;
    u32 m_uVertexBytes = 0;
    u32 m_uIndexBytes = 0;
    u8 m_u8IndexSize = 0;
};
