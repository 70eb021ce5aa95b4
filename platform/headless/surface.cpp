#include "platform/surface.h"
#include "platform/headless/state.h"

namespace platform {
namespace {

using headless::g_stRealSurface;
using headless::Get;

SurfaceHandle RealSurface() noexcept {
    return g_stRealSurface.m_fnSurface ? g_stRealSurface.m_fnSurface() : nullptr;
}

} // namespace

SurfaceHandle CurrentSurface() noexcept {
    const SurfaceHandle hReal = Get().m_bSurfaceSet ? nullptr : RealSurface();
    return hReal ? hReal : Get().m_hSurface;
}

ContextHandle CurrentContext() noexcept {
    if (!Get().m_bContextSet && g_stRealSurface.m_fnContext)
        if (const ContextHandle hReal = g_stRealSurface.m_fnContext()) return hReal;
    return Get().m_hContext;
}

WindowHandle WindowFromSurface(SurfaceHandle hSurface) noexcept {
    if (!Get().m_bWindowSet && hSurface && hSurface == RealSurface()) return hSurface;
    return hSurface ? Get().m_hWindow : nullptr;
}

bool ClientSize(WindowHandle hWindow, u32* puWidth, u32* puHeight) noexcept {
    auto& st = Get();
    ++st.m_uSizeCalls;
    if (!hWindow || st.m_bSizeFails) return false;
    if (!st.m_bSizeSet && g_stRealSurface.m_fnSize && hWindow == RealSurface())
        return g_stRealSurface.m_fnSize(hWindow, puWidth, puHeight);
    *puWidth = st.m_uWidth;
    *puHeight = st.m_uHeight;
    return true;
}

bool DesktopSize(u32* puWidth, u32* puHeight) noexcept {
    if (Get().m_bDesktopSizeFails) return false;
    *puWidth = Get().m_uDesktopWidth;
    *puHeight = Get().m_uDesktopHeight;
    return true;
}

i32 PixelFormat(SurfaceHandle hSurface) noexcept { return hSurface ? Get().m_iPixelFormat : 0; }

namespace headless {

void SetCurrentSurface(SurfaceHandle hSurface) {
    Get().m_bSurfaceSet = true;
    Get().m_hSurface = hSurface;
}

void SetCurrentContext(ContextHandle hContext) {
    Get().m_bContextSet = true;
    Get().m_hContext = hContext;
}

void SetWindow(WindowHandle hWindow) {
    Get().m_bWindowSet = true;
    Get().m_hWindow = hWindow;
}

void SetClientSize(u32 uWidth, u32 uHeight) {
    Get().m_bSizeSet = true;
    Get().m_uWidth = uWidth;
    Get().m_uHeight = uHeight;
}

void SetClientSizeFails(bool bFails) { Get().m_bSizeFails = bFails; }
void SetDesktopSize(u32 uWidth, u32 uHeight) {
    Get().m_bDesktopSizeFails = false;
    Get().m_uDesktopWidth = uWidth;
    Get().m_uDesktopHeight = uHeight;
}
void SetPixelFormat(i32 iFormat) { Get().m_iPixelFormat = iFormat; }
u32 ClientSizeCalls() { return Get().m_uSizeCalls; }

void UseRealSurface() {
    auto& st = Get();
    st.m_bSurfaceSet = st.m_bContextSet = st.m_bWindowSet = st.m_bSizeSet = false;
}

} // namespace headless
} // namespace platform
