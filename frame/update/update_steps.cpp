#include "frame/update/update_steps.h"

#include "base/layout_style.h"
#include "base/slots.h"
#include "config/fixed/info_place.h"
#include "config/settings/settings.h"
#include "controls/align_row.h"
#include "controls/control_kinds.h"
#include "controls/num_box.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "controls/text_box.h"
#include "draw/canvas.h"
#include "draw/creation_table.h"
#include "frame/parts.h"
#include "frame/update/local_clock.h"
#include "frame/update/status_items.h"
#include "frame/update/timers.h"
#include "frame/update/update.h"
#include "frame/update/update_boxes.h"
#include "frame/update/update_flags.h"
#include "platform/clock.h"
#include "platform/segment.h"
#include "platform/shared_block.h"

#include <algorithm>
#include <cstring>

const u8* g_pMonitorVGA = nullptr;

namespace update {
namespace {

constexpr f32 c_fStopWatchSeconds = 0.05f, c_fClockSeconds = 1.0f, c_fAnimationSeconds = 0.025f;

/// Managers that live side by side must not see an adapter block that changes between them.
void FreezeMonitorVGA() {
    static u8 auCopy[g_uMonitorVGABytes];
    const auto uManagers = std::count_if(std::begin(g_apOSDManager), std::end(g_apOSDManager),
                                         [](const COSDManager* p) { return p != nullptr; });
    if (uManagers < 2) return;
    std::memcpy(auCopy, platform::SharedSegment()->MonitorVGA, sizeof auCopy);
    g_pMonitorVGA = auCopy;
}

/// True if the flag of the current slot was up; it is down then.
bool Consume(u8 (&abFlags)[g_uManagerSlots]) {
    const bool bUp = abFlags[g_uManagerSlot] != 0;
    abFlags[g_uManagerSlot] = 0;
    return bUp;
}

void WalkData() {
    const bool bBatch = g_uUpdateRecordCount > 0;
    if (bBatch && g_stCreationTable.Begin) g_stCreationTable.Begin();
    for (CUpdateDataFuncN& record : g_listUpdateData_N) record();
    for (CUpdateDataFuncL& record : g_listUpdateData_L) record();
    for (stUpdateMixedData& record : g_listUpdateMixed) record();
    for (CUpdateDataFuncF& record : g_listUpdateData_F) record();
    if (bBatch && g_stCreationTable.End) g_stCreationTable.End();
}

/// Client size as a row of a style with fixed ids.
void ShowSize(i32 iMode) {
    CNumBox_Base* pWidth = boxes::NumBox(boxes::g_stDirect.aiSize[0]);
    CNumBox_Base* pHeight = boxes::NumBox(boxes::g_stDirect.aiSize[1]);
    if (!pWidth) return;
    pWidth->m_fnSetInt(static_cast<i32>(g_uWidth), 0);
    if (pHeight) pHeight->m_fnSetInt(static_cast<i32>(g_uHeight), 0);
    CControl* const apItems[] = {pWidth, boxes::TextBox(boxes::g_stDirect.iSizeText), pHeight};
    g_fnAlignRow(boxes::Panel(boxes::g_stDirect.iSizePanel), apItems, iMode, 1.0f);
}

void ShowSizeByStyle() {
    if (g_uLayoutStyle == STYLE_CLASSIC) ShowSize(7);
    if (g_uLayoutStyle == STYLE_RV5) ShowSize(g_stInfoPlace.iSizeRowAlignRV5);
}

/// KEEP(figures): the fields count from the smallest: hundredths where seconds stood, minutes where hours
/// stood.
void ReadStopWatch() {
    const u32 uHundredths = static_cast<u32>(g_stTimers.StopWatch.Elapsed() * 100.0f);
    g_stLocalClock.uSecond = uHundredths % 100;
    g_stLocalClock.uMinute = uHundredths / 100 % 60;
    g_stLocalClock.uHour = uHundredths / 6000;
}

void NoticeStopWatch() {
    static u8 bLastState = 0;
    if (bLastState == g_bStopWatchOn) return;
    bLastState = g_bStopWatchOn;
    g_stTimers.StopWatch.Restart();
}

void OverrideTime() {
    const u64 uMilliseconds = static_cast<u64>(platform::UnixMilliseconds());
    g_stLocalClock.uSecond = static_cast<u32>(uMilliseconds % 100);
    g_stLocalClock.uMinute = static_cast<u32>(uMilliseconds / 100 % 100);
    g_stLocalClock.uHour = static_cast<u32>(uMilliseconds / 10000 % 100);
    g_fnRaiseUpdateFlag(g_bUpdateTime);
}

void ShowTwoDigits(i32 iNumBox, u32 uValue) {
    if (CNumBox_Base* pBox = boxes::NumBox(iNumBox)) pBox->m_fnSetIntEx(static_cast<i32>(uValue), 2, false);
}

bool HasVideoBox() {
    return g_ppVideoBox &&
           std::any_of(g_ppVideoBox, g_ppVideoBox + g_uVideoBoxEntries, [](auto* p) { return p != nullptr; });
}

} // namespace

void CheckDataInterval() {
    if (!(g_stTimers.Data.Elapsed() >= fDataInterval)) return;
    FreezeMonitorVGA();
    g_fnRaiseUpdateFlag(g_bUpdateData);
    g_stTimers.Data.Restart();
}

void ShowFPS() {
    if (Consume(g_bUpdateFPS) && g_fnUpdateFPS) g_fnUpdateFPS();
}

void ShowData() {
    if (!Consume(g_bUpdateData)) return;
    WalkData();
    if (g_bLayoutDirty) ShowSizeByStyle();
}

void KeepTime() {
    NoticeStopWatch();
    if (g_stTimers.Clock.Elapsed() >= (g_bStopWatchOn ? c_fStopWatchSeconds : c_fClockSeconds)) {
        g_bStopWatchOn ? ReadStopWatch() : g_fnReadLocalTime();
        g_stTimers.Clock.Restart();
        g_fnRaiseUpdateFlag(g_bUpdateTime);
    }
    if (g_stSettings.bDebugTime) OverrideTime();
}

void ShowTime() {
    if (!Consume(g_bUpdateTime)) return;
    if (g_uLayoutStyle == STYLE_CUSTOM)
        for (stUpdateMixedData& record : g_listUpdateMixed) record();
    if (g_uLayoutStyle > STYLE_RV5) return;
    const u32 auFields[3] = {g_stLocalClock.uHour, g_stLocalClock.uMinute, g_stLocalClock.uSecond};
    for (u32 u = 0; u < 3; ++u) ShowTwoDigits(boxes::g_stDirect.aiTime[u], auFields[u]);
}

void TransferVideo() {
    if (g_stParts.m_fnTransferVideo && HasVideoBox()) g_stParts.m_fnTransferVideo();
}

void PollControlBlock() {
    if (g_stParts.m_fnPollControlBlock) g_stParts.m_fnPollControlBlock();
}

void AnimateShutter() {
    if (g_stParts.m_fnShutter) g_stParts.m_fnShutter();
}

void AnimateStatus() {
    const f32 fSeconds = g_stTimers.Animation.Elapsed();
    if (!(fSeconds >= c_fAnimationSeconds)) return;
    g_fnStatusStep(fSeconds);
    g_stTimers.Animation.Restart();
}

void MoveShutter() {
    if (!Consume(g_abShutterMove)) return;
    CControl* pImage = g_ppImgBox ? g_ppImgBox[g_uShutterImage] : nullptr;
    CControl* pPanel = g_ppStylePanel ? g_ppStylePanel[5] : nullptr;
    if (!pImage || !pPanel) return;
    f32 fX = 0.0f, fY = 0.0f;
    pPanel->m_fnGetPosition(&fX, &fY, nullptr);
    pImage->m_fnSetPosition(fX, fY, 0.0f);
}

} // namespace update
