#pragma once
// Frame-rate limiter: stretches the application's frame by spinning just before the real buffer swap.
#include "config/settings/limiter_settings.h"
#include "platform/types.h"

/// Everything the limiter remembers between frames. It lives as long as the process.
struct stLimiterState {
    f32 fFrameSeconds[60] = {}; ///< last measured frames, seconds; only the count matters
    u32 uWriteIndex = 0;
    u32 uFillCount = 0;  ///< stops at 60; below that the limiter measures and does not wait
    u32 uPrevEnable = 0; ///< previous settings, for change logging only
    u32 uPrevTarget = 0;
    f32 fPrevTargetSec = g_fFirstTargetSec;
    bool bLimiterStarted = false;
    i64 tFrameStart = 0; ///< steady clock, nanoseconds
    i64 tFrameEnd = 0;
    f32 fCorrection = 0.0f; ///< seconds, added to the next wait
};
extern stLimiterState g_stLimiter;

/// One run; called on every swap of a process with the overlay enabled, also where nothing is drawn.
void g_fnTavo_FPS_Limiter() noexcept;
