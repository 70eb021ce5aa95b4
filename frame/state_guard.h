#pragma once
// Saves what the application had set in its GL context, sets the one state the batchers expect, and gives the
// application's state back. The three run once per drawn frame, in this order, on the render thread.
#include "platform/gl_api.h"
#include "platform/types.h"

void g_fnTavo_GL_CaptureState();
void g_fnTavo_GL_SetupState();
void g_fnTavo_GL_RestoreState();
