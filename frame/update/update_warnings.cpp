// Watched values: a mark by each that is on, one banner for all of them, which blinks between two colours.
#include "frame/update/update_warnings.h"
#include "base/slots.h"
#include "config/settings/settings.h"
#include "frame/update/update_flags.h"

#include "controls/osd_manager.h"
#include "controls/text_box.h"
#include "frame/update/timers.h"
#include "frame/update/update_steps.h"

#include <algorithm>

stWarnings g_stWarnings;

namespace update {
namespace {

/// State of the banner, the colour it shows, and the blinking that a slot has still to do.
u32 g_uBannerState = 0, g_uBannerColor = 0;
u8 g_abBlink[g_uManagerSlots];

void Switch(CControl* pControl, u32 uLayer, bool bShow) {
    if (!pControl || !g_pOSDManager) return;
    if (bShow)
        g_pOSDManager->m_fnAttachBack(pControl, uLayer);
    else
        g_pOSDManager->m_fnDetach(pControl, uLayer);
}

void CheckSlot(stWarningSlot& stSlot) {
    if (!stSlot.m_pWatched) return;
    const u32 uState = *stSlot.m_pWatched != 0;
    if (uState == stSlot.m_uState) return;
    Switch(stSlot.m_pMark, stSlot.m_uLayer, uState != 0);
    stSlot.m_uState = uState;
}

void CheckBanner() {
    const bool bAny = std::any_of(std::begin(g_stWarnings.aSlots), std::end(g_stWarnings.aSlots),
                                  [](const stWarningSlot& st) { return st.m_pWatched && st.m_uState; });
    if (bAny == (g_uBannerState != 0)) return;
    g_uBannerState = bAny;
    g_stTimers.Warning.Restart();
    for (CTextBox_Base* pText : g_stWarnings.apBanner) Switch(pText, g_uLayerFont, bAny);
}

void Blink() {
    if (!g_uBannerState) return;
    if (g_stTimers.Warning.Elapsed() >= g_stSettings.fWarningTwinkleSeconds) {
        g_stTimers.Warning.Restart();
        g_fnRaiseUpdateFlag(g_abBlink);
        if (g_stSettings.bWarningTwinkle) g_uBannerColor ^= 1;
    }
    if (!g_abBlink[g_uManagerSlot]) return;
    g_abBlink[g_uManagerSlot] = 0;
    for (CTextBox_Base* pText : g_stWarnings.apBanner)
        if (pText) pText->m_fnSetTextColor(g_stSettings.auWarningColor[g_uBannerColor], 255);
}

} // namespace

void CheckWarnings() {
    for (stWarningSlot& stSlot : g_stWarnings.aSlots) CheckSlot(stSlot);
    CheckBanner();
    Blink();
}

} // namespace update
