#include "config/custom/assemble_info.h"

#include "base/log.h"
#include "config/items/item_map.h"
#include "config/items/item_report.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"

std::map<u64, stAssembleInfo> g_mapAssembleInfo;

namespace {

template <class T>
void HangAll(CPanel_Base* pFrame, const std::vector<u64>& ids, const stControlKind<T>& kind) {
    for (const u64 u64Id : ids) {
        if (T* pControl = g_fnFindCtrlById(u64Id, kind))
            g_pOSDManager->m_fnAddChild(pFrame, pControl);
        else
            g_fnReportError("u64%sLB_ID: %lld -> p%s is NULL", kind.szName, static_cast<long long>(u64Id),
                            kind.szName);
    }
}

void HangControls(CPanel_Base* pFrame, const stAssembleInfo& st) {
    HangAll(pFrame, st.listTextBox, g_fnKind<KIND_TEXTBOX>());
    HangAll(pFrame, st.listNumBox, g_fnKind<KIND_NUMBOX>());
    HangAll(pFrame, st.listPanel, g_fnKind<KIND_PANEL>());
    HangAll(pFrame, st.listImgBox, g_fnKind<KIND_IMGBOX>());
    HangAll(pFrame, st.listLineGraph, g_fnKind<KIND_LINEGRAPH>());
    HangAll(pFrame, st.listPieChart, g_fnKind<KIND_PIECHART>());
}

/// The owner is an item by its whole name, so it has no owner itself.
// KEEP(profiles): the items of a missing owner stay out of the tree and are drawn anyway, where nothing
// placed them. Authors of profiles are told so.
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
    CPanel_Base* pFrame = g_fnFindCtrlById(st.u64FramePanelLB_ID, g_fnKind<KIND_PANEL>());
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
        if (CTextBox_Base* pText = g_fnFindCtrlById(st.u64LB_ID, g_fnKind<KIND_TEXTBOX>()))
            g_pOSDManager->m_fnAddChild(nullptr, pText);
    for (const stAssembleInfo& st : infos) HangItem(st);
}
