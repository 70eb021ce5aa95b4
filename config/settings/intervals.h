#pragma once
// How often figures are worked out and data is taken, and the ring of frame counts that follows from it.
#include "platform/types.h"

/// Both intervals before the first reading of the settings, milliseconds.
constexpr u32 g_uFirstFPSIntervalMs = 100, g_uFirstDataIntervalMs = 500;

extern u32 uFPSIntervalMs;              ///< period of FPS and frame-time figures, 10 to 10000
extern u32 uDataIntervalMs;             ///< period of sensor data updates, 10 to 10000
extern f32 fFPSInterval, fDataInterval; ///< both in seconds
extern u32 uFPSRingSize;                ///< slots of the ring in use, 2 to 101
extern u32 uFPSWindowMs;                ///< milliseconds that the complete slots span
extern u32 uFrameRingIndex;             ///< slot being filled

/// Clamps both intervals, computes their seconds, window and ring size, and goes to slot 0. What the ring
/// holds stays.
void g_fnSetupIntervals() noexcept;
