#include "controls/control_ids.h"

#include "base/log.h"
#include "controls/later_controls.h"
#include "controls/panel.h"

stControlIdTable g_stTextBoxIds, g_stNumBoxIds, g_stLineGraphIds, g_stPanelIds, g_stImgBoxIds, g_stFlipBoxIds,
    g_stPieChartIds;

namespace {

using NameMap = std::map<std::string, u64, std::less<>>;
NameMap g_mapPieChartNames, g_mapImgBoxNames, g_mapLineGraphNames, g_mapNumBoxNames, g_mapPanelNames,
    g_mapTextBoxNames;

/// Stores a control of kind T at the next free place.
template <class T>
i32 Register(stControlIdTable& stTable, T** ppArray, u32 uEntries, u64 u64LB_ID, CControl* pControl) {
    T* pObject = dynamic_cast<T*>(pControl);
    if (!pObject || !ppArray) return 0;
    if (stTable.m_fnFind(u64LB_ID) != g_uNoControl) {
        g_fnLog("g_fnRegisterXCtrl() error - repeated LB_ID: %lld\n", static_cast<long long>(u64LB_ID));
        return 0;
    }
    const u32 uPtr_ID = stTable.m_fnTake(u64LB_ID, uEntries);
    if (uPtr_ID == g_uNoControl) {
        g_fnLog("g_fnRegisterXCtrl() error - uPtr_ID: %d\n", static_cast<i32>(stTable.m_uNext));
        return 0;
    }
    ppArray[uPtr_ID] = pObject;
    return 1;
}

} // namespace

u32 stControlIdTable::m_fnFind(u64 u64LB_ID) const {
    const auto it = m_mapPtrId.find(u64LB_ID);
    return it != m_mapPtrId.end() ? it->second : g_uNoControl;
}

u32 stControlIdTable::m_fnTake(u64 u64LB_ID, u32 uEntries) {
    u32 uPtr_ID;
    if (!m_listFree.empty()) {
        uPtr_ID = m_listFree.front();
        m_listFree.pop_front();
    } else if (m_uNext < uEntries) {
        uPtr_ID = m_uNext++;
    } else {
        return g_uNoControl;
    }
    m_mapPtrId[u64LB_ID] = uPtr_ID;
    m_mapLB_ID[uPtr_ID] = u64LB_ID;
    return uPtr_ID;
}

bool stControlIdTable::m_fnGiveBack(u64 u64LB_ID) {
    const u32 uPtr_ID = m_fnFind(u64LB_ID);
    if (uPtr_ID == g_uNoControl) return false;
    m_mapPtrId[u64LB_ID] = g_uNoControl;
    m_mapLB_ID.erase(uPtr_ID);
    m_listFree.push_back(uPtr_ID);
    return true;
}

void stControlIdTable::m_fnClear() {
    m_mapPtrId.clear();
    m_mapLB_ID.clear();
    m_uNext = 0;
    m_listFree.clear();
}

i32 g_fnRegisterXCtrl(u32 uType, u64 u64LB_ID, CControl* pControl) {
    switch (uType) {
    case IdTextBox:
        return Register(g_stTextBoxIds, g_ppTextBox, g_uTextBoxEntries, u64LB_ID, pControl);
    case IdNumBox:
        return Register(g_stNumBoxIds, g_ppNumBox, g_uNumBoxEntries, u64LB_ID, pControl);
    case IdLineGraph:
        return Register(g_stLineGraphIds, g_ppLineGraph, g_uLineGraphEntries, u64LB_ID, pControl);
    case IdPanel:
        return Register(g_stPanelIds, g_ppPanel, g_uPanelEntries, u64LB_ID, pControl);
    case IdImgBox:
        return Register(g_stImgBoxIds, g_ppImgBox, g_uImgBoxEntries, u64LB_ID, pControl);
    case IdFlipBox:
        return Register(g_stFlipBoxIds, g_ppFlipBox, g_uFlipBoxEntries, u64LB_ID, pControl);
    case IdPieChart:
        return Register(g_stPieChartIds, g_ppPieChart, g_uPieChartEntries, u64LB_ID, pControl);
    default:
        return 0;
    }
}

i32 g_fnRegisterTextCtrl(u32 uIndex, u32 uBID, CTextBox_Base* pTextBox) {
    return g_fnRegisterXCtrl(IdTextBox, g_fnMakeLB_ID(uIndex, uBID), pTextBox);
}

NameMap* g_fnControlNames(char cLetter) {
    switch (cLetter) {
    case 'C':
        return &g_mapPieChartNames;
    case 'I':
        return &g_mapImgBoxNames;
    case 'L':
        return &g_mapLineGraphNames;
    case 'N':
        return &g_mapNumBoxNames;
    case 'P':
        return &g_mapPanelNames;
    case 'T':
        return &g_mapTextBoxNames;
    default:
        return nullptr;
    }
}

CControl* g_fnFindCtrlByName(char cLetter, std::string_view szName) {
    const NameMap* pNames = g_fnControlNames(cLetter);
    if (!pNames) return nullptr;
    const auto it = pNames->find(szName);
    if (it == pNames->end()) return nullptr;
    switch (cLetter) {
    case 'C':
        return g_fnFindCtrlById(it->second, g_stPieChartIds, g_ppPieChart);
    case 'I':
        return g_fnFindCtrlById(it->second, g_stImgBoxIds, g_ppImgBox);
    case 'L':
        return g_fnFindCtrlById(it->second, g_stLineGraphIds, g_ppLineGraph);
    case 'N':
        return g_fnFindCtrlById(it->second, g_stNumBoxIds, g_ppNumBox);
    case 'P':
        return g_fnFindCtrlById(it->second, g_stPanelIds, g_ppPanel);
    default:
        return g_fnFindCtrlById(it->second, g_stTextBoxIds, g_ppTextBox);
    }
}

void g_fnClearControlIds() {
    for (stControlIdTable* pTable : {&g_stTextBoxIds, &g_stNumBoxIds, &g_stLineGraphIds, &g_stPanelIds,
                                     &g_stImgBoxIds, &g_stFlipBoxIds, &g_stPieChartIds})
        pTable->m_fnClear();
    for (char cLetter : {'C', 'I', 'L', 'N', 'P', 'T'}) g_fnControlNames(cLetter)->clear();
}
