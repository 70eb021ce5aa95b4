#include "frame/update.h"

#include "controls/osd_manager.h"
#include "frame/status_items.h"

#include <cstring>

u8 g_bUpdateFPS[20], g_bUpdateTime[20], g_bUpdateData[20], g_bUpdateFrameTime[20];
CTimer g_timerData, g_timerAnimation, g_timerUpdate;
f32 g_fLastFrameSeconds = 0.0f;

static void Raise(u8 (&abFlags)[20]) { std::memset(abFlags, 1, sizeof abFlags); }

void g_fnRaiseUpdateFlags() noexcept {
    Raise(g_bUpdateFPS);
    Raise(g_bUpdateTime);
    Raise(g_bUpdateData);
    Raise(g_bUpdateFrameTime);
}

void g_fnBuildUpdateLists(u32) noexcept {}

static void UpdateFrameTime() {
    const f32 fSeconds = g_timerFrame.Elapsed();
    g_timerFrame.Restart();
    g_fnSampleFrameTime(fSeconds);
    g_bUpdateFrameTime[g_uManagerSlot] = 0;
}

static void UpdateData() {
    if (g_timerData.Elapsed() >= fDataInterval) {
        Raise(g_bUpdateData);
        g_timerData.Restart();
    }
    g_bUpdateFPS[g_uManagerSlot] = 0;
    g_bUpdateData[g_uManagerSlot] = 0;
}

static void AnimateStatus() {
    const f32 fSeconds = g_timerAnimation.Elapsed();
    if (!(fSeconds >= 0.025f)) return;
    g_fnStatusStep(fSeconds);
    g_timerAnimation.Restart();
}

void g_fnUpdate_Tavo() {
    g_fnSelectManager();
    UpdateFrameTime();
    g_fnSampleFPS();
    UpdateData();
    g_bUpdateTime[g_uManagerSlot] = 0;
    AnimateStatus();
    g_fLastFrameSeconds = g_timerUpdate.Tick();
    g_timerUpdate.Restart();
}
