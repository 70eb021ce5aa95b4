#pragma once
// State of the overlay that commands change and other folders read. Render thread only.
#include "platform/types.h"

/// Manager slots.
constexpr u32 g_uManagerSlotCount = 20;

/// Layout style as the profile names it: 0 Classic, 1 RV5, 2 Custom; other values build Classic but count as
/// none of the three.
extern u32 g_uLayoutStyle;
/// Style that rules in place of the profile's; -1: the profile decides. Nothing sets it.
extern i32 g_iLayoutStyleOverride;
/// The status display of a slot is due, and the value it shows.
extern u8 g_abStatusDue[g_uManagerSlotCount];
extern u32 g_auStatus[g_uManagerSlotCount];
/// Style panel 5 of a slot was moved.
extern u8 g_abShutterMove[g_uManagerSlotCount];
/// Stopwatch state, 0 or 1.
extern u8 g_bStopWatchOn;
/// Set once the stopwatch was asked for; read by nobody.
extern u8 g_bStopWatchShown;
