#pragma once
// The vertex buffer that all controls of a layout may share. The OpenGL flavour draws every control from a
// mesh of its own and never sets one up.
#include "base/slots.h"
#include "platform/types.h"

/// One shared buffer.
struct stSharedVertexBuffer {
    u8* m_pVertices = nullptr;
    u32 m_uBytes = 0;
};

/// By manager slot; null while a slot has none, which is always in this flavour.
extern stSharedVertexBuffer* g_apSharedVertexBuffer[g_uManagerSlots];

/// Copies the vertices of a control to a byte offset in the shared buffer of the current manager slot. Does
/// nothing where there is none; what would reach past the end is logged and skipped.
void g_fnUploadControlVertices(const void* pVertices, u32 u32VOffset, u32 u32VSize) noexcept;
