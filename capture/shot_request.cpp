#include "capture/shot_request.h"

#include "controls/control_id_table.h"
#include "controls/control_kinds.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"

u8 g_bShotPending = 0;
bool g_bShutter = false;
CTimer g_timerShutter;

CPanel_Base* g_fnStatusPanel(u32 u) noexcept {
    return g_ppStylePanel ? g_ppStylePanel[g_auStatusPanels[u]] : nullptr;
}

CImgBox_Base* g_fnShutterImage() noexcept { return g_ppImgBox ? g_ppImgBox[g_uShutterImage] : nullptr; }

void g_fnStartShutter() noexcept {
    g_bShutter = true;
    g_timerShutter.Restart();
}

void g_fnHideForShot() {
    if (!g_pOSDManager) return;
    if (CControl* pImage = g_fnShutterImage()) g_pOSDManager->m_fnDetach(pImage, g_uLayerTexture);
    for (u32 u = 0; u < 3; ++u)
        if (CControl* pPanel = g_fnStatusPanel(u)) g_pOSDManager->m_fnDetach(pPanel, g_uLayerColor);
}

void g_fnShowAfterShot() {
    if (!g_pOSDManager) return;
    if (CControl* pImage = g_fnShutterImage()) g_pOSDManager->m_fnAttachBack(pImage, g_uLayerTexture);
    for (u32 u = 0; u < 3; ++u)
        if (CControl* pPanel = g_fnStatusPanel(u)) g_pOSDManager->m_fnAttachBack(pPanel, g_uLayerColor);
}
