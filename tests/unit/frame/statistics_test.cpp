#include "config/settings/intervals.h"
#include "frame/update/statistics.h"
#include "frame/update/timers.h"
#include "frame/update/update_flags.h"

#include "platform/headless/test_controls.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace headless = platform::headless;

class FrameTime : public ::testing::Test {
  protected:
    void SetUp() override {
        headless::ResetAll();
        headless::SetClock(1'000'000'000);
        m_vecSamples.assign(g_uFrameSampleMax, 0);
        g_pFrameSamples = m_vecSamples.data();
        g_uFrameSampleCount = 0;
        g_iFrameTime = 0;
        g_fFrameTimeMs = 0.0f;
        uFPSIntervalMs = 100;
        uDataIntervalMs = 500;
        g_fnSetupIntervals();
        bQueryFrameTime = true;
        std::memset(g_bUpdateFrameTime, 0, sizeof g_bUpdateFrameTime);
        g_stTimers.FrameTime.Restart();
    }
    void TearDown() override {
        g_pFrameSamples = nullptr;
        g_uFrameSampleCount = 0;
        bQueryFrameTime = false;
        headless::ResetAll();
    }
    static void Sample(f32 fSeconds, i64 iPass = 0) {
        headless::AdvanceClock(iPass);
        g_fnSampleFrameTime(fSeconds);
    }
    std::vector<u32> m_vecSamples;
};

TEST_F(FrameTime, IntervalsAreHeldToTheirBounds) {
    uFPSIntervalMs = 9;
    uDataIntervalMs = 10001;
    g_fnSetupIntervals();
    EXPECT_EQ(uFPSIntervalMs, 10u);
    EXPECT_EQ(uDataIntervalMs, 10000u);
    EXPECT_EQ(fFPSInterval, 0.01f);
    EXPECT_EQ(fDataInterval, 10.0f);
}

TEST_F(FrameTime, SampleIsInTensOfMicroseconds) {
    Sample(0.01667f);
    EXPECT_EQ(g_uFrameSampleCount, 1u);
    EXPECT_EQ(m_vecSamples[0], static_cast<u32>(0.01667f * 100000.0f));
}

TEST_F(FrameTime, MedianClosesThePeriodAndRaisesAllSlots) {
    Sample(0.030f);
    Sample(0.010f);
    EXPECT_EQ(g_iFrameTime, 0);
    Sample(0.020f, 101'000'000);
    EXPECT_EQ(g_iFrameTime, static_cast<i32>(0.020f * 100000.0f));
    EXPECT_EQ(g_fFrameTimeMs, static_cast<f32>(g_iFrameTime) * 0.01f);
    EXPECT_EQ(g_uFrameSampleCount, 0u);
    for (u8 b : g_bUpdateFrameTime) EXPECT_EQ(b, 1);
}

TEST_F(FrameTime, PeriodIsOverOnlyAboveTheInterval) {
    Sample(0.010f, 100'000'000);
    EXPECT_EQ(g_uFrameSampleCount, 1u) << "the interval itself is not above it";
    Sample(0.010f, 1'000'000);
    EXPECT_EQ(g_uFrameSampleCount, 0u);
}

TEST_F(FrameTime, MoreSamplesThanFitAreDropped) {
    for (u32 u = 0; u < g_uFrameSampleMax; ++u) Sample(0.001f);
    for (int i = 0; i < 1000; ++i) Sample(0.5f);
    EXPECT_EQ(g_uFrameSampleCount, g_uFrameSampleMax);
    Sample(0.5f, 200'000'000);
    EXPECT_EQ(g_iFrameTime, 100) << "the median is over the first 32768";
}

TEST_F(FrameTime, NothingIsTouchedWhileNobodyAsks) {
    bQueryFrameTime = false;
    g_iFrameTime = 1234;
    Sample(0.010f, 1'000'000'000);
    EXPECT_EQ(g_uFrameSampleCount, 0u);
    EXPECT_EQ(m_vecSamples[0], 0u);
    EXPECT_EQ(g_iFrameTime, 1234);
}

TEST_F(FrameTime, WithoutABufferNothingHappens) {
    g_pFrameSamples = nullptr;
    Sample(0.010f, 1'000'000'000);
    EXPECT_EQ(g_uFrameSampleCount, 0u);
}

TEST(UpdateFlags, RaisingSetsEverySlotOfAllFour) {
    for (u8* pFlags : {g_bUpdateFPS, g_bUpdateTime, g_bUpdateData, g_bUpdateFrameTime})
        std::memset(pFlags, 0, 20);
    g_fnRaiseUpdateFlags();
    for (u8* pFlags : {g_bUpdateFPS, g_bUpdateTime, g_bUpdateData, g_bUpdateFrameTime})
        for (u32 u = 0; u < 20; ++u) EXPECT_EQ(pFlags[u], 1);
}
