#pragma once
// The graphics API of this process, as its record in the segment names it.
#include "platform/types.h"

/// Code for OpenGL.
constexpr u32 g_uApiCodeOpenGL = 1024;

extern u32 g_uApiCode;           ///< g_uApiCodeOpenGL; 0: none yet
extern char16_t g_wzApiName[32]; ///< display name of the API, "OpenGL" once resources were asked for
