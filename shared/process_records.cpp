#include "shared/process_records.h"
#include "platform/named_mapping.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "shared/dead_records.h"
#include <algorithm>
#include <atomic>
#include <cstring>
#include <string>

using platform::SharedSegment;

char16_t g_wzProfileName[g_uProfileNameUnits] = u"Default";
char16_t g_wzProfileFolder[g_uProfileNameUnits + 16] = u"Profiles\\Default";

namespace {

using RecordTable = stProcessRecord[g_uProcessRecordCount];

std::atomic<bool> g_bRecordOwed = false;

bool IsCommandTable(const RecordTable& aTable) noexcept { return &aTable == &SharedSegment()->CommandTable; }

/// The stamp beside a record.
u32& StampOf(const RecordTable& aTable, const stProcessRecord* pRecord) noexcept {
    stSharedSegment* pSegment = SharedSegment();
    return (IsCommandTable(aTable) ? pSegment->aCommandStamp : pSegment->aStatusStamp)[pRecord - aTable];
}

stProcessRecord* FindFree(RecordTable& aTable) noexcept {
    for (stProcessRecord& stRecord : aTable)
        if (g_fnReadOnce(stRecord.uThreadId) == 0) return &stRecord;
    return nullptr;
}

// KEEP(companions): thread or process id, one of the two is enough and the first such record wins; so a swap
// on another thread than the one that registered still finds its process's record.
stProcessRecord* FindMatch(RecordTable& aTable, u32 uProcessId, u32 uThreadId) noexcept {
    for (stProcessRecord& stRecord : aTable)
        if (g_fnReadOnce(stRecord.uThreadId) == uThreadId || g_fnReadOnce(stRecord.uProcessId) == uProcessId)
            return &stRecord;
    return nullptr;
}

void SetIds(RecordTable& aTable, stProcessRecord* pRecord, u32 uProcessId, u32 uThreadId,
            u32 uStamp) noexcept {
    if (!pRecord) return;
    // KEEP(companions): command and changed flag of the slot's last holder stay in it.
    StampOf(aTable, pRecord) = uStamp;
    pRecord->uProcessId = uProcessId;
    pRecord->uThreadId = uThreadId; // last, since it tells a taken slot from a free one
}

void FreeRecord(RecordTable& aTable, stProcessRecord* pRecord) noexcept { SetIds(aTable, pRecord, 0, 0, 0); }

/// A slot is free in each table, if need be one that a killed process left behind.
void MakeRoom() noexcept {
    stSharedSegment* pSegment = SharedSegment();
    if (FindFree(pSegment->CommandTable) && FindFree(pSegment->StatusTable)) return;
    g_fnFreeDeadRecords(*pSegment, &platform::IsProcessGone);
    platform::RemoveDeadMappings();
}

void ClearTarget(stSharedCommand& stCommand) noexcept {
    stCommand.uTargetPid = 0;
    stCommand.uTargetTid = 0;
    stCommand.wzTargetProfile[0] = 0;
}

void ClearPositions(stSharedCommand& stCommand) noexcept {
    stCommand.bPos0Changed = stCommand.bPos1Changed = stCommand.bPos2Changed = 0;
    stCommand.uPos0Align = stCommand.uPos0X = stCommand.uPos0Y = 0;
    stCommand.uPos1Align = stCommand.uPos1X = stCommand.uPos1Y = 0;
    stCommand.uPos2Align = stCommand.uPos2X = stCommand.uPos2Y = 0;
}

void ClearCommandRecord(stProcessRecord& stRecord) noexcept {
    FreeRecord(SharedSegment()->CommandTable, &stRecord);
    stRecord.bChanged = 0;
    stSharedCommand& stCommand = stRecord.Command;
    ClearTarget(stCommand);
    ClearPositions(stCommand);
    stCommand.bRelease = stCommand.bStatusChanged = stCommand.u8Screenshot = 0;
    stCommand.bReloadCamera = stCommand.u8Timer = stCommand.bRebuildUpdate = 0;
    stCommand.uStatus = 0;
}

void ClearStatusRecord(stProcessRecord& stRecord) noexcept {
    FreeRecord(SharedSegment()->StatusTable, &stRecord);
    ClearTarget(stRecord.Command);
    stRecord.Command.uFPS = 0;
    stRecord.Command.fFrameTime = 0.0f;
    stRecord.Command.uApiCode = g_uApiCodeUnseen;
}

void MergePositions(stSharedCommand& stStored, const stSharedCommand& stIncoming) noexcept {
    // KEEP(companions): a position whose flag is unchanged keeps its stored coordinates.
    if (stStored.bPos0Changed != stIncoming.bPos0Changed) {
        stStored.bPos0Changed = stIncoming.bPos0Changed;
        stStored.uPos0Align = stIncoming.uPos0Align;
        stStored.uPos0X = stIncoming.uPos0X;
        stStored.uPos0Y = stIncoming.uPos0Y;
    }
    if (stStored.bPos1Changed != stIncoming.bPos1Changed) {
        stStored.bPos1Changed = stIncoming.bPos1Changed;
        stStored.uPos1Align = stIncoming.uPos1Align;
        stStored.uPos1X = stIncoming.uPos1X;
        stStored.uPos1Y = stIncoming.uPos1Y;
    }
    if (stStored.bPos2Changed != stIncoming.bPos2Changed) {
        stStored.bPos2Changed = stIncoming.bPos2Changed;
        stStored.uPos2Align = stIncoming.uPos2Align;
        stStored.uPos2X = stIncoming.uPos2X;
        stStored.uPos2Y = stIncoming.uPos2Y;
    }
}

void MergeByte(u8& uStored, u8 uIncoming) noexcept {
    if (uStored != uIncoming) uStored = uIncoming;
}

void WriteOneCommand(stProcessRecord& stRecord, u8 bChanged, const stSharedCommand& stCommand,
                     u32 uMask) noexcept {
    if (uMask & g_uRecordCommand) g_fnMergeCommand(stRecord.Command, stCommand);
    // Behind the block: whoever sees the flag finds the whole command.
    std::atomic_thread_fence(std::memory_order_release);
    if (uMask & g_uRecordChanged) stRecord.bChanged = bChanged;
}

} // namespace

