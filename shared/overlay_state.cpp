#include "shared/overlay_state.h"

u32 g_uLayoutStyle = 0;
i32 g_iLayoutStyleOverride = -1;
u8 g_abStatusDue[g_uManagerSlotCount] = {};
u32 g_auStatus[g_uManagerSlotCount] = {};
u8 g_abShutterMove[g_uManagerSlotCount] = {};
u8 g_bStopWatchOn = 0;
u8 g_bStopWatchShown = 0;
