#include "frame/update/status_items.h"

#include "capture/shot_request.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "frame/update/timers.h"

#include <cmath>
#include <cstring>

CTimer g_timerStatus;
u8 g_abStatusDue[g_uManagerSlots] = {};
u32 g_auStatus[g_uManagerSlots] = {};
u8 g_abShutterMove[g_uManagerSlots] = {};

/// Seconds that a status stays on display.
static constexpr f32 g_fStatusSeconds = 15.0f;

/// True if the panel had to be moved.
static bool MoveItem(CPanel_Base* pPanel, const stStatusPosition& stTo) {
    if (!pPanel || !stTo.bChanged) return false;
    const f32 fToX = static_cast<f32>(stTo.iX), fToY = static_cast<f32>(stTo.iY);
    i32 iCode = 0;
    f32 fX = 0.0f, fY = 0.0f;
    pPanel->m_fnGetAnchor(&iCode, &fX, &fY);
    if (iCode == stTo.iAlign && fX == fToX && fY == fToY) return false;
    pPanel->m_fnSetAnchor(stTo.iAlign, fToX, fToY);
    return true;
}

void g_fnMoveStatusItems(const stStatusPosition aPositions[3]) {
    for (u32 uSlot = 0; uSlot < g_uManagerSlots; ++uSlot) {
        COSDManager* pManager = g_apOSDManager[uSlot];
        if (!pManager || !pManager->m_stArrays.m_ppStylePanel) continue;
        CPanel_Base** ppPanels = pManager->m_stArrays.m_ppStylePanel;
        for (u32 u = 0; u < 3; ++u)
            if (MoveItem(ppPanels[g_auStatusPanels[u]], aPositions[u]) && u == 2) g_abShutterMove[uSlot] = 1;
    }
}

/// Phase of the pulse, in radians; one turn takes a little over two seconds. Returns its sine.
static f32 AdvancePhase(f32 fSeconds) {
    static f32 fPhase = 0.0f;
    fPhase += fSeconds * 3.0f;
    const f32 fSine = sinf(fPhase);
    if (fPhase + 0.01f > 6.283185307179586f) fPhase = 0.0f;
    return fSine;
}

static void HidePanel(CPanel_Base* pPanel) {
    if (!pPanel) return;
    pPanel->m_fnSetColorF(pPanel->m_afColor[0], pPanel->m_afColor[1], pPanel->m_afColor[2], 0.0f);
    if (g_pOSDManager) g_pOSDManager->m_fnDetach(pPanel, g_uLayerColor);
}

/// The pulse is an absolute place on the canvas; the anchor stays what the last command said.
static void PulsePanel(CPanel_Base* pPanel, f32 fSine) {
    if (!pPanel || !g_pOSDManager) return;
    const f32 fSine5 = fSine * fSine * fSine * fSine * fSine;
    const f32 fPulse = std::copysign(std::fabs(fSine * 200.0f * fSine5), fSine) + 200.0f;
    f32 fX = 0.0f;
    pPanel->m_fnGetPosition(&fX, nullptr, nullptr);
    pPanel->m_fnMoveTo(fX, fPulse, 0.0f);
    pPanel->m_fnSetColor(0xFFFFFF, static_cast<u8>(fSine * fSine * 255.0f));
    // While a shot is pending the panels must stay off the picture.
    if (!g_bShotPending) g_pOSDManager->m_fnAttachBack(pPanel, g_uLayerColor);
}

/// A stopped timer keeps its total: once over, the display is due at every step until a command restarts it.
static void ExpireStatus() {
    if (!(g_timerStatus.Elapsed() > g_fStatusSeconds)) return;
    g_timerStatus.Stop();
    std::memset(g_abStatusDue, 1, sizeof g_abStatusDue);
}

void g_fnStatusStep(f32 fSeconds) {
    const f32 fSine = AdvancePhase(fSeconds);
    ExpireStatus();
    const bool bHide = g_abStatusDue[g_uManagerSlot] != 0;
    g_abStatusDue[g_uManagerSlot] = 0;
    for (u32 u = 0; bHide && u < 3; ++u) HidePanel(g_fnStatusPanel(u));
    const u32 uStatus = g_auStatus[g_uManagerSlot];
    if (uStatus < 1 || uStatus > 3) {
        g_stTimers.Animation.Restart();
        return;
    }
    if (!bHide) PulsePanel(g_fnStatusPanel(uStatus - 1), fSine);
}
