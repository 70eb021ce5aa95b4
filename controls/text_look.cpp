#include "controls/text_look.h"

void CTextLook::StoreTextSize(f32 fSize) {
    m_fTextSize = fSize;
    MarkLayoutDirty();
}

f32 CTextLook::LoadTextSize(f32* pOut) const {
    if (pOut) *pOut = m_fTextSize;
    return m_fTextSize;
}

void CTextLook::StoreSpacing(f32 x, f32 y) {
    m_fSpacingX = x;
    m_fSpacingY = y;
    MarkLayoutDirty();
}

void CTextLook::LoadSpacing(f32* pX, f32* pY) const {
    if (pX) *pX = m_fSpacingX;
    if (pY) *pY = m_fSpacingY;
}
