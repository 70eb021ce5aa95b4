#include "config/custom/assemble_info.h"

#include "base/log.h"
#include "config/items/item_map.h"
#include "config/items/item_report.h"
#include "controls/control_ids.h"
#include "controls/later_controls.h"
#include "controls/line_graph.h"
#include "controls/num_box.h"
#include "controls/panel.h"
#include "controls/pie_chart.h"
#include "controls/text_box.h"

std::map<u64, stAssembleInfo> g_mapAssembleInfo;

namespace {

template <class T>
void HangAll(CPanel_Base* pFrame, const std::vector<u64>& ids, const stControlIdTable& stTable,
             T* const* ppArray, const char* szIdWord, const char* szControlWord) {
    for (const u64 u64Id : ids) {
        if (T* pControl = g_fnFindCtrlById(u64Id, stTable, ppArray))
            g_pOSDManager->m_fnAddChild(pFrame, pControl);
        else
            g_fnReportError("%s: %lld -> %s is NULL", szIdWord, static_cast<long long>(u64Id), szControlWord);
    }
}

void HangControls(CPanel_Base* pFrame, const stAssembleInfo& st) {
    HangAll(pFrame, st.listTextBox, g_stTextBoxIds, g_ppTextBox, "u64TextBoxLB_ID", "pTextBox");
    HangAll(pFrame, st.listNumBox, g_stNumBoxIds, g_ppNumBox, "u64NumBoxLB_ID", "pNumBox");
    HangAll(pFrame, st.listPanel, g_stPanelIds, g_ppPanel, "u64PanelLB_ID", "pPanel");
    HangAll(pFrame, st.listImgBox, g_stImgBoxIds, g_ppImgBox, "u64ImgBoxLB_ID", "pImgBox");
    HangAll(pFrame, st.listLineGraph, g_stLineGraphIds, g_ppLineGraph, "u64LineGraphLB_ID", "pLineGraph");
    HangAll(pFrame, st.listPieChart, g_stPieChartIds, g_ppPieChart, "u64PieChartLB_ID", "pPieChart");
}

/// The owner is an item by its whole name, so it has no owner itself.
// KEEP: the items of a missing owner stay out of the tree and are drawn anyway, where nothing placed them.
// Authors of profiles are told so.
void HangFromOwner(CPanel_Base* pFrame, const std::string& szOwner) {
    CItemProperty_Base* pOwner = nullptr;
    if (!g_fnQueryItemProperty(szOwner.c_str(), &pOwner)) {
        g_fnLog("g_fnQueryItemProperty: %s fail", szOwner.c_str());
        return;
    }
    pOwner->m_bIsShow = 1;
    CControl* pOwnerFrame = g_fnFindCtrlByName('P', g_fnItemControlName(*pOwner, "_F"));
    if (pOwnerFrame) g_pOSDManager->m_fnAddChild(pOwnerFrame, pFrame);
}

void HangItem(const stAssembleInfo& st) {
    CPanel_Base* pFrame = g_fnFindCtrlById(st.u64FramePanelLB_ID, g_stPanelIds, g_ppPanel);
    if (!pFrame) return;
    std::string szOwner;
    const bool bOwned = st.pItem && g_fnItemOwner(*st.pItem, szOwner);
    if (!bOwned) g_pOSDManager->m_fnAddChild(nullptr, pFrame);
    HangControls(pFrame, st);
    if (bOwned) HangFromOwner(pFrame, szOwner);
}

} // namespace

bool g_fnInsertAssembleInfo(const stAssembleInfo& stInfo) {
    if (g_mapAssembleInfo.emplace(stInfo.u64ItemId, stInfo).second) return true;
    g_fnLog("g_fnInsertAssembleInfo() insert [%ld] error\n", static_cast<long>(stInfo.u64ItemId));
    return false;
}

void g_fnAttachByAssembly(std::span<const stTextInit> texts, std::span<const stAssembleInfo> infos) {
    if (!g_pOSDManager) return;
    for (const stTextInit& st : texts)
        if (CTextBox_Base* pText = g_fnFindCtrlById(st.u64LB_ID, g_stTextBoxIds, g_ppTextBox))
            g_pOSDManager->m_fnAddChild(nullptr, pText);
    for (const stAssembleInfo& st : infos) HangItem(st);
}
