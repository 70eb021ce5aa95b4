#pragma once
// Stopwatch over the performance counter, used by every periodic step of the frame pipeline.
#include "platform/types.h"

/// Seconds are single precision and add up in m_fTotal, so a timer is meant for short periods and gets
/// restarted. Not thread-safe; all timers belong to the render thread.
class CTimer {
  public:
    /// Total 0, stopped; reads the counter's frequency. m_iLast stays unset until the first operation that
    /// reads the counter.
    CTimer() noexcept;

    /// Seconds since the last reading, added to the total; 0 while stopped. Reads the counter in both cases.
    f32 Tick() noexcept;
    /// Tick(), then the total in seconds.
    f32 Elapsed() noexcept;
    /// Total 0, stopped.
    void Reset() noexcept;
    /// Total 0, running from now.
    void Restart() noexcept;
    /// Running from now, total kept. Returns the total in seconds.
    f32 Start() noexcept;
    /// Tick(), then stopped; the total stays. Returns the total in seconds.
    f32 Stop() noexcept;

    f32 m_fTotal;
    i32 m_bStopped;
    i64 m_iLast;
    i64 m_iFrequency;
};

/// Seconds between the last two updates of the overlay.
extern f32 g_fLastFrameSeconds;

/// What a timer reads now: the counter, or the reading that all share.
i64 g_fnTimerReading() noexcept;

/// While one lives, all timers share one reading of the counter, taken when it was made: what happens in
/// between takes no time for them. One inside another shares the outer one's. For the render thread, around
/// steps that wait for nothing.
class CTimerReading {
  public:
    CTimerReading() noexcept;
    ~CTimerReading();
    CTimerReading(const CTimerReading&) = delete;
    CTimerReading& operator=(const CTimerReading&) = delete;

  private:
    bool m_bOuter;
};
