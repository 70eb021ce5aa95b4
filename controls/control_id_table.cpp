#include "controls/control_id_table.h"

stControlIdTable g_stTextBoxIds, g_stNumBoxIds, g_stLineGraphIds, g_stPanelIds, g_stFlipBoxIds,
    g_stPieChartIds;
stControlIdTable g_stImgBoxIds(1u << g_uPhotoImage | 1u << g_uShutterImage);

u32 stControlIdTable::m_fnFind(u64 u64LB_ID) const {
    const auto it = m_mapPtrId.find(u64LB_ID);
    return it != m_mapPtrId.end() ? it->second : g_uNoControl;
}

u32 stControlIdTable::m_fnTake(u64 u64LB_ID, u32 uEntries) {
    u32 uPtr_ID;
    while (m_uNext < 64 && m_u64Kept >> m_uNext & 1) ++m_uNext;
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

bool stControlIdTable::m_fnTakeKept(u64 u64LB_ID, u32 uPtr_ID) {
    if (m_fnFind(u64LB_ID) != g_uNoControl) return false;
    m_mapPtrId[u64LB_ID] = uPtr_ID;
    m_mapLB_ID[uPtr_ID] = u64LB_ID;
    return true;
}

bool stControlIdTable::m_fnGiveBack(u64 u64LB_ID) {
    const u32 uPtr_ID = m_fnFind(u64LB_ID);
    if (uPtr_ID == g_uNoControl) return false;
    m_mapPtrId[u64LB_ID] = g_uNoControl;
    m_mapLB_ID.erase(uPtr_ID);
    const bool bKept = uPtr_ID < 64 && m_u64Kept >> uPtr_ID & 1;
    if (!bKept) m_listFree.push_back(uPtr_ID);
    return true;
}

void stControlIdTable::m_fnClear() {
    m_mapPtrId.clear();
    m_mapLB_ID.clear();
    m_uNext = 0;
    m_listFree.clear();
}
