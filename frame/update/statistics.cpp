#include "frame/update/statistics.h"

#include "base/layout_style.h"
#include "base/numbers.h"
#include "controls/control_ids.h"
#include "frame/update/timers.h"
#include "frame/update/update_flags.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>

u32 g_uFPS = 0;
u32 g_uFPS_Avg = 0;
u32 g_uFPS_Max = 0;
u32 g_uFPS_Min = 0x7FFFFFFF;
u32 g_uFPS_50P = 0;
u32 g_uFPS_1P = 0;
u32 g_uFPS_01P = 0;
i32 g_iFrameTime = 0;
u64 g_uFrameCnt = 0; // KEEP(figures): nothing counts it; it is registered and shown all the same.
f32 g_fFrameTimeMs = 0.0f;
bool bQueryFrameTime = false;
u32 uFrameRing[g_uFrameRingMax] = {};
f32 fFPSCarry = 0.0f;
u32* g_pFrameSamples = nullptr;
u32 g_uFrameSampleCount = 0;
stFPSSamples g_stFPSSamples;
stShownFigures g_stShownFigures;

/// The copy that is sorted; static, so that closing a period allocates nothing.
static u32 g_auSortedSamples[g_uFrameSampleMax];

static bool AnyNumBox(std::initializer_list<u32> listBID) noexcept {
    return std::any_of(listBID.begin(), listBID.end(),
                       [](u32 uBID) { return g_fnFindCtrl(0, uBID, g_stNumBoxIds, g_ppNumBox) != nullptr; });
}

bool g_fnFrameTimeShownByStyle() noexcept {
    if (g_uLayoutStyle == STYLE_CLASSIC) return AnyNumBox({1});
    if (g_uLayoutStyle == STYLE_RV5) return AnyNumBox({8});
    return g_uLayoutStyle == STYLE_CUSTOM && g_stShownFigures.m_fnCustomFrameTime &&
           g_stShownFigures.m_fnCustomFrameTime();
}

bool g_fnPercentilesShownByStyle() noexcept {
    if (g_uLayoutStyle == STYLE_CLASSIC) return AnyNumBox({48, 49, 50});
    return g_uLayoutStyle == STYLE_RV5 && AnyNumBox({4, 5, 6});
}

/// Median of the samples as unsigned numbers, in their unit of ten microseconds.
static u32 MedianSample() {
    std::memcpy(g_auSortedSamples, g_pFrameSamples, g_uFrameSampleCount * sizeof(u32));
    std::sort(g_auSortedSamples, g_auSortedSamples + g_uFrameSampleCount);
    return g_auSortedSamples[g_uFrameSampleCount / 2];
}

static void StoreSample(f32 fSeconds) {
    if (g_uFrameSampleCount >= g_uFrameSampleMax) return;
    g_pFrameSamples[g_uFrameSampleCount++] = static_cast<u32>(g_fnTruncate<i64>(fSeconds * 100000.0f));
}

void g_fnSampleFrameTime(f32 fSeconds) noexcept {
    if (!g_pFrameSamples || !(bQueryFrameTime || g_stShownFigures.m_fnFrameTime())) return;
    StoreSample(fSeconds);
    if (!(g_stTimers.FrameTime.Elapsed() > fFPSInterval)) return;
    g_fnRaiseUpdateFlag(g_bUpdateFrameTime);
    g_iFrameTime = static_cast<i32>(MedianSample());
    g_fFrameTimeMs = static_cast<f32>(g_iFrameTime) * 0.01f;
    g_uFrameSampleCount = 0;
    g_stTimers.FrameTime.Restart();
}

/// Room for the next sample; false if memory ran out.
static bool MakeRoom() noexcept {
    if (g_stFPSSamples.listSorted.size() < g_stFPSSamples.listSorted.capacity()) return true;
    try {
        g_stFPSSamples.listSorted.reserve(g_stFPSSamples.listSorted.size() + g_uFPSSampleStep);
        return true;
    } catch (...) {
        return false;
    }
}

