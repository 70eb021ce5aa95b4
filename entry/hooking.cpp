#include "entry/hooking.h"
#include "base/log.h"
#include "base/numbers.h"
#include "draw/kept_programs.h"
#include "draw/left_names.h"
#include "draw/own_context.h"
#include "font/kept_glyphs.h"
#include "frame/api_claim.h"
#include "frame/frame_driver.h"
#include "frame/frame_trace.h"
#include "frame/real_swap.h"
#include "frame/release.h"
#include "platform/clock.h"
#include "platform/contexts.h"
#include "platform/foreign_overlays.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/swap_gate.h"
#include "shared/process_records.h"
#include <new>

using platform::SharedSegment;

void* g_hHookGetMSGOfGL = nullptr;
platform::CriticalSection g_csHook;
std::atomic<CMiniHook*> g_pMiniHook = nullptr;
std::atomic<platform::ThreadHandle> g_hThread_DelayHook = nullptr;
std::atomic<platform::ThreadHandle> g_hThreadToTryHookGLAgain = nullptr;
void* g_hOpenGL = nullptr;
void* g_pHookTarget = nullptr;
void* g_apGlFuncs[g_uGlFuncCount] = {};

const char* const g_aszGlFuncs[] = {
    "wglSwapBuffers",
    "wglDeleteContext",
    "wglGetCurrentDC",
    "wglGetProcAddress",
    "glBegin",
    "glDisable",
    "glColor3f",
    "glEnable",
    "glEnd",
    "glLoadIdentity",
    "glMatrixMode",
    "glOrtho",
    "glPopAttrib",
    "glPopMatrix",
    "glPushAttrib",
    "glPushMatrix",
    "glReadBuffer",
    "glReadPixels",
    "glShadeModel",
    "glVertex2i",
    "glViewport",
    "glGetString",
    "glDeleteTextures",
    "glBindTexture",
    "glTexCoord2f",
    "glVertex2f",
    "glGenTextures",
    "glTexParameterf",
    "glTexImage2D",
    "glAlphaFunc",
    "glBlendFunc",
    "glScissor",
    "glTexParameteri",
    "glIsEnabled",
    "glGetIntegerv",
    "glGetFloatv",
    "glGetTexParameteriv",
    "glColor4f",
    "glPixelStorei",
    "glPolygonMode",
    "glLoadMatrixf",
    "glEnableClientState",
    "glDisableClientState",
    "glGetError",
};
static_assert(sizeof(g_aszGlFuncs) / sizeof(g_aszGlFuncs[0]) == g_uGlFuncCount);

