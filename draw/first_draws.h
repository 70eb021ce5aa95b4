#pragma once
// One program's first draw a frame: a driver makes machine code for a program when it first draws, and no
// frame of the host is to pay for more than one. What has drawn before draws on.
#include "platform/types.h"

/// Begins anew: nothing has drawn yet, and the next frame lets the first one in.
void g_fnSpreadFirstDraws() noexcept;
/// Ends it: all may draw.
void g_fnForgetFirstDraws() noexcept;
/// To be called ahead of each frame's drawing.
void g_fnBeginDraws() noexcept;
/// Whether what stands for a program, or costs as much, may draw in this frame. Of those that have not drawn
/// yet each frame lets the one in that asks first.
bool g_fnMayDraw(const void* pWhat) noexcept;
/// From the build until the frame behind the first one that turned nobody away. The same all through a frame.
bool g_fnAreDrawsSpread() noexcept;
