#include "config/fixed/style_panels.h"

#include "config/fixed/attribute_value.h"
#include "config/make/panel_records.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "draw/draw_keys.h"

#include <cmath>

namespace {

constexpr i32 c_iStatusSide = 32; ///< before the font scale

/// In place of what stood there.
CPanel_Base* Put(eStylePanel ePanel, std::unique_ptr<CPanel_Base> pPanel) {
    CPanel_Base*& pEntry = g_ppStylePanel[ePanel];
    delete pEntry;
    pEntry = pPanel.release();
    g_pOSDManager->m_fnAddChild(nullptr, pEntry);
    return pEntry;
}

/// A flavour without panels makes none.
bool Make(eStylePanel ePanel, const stPanelInit& st, bool bAttach) {
    std::unique_ptr<CPanel_Base> pPanel;
    if (!g_pOSDManager || !g_ppStylePanel || !g_fnMakePanel(st, pPanel)) return false;
    if (!pPanel) return true;
    CPanel_Base* const pMade = Put(ePanel, std::move(pPanel));
    if (bAttach) g_fnAttachPanel(*pMade, st);
    return true;
}

i32 WholeLength(f32 fLength) { return g_fnCutToWhole(std::ceil(static_cast<f64>(fLength))); }

} // namespace

stPanelLook g_fnLookOf(const stPanelKeys& keys) {
    stPanelLook look;
    look.m_u8PanelR = keys.u8R;
    look.m_u8PanelG = keys.u8G;
    look.m_u8PanelB = keys.u8B;
    look.m_u8PanelA = keys.u8A;
    look.m_uPanelType = keys.uType;
    look.m_uPanelScatter = keys.uScattering;
    return look;
}

bool g_fnMakeBackground(eStylePanel ePanel, const stPanelKeys& keys, const stPartPlace& stPlace, f32 fWidth,
                        f32 fHeight) {
    stPanelInit st = {};
    static_cast<stPanelLook&>(st) = g_fnLookOf(keys);
    st.iAnchorCode = stPlace.iAnchor;
    st.iX = stPlace.iX;
    st.iY = stPlace.iY;
    st.iWidth = WholeLength(fWidth);
    st.iHeight = WholeLength(fHeight);
    return Make(ePanel, st, st.iWidth > 0 && st.iHeight > 0);
}

bool g_fnMakeBackgroundOf(eStylePanel ePanel, const stPanelKeys& keys, CControl* pControl) {
    if (!pControl || keys.uType == PANEL_TYPE_INVISIBLE) return true;
    stPartPlace stPlace = {};
    f32 fX = 0, fY = 0, fWidth = 0, fHeight = 0;
    pControl->m_fnGetAnchor(&stPlace.iAnchor, &fX, &fY);
    pControl->m_fnGetSize(&fWidth, &fHeight);
    stPlace.iX = g_fnCutToWhole(static_cast<f64>(fX));
    stPlace.iY = g_fnCutToWhole(static_cast<f64>(fY));
    return g_fnMakeBackground(ePanel, keys, stPlace, fWidth, fHeight);
}

bool g_fnMakeStatusPanels() {
    stPanelInit st = {};
    st.iAnchorCode = 1;
    st.iWidth = st.iHeight = g_fnCutToWhole(static_cast<f64>(c_iStatusSide) * g_stFontScale.iPercent / 100.0);
    st.m_uPanelType = PANEL_TYPE_GELLOPHANE;
    for (const eStylePanel ePanel : {STYLE_PANEL_STATUS1, STYLE_PANEL_STATUS2, STYLE_PANEL_STATUS3}) {
        if (!Make(ePanel, st, false)) return false;
        if (g_ppStylePanel[ePanel]) g_ppStylePanel[ePanel]->m_fnSetDrawKey(g_keyColorList);
    }
    return true;
}
