#include "frame/update/local_clock.h"

#include "config/settings/settings.h"
#include "platform/clock.h"

stLocalClock g_stLocalClock;
u8 g_bStopWatchOn = 0;
u8 g_bStopWatchShown = 0;

void g_fnReadLocalTime() {
    const platform::stLocalTime stNow = platform::LocalTime();
    g_stLocalClock.uYear = stNow.uYear;
    g_stLocalClock.uMonth = stNow.uMonth;
    g_stLocalClock.uDay = stNow.uDay;
    g_stLocalClock.uHour = stNow.uHour;
    g_stLocalClock.uMinute = stNow.uMinute;
    g_stLocalClock.uSecond = stNow.uSecond;
    if (!g_stSettings.bClock12H) return;
    if (g_stLocalClock.uHour == 0 || g_stLocalClock.uHour == 24) g_stLocalClock.uHour = 12;
    if (g_stLocalClock.uHour > 12) g_stLocalClock.uHour -= 12;
}
