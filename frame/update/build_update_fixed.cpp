// List builders of the styles whose boxes have fixed ids, and their FPS updaters.
#include "base/log.h"
#include "config/fixed/info_place.h"
#include "config/settings/sensor_table.h"
#include "config/settings/settings.h"
#include "controls/align_row.h"
#include "controls/control_ids.h"
#include "controls/flip_box.h"
#include "controls/num_box.h"
#include "controls/panel.h"
#include "controls/text_box.h"
#include "frame/update/build_update_tables.h"
#include "frame/update/update.h"
#include "frame/update/update_boxes.h"
#include "platform/process.h"
#include "shared/monitor_data.h"

#include <algorithm>

using namespace tables;

namespace {

constexpr u32 c_uDebugRows = 5;

u64 MakeId(u32 uInstance, u32 uBID) { return uBID == c_uNone ? g_u64NoBID : g_fnMakeLB_ID(uInstance, uBID); }

/// Ids of the row uOffset behind the first of a run.
stIds IdsAt(const stIds& stFirst, u32 uOffset) {
    const auto Step = [uOffset](u32 uId) { return uId == c_uNone ? c_uNone : uId + uOffset; };
    return {Step(stFirst.uNumBox), Step(stFirst.uTextBox), Step(stFirst.uPanel)};
}

/// A row of a number, its unit and their panel is aligned at each update; a number alone is not.
CUpdateDataFuncN MakeRecord(const stIds& stRowIds, u32 uInstance) {
    CUpdateDataFuncN record;
    record.m_uNumBoxBID = MakeId(uInstance, stRowIds.uNumBox);
    record.m_uTextBoxBID = MakeId(uInstance, stRowIds.uTextBox);
    record.m_uPanelBID = MakeId(uInstance, stRowIds.uPanel);
    record.m_iNumBox = boxes::FindNumBox(record.m_uNumBoxBID);
    record.m_iTextBox = boxes::FindTextBox(record.m_uTextBoxBID);
    record.m_iPanel = boxes::FindPanel(record.m_uPanelBID);
    if (record.m_iTextBox != g_iNoIndex && record.m_iPanel != g_iNoIndex)
        record.m_fnRow = g_fnUpdateNumRow;
    else
        record.m_fnSimple = g_fnUpdateNumSimple;
    return record;
}

// KEEP(profiles): the box stays empty until the next build, also when its data turns up before.
void Empty(const CUpdateDataFuncN& record) {
    if (CNumBox_Base* pBox = boxes::NumBox(record.m_iNumBox)) pBox->m_fnClear();
}

/// A companion value: pOther is asked where the first name leads nowhere.
void BindData(const stIds& stRowIds, u32 uInstance, i32 iIndex, const char* szName, const char* szOther) {
    CUpdateDataFuncN record = MakeRecord(stRowIds, uInstance);
    if (record.m_iNumBox == g_iNoIndex) return;
    stDataFormat stFormat;
    const bool bKnown = g_fnFindDataFormat(szName, stFormat);
    if (bKnown) record.m_pData = g_fnGetMonitorDataPtrByIndex(iIndex, szName);
    if (bKnown && !record.m_pData && szOther) record.m_pData = g_fnGetMonitorDataPtrByIndex(iIndex, szOther);
    if (!record.m_pData) {
        if (!bKnown) g_fnLog("item \"%s\" szDataFullName: \"%s#%d\" missing", szName, szName, iIndex);
        return Empty(record);
    }
    record.m_uDecimals = stFormat.uDecimals;
    record.m_uDivisor = stFormat.uDivisor;
    g_listUpdateData_N.push_back(record);
}

bool HasInstance(eInstances eWhere, u32 uInstance) {
    return eWhere == eInstances::Every || (eWhere == eInstances::First) == (uInstance == 0);
}

void BindRuns(std::span<const stRun> runs, u32 uInstance, i32 iIndex) {
    for (const stRun& run : runs) {
        if (!HasInstance(run.eWhere, uInstance)) continue;
        for (u32 u = 0; u < run.names.size(); ++u)
            BindData(IdsAt(run.stFirst, u), uInstance, iIndex, run.names[u],
                     run.otherNames.empty() ? nullptr : run.otherNames[u]);
    }
}

/// The two flip boxes of a card whose data has named states; the third of a style has no data. Without a
/// value they show their first state, as before the first one.
void BindDetector(u32 uInstance, i32 iIndex) {
    const u32* const pData = g_fnGetMonitorDataPtrByIndex(iIndex, c_szDetectorName);
    for (u32 uBID : c_auDetectorFlips) {
        CUpdateDataFuncF record;
        record.m_uBID = g_fnMakeLB_ID(uInstance, uBID);
        record.m_iIndex = boxes::FindFlipBox(record.m_uBID);
        record.m_pData = pData;
        CFlipBox_Base* const pBox = boxes::FlipBox(record.m_iIndex);
        if (pBox && pData) g_listUpdateData_F.push_back(record);
        if (pBox && !pData) pBox->m_fnSelectState(0);
    }
}

/// Positions that no card holds have a number beyond the cards.
void BindCards(const stStyle& style) {
    const u32 uCount = std::min(g_stDisplay.uCards, g_uDisplayMax);
    for (u32 u = 0; u < uCount; ++u)
        if (g_iCardOfDisplay[u] >= 0 && g_iCardOfDisplay[u] < 256) {
            BindRuns(style.cardRuns, u, g_iCardOfDisplay[u]);
            BindDetector(u, g_iCardOfDisplay[u]);
        }
}

void BindCpus(const stStyle& style) {
    const u32 uCount = std::min(g_stDisplay.uCpus, g_uDisplayMax);
    for (u32 u = 0; u < uCount; ++u) BindRuns(style.cpuRuns, u, static_cast<i32>(u));
}

void BindSensors(const stStyle& style) {
    for (const stSensorRow& row : g_stDisplay.listSensorRows)
        if (row.uOrdinal < 1024 && row.uGroup < 64)
            BindData(IdsAt(style.stSensor, row.uOrdinal), row.uGroup, static_cast<i32>(row.uGroup),
                     row.szBaseName.c_str(), nullptr);
}

/// What the overlay measures itself.
void BindFigures(const stRun& run) {
    for (u32 u = 0; u < run.names.size(); ++u) {
        CUpdateDataFuncN record = MakeRecord(IdsAt(run.stFirst, u), 0);
        if (record.m_iNumBox == g_iNoIndex) continue;
        const auto it = g_mapAppData.find(run.names[u]);
        record.m_pData = g_fnGetMonitorDataPtr(run.names[u]);
        if (it == g_mapAppData.end() || !record.m_pData) {
            Empty(record);
            continue;
        }
        record.m_uDecimals = it->second.m_uDecimals;
        record.m_uDivisor = it->second.m_uDivisor;
        g_listUpdateFPS_N.push_back(record);
    }
}

boxes::stRow FindRow(const stIds& stRowIds) {
    return {boxes::FindPanel(MakeId(0, stRowIds.uPanel)), boxes::FindNumBox(MakeId(0, stRowIds.uNumBox)),
            boxes::FindTextBox(MakeId(0, stRowIds.uTextBox))};
}

boxes::stDirect ResolveDirect(const stDirectIds& ids) {
    boxes::stDirect st;
    st.stFPS = FindRow(ids.stFPS);
    st.stFrameTime = FindRow(ids.stFrameTime);
    for (u32 u = 0; u < 3; ++u) st.aiTime[u] = boxes::FindNumBox(ids.auTime[u]);
    for (u32 u = 0; u < 2; ++u) st.aiSize[u] = boxes::FindNumBox(ids.auSize[u]);
    st.iSizeText = boxes::FindTextBox(ids.uSizeText);
    st.iSizePanel = boxes::FindPanel(ids.uSizePanel);
    for (u32 u = 0; u < c_uDebugRows; ++u)
        st.aDebug[u] = FindRow(IdsAt({ids.uDebugNumBox, c_uNone, ids.uDebugPanel}, u));
    return st;
}

void Build(const stStyle& style, u32 uStyle) {
    g_fnBeginUpdateBuild();
    boxes::g_stDirect = ResolveDirect(style.stDirect);
    BindFigures(style.stFigures);
    BindCards(style);
    BindCpus(style);
    BindSensors(style);
    g_fnCountUpdateRecords(uStyle);
}

void AlignInPanel(const boxes::stRow& row, i32 iMode, f32 fGapFactor) {
    CControl* const apItems[] = {boxes::NumBox(row.iNumBox), boxes::TextBox(row.iTextBox)};
    g_fnAlignRow(boxes::Panel(row.iPanel), apItems, iMode, fGapFactor);
}

void ShowFPSPair() {
    if (CNumBox_Base* pBox = boxes::NumBox(boxes::g_stDirect.stFPS.iNumBox))
        pBox->m_fnSetInt(static_cast<i32>(g_uFPS), 0);
    if (CNumBox_Base* pBox = boxes::NumBox(boxes::g_stDirect.stFrameTime.iNumBox))
        pBox->m_fnSetFloat(g_fFrameTimeMs, 1);
}

void WalkFigures() {
    for (CUpdateDataFuncN& record : g_listUpdateFPS_N) record();
}

void ShowDebugRows() {
    if (!g_stSettings.bDebugMode) return;
    const i32 aiValues[c_uDebugRows] = {static_cast<i32>(platform::CurrentProcessId()),
                                        static_cast<i32>(platform::CurrentThreadId()), g_stInfoPlace.iAnchor,
                                        g_stInfoPlace.iX, g_stInfoPlace.iY};
    for (u32 u = 0; u < c_uDebugRows; ++u)
        if (CNumBox_Base* pBox = boxes::NumBox(boxes::g_stDirect.aDebug[u].iNumBox))
            pBox->m_fnSetInt(aiValues[u], 0);
}

} // namespace

void g_fnBuildUpdateClassic() {
    g_fnUpdateFPS = g_fnUpdateFPSClassic;
    Build(c_stClassic, 0);
}

void g_fnBuildUpdateRV5() {
    g_fnUpdateFPS = g_fnUpdateFPSRV5;
    Build(c_stRV5, 1);
}

void g_fnUpdateFPSClassic() {
    ShowFPSPair();
    AlignInPanel(boxes::g_stDirect.stFPS, 7, 6.0f);
    AlignInPanel(boxes::g_stDirect.stFrameTime, 7, 6.0f);
    WalkFigures();
    ShowDebugRows();
    if (!g_stSettings.bDebugMode) return;
    for (const boxes::stRow& row : boxes::g_stDirect.aDebug) AlignInPanel(row, 8, 1.0f);
}

void g_fnUpdateFPSRV5() {
    ShowFPSPair();
    WalkFigures();
    ShowDebugRows();
}
