#include "frame/surface_owner.h"

#include "base/host_care.h"
#include "base/timer.h"
#include "draw/own_context.h"
#include "frame/context_state.h"
#include "platform/clock.h"
#include "platform/last_error.h"

// Written with the pipeline's turn, read by the swaps of all threads.
static std::atomic<platform::SurfaceHandle> g_hOwner = nullptr;
static std::atomic<platform::WindowHandle> g_hOwnerWindow = nullptr;
static std::atomic<i64> g_iOwnerSwap = 0;

bool g_fnIsOwnSurface(platform::SurfaceHandle hdc) noexcept {
    const platform::SurfaceHandle hOwner = g_hOwner;
    if (!hOwner || hdc == hOwner) return hOwner;
    const platform::WindowHandle hWindow = platform::WindowFromSurface(hdc);
    return hWindow && hWindow == g_hOwnerWindow;
}

std::atomic<u32> g_uPassedSwaps = 0;

static bool IsForeign(platform::SurfaceHandle hdc) noexcept {
    if (!g_hOwner || g_fnIsContextGone()) return false;
    const platform::ErrorKeeper keeper;
    if (platform::CurrentContext() == g_hGLRC && g_fnIsOwnSurface(hdc)) return false;
    return platform::CounterNow() - g_iOwnerSwap < platform::CounterFrequency();
}

bool g_fnIsForeignSwap(platform::SurfaceHandle hdc) noexcept {
    if (!IsForeign(hdc)) return false;
    g_uPassedSwaps.fetch_add(1, std::memory_order_relaxed);
    return true;
}

void g_fnKeepSurface() noexcept {
    if (!g_stHostCare.bStayWithSurface) return;
    g_iOwnerSwap = g_fnTimerReading();
    g_hOwnerWindow = hFocusWindow;
    g_hOwner = g_hDC;
}

void g_fnLeaveSurface() noexcept { g_hOwner = nullptr; }
