// A detour over wglDeleteContext, which only tells of it. The exported GL_wglDeleteContext stays what it is.
#include "platform/contexts.h"
#include "platform/minhook.h"
#include "platform/win32/windows_api.h"
#include <atomic>

namespace platform {
namespace {

using DeleteContext = BOOL(WINAPI*)(HGLRC);

std::atomic<ContextGoneFunction> g_fnContextGone = nullptr;
void* g_pRealDelete = nullptr; ///< written ahead of the detour and never again

BOOL WINAPI OnDeleteContext(HGLRC hContext) {
    const ContextGoneFunction fnGone = g_fnContextGone;
    if (fnGone && hContext) fnGone(hContext);
    return reinterpret_cast<DeleteContext>(g_pRealDelete)(hContext);
}

void* Target() noexcept {
    const HMODULE hOpenGL = GetModuleHandleA("opengl32.dll");
    return hOpenGL ? reinterpret_cast<void*>(GetProcAddress(hOpenGL, "wglDeleteContext")) : nullptr;
}

} // namespace

void WatchContexts(ContextGoneFunction fnGone) noexcept {
    void* const pTarget = Target();
    g_fnContextGone = fnGone;
    if (!pTarget) return;
    if (!fnGone) {
        MH_RemoveHook(pTarget);
        return;
    }
    const MH_STATUS eStatus =
        MH_CreateHook(pTarget, reinterpret_cast<void*>(&OnDeleteContext), &g_pRealDelete);
    if (eStatus == MH_OK || eStatus == MH_ERROR_ALREADY_CREATED) MH_EnableHook(pTarget);
}

} // namespace platform
