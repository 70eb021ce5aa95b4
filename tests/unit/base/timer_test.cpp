#include "base/timer.h"

#include "platform/headless/test_controls.h"

#include <gtest/gtest.h>

namespace headless = platform::headless;

class Timer : public ::testing::Test {
  protected:
    void SetUp() override {
        headless::ResetAll();
        headless::SetClock(1'000'000'000);
    }
    void TearDown() override { headless::ResetAll(); }
    static void Pass(f64 fSeconds) { headless::AdvanceClock(static_cast<i64>(fSeconds * 1e9)); }
};

TEST_F(Timer, IsMadeStoppedAtZeroWithTheCountersFrequency) {
    headless::SetCounterFrequency(10'000'000);
    CTimer timer;
    EXPECT_EQ(timer.m_fTotal, 0.0f);
    EXPECT_EQ(timer.m_bStopped, 1);
    EXPECT_EQ(timer.m_iFrequency, 10'000'000);
}

TEST_F(Timer, ConstructionReadsNoCounter) {
    const u64 uReads = headless::ClockReads();
    CTimer timer;
    EXPECT_EQ(headless::ClockReads(), uReads);
}

TEST_F(Timer, TickOfAStoppedTimerIsZeroButTakesTheReading) {
    CTimer timer;
    Pass(0.5);
    EXPECT_EQ(timer.Tick(), 0.0f);
    EXPECT_EQ(timer.m_iLast, 1'500'000'000);
    EXPECT_EQ(timer.m_fTotal, 0.0f);
}

TEST_F(Timer, TickReturnsTheTimeSinceTheLastReadingAndAddsIt) {
    CTimer timer;
    timer.Restart();
    Pass(0.25);
    EXPECT_EQ(timer.Tick(), 0.25f);
    Pass(0.5);
    EXPECT_EQ(timer.Tick(), 0.5f);
    EXPECT_EQ(timer.m_fTotal, 0.75f);
}

TEST_F(Timer, TickDividesInDoubleAndRoundsOnce) {
    headless::SetCounterFrequency(10'000'000);
    CTimer timer;
    timer.Restart();
    timer.m_iLast -= 123'456'789;
    EXPECT_EQ(timer.Tick(), static_cast<f32>(123456789.0 / 10000000.0));
}

TEST_F(Timer, ElapsedTicksAndReturnsTheTotal) {
    CTimer timer;
    timer.Restart();
    Pass(0.25);
    EXPECT_EQ(timer.Elapsed(), 0.25f);
    Pass(0.25);
    EXPECT_EQ(timer.Elapsed(), 0.5f);
}

TEST_F(Timer, ResetStopsAtZero) {
    CTimer timer;
    timer.Restart();
    Pass(1.0);
    timer.Reset();
    EXPECT_EQ(timer.m_bStopped, 1);
    Pass(1.0);
    EXPECT_EQ(timer.Elapsed(), 0.0f);
}

TEST_F(Timer, RestartRunsFromZeroWhateverWentBefore) {
    CTimer timer;
    timer.Restart();
    Pass(1.0);
    timer.Stop();
    timer.Restart();
    EXPECT_EQ(timer.m_bStopped, 0);
    Pass(0.125);
    EXPECT_EQ(timer.Elapsed(), 0.125f);
}

TEST_F(Timer, StartKeepsTheTotalAndReturnsIt) {
    CTimer timer;
    timer.Restart();
    Pass(1.0);
    timer.Stop();
    Pass(4.0);
    EXPECT_EQ(timer.Start(), 1.0f);
    Pass(0.5);
    EXPECT_EQ(timer.Elapsed(), 1.5f);
}

TEST_F(Timer, StartOfARunningTimerDropsWhatWasNotYetRead) {
    CTimer timer;
    timer.Restart();
    Pass(1.0);
    EXPECT_EQ(timer.Start(), 0.0f);
    EXPECT_EQ(timer.Elapsed(), 0.0f);
}

TEST_F(Timer, StopTakesTheLastReadingAndKeepsTheTotal) {
    CTimer timer;
    timer.Restart();
    Pass(2.0);
    EXPECT_EQ(timer.Stop(), 2.0f);
    Pass(2.0);
    EXPECT_EQ(timer.Elapsed(), 2.0f);
    EXPECT_EQ(timer.Stop(), 2.0f);
}
