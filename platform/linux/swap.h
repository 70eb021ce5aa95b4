#pragma once
// The real swap and context deletion behind the names of the window system's own functions.
#include "platform/types.h"

namespace platform::host {

/// The host's own swap of the call that is running, or of the surface if there is none. 0: failed.
i32 RealSwap(void* hSurface) noexcept;
i32 RealDeleteContext(void* hContext) noexcept;

} // namespace platform::host
