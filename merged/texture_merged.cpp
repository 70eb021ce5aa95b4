#include "merged/texture_merged.h"

#include "merged/mesh_merged.h"

#include <new>

void CTexture_Merged::m_fnBindUnit(u32) {
    if (!g_pMergedSink) return;
    if (!g_pMergedSink->m_fnIsDrawing()) return g_pMergedSink->m_fnNotePicture();
    if (m_uFrameCount >= 2) m_fnAdvance();
    m_fnBindKept();
}

CTexture_Base* CreateTexture_Merged() { return new (std::nothrow) CTexture_Merged; }
