#pragma once
// What the frame-rate limiter holds to. Render thread only.
#include "platform/types.h"

extern u32 EnableFPSLimiter;
/// Frames per second; 0 until read.
extern u32 FPS_Target;
/// Seconds of a frame until a target was read.
constexpr f32 g_fFirstTargetSec = 1.0f / 360.0f;
/// Seconds a frame is stretched to; computed by g_fnTavo_Setup_FPS_Limiter.
extern f32 Frametime_Target_Sec;

/// Takes FPS_Target (0 counts as 1) into Frametime_Target_Sec.
void g_fnTavo_Setup_FPS_Limiter() noexcept;
/// To be called after the section FPSLimiter was read: target 0 switches the limiter off, any other sets it
/// up.
void g_fnTavo_Apply_FPS_Limiter() noexcept;
