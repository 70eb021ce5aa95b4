#pragma once
// A screenshot that was asked for, and what must not be on it: the shutter image and the status panels 1, 3
// and 5. Entries that do not exist are skipped.
#include "base/timer.h"
#include "platform/types.h"

class CPanel_Base;
class CImgBox_Base;

/// A screenshot was requested.
extern u8 g_bShotPending;
/// The shutter animation is running.
extern bool g_bShutter;
extern CTimer g_timerShutter;

/// Places of the status panels in the style panel array: status 1, 2 and 3. The shutter hangs on the last.
constexpr u32 g_auStatusPanels[3] = {1, 3, 5};
/// Panel of a status (0 to 2), and the shutter image, of the current manager; null if there is none.
CPanel_Base* g_fnStatusPanel(u32 u) noexcept;
CImgBox_Base* g_fnShutterImage() noexcept;

/// The shutter animation begins now.
void g_fnStartShutter() noexcept;
/// Takes what must not be on a screenshot off the draw lists, and brings it back.
void g_fnHideForShot();
void g_fnShowAfterShot();
