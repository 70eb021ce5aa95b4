// The frame limiter on the real clock: a host whose frame takes half a millisecond, stretched to a target.
// Arguments: seconds a round, rounds a target, 1 for the key LimiterRecovery. Prints one JSON line a round:
// how long the first sixty (measured, unlimited) and the later frames took, microseconds.
#include "base/host_care.h"
#include "frame/limiter.h"
#include "platform/clock.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr i64 g_iWorkNanoseconds = 500000;
constexpr u32 g_uUnlimited = 61; // the first run only takes the time; sixty more are measured

void Work() {
    const i64 iEnd = platform::SteadyNanoseconds() + g_iWorkNanoseconds;
    while (platform::SteadyNanoseconds() < iEnd) {
    }
}

f64 Percentile(const std::vector<f64>& fSorted, f64 fPart) {
    return fSorted[std::size_t(std::lround(fPart * f64(fSorted.size() - 1)))];
}

void Print(u32 uTarget, std::vector<f64> fIntervals, f64 fUnlimited) {
    f64 fSum = 0, fSquares = 0;
    for (f64 f : fIntervals) fSum += f;
    const f64 fMean = fSum / f64(fIntervals.size());
    for (f64 f : fIntervals) fSquares += (f - fMean) * (f - fMean);
    u32 uFree = 0;
    for (f64 f : fIntervals) uFree += f < 0.75e6 / uTarget;
    std::sort(fIntervals.begin(), fIntervals.end());
    std::printf(
        "{\"target\": %u, \"wanted_us\": %.3f, \"mean_us\": %.3f, \"mean_error_us\": %.3f, \"deviation_us\": "
        "%.3f, \"p5_us\": %.3f, \"median_us\": %.3f, \"p95_us\": %.3f, \"first60_mean_us\": %.3f, "
        "\"frames\": %zu, \"free_frames\": %u, "
        "\"correction_us\": %.3f}\n",
        uTarget, 1e6 / uTarget, fMean, fMean - 1e6 / uTarget, std::sqrt(fSquares / f64(fIntervals.size())),
        Percentile(fIntervals, 0.05), Percentile(fIntervals, 0.5), Percentile(fIntervals, 0.95), fUnlimited,
        fIntervals.size(), uFree, f64(g_stLimiter.fCorrection) * 1e6);
    std::fflush(stdout);
}

void Measure(u32 uTarget, u32 uFrames) {
    g_stLimiter = {};
    EnableFPSLimiter = 1;
    FPS_Target = uTarget;
    g_fnTavo_Setup_FPS_Limiter();
    std::vector<f64> fIntervals;
    fIntervals.reserve(uFrames);
    f64 fUnlimited = 0;
    i64 iLast = platform::SteadyNanoseconds();
    for (u32 uFrame = 0; uFrame < uFrames + g_uUnlimited; ++uFrame) {
        Work();
        g_fnTavo_FPS_Limiter();
        const i64 iNow = platform::SteadyNanoseconds();
        if (uFrame > 0 && uFrame < g_uUnlimited)
            fUnlimited += f64(iNow - iLast) / 1000.0 / (g_uUnlimited - 1);
        if (uFrame >= g_uUnlimited) fIntervals.push_back(f64(iNow - iLast) / 1000.0);
        iLast = iNow;
    }
    Print(uTarget, std::move(fIntervals), fUnlimited);
}

} // namespace

int main(int iCount, char** pszArguments) {
    const f64 fSeconds = iCount > 1 ? std::atof(pszArguments[1]) : 4.0;
    const int iRounds = iCount > 2 ? std::atoi(pszArguments[2]) : 1;
    g_stHostCare.bLimiterRecovery = iCount > 3 && std::atoi(pszArguments[3]) != 0;
    for (u32 uTarget : {30u, 60u, 144u, 360u})
        for (int i = 0; i < iRounds; ++i) Measure(uTarget, std::max(30u, u32(fSeconds * uTarget)));
}