namespace {

constexpr u32 c_uDelayMilliseconds = 15000;
constexpr u32 c_uRetryMilliseconds = 50;
constexpr i32 c_iRetries = 10;

bool IsInPlace(i32 iResult) noexcept { return static_cast<u32>(iResult) < 2; }

bool IsEnabled() noexcept { return g_fnReadOnce(SharedSegment()->bGlobalEnable) != 0; }

/// Starts a thread unless its handle is set. Locked, since the thread itself comes by here, and whoever ends
/// it has to find its handle.
void StartOnce(std::atomic<platform::ThreadHandle>& hThread, platform::ThreadFunction fnThread) noexcept {
    g_csHook.Enter();
    if (!hThread && !platform::StopRequested()) hThread = platform::StartThread(fnThread, nullptr);
    g_csHook.Leave();
}

// KEEP(hosts): this thread is not stopped by deInit_GWDll_GL and may lay the detour again.
u32 DelayHook_ThreadProc(void*) {
    platform::g_fnSleepMilliseconds(c_uDelayMilliseconds);
    if (IsEnabled()) Hook_graph();
    return 0;
}

/// True when the tries are over.
bool TryHookOnce(i32 iCount) noexcept {
    g_fnLog("[TrelisDebug] HookGraph: ToTryHookGLAgain_ThreadProc - cnt=%d", iCount);
    const i32 iResult = Hook_graph();
    g_fnLog("[TrelisDebug] HookGraph: ToTryHookGLAgain_ThreadProc - cnt=%d, iret=%d", iCount, iResult);
    if (!IsInPlace(iResult)) return false;
    g_fnLog("[TrelisDebug] HookGraph: ToTryHookGLAgain_ThreadProc - cnt=%d => sucess", iCount);
    return true;
}

u32 ToTryHookGLAgain_ThreadProc(void*) {
    for (i32 iCount = 0; iCount < c_iRetries; ++iCount) {
        platform::g_fnSleepMilliseconds(c_uRetryMilliseconds);
        if (platform::StopRequested() || !IsEnabled()) return 0;
        if (TryHookOnce(iCount)) return 0;
    }
    return 0;
}

/// Locked, so that a thread which was told to stop cannot make one behind the back of its removal.
void MakeMiniHook() noexcept {
    g_csHook.Enter();
    if (!g_pMiniHook && !platform::StopRequested()) g_pMiniHook = new (std::nothrow) CMiniHook;
    g_csHook.Leave();
}

bool IsForeignOverlayLoaded() noexcept {
    return platform::IsAnyModuleLoaded(g_aszForeignOverlays, std::size(g_aszForeignOverlays));
}

/// Another overlay puts ours off, so that ours ends up outermost; it does not forbid it. True the first time.
bool DelayForForeignOverlay() noexcept {
    if (g_hThread_DelayHook || !IsForeignOverlayLoaded()) return false;
    g_fnLog("[TrelisDebug] Hook_graph: g_hThread_DelayHook is NULL");
    StartOnce(g_hThread_DelayHook, DelayHook_ThreadProc);
    return true;
}

i32 LockedHook() noexcept {
    g_csHook.Enter();
    // A thread that was told to stop while it waited here must not lay what was just lifted.
    const i32 iResult = platform::StopRequested() ? -1 : Hook_openGL();
    g_csHook.Leave();
    return iResult;
}

void FindOpenGL() noexcept {
    if (g_hOpenGL) return;
    g_hOpenGL = platform::FindModule("opengl32.dll");
    if (!g_hOpenGL) g_hOpenGL = platform::LoadModule("opengl32.dll");
}

i32 FailHook(const char* szStep) noexcept {
    g_fnLog("[TrelisDebug] HookOpenGL: Hook_openGL - %s pOrg_GL_wglSwapBuffers FAIL", szStep);
    g_pHookTarget = nullptr;
    return -9;
}

i32 LayDetour() noexcept {
    CMiniHook* pMiniHook = g_pMiniHook;
    g_pHookTarget = pOrg_GL_wglSwapBuffers;
    void* const pDetour =
        platform::SwapGate({&GL_wglSwapBuffers, &g_fnAheadOfSwap, g_apGlFuncs[g_uGlFuncCount - 1]});
    MH_STATUS eStatus = pMiniHook->CreateHook(g_pHookTarget, pDetour, &g_pTrampoline);
    if (eStatus != MH_OK && eStatus != MH_ERROR_ALREADY_CREATED) return FailHook("CreateHook");
    platform::OpenSwapGate(g_pTrampoline);
    eStatus = pMiniHook->EnableHook(g_pHookTarget);
    if (eStatus != MH_OK && eStatus != MH_ERROR_ENABLED) return FailHook("EnableHook");
    platform::WatchContexts(&g_fnNoteContextGone);
    g_bHooked = true;
    return 0;
}

/// The lock keeps the thread from dying while it holds it, and waits for a start that is not done yet.
void KillRetryThread() noexcept {
    g_csHook.Enter();
    if (g_hThreadToTryHookGLAgain) platform::KillThread(g_hThreadToTryHookGLAgain.exchange(nullptr));
    g_csHook.Leave();
}

/// Locked, since the delay thread may be using it.
void DropMiniHook() noexcept {
    g_csHook.Enter();
    delete g_pMiniHook.exchange(nullptr);
    g_csHook.Leave();
}

} // namespace

CMiniHook::CMiniHook() noexcept {
    const bool bDone = MH_Initialize() == MH_OK;
    g_fnLog("[TrelisDebug] CMiniHook(): MH_Initialize() %s", bDone ? "SUCCESS" : "FAIL");
}

CMiniHook::~CMiniHook() { MH_Uninitialize(); }

MH_STATUS CMiniHook::CreateHook(void* pTarget, void* pDetour, void** ppTrampoline) noexcept {
    return MH_CreateHook(pTarget, pDetour, ppTrampoline);
}

