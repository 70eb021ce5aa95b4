#include "draw/mesh.h"

bool CMesh_Base::m_fnCreate(u32 uStride, u32 uVertexBytes, u32 uIndexBytes, u8 u8IndexSize) {
    if (u8IndexSize != 2 && u8IndexSize != 4) return false;
    m_uVertexStride = uStride;
    m_uVertexBytes = uVertexBytes;
    m_uIndexBytes = uIndexBytes;
    m_u8IndexSize = u8IndexSize;
    return true;
}

bool CMesh_Base::m_fnUpload(const void*, const void*) { return true; }

void* CMesh_Base::m_fnLockVertices() { return nullptr; }

void* CMesh_Base::m_fnLockIndices() { return nullptr; }

u32 CMesh_Base::m_fnGetVB() { return 0; }

u32 CMesh_Base::m_fnGetIB() { return 0; }

void CMesh_Base::m_fnBind() {}

void CMesh_Base::m_fnDraw(u32, u32, u32) {}

void CMesh_Base::m_fnReserved8() {}

void CMesh_Base::m_fnRelease() {}
