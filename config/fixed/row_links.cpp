#include "config/fixed/row_links.h"

#include "config/fixed/enable_map.h"
#include "controls/control_ids.h"
#include "controls/later_controls.h"
#include "controls/panel.h"

namespace {

template <class T>
CControl* Find(u32 uInstance, u32 uBID, const stControlIdTable& stTable, T* const* ppArray) {
    return uBID == g_uNoBID ? nullptr : g_fnFindCtrl(uInstance, uBID, stTable, ppArray);
}

void Hang(CControl* pPanel, CControl* pChild) {
    if (pPanel && pChild) g_pOSDManager->m_fnAddChild(pPanel, pChild);
}

void LinkRow(u32 uInstance, const stRowLink& st) {
    CControl* const pTitle = Find(uInstance, st.uTitlePanel, g_stPanelIds, g_ppPanel);
    CControl* const pData = Find(uInstance, st.uDataPanel, g_stPanelIds, g_ppPanel);
    Hang(pTitle, Find(uInstance, st.uTitleText, g_stTextBoxIds, g_ppTextBox));
    Hang(pData, Find(uInstance, st.uNumber, g_stNumBoxIds, g_ppNumBox));
    Hang(pData, Find(uInstance, st.uUnitText, g_stTextBoxIds, g_ppTextBox));
}

} // namespace

void g_fnLinkRows(std::span<const stRowLink> rows) {
    if (!g_pOSDManager) return;
    for (const stRowLink& st : rows)
        for (u32 uInstance = 0; uInstance < g_uInstances; ++uInstance) LinkRow(uInstance, st);
}