MH_STATUS CMiniHook::EnableHook(void* pTarget) noexcept { return MH_EnableHook(pTarget); }

MH_STATUS CMiniHook::RemoveHook(void* pTarget) noexcept { return MH_RemoveHook(pTarget); }

// KEEP(hosts): all 44 are demanded, one alone is used; the overlay calls GL through its imports.
bool GetAllGlFuncs() noexcept {
    bool bAll = true;
    for (u32 u = 0; u < g_uGlFuncCount; ++u) {
        g_apGlFuncs[u] = platform::FindProc(g_hOpenGL, g_aszGlFuncs[u]);
        bAll = bAll && g_apGlFuncs[u];
    }
    pOrg_GL_wglSwapBuffers = g_apGlFuncs[0];
    g_fnLog("[TrelisDebug] GetAllGlFuncs: HookFunctions GetProcAddress %s!", bAll ? "Success" : "FAIL");
    return bAll;
}

i32 Hook_openGL() noexcept {
    if (!g_pMiniHook) return -1;
    if (g_bHooked) return 1;
    FindOpenGL();
    if (!GetAllGlFuncs()) return -3;
    return LayDetour();
}

i32 Hook_graph() noexcept {
    g_fnLog("[TrelisDebug] Hook_graph: start");
    MakeMiniHook();
    if (DelayForForeignOverlay()) return -1;
    const i32 iResult = LockedHook();
    if (IsInPlace(iResult)) {
        g_fnLog("[TrelisDebug] Hook_graph: iret=%d", iResult);
        return iResult;
    }
    if (g_hThreadToTryHookGLAgain || platform::StopRequested()) return -1;
    g_fnLog("[TrelisDebug] Hook_graph: g_hThreadToTryHookGLAgain is NULL");
    StartOnce(g_hThreadToTryHookGLAgain, ToTryHookGLAgain_ThreadProc);
    return -1;
}

i32 UnHook_openGL(u32 deInitCase) noexcept {
    g_fnLog("HookOpenGL: UnHook_openGL() deInitCase' %i", static_cast<i32>(deInitCase));
    if (!g_bHooked) return -1;
    platform::CloseSwapGate(); // what follows takes away what a swap stands on
    g_fnCloseApiMapping();
    g_fnEndTrace();
    platform::WatchContexts(nullptr);
    CMiniHook* pMiniHook = g_pMiniHook;
    if (pMiniHook && g_pHookTarget) pMiniHook->RemoveHook(g_pHookTarget);
    g_fnTavo_GL_Release();
    g_fnDeleteKeptPrograms();
    g_fnDropKeptGlyphs();
    g_fnForgetLeftNames(nullptr); // nobody sees the end of their contexts now
    g_bHooked = false;
    g_hOpenGL = nullptr;
    return 0;
}

void UnHook_graph_GL(u32 deInitCase) noexcept {
    KillRetryThread();
    UnHook_openGL(deInitCase);
    DropMiniHook();
}

// KEEP(hosts): every process that saw message 1280 lifts the system's hook when it detaches, and says so to
// all.
i32 Uninstall_HookFunc_GetMSGOfGL() noexcept {
    if (!g_hHookGetMSGOfGL) return -1;
    if (!platform::UnhookMessageHook(g_hHookGetMSGOfGL)) {
        g_hHookGetMSGOfGL = nullptr;
        return -2;
    }
    const u32 uThreadId = platform::CurrentThreadId();
    platform::BroadcastMessage(g_fnReadOnce(SharedSegment()->uMsgUnhookThread), uThreadId);
    g_fnLog("[TrelisDebug] Uninstall_HookFunc_GetMSGOfGL: UnhookWindowsHookEx return success, tid = 0x%x, "
            "g_hHookGetMSGOfGL = 0x%x \n",
            uThreadId, g_fnLow32(g_hHookGetMSGOfGL));
    g_hHookGetMSGOfGL = nullptr;
    return 0;
}

void g_fnResetHooking() noexcept {
    delete g_pMiniHook.exchange(nullptr);
    g_csHook.Delete();
    g_hHookGetMSGOfGL = g_hOpenGL = g_pHookTarget = nullptr;
    g_hThread_DelayHook = g_hThreadToTryHookGLAgain = nullptr;
}
