// The order of an update, its flags and its timers. What the steps do stands in update_steps.cpp.
#include "frame/update/update.h"

#include "base/layout_style.h"
#include "base/slots.h"
#include "controls/osd_manager.h"
#include "frame/context_state.h"
#include "frame/update/app_data.h"
#include "frame/update/local_clock.h"
#include "frame/update/mixed_items.h"
#include "frame/update/timers.h"
#include "frame/update/update_boxes.h"
#include "frame/update/update_flags.h"
#include "frame/update/update_steps.h"
#include "shared/monitor_data.h"

void (*g_fnUpdateFPS)() = nullptr;

void g_fnBeginUpdateBuild() {
    g_fnClearUpdateLists();
    boxes::g_stDirect = {};
    g_fnRegisterAllAppData();
    if (!g_bStopWatchOn) g_fnReadLocalTime();
}

void g_fnBuildUpdate() {
    if (g_uLayoutStyle == STYLE_CUSTOM) return g_fnBuildUpdateCustom();
    if (g_uLayoutStyle == STYLE_RV5) return g_fnBuildUpdateRV5();
    g_fnBuildUpdateClassic();
}

void g_fnResetUpdate() {
    if (g_uLayoutStyle > STYLE_CUSTOM) return;
    g_fnRaiseUpdateFlags();
    if (g_uLayoutStyle == STYLE_CUSTOM) g_fnHideMixedItems();
    g_fnBuildUpdate();
}

/// The frame timer is read and started again in every update, whether or not a sample is taken.
static void UpdateFrameTime() {
    const f32 fSeconds = g_stTimers.Frame.Elapsed();
    g_stTimers.Frame.Restart();
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
    g_fLastFrameSeconds = g_stTimers.Update.Tick();
    g_stTimers.Update.Restart();
}

void g_fnCountFrame() {
    if (!g_bInitGL) return;
    const CTimerReading reading;
    g_fnSelectManager();
    UpdateFrameTime();
    g_fnSampleFPS();
}
