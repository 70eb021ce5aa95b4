#pragma once
// The current GL surface and context of the calling thread, and the window behind a surface.
#include "platform/types.h"

namespace platform {

/// Device context (Win32), GLX drawable or EGL surface. Opaque to the core; null means none.
using SurfaceHandle = void*;
/// GL rendering context of the back-end. Null means none.
using ContextHandle = void*;
/// Window that a surface draws to. Null means none.
using WindowHandle = void*;

SurfaceHandle CurrentSurface() noexcept;
ContextHandle CurrentContext() noexcept;
WindowHandle WindowFromSurface(SurfaceHandle hSurface) noexcept;
/// Client size in pixels. False if the window cannot be asked; the outputs are then untouched.
bool ClientSize(WindowHandle hWindow, u32* puWidth, u32* puHeight) noexcept;
/// Size of the whole desktop in pixels. False, with the outputs untouched, where nobody tells it.
bool DesktopSize(u32* puWidth, u32* puHeight) noexcept;
/// Pixel format (Win32) or frame-buffer configuration id, for the log only; 0 when unknown.
i32 PixelFormat(SurfaceHandle hSurface) noexcept;

} // namespace platform
