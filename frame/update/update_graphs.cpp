#include "frame/update/update_graphs.h"

#include "base/log.h"
#include "config/items/item_graph.h"
#include "config/items/item_pie.h"
#include "config/items/kinds.h"
#include "config/settings/sensor_table.h"
#include "controls/control_ids.h"
#include "controls/line_graph.h"
#include "controls/pie_chart.h"
#include "frame/update/update_boxes.h"
#include "frame/update/update_records.h"
#include "shared/monitor_data.h"

namespace {

f32 ValueOf(const u32* pData, u32 uDivisor) {
    const f32 fValue = static_cast<f32>(g_fnUpdateValue(pData));
    return uDivisor > 1 ? fValue / static_cast<f32>(uDivisor) : fValue;
}

/// Low half, as the log shows addresses.
unsigned AddressWord(const void* p) { return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(p)); }

/// The id under which a control of an item is registered; false for one that wasn't made.
bool FindId(char cLetter, const CItemProperty_Base& item, u64& u64LB_ID) {
    const auto& mapNames = *g_fnControlNames(cLetter);
    const auto it = mapNames.find(item.m_szItemName);
    if (it == mapNames.end()) return false;
    u64LB_ID = it->second;
    return true;
}

void LogMissing(const CItemProperty_Base& item, const char* szData) {
    g_fnLog("item \"%s\" szDataFullName: \"%s\" missing", item.m_szItemName, szData);
}

/// KEEP(profiles): a record that finds no value stays out until the next build, also when its data turns up
/// before.
void Enter(const CItemProperty_Base& item, const char* szData, CUpdateDataFuncL& record) {
    if (!record.m_pData) return LogMissing(item, szData);
    if (const auto it = g_mapAppData.find(szData); it != g_mapAppData.end()) {
        record.m_uDivisor = it->second.m_uDivisor;
        g_listUpdateFPS_L.push_back(record);
        return;
    }
    stDataFormat stFormat;
    if (!g_fnFindDataFormat(szData, stFormat)) return LogMissing(item, szData);
    record.m_uDivisor = stFormat.uDivisor;
    g_listUpdateData_L.push_back(record);
}

CUpdateDataFuncL RecordOf(u64 u64LB_ID, i32 iIndex, const char* szData, UpdateGraphFunc fn) {
    CUpdateDataFuncL record;
    record.m_uBID = u64LB_ID;
    record.m_iIndex = iIndex;
    record.m_fn = fn;
    record.m_pData = g_fnGetMonitorDataPtr(szData);
    return record;
}

void LogPieChart(const CUpdateDataFuncL& record, const char* szData) {
    g_fnLog("uBID; %d\n", static_cast<i32>(record.m_uBID));
    g_fnLog("szDataFullName: %s\n", szData);
    g_fnLog("pData: %#x\n", AddressWord(record.m_pData));
    if (!record.m_pData) g_fnLog("error - uPtr_ID_C; %d\n", record.m_iIndex);
}

} // namespace

void g_fnUpdateLineGraph(i32 iLineGraph, const u32* pData, u32 uDivisor) {
    if (CLineGraph_Base* pGraph = boxes::LineGraph(iLineGraph))
        pGraph->m_fnAddValue(ValueOf(pData, uDivisor));
}

void g_fnUpdatePieChart(i32 iPieChart, const u32* pData, u32 uDivisor) {
    if (CPieChart_Base* pChart = boxes::PieChart(iPieChart)) pChart->m_fnSetValue(ValueOf(pData, uDivisor));
}

CPieChart_Base* g_fnGetPieChartPtrByName(const char* szName) {
    auto* pChart = dynamic_cast<CPieChart_Base*>(g_fnFindCtrlByName('C', szName));
    g_fnLog("g_fnGetPieChartPtrByName: %s - %#x\n", szName, AddressWord(pChart));
    return pChart;
}

void g_fnBindLineGraph(const CItemProperty_Base& item) {
    const CItemProperty_LineGraph* pItem = g_fnAsLineGraph(&item);
    u64 u64LB_ID;
    if (!pItem || !FindId('L', item, u64LB_ID)) return;
    const i32 iIndex = boxes::FindLineGraph(u64LB_ID);
    if (!boxes::LineGraph(iIndex)) return;
    CUpdateDataFuncL record = RecordOf(u64LB_ID, iIndex, pItem->m_szDataFullName, g_fnUpdateLineGraph);
    Enter(item, pItem->m_szDataFullName, record);
}

void g_fnBindPieChart(const CItemProperty_Base& item) {
    const CItemProperty_PieChart* pItem = g_fnAsPieChart(&item);
    u64 u64LB_ID;
    if (!pItem || !g_fnGetPieChartPtrByName(item.m_szItemName) || !FindId('C', item, u64LB_ID)) return;
    CUpdateDataFuncL record =
        RecordOf(u64LB_ID, boxes::FindPieChart(u64LB_ID), pItem->m_szDataFullName, g_fnUpdatePieChart);
    LogPieChart(record, pItem->m_szDataFullName);
    Enter(item, pItem->m_szDataFullName, record);
}
