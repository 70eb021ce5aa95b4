#include "frame/frame_driver.h"

#include "base/log.h"
#include "base/numbers.h"
#include "base/timer.h"
#include "config/load.h"
#include "config/settings/settings_care.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/own_context.h"
#include "frame/api_claim.h"
#include "frame/command_handler.h"
#include "frame/context_state.h"
#include "frame/frame_trace.h"
#include "frame/limiter.h"
#include "frame/outer_guard.h"
#include "frame/real_swap.h"
#include "frame/release.h"
#include "frame/render.h"
#include "frame/surface_owner.h"
#include "frame/update/statistics.h"
#include "platform/gl_api.h"
#include "platform/last_error.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/swap_gate.h"
#include "shared/api_code.h"
#include "shared/process_records.h"

#include <cstring>
#include <optional>

std::atomic<bool> g_bPipelineIdle = true;
u32 g_uCallCount = 0, g_uSurfacesTaken = 0;

static void TakeCommand(u32 uPid, u32 uTid) {
    u8 bChanged = 0;
    if (!ReadCommandRecord(uPid, uTid, g_uRecordChanged, &bChanged, nullptr) || !bChanged) return;
    stSharedCommand stBlock;
    if (!ReadCommandRecord(uPid, uTid, g_uRecordCommand, nullptr, &stBlock)) return;
    g_fnTavo_ProcessCommand(stBlock);
    WriteCommandRecord(uPid, uTid, 0, stBlock, g_uRecordChanged);
}

static void ReportStatus(u32 uPid, u32 uTid) {
    stSharedCommand stStatus = {};
    stStatus.uApiCode = g_uApiCode;
    stStatus.uFPS = g_uFPS;
    stStatus.fFrameTime = g_fFrameTimeMs;
    bQueryFrameTime = g_fnReadOnce(platform::SharedSegment()->bEnableQueryFrameTime) != 0;
    WriteStatusRecord(uPid, uTid, stStatus);
}

/// Everything ahead of the real swap. One swap at a time: what follows is flat state, and a wait for another
/// thread's frame would be the program's wait.
static void RunSwapSteps(void* hdc) {
    const CPipelineTurn turn;
    if (!turn) return;
    const platform::ErrorKeeper keeper;
    const u32 uPid = platform::CurrentProcessId(), uTid = platform::CurrentThreadId();
    g_fnBeginTracedFrame(uPid);
    g_fnTakeOwedRecord(uPid, uTid);
    TakeCommand(uPid, uTid);
    if (g_bCheckApiMapping) {
        g_fnClaimApi();
        g_bCheckApiMapping = false;
    }
    if (!g_bOtherApiOwnsProcess) g_fnTavo_GL_PrewglSwapBuffers(hdc);
    g_fnNoteDrawn();
    g_fnTavo_FPS_Limiter();
    ReportStatus(uPid, uTid);
    g_fnEndTracedFrame(uTid, hdc);
}

static bool IsEnabled() { return g_bHooked && g_fnReadOnce(platform::SharedSegment()->bGlobalEnable) != 0; }

void g_fnAheadOfSwap(void* hdc) noexcept {
    if (!IsEnabled() || g_fnIsForeignSwap(hdc)) return;
    try {
        RunSwapSteps(hdc);
    } catch (...) {
        g_fnLog("GLGraphics: GL_wglSwapBuffers() - exception");
    }
}

extern "C" i32 GL_wglSwapBuffers(void* hdc) {
    g_fnAheadOfSwap(hdc);
    return g_fnSwapAndDrain(hdc);
}

extern "C" i32 GL_wglDeleteContext(void* hglrc) {
    g_fnLog("Delete hglrc: %#x", g_fnLow32(hglrc));
    g_fnLog("Current hglrc: %#x", g_fnLow32(platform::CurrentContext()));
    return platform::ImportedDeleteContext(hglrc);
}