void RegisterProcess(u32 uProcessId, u32 uThreadId) noexcept {
    stSharedSegment* pSegment = SharedSegment();
    const u32 uStamp = platform::ProcessStamp(uProcessId);
    MakeRoom();
    SetIds(pSegment->CommandTable, FindFree(pSegment->CommandTable), uProcessId, uThreadId, uStamp);
    SetIds(pSegment->StatusTable, FindFree(pSegment->StatusTable), uProcessId, uThreadId, uStamp);
}

void UnregisterProcess(u32 uProcessId, u32 uThreadId) noexcept {
    RecordTable &aCommand = SharedSegment()->CommandTable, &aStatus = SharedSegment()->StatusTable;
    FreeRecord(aCommand, FindMatch(aCommand, uProcessId, uThreadId));
    FreeRecord(aStatus, FindMatch(aStatus, uProcessId, uThreadId));
}

bool ReadCommandRecord(u32 uProcessId, u32 uThreadId, u32 uMask, u8* pbChanged,
                       stSharedCommand* pCommand) noexcept {
    if (uThreadId == 0) return false;
    const stProcessRecord* pRecord = FindMatch(SharedSegment()->CommandTable, uProcessId, uThreadId);
    if (!pRecord) return false;
    if (uMask & g_uRecordChanged) *pbChanged = g_fnReadOnce(pRecord->bChanged);
    if (uMask & g_uRecordCommand) std::memcpy(pCommand, &pRecord->Command, sizeof *pCommand);
    return true;
}

void WriteCommandRecord(u32 uProcessId, u32 uThreadId, u8 bChanged, const stSharedCommand& stCommand,
                        u32 uMask) noexcept {
    RecordTable& aTable = SharedSegment()->CommandTable;
    if (uThreadId != 0) {
        stProcessRecord* pRecord = FindMatch(aTable, uProcessId, uThreadId);
        if (pRecord) WriteOneCommand(*pRecord, bChanged, stCommand, uMask);
        return;
    }
    for (stProcessRecord& stRecord : aTable)
        if (g_fnReadOnce(stRecord.uThreadId) != 0) WriteOneCommand(stRecord, bChanged, stCommand, uMask);
}

void WriteStatusRecord(u32 uProcessId, u32 uThreadId, const stSharedCommand& stCommand) noexcept {
    stProcessRecord* pRecord = FindMatch(SharedSegment()->StatusTable, uProcessId, uThreadId);
    if (!pRecord) return;
    // KEEP(companions): uFPS never reaches the record.
    if (pRecord->Command.uApiCode != stCommand.uApiCode) pRecord->Command.uApiCode = stCommand.uApiCode;
    if (g_fnReadOnce(SharedSegment()->bEnableQueryFrameTime))
        pRecord->Command.fFrameTime = stCommand.fFrameTime;
}

