#include "frame/frame_driver.h"

#include "base/log.h"
#include "base/timer.h"
#include "config/load.h"
#include "config/settings/host_care.h"
#include "entry/hooking.h"
#include "frame/command_handler.h"
#include "frame/limiter.h"
#include "frame/outer_guard.h"
#include "frame/own_context.h"
#include "frame/resources.h"
#include "frame/surface_owner.h"
#include "frame/update/statistics.h"
#include "platform/gl_api.h"
#include "platform/last_error.h"
#include "platform/named_mapping.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/swap_gate.h"
#include "shared/process_records.h"

#include <cstdio>
#include <cstring>
#include <optional>

std::atomic<bool> g_bPipelineIdle = true;
u32 g_iInitFailCount = 0;
platform::SurfaceHandle g_hDC = nullptr;
platform::WindowHandle hFocusWindow = nullptr;
u32 g_uCallCount = 0;
bool g_bCheckApiMapping = true;
bool g_bOtherApiOwnsProcess = false;
void* g_hApiMapping = nullptr;
char* g_pApiView = nullptr;

static constexpr u32 g_uApiMappingBytes = 256;

static u32 Low32(const void* p) { return static_cast<u32>(reinterpret_cast<std::uintptr_t>(p)); }

/// Through the trampoline if one was made, else the looked-up entry, else the imported one.
static i32 RealSwap(void* hdc) {
    void* const pEntry = g_pTrampoline ? g_pTrampoline : pOrg_GL_wglSwapBuffers;
    return pEntry ? reinterpret_cast<i32 (*)(void*)>(pEntry)(hdc) : platform::ImportedSwapBuffers(hdc);
}

/// Drains one error, which the calls that a core profile rejects leave behind.
static i32 SwapAndDrain(void* hdc) {
    const i32 iResult = RealSwap(hdc);
    const platform::ErrorKeeper keeper; // what the real swap left is the host's
    glGetError();
    return iResult;
}

static void TakeCommand(u32 uPid, u32 uTid) {
    u8 bChanged = 0;
    if (!ReadCommandRecord(uPid, uTid, g_uRecordChanged, &bChanged, nullptr) || !bChanged) return;
    stSharedCommand stBlock;
    if (!ReadCommandRecord(uPid, uTid, g_uRecordCommand, nullptr, &stBlock)) return;
    g_fnTavo_ProcessCommand(stBlock);
    WriteCommandRecord(uPid, uTid, 0, stBlock, g_uRecordChanged);
}

/// Another flavour's tag is respected only if it reads "D3D"; any other is overwritten.
static void ClaimApi() {
    char szName[64];
    std::snprintf(szName, sizeof szName, "[RV5-OSD][PID:%d]", static_cast<i32>(platform::CurrentProcessId()));
    g_hApiMapping = platform::CreateNamedMapping(szName, g_uApiMappingBytes);
    if (!g_hApiMapping) return;
    g_pApiView = static_cast<char*>(platform::MapView(g_hApiMapping, g_uApiMappingBytes));
    if (!g_pApiView) {
        platform::CloseMapping(g_hApiMapping);
        g_hApiMapping = nullptr;
        return;
    }
    if (std::memcmp(g_pApiView, "D3D", 3) == 0) g_bOtherApiOwnsProcess = true;
    // KEEP: only "D3D" counts as an owner.
    if (!g_bOtherApiOwnsProcess) std::memcpy(g_pApiView, "OGL", 4);
}

void g_fnCloseApiMapping() noexcept {
    if (g_pApiView) platform::UnmapView(g_pApiView);
    if (g_hApiMapping) platform::CloseMapping(g_hApiMapping);
    g_pApiView = nullptr;
    g_hApiMapping = nullptr;
}

void g_fnDropApiClaim() noexcept {
    if (g_hApiMapping) platform::CloseMapping(g_hApiMapping);
    g_hApiMapping = nullptr;
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
    g_fnTakeOwedRecord(uPid, uTid);
    TakeCommand(uPid, uTid);
    if (g_bCheckApiMapping) {
        ClaimApi();
        g_bCheckApiMapping = false;
    }
    if (!g_bOtherApiOwnsProcess) g_fnTavo_GL_PrewglSwapBuffers(hdc);
    g_fnTavo_FPS_Limiter();
    ReportStatus(uPid, uTid);
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
    return SwapAndDrain(hdc);
}

extern "C" i32 GL_wglDeleteContext(void* hglrc) {
    g_fnLog("Delete hglrc: %#x", Low32(hglrc));
    g_fnLog("Current hglrc: %#x", Low32(platform::CurrentContext()));
    return platform::ImportedDeleteContext(hglrc);
}

/// What is kept for one context goes with it.
static void LeaveContext() {
    if (g_fnMayDeleteNames())
        g_fnReleaseOuterGuard();
    else
        g_fnForgetOuterGuard();
    g_bInitGLEW = false;
    g_fnLeaveSurface();
    g_fnLeaveContext();
}

/// False where this frame must be left undrawn.
static bool AcceptDeviceContext(platform::SurfaceHandle hdc) {
    const bool bOtherContext = g_fnHasContextChanged();
    if (hdc == g_hDC && !bOtherContext) return true;
    if (!bOtherContext && g_fnIsOwnSurface(hdc)) {
        g_hDC = hdc;
        return true;
    }
    g_fnLog("GLGraphics: g_fnTavo_GL_PrewglSwapBuffers() - HDC Changed %#x => %#x", Low32(g_hDC), Low32(hdc));
    // Without resources the release leaves these alone, and another context has to be asked for its version.
    if (bOtherContext && !g_bInitGL) LeaveContext();
    if (g_hDC) {
        g_hDC = nullptr;
        g_fnTavo_GL_Release();
        return false;
    }
    g_hDC = hdc;
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

static void DeleteCopyTexture() {
    if (!g_uCopyTexture) return;
    if (g_fnMayDeleteNames()) glDeleteTextures(1, &g_uCopyTexture);
    g_uCopyTexture = 0;
}

void g_fnTavo_GL_Release() noexcept {
    if (!g_bInitGL) return;
    DeleteCopyTexture();
    g_fnReleaseResources();
    g_iInitFailCount = 0;
    g_bInitGL = false;
    LeaveContext();
    g_bNeedOnResize = true;
    g_hDC = nullptr;
}
