// A detour over wglDeleteContext, which only tells of it. The exported GL_wglDeleteContext stays what it is.
#include "platform/contexts.h"
#include "platform/last_error.h"
#include "platform/minhook.h"
#include "platform/win32/gate.h"
#include "platform/win32/windows_api.h"
#include <atomic>

namespace platform {
namespace {

std::atomic<ContextGoneFunction> g_fnContextGone = nullptr;
void* g_pRealDelete = nullptr; ///< of the last detour
constinit CGate g_clGate;      ///< a thread may be on its way through while the library is unloaded

u32 Tell(void* hContext) {
    const ErrorKeeper keeper;
    const ContextGoneFunction fnGone = g_fnContextGone;
    if (fnGone && hContext) fnGone(hContext);
    return 0;
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
        g_clGate.m_fnClose();
        MH_RemoveHook(pTarget);
        return;
    }
    void* const pDetour = g_clGate.m_fnMake(&Tell, nullptr);
    const MH_STATUS eStatus =
        pDetour ? MH_CreateHook(pTarget, pDetour, &g_pRealDelete) : MH_ERROR_MEMORY_ALLOC;
    if (eStatus != MH_OK && eStatus != MH_ERROR_ALREADY_CREATED) return;
    g_clGate.m_fnOpen(g_pRealDelete);
    MH_EnableHook(pTarget);
}

} // namespace platform
