#pragma once
// How the preloaded part and the library meet. The preloaded part exports only what it interposes, so the
// library asks for the link by a dlsym() of a name that no object can export; the interposed dlsym() knows
// it.
#include "platform/types.h"
#include <atomic>

namespace platform::preload {

inline constexpr char g_szLinkName[] = "ORVIN-OSD64-GL preload link 2";

enum class SwapApi : u32 { Glx, Egl };

/// One swap of the host, while it runs.
struct SwapCall {
    SwapApi m_eApi;
    void* m_hDisplay;
    void* m_hDrawable; ///< GLX drawable or EGL surface
    void* m_fnReal;    ///< the function that the host meant
    const i32* m_piRects;
    i32 m_iRects; ///< below 0: a swap without rectangles
    i32 m_iResult;
    bool m_bDone; ///< the real swap has run
};

struct SwapLink {
    /// The detour that swaps are handed to; null while none is laid. Written by the library.
    std::atomic<i32 (*)(void* hDrawable)> m_fnDetour;
    /// The swap that the calling thread is in; null outside of one.
    const SwapCall* (*m_fnCurrentCall)() noexcept;
    /// Runs the real swap of that call. False outside of one.
    bool (*m_fnRunRealSwap)(i32* piResult) noexcept;
    /// Told ahead of the end of a context, or of all (null); null while nobody listens. Written by the
    /// library.
    std::atomic<void (*)(void* hContext)> m_fnContextGone;
    /// dlsym() without interposition.
    void* (*m_fnRealSymbol)(void* hModule, const char* szName) noexcept;
};

} // namespace platform::preload
