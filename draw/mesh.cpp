#include "draw/mesh.h"

bool CMesh_Base::m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u32 uIndexSize) {
    if (uIndexSize != 2 && uIndexSize != 4) return false;
    m_uVertexStride = uStride;
    m_uVertexBytes = uVertexBytes;
    m_uIndexBytes = uIndexBytes;
    m_u8IndexSize = static_cast<u8>(uIndexSize);
    return true;
}

bool CMesh_Base::m_fnUpload(const void*, const void*) { return true; }
i32 CMesh_Base::m_fnLockVertices() { return 0; }
i32 CMesh_Base::m_fnLockIndices() { return 0; }
u32 CMesh_Base::m_fnGetVB() { return 0; }
u32 CMesh_Base::m_fnGetIB() { return 0; }
void CMesh_Base::m_fnBind() {}
void CMesh_Base::m_fnDraw(u32, u32, u32) {}
void CMesh_Base::m_fnReserved8() {}
void CMesh_Base::m_fnRelease() {}
