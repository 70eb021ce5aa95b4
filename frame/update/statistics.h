#pragma once
// Frame-rate and frame-time figures, from the rhythm of the drawn frames. Render thread only. Arithmetic on
// seconds is single precision. All figures live as long as the process: a rebuild resets none of them.
#include "base/timer.h"
#include "config/settings/intervals.h"
#include "platform/types.h"

#include <vector>

extern u32 g_uFPS;         ///< "FPS": frames in the last second
extern u32 g_uFPS_Avg;     ///< "FPS_AVG": running mean of the samples of g_uFPS; 0 while no layout shows lows
extern u32 g_uFPS_Max;     ///< "FPS_MAX": largest sample
extern u32 g_uFPS_Min;     ///< "FPS_MIN": smallest sample, 0x7FFFFFFF before the first
extern u32 g_uFPS_50P;     ///< "FPS_50P": median sample
extern u32 g_uFPS_1P;      ///< "FPS_1P": value at 1 percent from the low end
extern u32 g_uFPS_01P;     ///< "FPS_01P": value at 0.1 percent from the low end
extern i32 g_iFrameTime;   ///< "FRAME_TIME": median frame time, hundredths of a millisecond
extern u64 g_uFrameCnt;    ///< "FRAME_CNT": registered and shown, never counted
extern f32 g_fFrameTimeMs; ///< g_iFrameTime in milliseconds
/// The pipeline's mirror of the segment's query switch; written at each swap's report, so one frame late.
extern bool bQueryFrameTime;

/// Frames by slot of one interval each; one slot more than the window has, for the one being filled.
constexpr u32 g_uFrameRingMax = 101;
extern u32 uFrameRing[g_uFrameRingMax];
extern f32 fFPSCarry; ///< seconds by which the last slot was closed late

/// 0x20000 bytes: 32768 frame-time samples in units of ten microseconds; null while no resources exist.
extern u32* g_pFrameSamples;
extern u32 g_uFrameSampleCount;
constexpr u32 g_uFrameSampleMax = 32768;

/// Samples of g_uFPS taken while a layout shows the lows.
struct stFPSSamples {
    /// Ascending. Grows for the life of the process; room is taken for g_uFPSSampleStep samples at a time (an
    /// hour at ten samples a second), so that between two such steps a sample allocates nothing.
    std::vector<u32> listSorted;
    u32 uMeanCount = 0;       ///< samples in g_uFPS_Avg
    u64 u64MeanRemainder = 0; ///< what the mean's division left
};
extern stFPSSamples g_stFPSSamples;
constexpr u32 g_uFPSSampleStep = 36000;

/// Whether a control of the layout shows the frame time: number box 1 in Classic, 8 in RV5, in Custom what
/// stShownFigures says; never in any other style.
bool g_fnFrameTimeShownByStyle() noexcept;
/// Whether a control of the layout shows a low or the median: number boxes 48 to 50 in Classic, 4 to 6 in
/// RV5; never in any other style.
bool g_fnPercentilesShownByStyle() noexcept;
/// The tests in force. Custom has none of its own until its lists were built, and counts as no.
struct stShownFigures {
    bool (*m_fnFrameTime)() noexcept = g_fnFrameTimeShownByStyle;
    bool (*m_fnPercentiles)() noexcept = g_fnPercentilesShownByStyle;
    bool (*m_fnCustomFrameTime)() noexcept =
        nullptr; ///< whether a record of the FPS lists reads g_iFrameTime
};
extern stShownFigures g_stShownFigures;

/// One sample at the start of every update, if a control shows the frame time or the companion asks for it;
/// closes the period when it is over and raises g_bUpdateFrameTime. fSeconds: since the last update.
void g_fnSampleFrameTime(f32 fSeconds) noexcept;
/// Counts this update's frame. When the slot's interval is over: a new g_uFPS with all that follows from it,
/// and g_bUpdateFPS raised for all manager slots.
void g_fnSampleFPS() noexcept;
/// All figures as in a process that has drawn no frame. For tests and simulated processes.
void g_fnResetFigures() noexcept;
