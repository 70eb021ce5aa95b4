#pragma once
// One drawn frame: the context's set-up, the build of the resources, and the drawing between the guards.
#include "platform/types.h"

extern f32 g_fInitSeconds; ///< how long resource creation took

/// One drawn frame in the current context.
void g_fnTavo_GL_Render();
