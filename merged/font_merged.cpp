#include "merged/font_merged.h"

#include "draw/texture_gl.h"

#include <new>

void CFontUC_Merged::m_fnBindTexture(u32) {
    if (m_pTexture) m_pTexture->m_fnBindKept();
}

bool CFontUC_Merged::m_fnUploadChain() {
    return m_pTexture->m_fnUploadTop(m_uAtlasRows + static_cast<u32>(m_iCanvasH));
}

CFontUniCode* CreateFontUC_Merged() { return new (std::nothrow) CFontUC_Merged; }