/// The mean without rounding drift: what a division leaves goes into the next sum.
// KEEP(figures): the product has 32 bits and wraps around after some 30 million samples of 144.
static void UpdateMean() {
    const u64 u64Count = static_cast<u64>(g_stFPSSamples.uMeanCount) + 1;
    const u64 u64Total =
        static_cast<u64>(g_stFPSSamples.uMeanCount * g_uFPS_Avg) + g_uFPS + g_stFPSSamples.u64MeanRemainder;
    g_uFPS_Avg = static_cast<u32>(u64Total / u64Count);
    g_stFPSSamples.u64MeanRemainder = u64Total % u64Count;
    ++g_stFPSSamples.uMeanCount;
}

// KEEP(figures): the samples are never dropped and are sorted in full each time; the mean, too, counts only
// samples that come while a layout shows the lows.
static void UpdatePercentiles() {
    if (!g_stShownFigures.m_fnPercentiles() || !MakeRoom()) return;
    g_stFPSSamples.listSorted.push_back(g_uFPS);
    UpdateMean();
    std::sort(g_stFPSSamples.listSorted.begin(), g_stFPSSamples.listSorted.end());
    const std::size_t uSize = g_stFPSSamples.listSorted.size();
    g_uFPS_1P = g_stFPSSamples.listSorted[uSize / 100];
    g_uFPS_01P = g_stFPSSamples.listSorted[uSize / 1000];
    g_uFPS_50P = g_stFPSSamples.listSorted[uSize / 2];
}

/// Goes on to a cleared slot. However late the slot is closed, the ring advances by one.
// KEEP(figures): so a program slower than the interval shows too many frames a second: the window's slots
// then span more time than they stand for.
static void AdvanceRing(f32 fElapsed) {
    uFrameRingIndex = (uFrameRingIndex + 1) % uFPSRingSize;
    uFrameRing[uFrameRingIndex] = 0;
    fFPSCarry = fElapsed - static_cast<f32>(g_fnTruncate<i64>(fElapsed / fFPSInterval)) * fFPSInterval;
}

static u32 FramesPerSecond() {
    u32 uSum = 0;
    for (u32 u = 0; u < uFPSRingSize; ++u) uSum += uFrameRing[u];
    return static_cast<u32>(
        g_fnTruncate<i64>(1000.0f / static_cast<f32>(uFPSWindowMs) * static_cast<f32>(uSum)));
}

void g_fnSampleFPS() noexcept {
    const f32 fElapsed = g_stTimers.FPS.Elapsed() + fFPSCarry;
    if (fElapsed < fFPSInterval) {
        ++uFrameRing[uFrameRingIndex];
        return;
    }
    AdvanceRing(fElapsed);
    g_uFPS = FramesPerSecond();
    g_uFPS_Max = std::max(g_uFPS_Max, g_uFPS);
    // KEEP(figures): the first sample counts too, though its slot began with the build: mostly it stays the
    // smallest.
    g_uFPS_Min = std::min(g_uFPS_Min, g_uFPS);
    g_fnRaiseUpdateFlag(g_bUpdateFPS);
    g_stTimers.FPS.Restart();
    uFrameRing[uFrameRingIndex] = 1;
    UpdatePercentiles();
}

void g_fnResetFigures() noexcept {
    g_uFPS = g_uFPS_Avg = g_uFPS_Max = g_uFPS_50P = g_uFPS_1P = g_uFPS_01P = 0;
    g_uFPS_Min = 0x7FFFFFFF;
    g_iFrameTime = 0;
    g_uFrameCnt = 0;
    g_fFrameTimeMs = fFPSCarry = 0.0f;
    bQueryFrameTime = false;
    g_uFrameSampleCount = 0;
    std::memset(uFrameRing, 0, sizeof uFrameRing);
    uFrameRingIndex = 0;
    g_stFPSSamples = {};
    g_stShownFigures = {};
}
