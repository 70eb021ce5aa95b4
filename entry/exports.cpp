#include "entry/exports.h"
#include "base/log.h"
#include "config/profile/profile_names.h"
#include "entry/console.h"
#include "entry/data_report.h"
#include "entry/hooking.h"
#include "platform/last_error.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "shared/commands.h"
#include "shared/monitor_data.h"
#include "shared/offset_tree.h"
#include "shared/process_records.h"
#include <atomic>
#include <cstring>
#include <vector>

using platform::SharedSegment;

namespace {

/// Number of the message by which the companion hands over the hook handle.
constexpr u32 c_uMsgHookHandle = 1280;

bool FitsRawBank(i32 iSize) noexcept { return iSize >= 0 && iSize <= static_cast<i32>(g_uRawDataBytes); }

void CopyRawData(u32 uBank, const void* pData, i32 iSize) noexcept {
    if (pData && FitsRawBank(iSize))
        std::memcpy(SharedSegment()->RawData[uBank], pData, static_cast<std::size_t>(iSize));
}

// A tree that does not fit, or for which memory runs out, is written as empty: readers find no name then.
void WriteDataTable(u32 uBank, const std::map<std::string, u32>& mapOffsets) noexcept {
    u8* pTable = SharedSegment()->DataTable[uBank];
    try {
        const std::vector<u8> vecTree = g_fnSerializeOffsetTree(mapOffsets, g_uDataTableBytes);
        std::memcpy(pTable, vecTree.data(), vecTree.size());
    } catch (...) {
        std::memset(pTable, 0, sizeof(u32));
    }
}

void PrintDataReport() noexcept {
    try {
        g_fnPrintDataReport();
    } catch (...) {
        g_fnLog("GetTavoDataToGWDll() - exception");
    }
}

void CopyWhole(void* pTo, const void* pFrom, std::size_t uBytes) noexcept {
    if (pFrom) std::memcpy(pTo, pFrom, uBytes);
}

// A name as the caller gave it, read no further than its terminator: what stands behind it may not be
// readable.
void CopyName(char16_t* wzTo, const char16_t* wzFrom, u32 uUnits) noexcept {
    u32 u = 0;
    for (; u < uUnits - 1 && wzFrom[u]; ++u) wzTo[u] = wzFrom[u];
    wzTo[u] = 0;
}

// The block of sendCmd_GWDLL_GL with the targets of the filter and all else 0.
void StartBlock(stSharedCommand& stBlock) noexcept {
    static stMonitorFilter s_stFilter;
    std::memcpy(&s_stFilter, &SharedSegment()->MonitorFilter, sizeof s_stFilter);
    std::memset(&stBlock, 0, sizeof stBlock);
    stBlock.uTargetPid = s_stFilter.uProcessId;
    stBlock.uTargetTid = s_stFilter.uThreadId;
    CopyName(stBlock.wzTargetProfile, s_stFilter.wzProfileName, g_uTargetProfileUnits);
}

// Bits 0 to 2: positions, bit 3: status, bit 4: camera. Words of a position: X, Y, alignment.
void FillPositions(stSharedCommand& stBlock, i64 iArgument) noexcept {
    static u32 s_auPos[g_uMonitorPosWords];
    std::memcpy(s_auPos, SharedSegment()->MonitorPos, sizeof s_auPos);
    if (iArgument & 1) {
        stBlock.bPos0Changed = 1;
        stBlock.uPos0X = s_auPos[0], stBlock.uPos0Y = s_auPos[1], stBlock.uPos0Align = s_auPos[2];
    }
    if (iArgument & 2) {
        stBlock.bPos1Changed = 1;
        stBlock.uPos1X = s_auPos[3], stBlock.uPos1Y = s_auPos[4], stBlock.uPos1Align = s_auPos[5];
    }
    if (iArgument & 4) {
        stBlock.bPos2Changed = 1;
        stBlock.uPos2X = s_auPos[6], stBlock.uPos2Y = s_auPos[7], stBlock.uPos2Align = s_auPos[8];
    }
    if (iArgument & 8) {
        stBlock.bStatusChanged = 1;
        stBlock.uStatus = s_auPos[9];
    }
    if (iArgument & 16) stBlock.bReloadCamera = 1;
}

// KEEP(companions): disabling answers as a failure does, yet it has worked. Companions in use know that.
u32 SetGlobalEnable(i64 iArgument) noexcept {
    SharedSegment()->bGlobalEnable = iArgument != 0 ? 1 : 0;
    return iArgument != 0 ? 0 : g_uSendCmdFailed;
}

// True if the command fills a block that is to be written.
bool FillBlock(stSharedCommand& stBlock, u32 uCommand, i64 iArgument) noexcept {
    switch (uCommand) {
    case COMMAND_RELEASE:
        stBlock.bRelease = 1;
        return true;
    case COMMAND_POSITIONS:
        if (iArgument != 0) FillPositions(stBlock, iArgument);
        return iArgument != 0;
    case COMMAND_SCREENSHOT:
        stBlock.u8Screenshot = g_fnReadOnce(SharedSegment()->u8MonitorScreenshot);
        return true;
    case COMMAND_TIMER:
        stBlock.u8Timer = g_fnReadOnce(SharedSegment()->u8MonitorTimer);
        return true;
    case COMMAND_RELEASE_ALL: // a release for everyone: the filter in the segment stays, the block carries
                              // none
        std::memset(&stBlock, 0, sizeof stBlock);
        stBlock.bRelease = 1;
        return true;
    case COMMAND_REBUILD:
        stBlock.bRebuildUpdate = 1;
        return true;
    default:
        return false;
    }
}

} // namespace

