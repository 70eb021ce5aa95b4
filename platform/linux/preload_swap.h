#pragma once
// The interposed functions, declared without the window systems' headers, and the link for the library.
#include "platform/linux/swap_link.h"

extern "C" {
#define ORVIN_INTERPOSE __attribute__((visibility("default")))
ORVIN_INTERPOSE void glXSwapBuffers(void* hDisplay, unsigned long uDrawable);
ORVIN_INTERPOSE void* glXGetProcAddress(const unsigned char* puName);
ORVIN_INTERPOSE void* glXGetProcAddressARB(const unsigned char* puName);
ORVIN_INTERPOSE u32 eglSwapBuffers(void* hDisplay, void* hSurface);
ORVIN_INTERPOSE u32 eglSwapBuffersWithDamageKHR(void* hDisplay, void* hSurface, const i32* piRects,
                                                i32 iRects);
ORVIN_INTERPOSE u32 eglSwapBuffersWithDamageEXT(void* hDisplay, void* hSurface, const i32* piRects,
                                                i32 iRects);
ORVIN_INTERPOSE void* eglGetProcAddress(const char* szName);
ORVIN_INTERPOSE void glXDestroyContext(void* hDisplay, void* hContext);
ORVIN_INTERPOSE u32 eglDestroyContext(void* hDisplay, void* hContext);
ORVIN_INTERPOSE u32 eglTerminate(void* hDisplay);
#undef ORVIN_INTERPOSE
}

namespace platform::preload {

SwapLink& Link() noexcept;

} // namespace platform::preload
