#include "config/make/panel_records.h"

#include "base/layout_style.h"
#include "base/log.h"
#include "controls/control_ids.h"
#include "draw/backdrop.h"
#include "draw/creation_table.h"
#include "draw/draw_keys.h"

#include <algorithm>

namespace {

void Configure(CPanel_Base& panel, const stPanelInit& st) {
    g_fnGiveLook(panel, st, static_cast<f32>(st.iWidth), static_cast<f32>(st.iHeight));
    panel.m_fnSetAnchor(st.iAnchorCode, static_cast<f32>(st.iX), static_cast<f32>(st.iY));
    panel.m_fnSetRenderable(!st.bHidden);
}

void AttachFlat(CPanel_Base& panel) {
    // KEEP(profiles): at the front, since profiles in use are stacked that way; also with alpha 0.
    panel.m_fnSetDrawKey(g_keyColorList);
    g_pOSDManager->m_fnAttachFront(&panel, g_uLayerColor);
}

/// The diameter is counted as configured, but only a custom layout draws with it; the other styles share one
/// key.
void AttachFrosted(CPanel_Base& panel, u32 uScatter) {
    const u32 uDiameter = std::min(uScatter, g_uScatterMax);
    panel.m_fnSetDrawKey(g_uLayoutStyle == STYLE_CUSTOM ? g_keyBlurByDiameter[uDiameter] : g_keyBlurList);
    ++g_mapBlurDiameters[uDiameter];
    g_bCaptureBackdrop = true;
    g_pOSDManager->m_fnAttachFront(&panel, g_uLayerBlur);
}

} // namespace

bool g_fnMakePanel(const stPanelInit& stRecord, std::unique_ptr<CPanel_Base>& pPanel) {
    pPanel.reset(g_stCreationTable.m_fnCreatePanel());
    if (!pPanel) return true;
    Configure(*pPanel, stRecord);
    if (pPanel->m_fnInitialize()) return true;
    pPanel.reset();
    return false;
}

void g_fnAttachPanel(CPanel_Base& panel, const stPanelInit& st) {
    if (st.bHidden) return;
    if (st.m_uPanelType == PANEL_TYPE_GELLOPHANE)
        AttachFlat(panel);
    else if (st.m_uPanelType == PANEL_TYPE_FROSTED)
        AttachFrosted(panel, st.m_uPanelScatter);
    // KEEP(profiles): any other type is laid out and never drawn.
}

bool g_fnCreatePanels(std::span<const stPanelInit> records) {
    for (const stPanelInit& st : records) {
        std::unique_ptr<CPanel_Base> pPanel;
        if (!g_fnMakePanel(st, pPanel)) return false;
        if (!pPanel) continue;
        if (!g_fnRegisterXCtrl(IdPanel, st.u64LB_ID, pPanel.get())) {
            // It has no owner, so it goes.
            g_fnLog("g_fnRegisterPanelCtrl() error - u64PanelLB_ID: %ld\n", static_cast<long>(st.u64LB_ID));
            continue;
        }
        g_fnAttachPanel(*pPanel.release(), st);
    }
    return true;
}
