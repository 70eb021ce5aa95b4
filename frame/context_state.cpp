#include "frame/context_state.h"

platform::SurfaceHandle g_hDC = nullptr;
platform::WindowHandle hFocusWindow = nullptr;
bool g_bInitGL = false;
bool g_bInitGLEW = false;
u32 g_iInitFailCount = 0;
i32 g_iGL_Major = 0, g_iGL_Minor = 0;
i32 g_iGL_ContextProfileMask = 0, g_iGL_ContextFlag = 0;
