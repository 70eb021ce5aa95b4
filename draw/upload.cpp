#include "draw/upload.h"

#include "base/log.h"
#include "base/slots.h"

#include <cstring>

stSharedVertexBuffer* g_apSharedVertexBuffer[g_uManagerSlots] = {};

void g_fnUploadControlVertices(const void* pVertices, u32 u32VOffset, u32 u32VSize) noexcept {
    // KEEP(first version): no slot ever gets a shared buffer in this flavour; every control ends here after
    // each build.
    stSharedVertexBuffer* pBuffer = g_apSharedVertexBuffer[g_uManagerSlot];
    if (!pBuffer) return;
    const u32 uTotal_VB_Size = pBuffer->m_uBytes;
    if (u32VOffset > uTotal_VB_Size || u32VSize > uTotal_VB_Size - u32VOffset) {
        g_fnLog("(u32VOffset + u32VSize) > uTotal_VB_Size");
        return;
    }
    if (pVertices) std::memcpy(pBuffer->m_pVertices + u32VOffset, pVertices, u32VSize);
}
