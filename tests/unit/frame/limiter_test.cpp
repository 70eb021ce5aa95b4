#include "base/host_care.h"
#include "frame/limiter.h"

#include "base/log.h"
#include "platform/clock.h"
#include "platform/headless/test_controls.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace headless = platform::headless;

static std::vector<std::string> g_vecLines;
static void KeepLine(const char* szLine) { g_vecLines.emplace_back(szLine); }

/// The virtual clock moves on by 1000 ns at every reading, so that the spin ends.
class Limiter : public ::testing::Test {
  protected:
    static constexpr i64 m_iStep = 1000;

    void SetUp() override {
        headless::ResetAll();
        headless::SetClock(5'000'000'000);
        headless::SetClockStepPerRead(m_iStep);
        g_stLimiter = stLimiterState();
        EnableFPSLimiter = 0;
        FPS_Target = 0;
        Frametime_Target_Sec = 1.0f / 360.0f;
        g_vecLines.clear();
        m_fnFormerSink = g_fnLogSink;
        g_fnLogSink = KeepLine;
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        g_stLimiter = stLimiterState();
        EnableFPSLimiter = 0;
        FPS_Target = 0;
        headless::ResetAll();
    }
    static void Limit(u32 uTarget) {
        EnableFPSLimiter = 1;
        FPS_Target = uTarget;
        g_fnTavo_Apply_FPS_Limiter();
    }
    /// One frame in which the application takes iNanoseconds; returns how long the limiter took.
    static i64 Frame(i64 iNanoseconds) {
        headless::AdvanceClock(iNanoseconds);
        const i64 iBefore = Now();
        g_fnTavo_FPS_Limiter();
        return Now() - iBefore;
    }
    static i64 Now() {
        headless::SetClockStepPerRead(0);
        const i64 iNow = platform::SteadyNanoseconds();
        headless::SetClockStepPerRead(m_iStep);
        return iNow;
    }
    static void Fill(i64 iNanoseconds) {
        for (int i = 0; i < 61; ++i) Frame(iNanoseconds);
    }
    void (*m_fnFormerSink)(const char*) = nullptr;
};

TEST_F(Limiter, DefaultTargetIsOne360thOfASecond) {
    u32 uBits;
    static_assert(sizeof uBits == sizeof Frametime_Target_Sec);
    std::memcpy(&uBits, &Frametime_Target_Sec, sizeof uBits);
    EXPECT_EQ(uBits, 0x3B360B61u);
}

TEST_F(Limiter, SetupTakesTargetZeroAsOne) {
    g_fnTavo_Setup_FPS_Limiter();
    EXPECT_EQ(FPS_Target, 1u);
    EXPECT_EQ(Frametime_Target_Sec, 1.0f);
    ASSERT_EQ(g_vecLines.size(), 2u);
    EXPECT_EQ(g_vecLines[0], "[TavoDebug] Tavo: g_fnTavo_Setup_FPS_Limiter() - set FPS_Target: 1");
    EXPECT_EQ(g_vecLines[1], "[TavoDebug] Tavo: g_fnTavo_Setup_FPS_Limiter() - Frametime_Target_Sec: 1.000");
}

TEST_F(Limiter, ReadTargetZeroSwitchesItOffWithoutSetup) {
    EnableFPSLimiter = 1;
    g_fnTavo_Apply_FPS_Limiter();
    EXPECT_EQ(EnableFPSLimiter, 0u);
    EXPECT_EQ(FPS_Target, 0u);
    EXPECT_EQ(Frametime_Target_Sec, 1.0f / 360.0f);
}

TEST_F(Limiter, OffReadsNoClockAndKeepsNothing) {
    const u64 uReads = headless::ClockReads();
    for (int i = 0; i < 100; ++i) g_fnTavo_FPS_Limiter();
    EXPECT_EQ(headless::ClockReads(), uReads);
    EXPECT_FALSE(g_stLimiter.bLimiterStarted);
}

TEST_F(Limiter, FirstCallOnlyStartsAndTheNextSixtyOnlyMeasure) {
    Limit(100);
    g_fnTavo_FPS_Limiter();
    EXPECT_TRUE(g_stLimiter.bLimiterStarted);
    EXPECT_EQ(g_stLimiter.uFillCount, 0u);
    for (u32 i = 1; i <= 60; ++i) {
        EXPECT_LT(Frame(1'000'000), 100'000) << "call " << i + 1;
        EXPECT_EQ(g_stLimiter.uFillCount, i);
    }
    EXPECT_GT(Frame(1'000'000), 8'000'000);
    EXPECT_EQ(g_stLimiter.uFillCount, 60u);
}

TEST_F(Limiter, RingTakesEveryFrameAndWrapsAtSixty) {
    Limit(100);
    g_fnTavo_FPS_Limiter();
    for (int i = 0; i < 60; ++i) Frame(20'000'000);
    EXPECT_EQ(g_stLimiter.uWriteIndex, 0u);
    Frame(40'000'000);
    EXPECT_EQ(g_stLimiter.uWriteIndex, 1u);
    EXPECT_NEAR(g_stLimiter.fFrameSeconds[0], 0.04f, 0.001f);
    EXPECT_NEAR(g_stLimiter.fFrameSeconds[1], 0.02f, 0.001f);
}

TEST_F(Limiter, TwentyMillisecondFramesAtTargetSixtyAreNotDelayed) {
    Limit(60);
    Fill(20'000'000);
    g_stLimiter.fCorrection = 0.001f;
    EXPECT_LT(Frame(20'000'000), 100'000);
    EXPECT_EQ(g_stLimiter.fCorrection, 0.001f);
}

TEST_F(Limiter, ThousandFramesASecondAtTargetHundredConvergeToTenMilliseconds) {
    Limit(100);
    Fill(1'000'000);
    for (int i = 0; i < 50; ++i) Frame(1'000'000);
    const i64 iBefore = Now();
    for (int i = 0; i < 100; ++i) Frame(1'000'000);
    const f64 fMean = static_cast<f64>(Now() - iBefore) / 100.0;
    EXPECT_NEAR(fMean, 10'000'000.0, 20'000.0);
}

TEST_F(Limiter, OvershootGivesTwiceItsLengthAsNegativeCorrection) {
    Limit(100);
    Fill(1'000'000);
    headless::SetClockStepPerRead(500'000);
    headless::AdvanceClock(1'000'000);
    g_fnTavo_FPS_Limiter();
    EXPECT_LT(g_stLimiter.fCorrection, 0.0f);
    // The wait that this run saw, rebuilt from its measured frame.
    const f32 fWait = Frametime_Target_Sec - g_stLimiter.fFrameSeconds[0] + 0.0f;
    const f32 fMissed = g_stLimiter.fCorrection / 2.0f;
    const f32 fReadings = (fWait - fMissed) / 0.0005f;
    EXPECT_NEAR(fReadings, std::round(fReadings), 0.01f) << "a whole number of clock steps was waited";
}

TEST_F(Limiter, NegativeWaitReturnsAtOnceAndTheNextFrameSpansTwo) {
    Limit(100);
    Fill(1'000'000);
    g_stLimiter.fCorrection = -0.0095f;
    const i64 tStart = g_stLimiter.tFrameStart;
    EXPECT_LT(Frame(1'000'000), 100'000);
    EXPECT_EQ(g_stLimiter.tFrameStart, tStart);
    EXPECT_EQ(g_stLimiter.fCorrection, -0.0095f);
    Frame(1'000'000);
    EXPECT_NEAR(g_stLimiter.fFrameSeconds[(g_stLimiter.uWriteIndex + 59) % 60], 0.002f, 0.0001f);
}

TEST_F(Limiter, CorrectionBelowTheNegativeTargetEndsLimitingForGood) {
    Limit(100);
    Fill(1'000'000);
    g_stLimiter.fCorrection = -0.02f;
    for (int i = 0; i < 500; ++i) EXPECT_LT(Frame(1'000'000), 100'000);
    EXPECT_EQ(g_stLimiter.fCorrection, -0.02f);
}

/// The same with the key LimiterRecovery.
class LimiterRecovery : public Limiter {
  protected:
    void SetUp() override {
        Limiter::SetUp();
        g_stHostCare.bLimiterRecovery = true;
    }
    void TearDown() override {
        g_stHostCare = stHostCare();
        Limiter::TearDown();
    }
    /// A frame of which the spin comes back iLate nanoseconds late, as when another program has the core.
    static void LateFrame(i64 iNanoseconds, i64 iLate) {
        headless::SetClockJump(8000, iLate + 1'000'000); // a millisecond ahead of the end of a wait of 9 ms
        Frame(iNanoseconds);
    }
    /// Time that so many frames took, nanoseconds.
    static i64 Frames(int iCount, i64 iNanoseconds) {
        const i64 iBefore = Now();
        for (int i = 0; i < iCount; ++i) Frame(iNanoseconds);
        return Now() - iBefore;
    }
};

TEST_F(LimiterRecovery, LimitingGoesOnAfterAnOvershootOfMoreThanHalfAFrame) {
    Limit(100);
    Fill(1'000'000);
    LateFrame(1'000'000, 8'000'000);
    EXPECT_NEAR(static_cast<f64>(Frames(100, 1'000'000)), 1e9, 0.01e9);
}

TEST_F(LimiterRecovery, WithoutTheKeyTheSameOvershootEndsIt) {
    g_stHostCare.bLimiterRecovery = false;
    Limit(100);
    Fill(1'000'000);
    LateFrame(1'000'000, 8'000'000);
    EXPECT_LT(Frames(100, 1'000'000), 200'000'000);
}

TEST_F(LimiterRecovery, ALostLimitIsHealedAsSoonAsTheKeyIsRead) {
    Limit(100);
    Fill(1'000'000);
    g_stLimiter.fCorrection = -5.0f;
    EXPECT_NEAR(static_cast<f64>(Frames(100, 1'000'000)), 1e9, 0.01e9);
}

TEST_F(LimiterRecovery, OneLateFrameShortensTheNextByAQuarterAtMost) {
    Limit(100);
    Fill(1'000'000);
    LateFrame(1'000'000, 8'000'000);
    const i64 iBefore = Now();
    Frame(1'000'000);
    EXPECT_NEAR(static_cast<f64>(Now() - iBefore), 7'500'000.0, 50'000.0);
    g_stLimiter.fCorrection = 1.0f;
    const i64 iLonger = Now();
    Frame(1'000'000);
    EXPECT_NEAR(static_cast<f64>(Now() - iLonger), 12'500'000.0, 50'000.0);
}

TEST_F(LimiterRecovery, AFrameThatFillsMostOfTheTargetPaysTheCorrectionOff) {
    // A wait of 1 ms less 2.5 ms: nothing is waited for, and the next frame is measured alone.
    Limit(100);
    Fill(9'000'000);
    g_stLimiter.fCorrection = -0.005f;
    EXPECT_LT(Frame(9'000'000), 100'000);
    EXPECT_EQ(g_stLimiter.fCorrection, 0.0f);
    EXPECT_NEAR(static_cast<f64>(Frames(100, 9'000'000)), 1e9, 0.01e9);
}

TEST_F(LimiterRecovery, SmallCorrectionsAreThoseOfTheRule) {
    for (const bool bKey : {false, true}) {
        g_stHostCare.bLimiterRecovery = bKey;
        g_stLimiter = stLimiterState();
        headless::SetClock(5'000'000'000);
        Limit(100);
        Fill(1'000'000);
        LateFrame(1'000'000, 700'000);
        static f32 s_fWithout;
        if (!bKey) s_fWithout = g_stLimiter.fCorrection;
        EXPECT_LT(g_stLimiter.fCorrection, 0.0f);
        EXPECT_EQ(g_stLimiter.fCorrection, s_fWithout);
    }
}

TEST_F(Limiter, PauseKeepsTheOldStartSoTheFirstFrameAfterItIsNotDelayed) {
    Limit(100);
    Fill(1'000'000);
    Frame(1'000'000);
    const i64 tStart = g_stLimiter.tFrameStart;
    EnableFPSLimiter = 0;
    for (int i = 0; i < 10; ++i) Frame(1'000'000'000);
    EXPECT_EQ(g_stLimiter.tFrameStart, tStart);
    EnableFPSLimiter = 1;
    EXPECT_LT(Frame(1'000'000), 100'000);
    EXPECT_GT(Frame(1'000'000), 1'000'000);
}

TEST_F(Limiter, ChangesAreLoggedOnceWithAClosingLine) {
    Limit(100);
    g_vecLines.clear();
    g_fnTavo_FPS_Limiter();
    ASSERT_EQ(g_vecLines.size(), 4u);
    EXPECT_EQ(g_vecLines[0], "[TavoDebug] Tavo: g_fnTavo_FPS_Limiter() - EnableFPSLimiter: 0 => 1");
    EXPECT_EQ(g_vecLines[1], "[TavoDebug] Tavo: g_fnTavo_FPS_Limiter() - FPS_Target: 0 => 100");
    EXPECT_EQ(g_vecLines[2],
              "[TavoDebug] Tavo: g_fnTavo_FPS_Limiter() - Frametime_Target_Sec: 0.003 => 0.010");
    EXPECT_EQ(g_vecLines[3], "[TavoDebug] Tavo: g_fnTavo_FPS_Limiter() - warning !!");
    g_fnTavo_FPS_Limiter();
    EXPECT_EQ(g_vecLines.size(), 4u);
}

TEST_F(Limiter, SettingsBelongToTheProcess) {
    // Two processes with different targets: nothing of the limiter lies in the shared segment.
    Limit(30);
    EXPECT_EQ(Frametime_Target_Sec, 1.0f / 30.0f);
    headless::ResetSegment();
    EXPECT_EQ(FPS_Target, 30u);
    EXPECT_EQ(EnableFPSLimiter, 1u);
}