CGWDll& CGWDll::operator=(const CGWDll&) { return *this; }
CGWDll& CGWDll::operator=(CGWDll&&) { return *this; }

// KEEP(companions): wipes the records of live processes too, which never register again, and the two message
// ids until the next attach of any thread. bSegmentReady stays 0, so the next admitted process clears once
// more.
void InitialSharedSegmentData_GL() {
    stSharedSegment* pSegment = SharedSegment();
    pSegment->bSegmentReady = 0;
    g_fnClearRecordTables();
    pSegment->bGlobalEnable = 1;
    pSegment->bReserved = 0;
    pSegment->bEnableQueryFrameTime = 0;
    pSegment->uMsgUnhookThread = 0;
    pSegment->uMsgFromGWexe = 0;
    std::memset(&pSegment->DefaultCommand, 0, sizeof pSegment->DefaultCommand);
    pSegment->DefaultCommand.bRelease = 1;
    pSegment->DefaultCommand.uPos0Align = 1;
    pSegment->DefaultCommand.uPos1Align = 1;
    pSegment->DefaultCommand.uPos2Align = 1;
}

void EnableQueryFrameTime_GL(u8 bEnable) { SharedSegment()->bEnableQueryFrameTime = bEnable; }

u32 sendCmd_GWDLL_GL(u32 uCommand, u32 uProcessId, u32 uThreadId, i64 iArgument) {
    static stSharedCommand s_stBlock;
    StartBlock(s_stBlock);
    if (uCommand > g_uCommandLast || g_fnIsUnusedCommand(uCommand)) return g_uSendCmdFailed;
    if (uCommand == COMMAND_ENABLE) return SetGlobalEnable(iArgument);
    if (FillBlock(s_stBlock, uCommand, iArgument))
        WriteCommandRecord(uProcessId, uThreadId, 1, s_stBlock, g_uRecordChanged | g_uRecordCommand);
    return 0;
}

void SetMonitorDataFromGWexeToGWDll_GL(const void* pData, i32 iSize) {
    CopyRawData(g_fnCurrentDataBank(), pData, iSize);
}

void SetMonitorDataOffsetFromGWexeToGWDll_GL(const std::map<std::string, u32>& mapOffsets, const void* pData,
                                             i32 iSize) {
    const u32 uBank = g_fnCurrentDataBank() ^ 1;
    WriteDataTable(uBank, mapOffsets);
    CopyRawData(uBank, pData, iSize);
    // KEEP(companions): the flip comes also when the raw data was refused. It is what publishes the change,
    // so it comes last, behind all that was written.
    std::atomic_thread_fence(std::memory_order_release);
    static_cast<volatile u32&>(SharedSegment()->uDataBank) = uBank;
}

void SetMonitorFilterDataFromGWexeToGWDll_GL(const void* pFilter) {
    CopyWhole(&SharedSegment()->MonitorFilter, pFilter, sizeof(stMonitorFilter));
}

