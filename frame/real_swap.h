#pragma once
// The program's own swap, behind the detour. The hooking code fills these in; see entry/hooking.h.
#include "platform/types.h"

#include <atomic>

extern std::atomic<bool> g_bHooked;  ///< the detour is in place
extern void* pOrg_GL_wglSwapBuffers; ///< its address in opengl32.dll; null before it was looked up
extern void* g_pTrampoline;          ///< calls the real function; null if no detour was ever made

/// Swaps, then drains one error, which the calls that a core profile rejects leave behind. Returns what the
/// real swap returned.
i32 g_fnSwapAndDrain(void* hdc);
