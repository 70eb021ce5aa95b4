#include "config/fixed/row_links.h"

#include "config/fixed/enable_map.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"

namespace {

template <eControlKind eKind> CControl* Find(u32 uInstance, u32 uBID) {
    return uBID == g_uNoBID ? nullptr : g_fnFindCtrlById(g_fnMakeLB_ID(uInstance, uBID), g_fnKind<eKind>());
}

void Hang(CControl* pPanel, CControl* pChild) {
    if (pPanel && pChild) g_pOSDManager->m_fnAddChild(pPanel, pChild);
}

void LinkRow(u32 uInstance, const stRowLink& st) {
    CControl* const pTitle = Find<KIND_PANEL>(uInstance, st.uTitlePanel);
    CControl* const pData = Find<KIND_PANEL>(uInstance, st.uDataPanel);
    Hang(pTitle, Find<KIND_TEXTBOX>(uInstance, st.uTitleText));
    Hang(pData, Find<KIND_NUMBOX>(uInstance, st.uNumber));
    Hang(pData, Find<KIND_TEXTBOX>(uInstance, st.uUnitText));
}

} // namespace

void g_fnLinkRows(std::span<const stRowLink> rows) {
    if (!g_pOSDManager) return;
    for (const stRowLink& st : rows)
        for (u32 uInstance = 0; uInstance < g_uInstances; ++uInstance) LinkRow(uInstance, st);
}
