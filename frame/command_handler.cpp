#include "frame/command_handler.h"
#include "base/layout_style.h"
#include "base/log.h"
#include "capture/shot_request.h"
#include "draw/creation_table.h"
#include "frame/parts.h"
#include "frame/update/local_clock.h"
#include "frame/update/status_items.h"
#include "frame/update/update.h"
#include "platform/process.h"
#include "shared/api_code.h"
#include "shared/process_records.h"
#include <algorithm>
#include <iterator>

namespace {

/// The block's name may lack a terminator; it ends at its field then.
bool IsOurProfile(const char16_t* wzTarget) noexcept {
    for (u32 u = 0; u < g_uTargetProfileUnits; ++u) {
        if (wzTarget[u] != g_wzProfileName[u]) return false;
        if (!wzTarget[u]) return true;
    }
    return g_wzProfileName[g_uTargetProfileUnits] == 0;
}

void ClearFlags(stSharedCommand& stBlock) noexcept {
    stBlock.bRelease = stBlock.u8Screenshot = stBlock.bReloadCamera = stBlock.u8Timer = 0;
    stBlock.bStatusChanged = stBlock.bPos0Changed = stBlock.bRebuildUpdate = 0;
    stBlock.bPos1Changed = stBlock.bPos2Changed = 0;
}

void Release(stSharedCommand& stBlock) {
    if (g_stCreationTable.m_fnReleaseHook) g_stCreationTable.m_fnReleaseHook();
    g_uApiCode = 0;
    stBlock.bRelease = 0;
}

void Rebuild(stSharedCommand& stBlock) {
    stBlock.bRebuildUpdate = 0;
    g_fnResetUpdate();
}

void ReloadCamera(stSharedCommand& stBlock) {
    if (g_stParts.m_fnReloadCamera) g_stParts.m_fnReloadCamera();
    stBlock.bReloadCamera = 0;
}

void TakeShot(stSharedCommand& stBlock) noexcept {
    g_bShotPending = stBlock.u8Screenshot;
    g_fnStartShutter();
    stBlock.u8Screenshot = 0;
}

void ToggleStopWatch(stSharedCommand& stBlock) noexcept {
    g_bStopWatchShown = 1;
    g_bStopWatchOn = g_bStopWatchOn ? 0 : 1;
    stBlock.u8Timer = 0;
}

void TakeStatus(stSharedCommand& stBlock) noexcept {
    std::fill(std::begin(g_abStatusDue), std::end(g_abStatusDue), u8{1});
    std::fill(std::begin(g_auStatus), std::end(g_auStatus), stBlock.uStatus);
    g_timerStatus.Restart();
    stBlock.bStatusChanged = 0;
}

stStatusPosition Position(u8 bChanged, u32 uAlign, u32 uX, u32 uY) noexcept {
    return {bChanged, static_cast<i32>(uAlign), static_cast<i32>(uX), static_cast<i32>(uY)};
}

// Reached with no flag set as well: the entries are empty then, and the status timer starts again.
void Reposition(stSharedCommand& stBlock) {
    const stStatusPosition aPositions[3] = {
        Position(stBlock.bPos0Changed, stBlock.uPos0Align, stBlock.uPos0X, stBlock.uPos0Y),
        Position(stBlock.bPos1Changed, stBlock.uPos1Align, stBlock.uPos1X, stBlock.uPos1Y),
        Position(stBlock.bPos2Changed, stBlock.uPos2Align, stBlock.uPos2X, stBlock.uPos2Y),
    };
    g_fnMoveStatusItems(aPositions);
    g_timerStatus.Restart();
    stBlock.bPos0Changed = stBlock.bPos1Changed = stBlock.bPos2Changed = 0;
}

void ActOnLayout(stSharedCommand& stBlock) {
    if (g_uLayoutStyle >= STYLE_CUSTOM) return;
    if (stBlock.u8Timer) return ToggleStopWatch(stBlock);
    if (stBlock.bStatusChanged) return TakeStatus(stBlock);
    Reposition(stBlock);
}

// KEEP(companions): one flag a pass; the others wait in the record for the next command.
void ActOnFirstFlag(stSharedCommand& stBlock) {
    if (stBlock.bRelease) return Release(stBlock);
    if (stBlock.bRebuildUpdate) return Rebuild(stBlock);
    if (stBlock.bReloadCamera) return ReloadCamera(stBlock);
    if (stBlock.u8Screenshot) return TakeShot(stBlock);
    ActOnLayout(stBlock);
}

} // namespace

bool g_fnCommandIsForUs(const stSharedCommand& stBlock) noexcept {
    if (stBlock.uTargetPid != 0) return stBlock.uTargetPid == platform::CurrentProcessId();
    if (stBlock.uTargetTid != 0) return stBlock.uTargetTid == platform::CurrentThreadId();
    if (stBlock.wzTargetProfile[0] && g_wzProfileName[0]) return IsOurProfile(stBlock.wzTargetProfile);
    return true;
}

void g_fnTavo_ProcessCommand(stSharedCommand& stBlock) noexcept {
    try {
        if (g_fnCommandIsForUs(stBlock))
            ActOnFirstFlag(stBlock);
        else
            ClearFlags(stBlock);
    } catch (...) {
        g_fnLog("GLGraphics: g_fnTavo_ProcessCommand() - exception");
        ClearFlags(stBlock);
    }
    // The consumed flags reach the record through the merge.
    // KEEP(companions): a release and a rebuild that came together stay in the record, since the merge stops
    // at them.
    const stSharedCommand stCopy = stBlock;
    WriteCommandRecord(platform::CurrentProcessId(), platform::CurrentThreadId(), 0, stCopy,
                       g_uRecordCommand);
}
