#include "platform/surface.h"
#include "platform/win32/windows_api.h"

namespace platform {

SurfaceHandle CurrentSurface() noexcept { return wglGetCurrentDC(); }
ContextHandle CurrentContext() noexcept { return wglGetCurrentContext(); }

WindowHandle WindowFromSurface(SurfaceHandle hSurface) noexcept {
    return WindowFromDC(static_cast<HDC>(hSurface));
}

bool ClientSize(WindowHandle hWindow, u32* puWidth, u32* puHeight) noexcept {
    RECT area{};
    if (!GetClientRect(static_cast<HWND>(hWindow), &area)) return false;
    *puWidth = static_cast<u32>(area.right - area.left);
    *puHeight = static_cast<u32>(area.bottom - area.top);
    return true;
}

bool DesktopSize(u32* puWidth, u32* puHeight) noexcept {
    RECT area{};
    if (!GetWindowRect(GetDesktopWindow(), &area)) return false;
    *puWidth = static_cast<u32>(area.right - area.left);
    *puHeight = static_cast<u32>(area.bottom - area.top);
    return true;
}

i32 PixelFormat(SurfaceHandle hSurface) noexcept { return GetPixelFormat(static_cast<HDC>(hSurface)); }

} // namespace platform
