#include "companion/recording/figures.h"
#include <algorithm>
#include <cmath>
#include <numeric>

namespace companion::recording {
namespace {

constexpr size_t kAround = 15;
constexpr f64 kTimes = 2.0, kMore = 4.0;

/// Count of the worst share, rounded up: one at least.
size_t WorstCount(size_t uCount, u32 uPerMille) { return (uCount * uPerMille + 999) / 1000; }

f64 MeanOfWorst(const std::vector<f64>& listSorted, u32 uPerMille) {
    const size_t uWorst = WorstCount(listSorted.size(), uPerMille);
    const f64 fSum =
        std::accumulate(listSorted.end() - static_cast<std::ptrdiff_t>(uWorst), listSorted.end(), 0.0);
    return fSum / static_cast<f64>(uWorst);
}

f64 IntegralOverTime(const std::vector<f64>& listSorted, u32 uPerMille) {
    const f64 fAll = std::accumulate(listSorted.begin(), listSorted.end(), 0.0);
    f64 fSum = 0.0;
    for (auto it = listSorted.rbegin(); it != listSorted.rend(); ++it) {
        fSum += *it;
        if (fSum * 1000.0 >= fAll * uPerMille) return *it;
    }
    return listSorted.front();
}

f64 Deviation(const std::vector<f64>& list, f64 fMean) {
    if (list.size() < 2) return 0.0;
    f64 fSum = 0.0;
    for (const f64 f : list) fSum += (f - fMean) * (f - fMean);
    return std::sqrt(fSum / static_cast<f64>(list.size() - 1));
}

/// A mean that keeps its digits: the mean of the distances to the first guess comes on top.
f64 Mean(const std::vector<f64>& list) {
    const f64 fCount = static_cast<f64>(list.size());
    const f64 fGuess = std::accumulate(list.begin(), list.end(), 0.0) / fCount;
    f64 fRest = 0.0;
    for (const f64 f : list) fRest += f - fGuess;
    return fGuess + fRest / fCount;
}

void TakeStutters(const std::vector<f64>& listFrames, Figures& st) {
    StutterFinder finder;
    for (const f64 f : listFrames) finder.Push(f);
    finder.Finish();
    st.listStutters = finder.Found();
    f64 fSum = 0.0;
    for (const Stutter& stOne : st.listStutters) fSum += stOne.fFrame;
    if (st.fSeconds > 0.0) st.fStutterShare = fSum / (st.fSeconds * 1000.0) * 100.0;
}

} // namespace

const std::array<LowDefinition, LOW_KINDS> g_aLowDefinitions{{
    {"percentile", "percentile",
     "Sort all frame times. The low is the shortest frame time that all but the longest %s of the frames do "
     "not "
     "exceed (nearest rank)."},
    {"percentile_interpolated", "percentile, interpolated",
     "Sort all frame times and number them from 0 on. The low is the frame time at place (count - 1) x (100 "
     "% - %s), "
     "in proportion between the two neighbours of that place."},
    {"mean_of_worst", "mean of the worst",
     "Take the longest %s of the frames, rounded up to whole frames. The low is the mean of their frame "
     "times."},
    {"integral", "integral over time",
     "Add up frame times from the longest on, until they fill %s of the whole time. The low is the frame "
     "time that "
     "was added last."},
}};

f64 NearestRank(const std::vector<f64>& listSorted, u32 uPerMille) {
    const size_t uRank = (listSorted.size() * uPerMille + 999) / 1000;
    return listSorted[std::max<size_t>(uRank, 1) - 1];
}

f64 Interpolated(const std::vector<f64>& listSorted, f64 fShare) {
    const f64 fPlace = static_cast<f64>(listSorted.size() - 1) * fShare;
    const size_t uBelow = std::min(static_cast<size_t>(fPlace), listSorted.size() - 1);
    const size_t uAbove = std::min(uBelow + 1, listSorted.size() - 1);
    return listSorted[uBelow] +
           (fPlace - static_cast<f64>(uBelow)) * (listSorted[uAbove] - listSorted[uBelow]);
}

f64 Low(const std::vector<f64>& listSorted, LowKind eKind, u32 uPerMille) {
    if (listSorted.empty()) return 0.0;
    switch (eKind) {
    case LOW_PERCENTILE:
        return NearestRank(listSorted, 1000 - uPerMille);
    case LOW_INTERPOLATED:
        return Interpolated(listSorted, (1000 - uPerMille) / 1000.0);
    case LOW_MEAN_OF_WORST:
        return MeanOfWorst(listSorted, uPerMille);
    default:
        return IntegralOverTime(listSorted, uPerMille);
    }
}

/// The verdict on the next frame from all that are kept.
void StutterFinder::Judge() {
    const size_t uEnd = m_uFirst + m_listNear.size();
    const size_t uFrom = m_uNext > kAround ? m_uNext - kAround : 0,
                 uTo = std::min(uEnd, m_uNext + kAround + 1);
    std::array<f64, 2 * kAround + 1> af{};
    const auto itFrom = m_listNear.begin() + static_cast<std::ptrdiff_t>(uFrom - m_uFirst);
    const auto itEnd = std::copy_n(itFrom, uTo - uFrom, af.begin());
    const auto itMiddle = af.begin() + static_cast<std::ptrdiff_t>((uTo - uFrom) / 2);
    std::nth_element(af.begin(), itMiddle, itEnd);
    const f64 fFrame = m_listNear[m_uNext - m_uFirst];
    if (fFrame > kTimes * *itMiddle && fFrame >= *itMiddle + kMore)
        m_listFound.push_back({m_uNext, fFrame, *itMiddle});
    ++m_uNext;
}

void StutterFinder::Push(f64 fFrame) {
    m_listNear.push_back(fFrame);
    if (m_uFirst + m_listNear.size() > m_uNext + kAround) Judge();
    if (m_listNear.size() <= 2 * kAround) return;
    m_listNear.pop_front();
    ++m_uFirst;
}

void StutterFinder::Finish() {
    while (m_uNext < m_uFirst + m_listNear.size()) Judge();
}

f64 Rate(f64 fMilliseconds) { return fMilliseconds > 0.0 ? 1000.0 / fMilliseconds : 0.0; }

Figures FiguresOf(const std::vector<f64>& listFrames) {
    Figures st;
    if (listFrames.empty()) return st;
    std::vector<f64> listSorted = listFrames;
    std::sort(listSorted.begin(), listSorted.end());
    st.uFrames = listFrames.size();
    st.fMean = Mean(listFrames);
    st.fSeconds = st.fMean * static_cast<f64>(st.uFrames) / 1000.0;
    st.fDeviation = Deviation(listFrames, st.fMean);
    st.fShortest = listSorted.front();
    st.fLongest = listSorted.back();
    st.fMedian = NearestRank(listSorted, 500);
    st.f95 = NearestRank(listSorted, 950);
    st.f99 = NearestRank(listSorted, 990);
    st.f999 = NearestRank(listSorted, 999);
    for (u32 uKind = 0; uKind < LOW_KINDS; ++uKind)
        for (u32 uShare = 0; uShare < LOW_SHARES; ++uShare)
            st.aafLow[uKind][uShare] = Low(listSorted, static_cast<LowKind>(uKind), g_auPerMille[uShare]);
    TakeStutters(listFrames, st);
    return st;
}

} // namespace companion::recording
