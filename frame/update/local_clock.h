#pragma once
// Time of day as the boxes show it, and the stopwatch that takes its place.
#include "platform/types.h"

/// With the stopwatch on: minutes, seconds and hundredths in hour, minute and second.
struct stLocalClock {
    u32 uYear = 0, uMonth = 0, uDay = 0;
    u32 uHour = 0, uMinute = 0, uSecond = 0;
};
extern stLocalClock g_stLocalClock;

/// Stopwatch state, 0 or 1.
extern u8 g_bStopWatchOn;
/// Set once the stopwatch was asked for; read by nobody.
extern u8 g_bStopWatchShown;

/// Takes date and time of day from the local clock, hours from 1 to 12 where the settings say so.
void g_fnReadLocalTime();
