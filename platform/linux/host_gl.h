#pragma once
// The host's own GL, GLX and EGL, reached without linking to them and without meeting our own interposers.
#include "platform/linux/swap_link.h"

namespace platform::host {

/// The preloaded part's link; null where the library was loaded without it.
preload::SwapLink* Link() noexcept;

/// Handle of the first mapped GL library, null if there is none.
void* FindGl() noexcept;
/// As FindGl, but loads libGL.so.1 if nothing is mapped.
void* LoadGl() noexcept;
/// Address of a function in any mapped GL library, or from the look-up function of EGL or GLX; null if
/// missing.
void* Symbol(const char* szName) noexcept;
/// Points the GL forwarders at the host's functions. Cheap when done already.
void ResolveForwarders() noexcept;

// Types of the window-system calls, as far as they are used; handles are opaque.
struct WindowSystem {
    void* (*glXGetCurrentContext)() = nullptr;
    unsigned long (*glXGetCurrentDrawable)() = nullptr;
    void* (*glXGetCurrentDisplay)() = nullptr;
    void (*glXSwapBuffers)(void*, unsigned long) = nullptr;
    void (*glXDestroyContext)(void*, void*) = nullptr;
    void (*glXQueryDrawable)(void*, unsigned long, int, unsigned*) = nullptr;
    int (*glXQueryContext)(void*, void*, int, int*) = nullptr;
    void* (*glXGetProcAddressARB)(const unsigned char*) = nullptr;
    int (*glXQueryVersion)(void*, int*, int*) = nullptr;
    const char* (*glXGetClientString)(void*, int) = nullptr;
    void* (*eglGetCurrentContext)() = nullptr;
    void* (*eglGetCurrentSurface)(i32) = nullptr;
    void* (*eglGetCurrentDisplay)() = nullptr;
    u32 (*eglSwapBuffers)(void*, void*) = nullptr;
    u32 (*eglDestroyContext)(void*, void*) = nullptr;
    u32 (*eglQuerySurface)(void*, void*, i32, i32*) = nullptr;
    void* (*eglGetProcAddress)(const char*) = nullptr;
};
/// Resolved on first use and again while functions of a library mapped since are missing.
const WindowSystem& Functions() noexcept;
/// Whether the calling thread's current context is an EGL one.
bool EglIsCurrent() noexcept;

} // namespace platform::host
