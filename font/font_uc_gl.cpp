#include "font/font_uc_gl.h"

#include "draw/texture_gl.h"
#include "draw/texture_reduce.h"

#include <new>

CFontUC_GL::~CFontUC_GL() { CFontUC_GL::m_fnRelease(); }

void CFontUC_GL::m_fnRelease() {
    delete m_pTexture;
    m_pTexture = nullptr;
}

bool CFontUC_GL::m_fnCreateTexture() {
    CFontUC_GL::m_fnRelease();
    m_pTexture = new (std::nothrow) CTexture2D_GL;
    return m_pTexture && m_pTexture->m_fnCreate(m_uTexW, m_uTexH, g_uFormatR8, 1, true);
}

bool CFontUC_GL::m_fnUploadAtlasAll(const u8* const*) { return m_fnUploadAtlas(); }

bool CFontUC_GL::m_fnUploadChain() { return m_pTexture->m_fnUploadLevel(nullptr, 0, 0); }

bool CFontUC_GL::m_fnUploadAtlas() {
    if (!m_pTexture || (!m_fnTakeAtlas() && m_uAtlasRows != 0)) return false;
    m_pTexture->m_fnLendLevel(0, m_pAtlas);
    // The levels are taken anew, so they hold zeros. One call takes the whole chain along.
    const bool bDone = m_pTexture->m_fnTakeLevels(0) &&
                       g_fnFillChain(*m_pTexture, m_pAtlas, 0, m_uAtlasRows, true) && m_fnUploadChain();
    // The next upload makes them again from the atlas; until then they only take the program's memory.
    m_pTexture->m_fnDropLevels(0);
    return bDone;
}

void CFontUC_GL::m_fnBindTexture(u32 uUnit) {
    if (m_pTexture) m_pTexture->m_fnBindUnit(uUnit);
}

CFontUniCode* CreateFontUC_GL() { return new (std::nothrow) CFontUC_GL; }
