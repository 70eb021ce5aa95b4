#pragma once
// What each program measures itself: the names of these data, for the library and for the companion.
#include "platform/types.h"

enum eOwnName : u32 {
    OWN_FPS,
    OWN_FPS_AVG,
    OWN_FPS_MAX,
    OWN_FPS_MIN,
    OWN_FPS_50P,
    OWN_FPS_1P,
    OWN_FPS_01P,
    OWN_FRAME_TIME,
    OWN_FRAME_CNT,
    OWN_PID,
    OWN_TID,
    OWN_NAMES ///< how many there are
};

inline constexpr const char* g_aszOwnNames[OWN_NAMES] = {"FPS",       "FPS_AVG", "FPS_MAX", "FPS_MIN",
                                                         "FPS_50P",   "FPS_1P",  "FPS_01P", "FRAME_TIME",
                                                         "FRAME_CNT", "PID",     "TID"};
