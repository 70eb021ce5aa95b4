#pragma once
// Frames on the virtual clock, and the figures back at their start.
#include "base/layout_style.h"
#include "config/settings/intervals.h"
#include "frame/update/statistics.h"
#include "frame/update/timers.h"
#include "frame/update/update_flags.h"
#include "platform/headless/test_controls.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

constexpr i64 c_iMs = 1'000'000;

class Statistics : public ::testing::Test {
  protected:
    void SetUp() override {
        platform::headless::ResetAll();
        platform::headless::SetClock(1'000'000'000);
        ResetFigures();
        m_vecSamples.assign(g_uFrameSampleMax, 0);
        g_pFrameSamples = m_vecSamples.data();
        Setup(100);
    }
    void TearDown() override {
        ResetFigures();
        Setup(100);
        g_pFrameSamples = nullptr;
        platform::headless::ResetAll();
    }

    static void ResetFigures() {
        g_fnResetFigures();
        uDataIntervalMs = 500;
        g_uLayoutStyle = STYLE_CLASSIC;
        std::memset(g_bUpdateFPS, 0, sizeof g_bUpdateFPS);
        std::memset(g_bUpdateFrameTime, 0, sizeof g_bUpdateFrameTime);
    }
    /// An interval in force and all timers at 0.
    static void Setup(u32 uIntervalMs) {
        uFPSIntervalMs = uIntervalMs;
        g_fnSetupIntervals();
        g_stTimers.Frame.Restart();
        g_stTimers.FPS.Restart();
        g_stTimers.FrameTime.Restart();
    }
    static void ShowPercentiles() {
        g_stShownFigures.m_fnPercentiles = []() noexcept { return true; };
    }
    /// What an update does with the figures, iNanoseconds after the last one.
    static void Frame(i64 iNanoseconds) {
        platform::headless::AdvanceClock(iNanoseconds);
        const f32 fSeconds = g_stTimers.Frame.Elapsed();
        g_stTimers.Frame.Restart();
        g_fnSampleFrameTime(fSeconds);
        g_fnSampleFPS();
    }
    static void Frames(u32 uCount, i64 iNanoseconds) {
        for (u32 u = 0; u < uCount; ++u) Frame(iNanoseconds);
    }
    /// A sample of that many frames a second, without the frames.
    static void TakeSample(u32 uFPS) {
        std::memset(uFrameRing, 0, sizeof uFrameRing);
        uFrameRing[uFrameRingIndex] = uFPS;
        fFPSCarry = 0.0f;
        platform::headless::AdvanceClock(i64{uFPSIntervalMs} * c_iMs + c_iMs);
        g_fnSampleFPS();
        EXPECT_EQ(g_uFPS, uFPS);
    }
    std::vector<u32> m_vecSamples;
};
