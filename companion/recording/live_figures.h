#pragma once
// Figures of a running program's frames as data names, for layouts.
#include "companion/recording/figures.h"
#include "companion/recording/trace_reader.h"
#include "companion/sensors/reading.h"
#include <deque>
#include <vector>

namespace companion::recording {

constexpr f64 g_fLiveWindow = 60000.0; ///< milliseconds that averages and lows look back

/// Figures of the frames that were taken in.
class LiveFigures {
  public:
    void Take(const std::vector<stTraceFrame>& listFrames, i64 iFrequency);
    /// The next frame has no neighbour.
    void Break() { m_uLastNumber = 0; }
    /// Rates in tenths of a frame a second; without a value before there are frames.
    std::vector<sensors::Reading> Readings() const;

  private:
    std::deque<f64> m_listWindow;
    f64 m_fWindow = 0.0; ///< sum of the window
    StutterFinder m_stutters;
    u64 m_uLastNumber = 0;
    i64 m_iLast = 0;
};

} // namespace companion::recording
