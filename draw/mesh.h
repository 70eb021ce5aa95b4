#pragma once
// One vertex buffer and one index buffer.
#include "draw/aligned_allocation.h"
#include "platform/types.h"

class CMesh_Base : public CAlignedAllocationPolicy<int, 16> {
  public:
    CMesh_Base() = default;
    CMesh_Base(const CMesh_Base&) = delete;
    CMesh_Base& operator=(const CMesh_Base&) = delete;

    /// Stores the sizes in bytes. False, with nothing stored, unless an index has 2 or 4 bytes.
    virtual bool m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u32 uIndexSize);
    /// Replaces whole buffers from memory of the stored sizes; a null pointer leaves that buffer's contents.
    virtual bool m_fnUpload(const void* pVertices, const void* pIndices);
    virtual i32 m_fnLockVertices();
    virtual i32 m_fnLockIndices();
    virtual u32 m_fnGetVB();
    virtual u32 m_fnGetIB();
    virtual void m_fnBind();
    /// Draws uIndexCount indices as triangles, from index uFirstIndex on.
    virtual void m_fnDraw(u32 uIndexCount, u32 uFirstIndex, u32 uIgnored);
    virtual void m_fnReserved8();
    virtual void m_fnRelease();
    virtual ~CMesh_Base() = default;

    u32 m_uVertexStride = 0;
    u32 m_uVertexBytes = 0;
    u32 m_uIndexBytes = 0;
    u8 m_u8IndexSize = 0;
};
