#include "frame/statistics.h"

#include "frame/resources.h"
#include "frame/update.h"

#include <algorithm>
#include <cstring>

u32 g_uFPS = 0;
i32 g_iFrameTime = 0;
f32 g_fFrameTimeMs = 0.0f;
bool bQueryFrameTime = false;
u32 uFPSIntervalMs = 100;
u32 uDataIntervalMs = 500;
f32 fFPSInterval = 0.1f;
f32 fDataInterval = 0.5f;
u32 g_uFrameSampleCount = 0;
CTimer g_timerFrame, g_timerFrameTime;

/// The copy that is sorted; static, so that closing a period allocates nothing.
static u32 g_auSortedSamples[g_uFrameSampleMax];

void g_fnSetupIntervals() noexcept {
    uFPSIntervalMs = std::clamp<u32>(uFPSIntervalMs, 10, 10000);
    uDataIntervalMs = std::clamp<u32>(uDataIntervalMs, 10, 10000);
    fFPSInterval = static_cast<f32>(uFPSIntervalMs) / 1000.0f;
    fDataInterval = static_cast<f32>(uDataIntervalMs) / 1000.0f;
}

/// Median of the samples as unsigned numbers, in their unit of ten microseconds.
static u32 MedianSample() {
    std::memcpy(g_auSortedSamples, g_pFrameSamples, g_uFrameSampleCount * sizeof(u32));
    std::sort(g_auSortedSamples, g_auSortedSamples + g_uFrameSampleCount);
    return g_auSortedSamples[g_uFrameSampleCount / 2];
}

static void StoreSample(f32 fSeconds) {
    if (g_uFrameSampleCount >= g_uFrameSampleMax) return;
    g_pFrameSamples[g_uFrameSampleCount++] = static_cast<u32>(
        static_cast<i32>(std::clamp<i64>(static_cast<i64>(fSeconds * 100000.0f), INT32_MIN, INT32_MAX)));
}

void g_fnSampleFrameTime(f32 fSeconds) noexcept {
    if (!bQueryFrameTime || !g_pFrameSamples) return;
    StoreSample(fSeconds);
    if (!(g_timerFrameTime.Elapsed() > fFPSInterval)) return;
    std::memset(g_bUpdateFrameTime, 1, sizeof g_bUpdateFrameTime);
    g_iFrameTime = static_cast<i32>(MedianSample());
    g_fFrameTimeMs = static_cast<f32>(g_iFrameTime) * 0.01f;
    g_uFrameSampleCount = 0;
    g_timerFrameTime.Restart();
}
