#pragma once
// Frame-time figures, from the rhythm of the drawn frames.
#include "frame/timer.h"
#include "platform/types.h"

extern u32 g_uFPS;         ///< frames in the last second
extern i32 g_iFrameTime;   ///< median frame time, hundredths of a millisecond
extern f32 g_fFrameTimeMs; ///< the same in milliseconds
/// The pipeline's mirror of the segment's query switch; written at each swap's report, so one frame late.
extern bool bQueryFrameTime;

extern u32 uFPSIntervalMs;              ///< period of FPS and frame-time figures, 10 to 10000
extern u32 uDataIntervalMs;             ///< period of sensor data updates, 10 to 10000
extern f32 fFPSInterval, fDataInterval; ///< the same in seconds

extern u32 g_uFrameSampleCount;
constexpr u32 g_uFrameSampleMax = 32768;
extern CTimer g_timerFrame, g_timerFrameTime;

/// Clamps both intervals and computes their seconds.
void g_fnSetupIntervals() noexcept;
/// One sample at the start of every update; closes the period when it is over. fSeconds: since the last
/// update.
void g_fnSampleFrameTime(f32 fSeconds) noexcept;
