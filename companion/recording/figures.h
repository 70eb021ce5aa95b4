#pragma once
// What frame times say: averages, percentiles, lows by each definition in use, stutters. Milliseconds.
#include "platform/types.h"
#include <array>
#include <deque>
#include <vector>

namespace companion::recording {

/// The ways in which people mean "1 % low".
enum LowKind : u32 { LOW_PERCENTILE, LOW_INTERPOLATED, LOW_MEAN_OF_WORST, LOW_INTEGRAL, LOW_KINDS };
struct LowDefinition {
    const char* szKey; ///< in JSON
    const char* szTitle;
    const char* szWords; ///< the formula in words; "%s" stands for the share
};
extern const std::array<LowDefinition, LOW_KINDS> g_aLowDefinitions;

enum LowShare : u32 { LOW_1, LOW_01, LOW_SHARES };
constexpr u32 g_auPerMille[LOW_SHARES] = {10, 1};
constexpr const char* g_aszShares[LOW_SHARES] = {"1 %", "0.1 %"};

/// The smallest of the sorted values such that at least so many thousandths of all are not above it.
f64 NearestRank(const std::vector<f64>& listSorted, u32 uPerMille);
/// Between the two neighbours of place (count - 1) * share, counted from 0, in proportion.
f64 Interpolated(const std::vector<f64>& listSorted, f64 fShare);
/// Frame time of a low.
f64 Low(const std::vector<f64>& listSorted, LowKind eKind, u32 uPerMille);

struct Stutter {
    size_t uIndex = 0; ///< among the frame times
    f64 fFrame = 0.0;
    f64 fMedian = 0.0; ///< of the frames around it
};

/// A frame is a stutter if it took more than twice the median of the frames around it, up to 15 on each side
/// and itself, and at least 4 ms more. Frames are given one by one; a verdict waits for those behind.
class StutterFinder {
  public:
    void Push(f64 fFrame);
    /// No frame comes any more.
    void Finish();
    const std::vector<Stutter>& Found() const { return m_listFound; }

  private:
    void Judge();

    std::deque<f64> m_listNear;
    size_t m_uFirst = 0, m_uNext = 0; ///< index of the first one kept, and of the one to be judged
    std::vector<Stutter> m_listFound;
};

struct Figures {
    size_t uFrames = 0;
    f64 fSeconds = 0.0; ///< sum of the frame times
    f64 fMean = 0.0, fDeviation = 0.0, fShortest = 0.0, fLongest = 0.0;
    f64 fMedian = 0.0, f95 = 0.0, f99 = 0.0, f999 = 0.0; ///< percentiles by nearest rank
    f64 aafLow[LOW_KINDS][LOW_SHARES] = {};
    std::vector<Stutter> listStutters;
    f64 fStutterShare = 0.0; ///< of the time, percent
};

/// All of them; zeros without a frame.
Figures FiguresOf(const std::vector<f64>& listFrames);
/// Frames a second of a frame time; 0 for none.
f64 Rate(f64 fMilliseconds);

} // namespace companion::recording
