#include "companion/recording/live_figures.h"
#include <algorithm>
#include <cmath>

namespace companion::recording {
namespace {

constexpr size_t kMostFrames = 1'000'000;

i32 Tenths(f64 fRate) { return static_cast<i32>(std::lround(std::min(fRate * 10.0, 1e8))); }

sensors::Reading Value(const char* szName, const char* szUnit, bool bKnown, i32 iValue) {
    return {szName, szUnit, "frames of a program", bKnown ? std::optional(iValue) : std::nullopt};
}

} // namespace

void LiveFigures::Take(const std::vector<stTraceFrame>& listFrames, i64 iFrequency) {
    for (const stTraceFrame& st : listFrames) {
        const bool bNeighbours =
            m_uLastNumber != 0 && st.uNumber == m_uLastNumber + 1 && st.iBefore >= m_iLast;
        const f64 fFrame = static_cast<f64>(st.iBefore - m_iLast) * 1000.0 / static_cast<f64>(iFrequency);
        m_uLastNumber = st.uNumber;
        m_iLast = st.iBefore;
        if (!bNeighbours) continue;
        m_stutters.Push(fFrame);
        m_listWindow.push_back(fFrame);
        m_fWindow += fFrame;
        while ((m_fWindow > g_fLiveWindow && m_listWindow.size() > 1) || m_listWindow.size() > kMostFrames) {
            m_fWindow -= m_listWindow.front();
            m_listWindow.pop_front();
        }
    }
}

std::vector<sensors::Reading> LiveFigures::Readings() const {
    std::vector<f64> listSorted(m_listWindow.begin(), m_listWindow.end());
    std::sort(listSorted.begin(), listSorted.end());
    const bool bKnown = !listSorted.empty();
    const f64 fMean = bKnown ? m_fWindow / static_cast<f64>(listSorted.size()) : 0.0;
    return {Value("AVG_FRAME#0", "FPS/10", bKnown, Tenths(Rate(fMean))),
            Value("P1_FRAME#0", "FPS/10", bKnown, Tenths(Rate(Low(listSorted, LOW_PERCENTILE, 10)))),
            Value("P01_FRAME#0", "FPS/10", bKnown, Tenths(Rate(Low(listSorted, LOW_PERCENTILE, 1)))),
            Value("STUTTER_CNT#0", "", bKnown, static_cast<i32>(m_stutters.Found().size()))};
}

} // namespace companion::recording
