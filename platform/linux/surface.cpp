// Current surface, context and size by the window system that the running swap belongs to. Only ClientSize()
// may ask the server.
#include "platform/surface.h"
#include "platform/linux/host_gl.h"
#include "platform/linux/x_errors.h"

namespace platform {
namespace {

constexpr int g_iGlxWidth = 0x801D, g_iGlxHeight = 0x801E, g_iGlxFbConfigId = 0x8013;
constexpr i32 g_iEglWidth = 0x3057, g_iEglHeight = 0x3056, g_iEglConfigId = 0x3028, g_iEglDraw = 0x3059;

const preload::SwapCall* CallOf(void* hDrawable) noexcept {
    preload::SwapLink* const pLink = host::Link();
    const preload::SwapCall* const pCall = pLink ? pLink->m_fnCurrentCall() : nullptr;
    return pCall && pCall->m_hDrawable == hDrawable ? pCall : nullptr;
}

void* DisplayOf(void* hDrawable, bool bEgl) noexcept {
    if (const preload::SwapCall* const pCall = CallOf(hDrawable)) return pCall->m_hDisplay;
    const auto& st = host::Functions();
    // Outside a swap only the current drawable's display is known.
    if (hDrawable != CurrentSurface()) return nullptr;
    auto* const fnDisplay = bEgl ? st.eglGetCurrentDisplay : st.glXGetCurrentDisplay;
    return fnDisplay ? fnDisplay() : nullptr;
}

bool EglSize(void* hDisplay, void* hSurface, u32* puWidth, u32* puHeight) noexcept {
    const auto& st = host::Functions();
    i32 iWidth = 0, iHeight = 0;
    if (!st.eglQuerySurface || !st.eglQuerySurface(hDisplay, hSurface, g_iEglWidth, &iWidth) ||
        !st.eglQuerySurface(hDisplay, hSurface, g_iEglHeight, &iHeight))
        return false;
    *puWidth = static_cast<u32>(iWidth);
    *puHeight = static_cast<u32>(iHeight);
    return true;
}

bool GlxSize(void* hDisplay, void* hDrawable, u32* puWidth, u32* puHeight) noexcept {
    const auto& st = host::Functions();
    if (!st.glXQueryDrawable) return false;
    const auto uDrawable = reinterpret_cast<unsigned long>(hDrawable);
    unsigned uWidth = 0, uHeight = 0;
    host::XErrorTrap trap(hDisplay, uDrawable);
    st.glXQueryDrawable(hDisplay, uDrawable, g_iGlxWidth, &uWidth);
    st.glXQueryDrawable(hDisplay, uDrawable, g_iGlxHeight, &uHeight);
    if (trap.Failed() || uWidth == 0 || uHeight == 0) return false;
    *puWidth = uWidth;
    *puHeight = uHeight;
    return true;
}

} // namespace

SurfaceHandle CurrentSurface() noexcept {
    const auto& st = host::Functions();
    if (host::EglIsCurrent()) return st.eglGetCurrentSurface ? st.eglGetCurrentSurface(g_iEglDraw) : nullptr;
    return st.glXGetCurrentDrawable ? reinterpret_cast<void*>(st.glXGetCurrentDrawable()) : nullptr;
}

ContextHandle CurrentContext() noexcept {
    const auto& st = host::Functions();
    auto* const fnContext = host::EglIsCurrent() ? st.eglGetCurrentContext : st.glXGetCurrentContext;
    return fnContext ? fnContext() : nullptr;
}

WindowHandle WindowFromSurface(SurfaceHandle hSurface) noexcept { return hSurface; }

bool ClientSize(WindowHandle hWindow, u32* puWidth, u32* puHeight) noexcept {
    if (!hWindow) return false;
    const bool bEgl = host::EglIsCurrent();
    void* const hDisplay = DisplayOf(hWindow, bEgl);
    if (!hDisplay) return false;
    return (bEgl ? EglSize : GlxSize)(hDisplay, hWindow, puWidth, puHeight);
}

// A drawable tells nothing of a desktop, and the overlay opens no connection of its own to ask.
bool DesktopSize(u32*, u32*) noexcept { return false; }

i32 PixelFormat(SurfaceHandle hSurface) noexcept {
    const auto& st = host::Functions();
    const bool bEgl = host::EglIsCurrent();
    void* const hDisplay = hSurface ? DisplayOf(hSurface, bEgl) : nullptr;
    i32 iId = 0;
    if (!hDisplay) return 0;
    if (bEgl)
        return st.eglQuerySurface && st.eglQuerySurface(hDisplay, hSurface, g_iEglConfigId, &iId) ? iId : 0;
    // The context knows its configuration without asking the server.
    void* const hContext = CurrentContext();
    return hContext && st.glXQueryContext && !st.glXQueryContext(hDisplay, hContext, g_iGlxFbConfigId, &iId)
               ? iId
               : 0;
}

} // namespace platform
