// The detour engine's interface over interposition: the one function that can be hooked is the swap, and
// enabling its hook publishes the detour to the preloaded part, which is what the host's swaps meet.
#include "platform/minhook.h"
#include "platform/linux/host_gl.h"
#include "platform/linux/swap.h"
#include <mutex>

namespace {

struct Engine {
    std::mutex m_lock;
    bool m_bReady = false;
    bool m_bCreated = false;
    bool m_bEnabled = false;
    i32 (*m_fnDetour)(void*) = nullptr;
};
constinit Engine g_stEngine;

bool IsSwap(void* pTarget) { return pTarget == reinterpret_cast<void*>(&platform::host::RealSwap); }

void Publish(i32 (*fnDetour)(void*)) {
    if (platform::preload::SwapLink* const pLink = platform::host::Link())
        pLink->m_fnDetour.store(fnDetour, std::memory_order_release);
}

MH_STATUS Switch(void* pTarget, bool bOn) {
    std::lock_guard lock(g_stEngine.m_lock);
    if (!g_stEngine.m_bReady) return MH_ERROR_NOT_INITIALIZED;
    if (!IsSwap(pTarget) || !g_stEngine.m_bCreated) return MH_ERROR_NOT_CREATED;
    if (g_stEngine.m_bEnabled == bOn) return bOn ? MH_ERROR_ENABLED : MH_ERROR_DISABLED;
    g_stEngine.m_bEnabled = bOn;
    Publish(bOn ? g_stEngine.m_fnDetour : nullptr);
    return MH_OK;
}

void DropHook() {
    Publish(nullptr);
    g_stEngine.m_bCreated = g_stEngine.m_bEnabled = false;
}

} // namespace

extern "C" {

MH_STATUS MH_Initialize() {
    std::lock_guard lock(g_stEngine.m_lock);
    if (g_stEngine.m_bReady) return MH_ERROR_ALREADY_INITIALIZED;
    g_stEngine.m_bReady = true;
    return MH_OK;
}

MH_STATUS MH_Uninitialize() {
    std::lock_guard lock(g_stEngine.m_lock);
    if (!g_stEngine.m_bReady) return MH_ERROR_NOT_INITIALIZED;
    DropHook();
    g_stEngine.m_bReady = false;
    return MH_OK;
}

MH_STATUS MH_CreateHook(void* pTarget, void* pDetour, void** ppOriginal) {
    std::lock_guard lock(g_stEngine.m_lock);
    if (!g_stEngine.m_bReady) return MH_ERROR_NOT_INITIALIZED;
    if (!pTarget || !pDetour) return MH_ERROR_NOT_EXECUTABLE;
    if (!IsSwap(pTarget)) return MH_ERROR_UNSUPPORTED_FUNCTION;
    if (g_stEngine.m_bCreated) return MH_ERROR_ALREADY_CREATED;
    g_stEngine.m_fnDetour = reinterpret_cast<i32 (*)(void*)>(pDetour);
    g_stEngine.m_bCreated = true;
    if (ppOriginal) *ppOriginal = pTarget;
    return MH_OK;
}

MH_STATUS MH_EnableHook(void* pTarget) { return Switch(pTarget, true); }
MH_STATUS MH_DisableHook(void* pTarget) { return Switch(pTarget, false); }

MH_STATUS MH_RemoveHook(void* pTarget) {
    std::lock_guard lock(g_stEngine.m_lock);
    if (!g_stEngine.m_bReady) return MH_ERROR_NOT_INITIALIZED;
    if (!IsSwap(pTarget) || !g_stEngine.m_bCreated) return MH_ERROR_NOT_CREATED;
    DropHook();
    return MH_OK;
}

} // extern "C"
