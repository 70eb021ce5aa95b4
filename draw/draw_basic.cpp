#include "draw/draw_basic.h"

#include "controls/control.h"

#include <algorithm>
#include <iterator>

/// Visits the controls of a key from the front; fnAfter runs behind each.
template <class After> static void Walk(CDraw_Base* pBatcher, DrawKey key, After fnAfter) {
    const ControlList* pList = g_pOSDManager ? g_pOSDManager->m_fnGetDrawList(key) : nullptr;
    if (!pList) return;
    for (CControl* pControl : *pList) {
        if (!pControl) continue;
        pControl->m_fnRender(pBatcher);
        fnAfter();
    }
}

void CDrawBasic_Base::m_fnDrawPass(u32 uPass) {
    if (uPass == g_uPassColor) m_fnDrawColorList();
    if (uPass == g_uPassTexture) m_fnDrawTextureList();
    if (uPass == g_uPassBlur) m_fnDrawList(g_keyBlurList);
}

void CDrawBasic_Base::m_fnRender() {}

void CDrawBasic_Base::m_fnDrawColorList() {
    Walk(this, g_keyColorList, [] {});
}

void CDrawBasic_Base::m_fnDrawTextureList() {
    m_fnDrawList(g_keyTextureList);
    m_uItemIndex = 0;
}

void CDrawBasic_Base::m_fnDrawBlurList() { m_fnDrawList(g_keyBlurList); }

void CDrawBasic_Base::m_fnDrawList(DrawKey key) {
    m_uItemIndex = 0;
    Walk(this, key, [this] { ++m_uItemIndex; });
}

void CDrawBasic_Base::m_fnSetColorListOrder(const ControlList& list) {
    ControlList* pColors = g_pOSDManager ? g_pOSDManager->m_fnGetDrawList(g_keyColorList) : nullptr;
    if (!pColors) return;
    for (CControl* pControl : list) std::erase(*pColors, pControl);
    std::copy_if(list.begin(), list.end(), std::back_inserter(*pColors),
                 [](CControl* p) { return p != nullptr; });
}

u32 CDrawBasic_Base::m_fnGetTextureUnit() { return m_uTextureUnit; }
void CDrawBasic_Base::m_fnReserved8Basic() {}
