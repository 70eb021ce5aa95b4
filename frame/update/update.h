#pragma once
// Turns timers into flags and flags into what is shown. Render thread only.
#include "base/timer.h"
#include "frame/update/statistics.h"
#include "frame/update/update_records.h"
#include "platform/types.h"

class CControl;
class CTextBox_Base;

/// Update flags, one byte per manager slot. Raising sets all bytes; consuming clears the current slot's.
extern u8 g_bUpdateFPS[20], g_bUpdateTime[20], g_bUpdateData[20], g_bUpdateFrameTime[20];

/// Timers of the data interval, the status animation, the update itself, the blinking of a warning, the
/// stopwatch, and the step from one time of day to the next.
extern CTimer g_timerData, g_timerAnimation, g_timerUpdate, g_timerWarning, g_timerStopWatch, g_timerClock;
/// Seconds between the last two updates.
extern f32 g_fLastFrameSeconds;

/// Time of day as the boxes show it. With the stopwatch on: minutes, seconds and hundredths, in this order.
extern u32 g_uYear, g_uMonth, g_uDay;
extern u32 g_uHour, g_uMinute, g_uSecond;

/// Settings, as the settings reader leaves them.
extern bool g_bDebugMode; ///< the five debug rows of Classic and RV5 are shown
extern bool g_bDebugTime; ///< running hundredths in place of the time of day
extern bool g_bClock12H;  ///< hours from 1 to 12
/// Place of the Info block: anchor code and offset, shown by the debug rows.
extern i32 g_iInfoAnchor, g_iInfoPositionX, g_iInfoPositionY;
/// Anchor code of the RV5 style's resolution row: 7, 8 or 9.
extern i32 g_iRowAlignRV5;

/// The companion's per-adapter block: the segment's own, or with several managers a copy taken at each data
/// interval, so that all of them see the same.
extern const u8* g_pMonitorVGA;

/// A value that shows a mark in the layer uLayer while it is not 0. Null: not watched.
struct stWarningSlot {
    const u32* m_pWatched = nullptr;
    u32 m_uState = 0; ///< last state, 0 or 1
    CControl* m_pMark = nullptr;
    u32 m_uLayer = 0;
};
constexpr u32 g_uWarningSlots = 20;
/// No layout fills a slot or makes a banner yet: the check finds nothing to watch.
extern stWarningSlot g_aWarningSlots[g_uWarningSlots];
extern CTextBox_Base* g_apWarningBanner[2];
/// Settings of the banner's two colours, 0xRRGGBB, and of their change.
extern u32 g_auWarningColor[2];
extern bool g_bWarningTwinkle;
extern f32 g_fWarningTwinkleSeconds;

/// Steps of an update that belong to other parts of the overlay: pictures for the video boxes (asked only
/// while one exists), the control block, the shutter animation. Null: the step does nothing.
extern void (*g_fnTransferVideoHook)();
extern void (*g_fnPollControlBlockHook)();
extern void (*g_fnShutterHook)();

/// One update, ahead of drawing. Reads the counter once.
void g_fnUpdate_Tavo();
/// Its counting alone, for a frame into which nothing is drawn.
void g_fnCountFrame();
/// Takes date and time of day from the local clock.
void g_fnReadLocalTime();
/// Raises all four flags for all slots.
void g_fnRaiseUpdateFlags() noexcept;
/// Raises one flag for all slots.
void g_fnRaiseUpdateFlag(u8 (&abFlags)[20]) noexcept;

/// List builders by layout style; each starts from empty lists, resolves the boxes that the steps of an
/// update write directly, and puts its FPS updater in force.
void g_fnBuildUpdateClassic();
void g_fnBuildUpdateRV5();
void g_fnBuildUpdateCustom();
/// Head of every build: empty lists, no boxes resolved, the names of the process's own figures registered,
/// the local clock read (its first reading may read files, which no frame should).
void g_fnBeginUpdateBuild();
/// Raises all flags and builds the lists of the current style anew; any other style than 0 Classic, 1 RV5 and
/// 2 Custom does nothing.
void g_fnResetUpdate();

/// FPS updater of the layout style, set by its list builder; null: none.
extern void (*g_fnUpdateFPS)();
void g_fnUpdateFPSClassic();
void g_fnUpdateFPSRV5();
void g_fnUpdateFPSCustom();
