#pragma once
// The timers of the update's periodic steps. The status display's and the shutter's stand with these.
#include "base/timer.h"

struct stUpdateTimers {
    CTimer Frame, FPS, FrameTime; ///< this frame, the slot being filled, the period of frame times
    CTimer Data;                  ///< the data interval
    CTimer Animation;             ///< the step of the status animation
    CTimer Warning;               ///< the blinking of a warning
    CTimer StopWatch;
    CTimer Clock;  ///< from one time of day to the next
    CTimer Update; ///< the update itself
};
extern stUpdateTimers g_stTimers;

/// All of them and those of the status display, the shutter and the video sources run from now.
void g_fnRestartTimers();
