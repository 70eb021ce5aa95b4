#pragma once
// What a layout shows at all, and how many cards the machine has. Read by every style.
#include "platform/types.h"

/// "IsShow" of the parts of the settings, 0 or not.
struct stProfileSwitches {
    u32 uInfo;
    u32 uMemo;
    u32 uWatermark;
    u32 uSystemInfo;
    u32 uPhoto;
    u32 uStopWatch;
};
extern stProfileSwitches g_stProfileSwitches;
/// Number of physical cards.
extern u32 g_uCardNum;

/// Reads the switches from the active profile, the master switches of video and graphs and the number of
/// cards from the settings store.
void g_fnReadProfileSwitches();
