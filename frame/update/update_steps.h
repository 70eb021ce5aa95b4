#pragma once
// The steps of one update, in the order of their calls.
#include "platform/types.h"

/// The companion's per-adapter block: the segment's own, or with several managers a copy taken at each data
/// interval, so that all of them see one state.
extern const u8* g_pMonitorVGA;

namespace update {

/// Marks and banner of the watched values, and the banner's blinking.
void CheckWarnings();
/// Raises the data flag when the interval is over.
void CheckDataInterval();
/// On a raised flag: the style's FPS figures, all data, the time of day. Each clears its flag.
void ShowFPS();
void ShowData();
/// Time of day once a second, stopwatch twenty times a second; raises the time flag.
void KeepTime();
void ShowTime();
void TransferVideo();
void PollControlBlock();
void AnimateShutter();
void AnimateStatus();
/// The shutter image goes where style panel 5 went.
void MoveShutter();

} // namespace update
