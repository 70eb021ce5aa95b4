// List builder of the custom style: from items to records, by the names of their controls.
#include "base/log.h"
#include "config/items/item_number.h"
#include "config/items/kinds.h"
#include "config/settings/sensor_table.h"
#include "controls/control_ids.h"
#include "controls/num_box.h"
#include "draw/creation_table.h"
#include "frame/update/mixed_items.h"
#include "frame/update/update.h"
#include "frame/update/update_boxes.h"
#include "frame/update/update_graphs.h"
#include "shared/monitor_data.h"

#include <algorithm>
#include <string_view>

namespace {

/// Whether a figure of the built lists is the frame time.
bool g_bShowsFrameTime = false;

bool ShowsFrameTime() noexcept { return g_bShowsFrameTime; }

void NoticeFrameTime() {
    const auto* pFrameTime = reinterpret_cast<const u32*>(&g_iFrameTime);
    const auto Reads = [pFrameTime](const auto& record) { return record.m_pData == pFrameTime; };
    g_bShowsFrameTime = std::any_of(g_listUpdateFPS_N.begin(), g_listUpdateFPS_N.end(), Reads) ||
                        std::any_of(g_listUpdateFPS_L.begin(), g_listUpdateFPS_L.end(), Reads);
    g_stShownFigures.m_fnCustomFrameTime = ShowsFrameTime;
}

// KEEP(profiles): the box stays empty until the next build, also when its data turns up before.
void LeaveEmpty(const CItemProperty_NumBox& item, CNumBox_Base& box) {
    g_fnLog("item \"%s\" szDataFullName: \"%s\" missing", item.m_szItemName, item.m_szDataFullName);
    box.m_fnClear();
}

// KEEP(profiles): the pointer belongs to the bank of this build; after a flip it reads the old one until the
// next build, which companions in use ask for behind each flip.
void BindNumber(const CItemProperty_NumBox& item) {
    const auto& mapNames = *g_fnControlNames('N');
    const auto itName = mapNames.find(item.m_szItemName);
    if (itName == mapNames.end()) return;
    const i32 iNumBox = boxes::FindNumBox(itName->second);
    CNumBox_Base* pBox = boxes::NumBox(iNumBox);
    if (!pBox) return;
    const u32* pData = g_fnGetMonitorDataPtr(item.m_szDataFullName);
    if (!pData) return LeaveEmpty(item, *pBox);
    if (const auto it = g_mapAppData.find(item.m_szDataFullName); it != g_mapAppData.end()) {
        g_listUpdateFPS_N.emplace_back(itName->second, iNumBox, pData, it->second.m_uDecimals,
                                       it->second.m_uDivisor);
        return;
    }
    stDataFormat stFormat;
    if (!g_fnFindDataFormat(item.m_szDataFullName, stFormat)) return LeaveEmpty(item, *pBox);
    g_listUpdateData_N.emplace_back(itName->second, iNumBox, pData, stFormat.uDecimals, stFormat.uDivisor);
}

void BindMixed(CItemProperty_Base& item) {
    stUpdateMixedData record;
    if (!g_fnGetUpdateMixedDataByCustomStyle(&item, record)) {
        g_fnLog("g_fnGetUpdateMixedDataByCustomStyle() error !\n");
        return;
    }
    g_listUpdateMixed.push_back(record);
    // The digits must stand before they can be measured.
    record();
    if (record.m_auTextBoxBID[1] != g_u64NoBID) g_fnFixSystemTimeAlignByCustomStyle(record);
}

void BindItem(CItemProperty_Base& item) {
    switch (item.m_uItemType) {
    case ITEM_NUMBOX:
        if (const CItemProperty_NumBox* pItem = g_fnAsNumBox(&item)) BindNumber(*pItem);
        break;
    case ITEM_LINEGRAPH:
        g_fnBindLineGraph(item);
        break;
    case ITEM_PIECHART:
        g_fnBindPieChart(item);
        break;
    case ITEM_MIXED:
        BindMixed(item);
        break;
    default:
        break;
    }
}

} // namespace

void g_fnBuildUpdateCustom() {
    g_fnUpdateFPS = g_fnUpdateFPSCustom;
    g_fnBeginUpdateBuild();
    for (const auto& [szName, pItem] : g_mapItemByName) BindItem(*pItem);
    NoticeFrameTime();
    g_fnCountUpdateRecords(2);
}

void g_fnUpdateFPSCustom() {
    if (g_stCreationTable.Begin) g_stCreationTable.Begin();
    for (CUpdateDataFuncN& record : g_listUpdateFPS_N) record();
    for (CUpdateDataFuncL& record : g_listUpdateFPS_L) record();
    if (g_stCreationTable.End) g_stCreationTable.End();
}
