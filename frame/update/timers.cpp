#include "frame/update/timers.h"

#include "capture/preview_feed.h"
#include "capture/shot_request.h"
#include "frame/update/status_items.h"

#include <initializer_list>

stUpdateTimers g_stTimers;

void g_fnRestartTimers() {
    stUpdateTimers& st = g_stTimers;
    for (CTimer* pTimer : {&st.Frame, &st.FPS, &st.FrameTime, &st.Data, &g_timerStatus, &g_timerShutter,
                           &st.Animation, &st.Warning, &st.StopWatch, &st.Clock, &st.Update})
        pTimer->Restart();
    g_fnRestartVideoTimers();
}
