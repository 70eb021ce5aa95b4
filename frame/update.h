#pragma once
// Turns timers into flags and flags into what is shown. Render thread only.
#include "frame/statistics.h"
#include "frame/timer.h"
#include "platform/types.h"

/// Update flags, one byte per manager slot. Raising sets all bytes; consuming clears the current slot's.
extern u8 g_bUpdateFPS[20], g_bUpdateTime[20], g_bUpdateData[20], g_bUpdateFrameTime[20];

extern CTimer g_timerData, g_timerAnimation, g_timerUpdate;
/// Seconds between the last two updates.
extern f32 g_fLastFrameSeconds;

/// One update, ahead of drawing.
void g_fnUpdate_Tavo();
/// Raises all four flags for all slots.
void g_fnRaiseUpdateFlags() noexcept;
/// Runs the list builder of a layout style: 0 Classic, 1 RV5, 2 Custom; any other style does nothing.
void g_fnBuildUpdateLists(u32 uStyle) noexcept;
