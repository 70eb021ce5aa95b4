#include "batch/draw_basic.h"

#include "controls/control.h"
#include "controls/osd_manager.h"

#include <algorithm>

static ControlList* DrawListOf(DrawKey pKey) {
    return g_pOSDManager ? g_pOSDManager->m_fnGetDrawList(pKey) : nullptr;
}

void CDrawBasic_Base::m_fnDrawPass(u32 uPass) {
    if (uPass == g_uPassColor) m_fnDrawColorList();
    if (uPass == g_uPassTexture) m_fnDrawTextureList();
    if (uPass == g_uPassBlur) m_fnDrawBlurList();
}

void CDrawBasic_Base::m_fnDrawColorList() {
    ControlList* pList = DrawListOf(g_keyColorList);
    if (!pList) return;
    for (CControl* pControl : *pList)
        if (pControl) pControl->m_fnRender(this);
}

void CDrawBasic_Base::m_fnDrawTextureList() {
    m_fnDrawList(g_keyTextureList);
    m_uItemIndex = 0;
}

void CDrawBasic_Base::m_fnDrawBlurList() { m_fnDrawList(g_keyBlurList); }

void CDrawBasic_Base::m_fnDrawList(DrawKey pKey) {
    ControlList* pList = DrawListOf(pKey);
    if (!pList) return;
    m_uItemIndex = 0;
    for (CControl* pControl : *pList) {
        if (!pControl) continue;
        pControl->m_fnRender(this);
        ++m_uItemIndex;
    }
}

void CDrawBasic_Base::m_fnSetColorListOrder(const std::vector<CControl*>& list) {
    ControlList* pColors = DrawListOf(g_keyColorList);
    if (!pColors) return;
    ++g_uDrawListChanges;
    for (CControl* pControl : list)
        if (pControl) std::erase(*pColors, pControl);
    std::ranges::copy_if(list, std::back_inserter(*pColors), [](CControl* p) { return p != nullptr; });
}

u32 CDrawBasic_Base::m_fnGetTextureUnit() { return m_uTextureUnit; }

void CDrawBasic_Base::m_fnReserved8Basic() {}
