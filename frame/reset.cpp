#include "frame/reset.h"

#include "base/host_care.h"
#include "base/renew.h"
#include "capture/control_block.h"
#include "capture/preview_feed.h"
#include "capture/shot_request.h"
#include "capture/shutter.h"
#include "config/settings/limiter_settings.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/first_draws.h"
#include "draw/kept_programs.h"
#include "draw/left_names.h"
#include "draw/own_context.h"
#include "font/waiting_glyphs.h"
#include "frame/api_claim.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/frame_trace.h"
#include "frame/limiter.h"
#include "frame/outer_guard.h"
#include "frame/parts.h"
#include "frame/real_swap.h"
#include "frame/surface_owner.h"
#include "frame/update/local_clock.h"
#include "frame/update/statistics.h"
#include "frame/update/status_items.h"
#include "frame/update/timers.h"
#include "frame/update/update.h"
#include "frame/update/update_boxes.h"
#include "frame/update/update_flags.h"
#include "frame/update/update_records.h"
#include "frame/update/update_steps.h"
#include "frame/update/update_warnings.h"
#include "shared/api_code.h"

#include <cstring>

static void ResetContext() {
    g_fnLeaveContext();
    g_fnForgetLeftNames(nullptr);
    g_fnForgetOuterGuard();
    g_fnForgetFirstDraws();
    g_fnResetWaitingGlyphs();
    g_fnLeaveSurface();
    g_hDC = nullptr;
    hFocusWindow = nullptr;
    g_bInitGL = g_bInitGLEW = false;
    g_iInitFailCount = 0;
    g_iGL_Major = g_iGL_Minor = g_iGL_ContextProfileMask = g_iGL_ContextFlag = 0;
    g_uCopyTexture = 0;
    g_bNeedOnResize = true;
}

static void ResetSwap() {
    g_bHooked = false;
    pOrg_GL_wglSwapBuffers = g_pTrampoline = nullptr;
    g_bPipelineIdle = true;
    g_uCallCount = g_uSurfacesTaken = g_uApiCode = 0;
    g_uPassedSwaps = 0;
    g_fnCloseApiMapping();
    g_fnEndTrace();
    g_fnRenew(g_stFrameTrace);
    g_bCheckApiMapping = true;
    g_bOtherApiOwnsProcess = false;
    g_fnRenew(g_stParts);
    g_fnRenew(g_stHostCare);
}

static void ResetLimiter() {
    EnableFPSLimiter = FPS_Target = 0;
    Frametime_Target_Sec = g_fFirstTargetSec;
    g_fnRenew(g_stLimiter);
}

static void ResetCommands() {
    g_bShotPending = 0;
    g_bShutter = false;
    g_fnFreeShutter();
    std::memset(g_abStatusDue, 0, sizeof g_abStatusDue);
    std::memset(g_auStatus, 0, sizeof g_auStatus);
    std::memset(g_abShutterMove, 0, sizeof g_abShutterMove);
    g_bStopWatchOn = g_bStopWatchShown = 0;
    g_timerStatus.Reset();
    g_timerShutter.Reset();
}

static void ResetUpdate() {
    g_fnClearUpdateLists();
    boxes::g_stDirect = {};
    g_fnUpdateFPS = nullptr;
    g_pMonitorVGA = nullptr;
    g_fLastFrameSeconds = 0.0f;
    for (u8* pFlags : {g_bUpdateFPS, g_bUpdateTime, g_bUpdateData, g_bUpdateFrameTime})
        std::memset(pFlags, 0, g_uManagerSlots);
    g_fnRenew(g_stTimers);
    g_fnRenew(g_stLocalClock);
    g_fnRenew(g_stWarnings);
    g_fnResetPreviewFeed();
    g_fnResetControlBlock();
}

void g_fnResetFrame() {
    g_fnForgetKeptPrograms(nullptr);
    ResetContext();
    ResetSwap();
    ResetLimiter();
    ResetCommands();
    ResetUpdate();
    g_fnResetFigures();
}
