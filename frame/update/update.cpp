// The order of an update, its flags and its timers. What the steps do stands in update_steps.cpp.
#include "frame/update/update.h"

#include "controls/osd_manager.h"
#include "frame/frame_driver.h"
#include "frame/update/mixed_items.h"
#include "frame/update/update_boxes.h"
#include "frame/update/update_steps.h"
#include "shared/monitor_data.h"
#include "shared/overlay_state.h"

#include <cstring>

u8 g_bUpdateFPS[20], g_bUpdateTime[20], g_bUpdateData[20], g_bUpdateFrameTime[20];
CTimer g_timerData, g_timerAnimation, g_timerUpdate, g_timerWarning, g_timerStopWatch, g_timerClock;
f32 g_fLastFrameSeconds = 0.0f;

void g_fnRaiseUpdateFlag(u8 (&abFlags)[20]) noexcept { std::memset(abFlags, 1, sizeof abFlags); }

void g_fnRaiseUpdateFlags() noexcept {
    g_fnRaiseUpdateFlag(g_bUpdateFPS);
    g_fnRaiseUpdateFlag(g_bUpdateTime);
    g_fnRaiseUpdateFlag(g_bUpdateData);
    g_fnRaiseUpdateFlag(g_bUpdateFrameTime);
}

void g_fnBeginUpdateBuild() {
    g_fnClearUpdateLists();
    boxes::g_stDirect = {};
    g_fnRegisterAllAppData();
    if (!g_bStopWatchOn) g_fnReadLocalTime();
}

void g_fnResetUpdate() {
    if (g_uLayoutStyle > 2) return;
    g_fnRaiseUpdateFlags();
    if (g_uLayoutStyle == 0) return g_fnBuildUpdateClassic();
    if (g_uLayoutStyle == 1) return g_fnBuildUpdateRV5();
    g_fnHideMixedItems();
    g_fnBuildUpdateCustom();
}

/// The frame timer is read and started again in every update, whether or not a sample is taken.
static void UpdateFrameTime() {
    const f32 fSeconds = g_timerFrame.Elapsed();
    g_timerFrame.Restart();
    g_fnSampleFrameTime(fSeconds);
    g_bUpdateFrameTime[g_uManagerSlot] = 0;
}

void g_fnUpdate_Tavo() {
    const CTimerReading reading;
    g_fnSelectManager();
    UpdateFrameTime();
    update::CheckWarnings();
    g_fnSampleFPS();
    update::CheckDataInterval();
    update::ShowFPS();
    update::ShowData();
    update::KeepTime();
    update::ShowTime();
    update::TransferVideo();
    update::PollControlBlock();
    update::AnimateShutter();
    update::AnimateStatus();
    update::MoveShutter();
    g_fLastFrameSeconds = g_timerUpdate.Tick();
    g_timerUpdate.Restart();
}

void g_fnCountFrame() {
    if (!g_bInitGL) return;
    const CTimerReading reading;
    g_fnSelectManager();
    UpdateFrameTime();
    g_fnSampleFPS();
}