// KEEP(companions): targets of a record change only by the full copy.
void g_fnMergeCommand(stSharedCommand& stStored, const stSharedCommand& stIncoming) noexcept {
    if (stIncoming.bRelease) {
        std::memmove(&stStored, &stIncoming, sizeof stStored);
        return;
    }
    // A waiting release is not overwritten by a rebuild.
    // KEEP(companions): every other block cancels it.
    if (stIncoming.bRebuildUpdate && g_fnReadOnce(stStored.bRelease)) return;
    stStored.bRelease = 0;
    MergePositions(stStored, stIncoming);
    if (stStored.bStatusChanged != stIncoming.bStatusChanged) {
        stStored.bStatusChanged = stIncoming.bStatusChanged;
        stStored.uStatus = stIncoming.uStatus;
    }
    MergeByte(stStored.u8Timer, stIncoming.u8Timer);
    MergeByte(stStored.u8Screenshot, stIncoming.u8Screenshot);
    MergeByte(stStored.bReloadCamera, stIncoming.bReloadCamera);
    MergeByte(stStored.bRebuildUpdate, stIncoming.bRebuildUpdate);
}

void g_fnClearRecordTables() noexcept {
    for (stProcessRecord& stRecord : SharedSegment()->CommandTable) ClearCommandRecord(stRecord);
    for (stProcessRecord& stRecord : SharedSegment()->StatusTable) ClearStatusRecord(stRecord);
}

void g_fnClearOnFirstAttach() noexcept {
    if (g_fnReadOnce(SharedSegment()->bSegmentReady)) return;
    g_fnClearRecordTables();
    SharedSegment()->bSegmentReady = 1;
    platform::RemoveDeadMappings();
}

void g_fnDropRecordsOfProcess(u32 uProcessId) noexcept {
    stSharedSegment* pSegment = SharedSegment();
    for (u32 u = 0; u < g_uProcessRecordCount; ++u) {
        stProcessRecord& stCommand = pSegment->CommandTable[u];
        stProcessRecord& stStatus = pSegment->StatusTable[u];
        if (g_fnReadOnce(stCommand.uProcessId) == uProcessId) FreeRecord(pSegment->CommandTable, &stCommand);
        if (g_fnReadOnce(stStatus.uProcessId) == uProcessId) FreeRecord(pSegment->StatusTable, &stStatus);
    }
}

void g_fnOweRecord() noexcept { g_bRecordOwed = true; }

void g_fnTakeOwedRecord(u32 uProcessId, u32 uThreadId) noexcept {
    if (!g_bRecordOwed.load(std::memory_order_relaxed) || !g_bRecordOwed.exchange(false)) return;
    RegisterProcess(uProcessId, uThreadId);
}

bool g_fnIsPlainFolderName(const char16_t* wzName, u32 uCapacity) noexcept {
    constexpr char16_t c_wzRefused[] = u"\\/:*?\"<>|";
    bool bOnlyDotsAndBlanks = true;
    u32 uLength = 0;
    for (; uLength < uCapacity && wzName[uLength]; ++uLength) {
        const char16_t c = wzName[uLength];
        if (c < 0x20 || (c >= 0x7F && c < 0xA0)) return false;
        if (std::char_traits<char16_t>::find(c_wzRefused, std::size(c_wzRefused) - 1, c)) return false;
        bOnlyDotsAndBlanks = bOnlyDotsAndBlanks && (c == u'.' || c == u' ');
    }
    return uLength > 0 && !bOnlyDotsAndBlanks;
}

void g_fnSetProfileName(const char16_t* wzName) noexcept {
    if (!wzName) return;
    u32 uLength = 0;
    for (; uLength < g_uProfileNameUnits - 1 && wzName[uLength]; ++uLength)
        g_wzProfileName[uLength] = wzName[uLength];
    g_wzProfileName[uLength] = 0;
    if (uLength == 0) std::copy_n(u"Default", 8, g_wzProfileName);
    g_wzProfileFolder[0] = 0;
    if (!g_fnIsPlainFolderName(g_wzProfileName, g_uProfileNameUnits)) return;
    char16_t* pEnd = std::copy_n(u"Profiles\\", 9, g_wzProfileFolder);
    std::copy_n(g_wzProfileName, std::char_traits<char16_t>::length(g_wzProfileName) + 1, pEnd);
}

void g_fnSelectProfileName() noexcept {
    const stSharedSegment* pSegment = SharedSegment();
    char16_t wzCopy[g_uProfileNameUnits];
    std::memcpy(wzCopy, pSegment->wzGlobalProfile, sizeof wzCopy);
    g_fnSetProfileName(wzCopy);

    const u32 uProcessId = platform::CurrentProcessId(), uThreadId = platform::CurrentThreadId();
    for (const stProcessProfile& stEntry : pSegment->ProcessProfile) {
        if (g_fnReadOnce(stEntry.uProcessId) != uProcessId && g_fnReadOnce(stEntry.uThreadId) != uThreadId)
            continue;
        if (g_fnReadOnce(stEntry.bUseGlobal)) return;
        std::memcpy(wzCopy, stEntry.wzProfileName, sizeof wzCopy);
        g_fnSetProfileName(wzCopy);
        return;
    }
}
