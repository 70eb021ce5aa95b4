#include "merged/font_merged.h"

#include "draw/texture_gl.h"

#include <new>

void CFontUC_Merged::m_fnBindTexture(u32) {
    if (m_pTexture) m_pTexture->m_fnBindKept();
}

CFontUniCode* CreateFontUC_Merged() { return new (std::nothrow) CFontUC_Merged; }
