#include "font/font_cell.h"

#include "font/font_unicode.h"

stCellSize g_fnCellOf(const CFontUniCode* pFont) {
    if (!pFont || !pFont->m_uLayoutW || !pFont->m_uLayoutH) return {2, 2};
    return {1 / static_cast<f32>(pFont->m_uLayoutW), 1 / static_cast<f32>(pFont->m_uLayoutH)};
}