void SetMonitorPosDataFromGWexeToGWDll_GL(const void* pPos) {
    CopyWhole(SharedSegment()->MonitorPos, pPos, sizeof SharedSegment()->MonitorPos);
}

u8 SetMonitorScreenshotDataFromGWexeToGWDll_GL(const u8* pValue) {
    if (pValue) SharedSegment()->u8MonitorScreenshot = *pValue;
    return g_fnReadOnce(SharedSegment()->u8MonitorScreenshot);
}

u8 SetMonitorTimerDataFromGWexeToGWDll_GL(const u8* pValue) {
    if (pValue) SharedSegment()->u8MonitorTimer = *pValue;
    return g_fnReadOnce(SharedSegment()->u8MonitorTimer);
}

void SetMonitorVGADataFromGWexeToGWDll_GL(const void* pData) {
    CopyWhole(SharedSegment()->MonitorVGA, pData, g_uMonitorVGABytes);
}

// KEEP(companions): 1024 bytes whatever the string's length; companions in use hand over a buffer that long.
void SetOSDGlobalProfileNameFromGWexeToGWDll_GL(const char16_t* wzName) {
    CopyWhole(SharedSegment()->wzGlobalProfile, wzName, sizeof SharedSegment()->wzGlobalProfile);
}

void SetProcessID2ProfileNameFromGWexeToGWDll_GL(const void* pTable) {
    CopyWhole(SharedSegment()->ProcessProfile, pTable, sizeof SharedSegment()->ProcessProfile);
}

f32 GetFrameTimeByPID_GL(u32 uProcessId) {
    if (uProcessId == 0) return 0.0f;
    for (const stProcessRecord& stRecord : SharedSegment()->StatusTable) {
        const f32 fFrameTime = g_fnReadOnce(stRecord.Command.fFrameTime);
        if (g_fnReadOnce(stRecord.uProcessId) == uProcessId && fFrameTime > 0.0f) return fFrameTime;
    }
    return 0.0f;
}

// KEEP(companions): never answers the code itself: it writes 9527 and answers that, which arms the field for
// the next report. The companion tells by it whether frames pass.
u32 GetAPIVerByTID_GL(u32 uThreadId) {
    if (uThreadId == 0) return 0;
    for (stProcessRecord& stRecord : SharedSegment()->StatusTable) {
        if (g_fnReadOnce(stRecord.uThreadId) != uThreadId) continue;
        stRecord.Command.uApiCode = g_uApiCodeUnseen;
        return g_uApiCodeUnseen;
    }
    return 0;
}

i32 GetDataFullNamesFromProfile_GL(const char16_t* wzProfile, std::set<std::string>* psetNames) {
    try {
        return g_fnGetDataFullNames(wzProfile, psetNames);
    } catch (...) {
        return 0;
    }
}

i32 GetTavoDataToGWDll(const char* szSelector) {
    if (!szSelector) return 0;
    if (szSelector[0] == '0') PrintDataReport();
    if (szSelector[0] == '1') g_fnPrintExclusionTable();
    return 0;
}

i32 SetTavoDataToGWDll() {
    try {
        const std::map<std::string, u32> mapDropped{{"0", 0}, {"1", 1}};
        return mapDropped.empty() ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

i32 deInit_GWDll_GL(u32 deInitCase) {
    UnregisterProcess(platform::CurrentProcessId(), platform::CurrentThreadId());
    UnHook_graph_GL(deInitCase);
    return Uninstall_HookFunc_GetMSGOfGL();
}

std::intptr_t Hook_CB_ProcGetMSGOfGL(i32 iCode, std::uintptr_t wParam, std::intptr_t lParam) {
    // Without a handle the call below leaves an error that the host's own PeekMessage would seem to have met.
    const platform::ErrorKeeper keeper;
    // KEEP(companions): message 1280 is taken from any sender, since the companion posts it from its own
    // process.
    void* hHook = nullptr;
    if (platform::HookMessageParam(lParam, c_uMsgHookHandle, &hHook)) g_hHookGetMSGOfGL = hHook;
    return platform::CallNextMessageHook(g_hHookGetMSGOfGL, iCode, wParam, lParam);
}
