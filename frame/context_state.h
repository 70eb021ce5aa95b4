#pragma once
// The surface and the context that the overlay draws in, and how far its set-up there has come.
#include "platform/surface.h"
#include "platform/types.h"

extern platform::SurfaceHandle g_hDC;
extern platform::WindowHandle hFocusWindow;
extern bool g_bInitGL;       ///< the overlay's resources exist
extern bool g_bInitGLEW;     ///< GLEW has been initialised for this context
extern u32 g_iInitFailCount; ///< 5 and above: the pipeline refuses to run
extern i32 g_iGL_Major, g_iGL_Minor;
extern i32 g_iGL_ContextProfileMask, g_iGL_ContextFlag; ///< logged only

/// From this failure count on the pipeline refuses to run.
constexpr u32 g_uInitFailLimit = 5;
/// Written by the version gate: never try again.
constexpr u32 g_uInitFailForGood = 10;