/// False where this frame must be left undrawn.
static bool AcceptDeviceContext(platform::SurfaceHandle hdc) {
    const bool bOtherContext = g_fnHasContextChanged();
    if (hdc == g_hDC && !bOtherContext) return true;
    if (!bOtherContext && g_fnIsOwnSurface(hdc)) {
        g_hDC = hdc;
        return true;
    }
    // KEEP(hosts): without the key every other surface takes the overlay.
    g_fnLog("GLGraphics: g_fnTavo_GL_PrewglSwapBuffers() - HDC Changed %#x => %#x", g_fnLow32(g_hDC),
            g_fnLow32(hdc));
    // Without resources the release leaves these alone, and another context has to be asked for its version.
    if (bOtherContext && !g_bInitGL) g_fnLeaveOwnContext();
    if (g_hDC) {
        g_hDC = nullptr;
        g_fnTavo_GL_Release();
        return false;
    }
    g_hDC = hdc;
    ++g_uSurfacesTaken;
    return true;
}

static CTimer& ResizeTimer() {
    static CTimer timer;
    return timer;
}

/// At most five times a second, since asking a window may cost a round trip.
static void CheckSize() {
    if (!(ResizeTimer().Elapsed() > 0.2f)) return;
    ResizeTimer().Restart();
    u32 uWidth = g_uWidth, uHeight = g_uHeight;
    if (!platform::ClientSize(hFocusWindow, &uWidth, &uHeight)) return;
    if (uWidth == g_uWidth && uHeight == g_uHeight) return;
    g_fnStoreSize(uWidth, uHeight);
    g_bNeedOnResize = true;
}

static void LogString(const char* szName, GLenum eName) {
    const GLubyte* pText = glGetString(eName);
    g_fnLog("GLGraphics: %s: %s", szName, pText ? reinterpret_cast<const char*>(pText) : "");
}

static void LogContext() {
    g_fnLog("GLGraphics: PixelFormat: %i", platform::PixelFormat(g_hDC));
    LogString("GL_VERSION", GL_VERSION);
    LogString("GL_SHADING_LANGUAGE_VERSION", GL_SHADING_LANGUAGE_VERSION);
    LogString("GL_VENDOR", GL_VENDOR);
    LogString("GL_RENDERER", GL_RENDERER);
}

/// On every frame until the resources exist.
static void RefreshContext(platform::SurfaceHandle hdc) {
    ResizeTimer().Start();
    g_hDC = platform::CurrentSurface();
    g_fnTakeContext();
    LogContext();
    hFocusWindow = platform::WindowFromSurface(hdc);
    u32 uWidth = g_uWidth, uHeight = g_uHeight;
    if (platform::ClientSize(hFocusWindow, &uWidth, &uHeight)) g_fnStoreSize(uWidth, uHeight);
    g_bNeedOnResize = true;
}

static void RunPipeline(platform::SurfaceHandle hdc) {
    g_fnLog("PreSwapBuffers() #%i Call", static_cast<i32>(++g_uCallCount));
    if (g_uApiCode != 0 && g_uApiCode != g_uApiCodeOpenGL) return;
    if (!AcceptDeviceContext(hdc)) return;
    if (!g_bInitGL && !g_fnIsLoadDue()) return;
    if (!g_bInitGL && !platform::HoldLibraryForSwap()) return; // a build loads modules
    if (!g_bInitGL) g_fnReadHostCare();
    const bool bBuilt = g_bInitGL && g_bInitGLEW;
    std::optional<CTimerReading> reading; // one for the whole frame, but a build takes its time
    if (bBuilt) reading.emplace();
    CheckSize();
    if (!bBuilt) RefreshContext(hdc);
    g_fnTavo_GL_Render();
    if (g_bInitGL) g_fnKeepSurface();
}

void g_fnTavo_GL_PrewglSwapBuffers(platform::SurfaceHandle hdc) noexcept {
    if (g_iInitFailCount >= g_uInitFailLimit) return;
    try {
        RunPipeline(hdc);
    } catch (...) {
        g_fnLog("GLGraphics: g_fnTavo_GL_PrewglSwapBuffers() - exception");
    }
}
