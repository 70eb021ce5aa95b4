// Frames per second, their extremes, mean and lows: worked by hand.
#include "base/layout_style.h"
#include "config/settings/intervals.h"
#include "frame/update/update_flags.h"
#include "statistics_fixture.h"

#include "controls/control_ids.h"

#include <algorithm>
#include <numeric>

TEST_F(Statistics, WindowAndRingOfAnInterval) {
    struct {
        u32 uIntervalMs, uWindowMs, uRingSize;
    } const aRows[] = {{10, 1000, 101}, {100, 1000, 11},   {300, 900, 4},       {400, 800, 3},
                       {500, 1000, 3},  {1000, 1000, 2},   {1001, 1001, 2},     {5000, 5000, 2},
                       {9, 1000, 101},  {10000, 10000, 2}, {4000000, 10000, 2}, {0, 1000, 101}};
    for (const auto& row : aRows) {
        uFrameRingIndex = 1;
        Setup(row.uIntervalMs);
        EXPECT_EQ(uFPSWindowMs, row.uWindowMs) << row.uIntervalMs;
        EXPECT_EQ(uFPSRingSize, row.uRingSize) << row.uIntervalMs;
        EXPECT_EQ(uFrameRingIndex, 0u);
        EXPECT_LE(uFPSRingSize, g_uFrameRingMax);
    }
}

TEST_F(Statistics, SettingUpKeepsWhatTheRingHolds) {
    uFrameRing[3] = 77;
    Setup(50);
    EXPECT_EQ(uFrameRing[3], 77u);
}

TEST_F(Statistics, SlotsAreClosedWithTheirCarry) {
    Frames(3, 30 * c_iMs); // 30, 60, 90 ms
    EXPECT_EQ(uFrameRing[0], 3u);
    EXPECT_EQ(g_uFPS, 0u);
    EXPECT_EQ(g_bUpdateFPS[0], 0);
    Frame(30 * c_iMs); // 120 ms: closes, 20 ms late
    EXPECT_EQ(uFrameRingIndex, 1u);
    EXPECT_EQ(g_uFPS, 3u) << "1000 / 1000 ms * 3 frames";
    EXPECT_NEAR(fFPSCarry, 0.02f, 1e-6f);
    EXPECT_EQ(uFrameRing[1], 1u) << "the closing frame stands in the new slot";
    for (u8 b : g_bUpdateFPS) EXPECT_EQ(b, 1);
    Frames(2, 30 * c_iMs); // 50, 80 ms
    EXPECT_EQ(uFrameRing[1], 3u);
    Frame(30 * c_iMs); // 110 ms
    EXPECT_EQ(uFrameRingIndex, 2u);
    EXPECT_EQ(g_uFPS, 6u);
    EXPECT_NEAR(fFPSCarry, 0.01f, 1e-6f);
}

TEST_F(Statistics, TheRingWrapsAndDropsItsOldestSlot) {
    for (u32 u = 0; u < 11; ++u) uFrameRing[u] = 100 + u;
    uFrameRingIndex = 10;
    Frame(101 * c_iMs);
    EXPECT_EQ(uFrameRingIndex, 0u);
    EXPECT_EQ(g_uFPS, 101u + 102 + 103 + 104 + 105 + 106 + 107 + 108 + 109 + 110);
    EXPECT_EQ(uFrameRing[0], 1u);
}

TEST_F(Statistics, SlotsBeyondTheRingDoNotCount) {
    uFrameRing[11] = 5000;
    uFrameRing[100] = 5000;
    Frame(101 * c_iMs);
    EXPECT_EQ(g_uFPS, 0u);
}

TEST_F(Statistics, TheIntervalItselfClosesTheSlot) {
    Frame(100 * c_iMs);
    EXPECT_EQ(uFrameRingIndex, 1u) << "not below the interval";
    EXPECT_EQ(fFPSCarry, 0.0f);
}

// Each frame closes a slot and each slot holds the one frame that closed it: ten slots in the window say ten.
TEST_F(Statistics, FrameRateBelowOneFramePerIntervalAdvancesOneSlotOnlyAndOverstates) {
    Frame(333 * c_iMs);
    EXPECT_EQ(uFrameRingIndex, 1u);
    EXPECT_NEAR(fFPSCarry, 0.033f, 1e-6f) << "three intervals are gone, the rest is carried";
    EXPECT_EQ(g_uFPS, 0u);
    Frame(333 * c_iMs);
    EXPECT_EQ(uFrameRingIndex, 2u);
    EXPECT_EQ(g_uFPS, 1u);
    Frames(9, 333 * c_iMs);
    EXPECT_EQ(g_uFPS, 10u);
    Frames(50, 333 * c_iMs);
    EXPECT_EQ(g_uFPS, 10u) << "three frames a second in truth";
}

TEST_F(Statistics, StalledApplicationShowsOnlyTheFramesInTheRing) {
    Frames(200, 10 * c_iMs);
    const u32 uIndex = uFrameRingIndex;
    const u32 uNext = (uIndex + 1) % uFPSRingSize;
    const u32 uExpected = std::accumulate(uFrameRing, uFrameRing + 11, 0u) - uFrameRing[uNext];
    Frame(i64{300'000} * c_iMs);
    EXPECT_EQ(uFrameRingIndex, uNext);
    EXPECT_EQ(g_uFPS, uExpected);
    EXPECT_GE(fFPSCarry, 0.0f);
    EXPECT_LT(fFPSCarry, fFPSInterval);
    EXPECT_EQ(uFrameRing[uNext], 1u);
}

TEST_F(Statistics, IntervalOfFiveSecondsHasTwoSlots) {
    Setup(5000);
    Frames(124, 40 * c_iMs); // 4.96 s
    EXPECT_EQ(uFrameRing[0], 124u);
    Frame(50 * c_iMs); // 5.01 s
    EXPECT_EQ(g_uFPS, 24u) << "0.2 * 124";
    EXPECT_EQ(uFrameRingIndex, 1u);
    Frames(124, 40 * c_iMs);
    Frame(50 * c_iMs);
    EXPECT_EQ(uFrameRingIndex, 0u);
    EXPECT_EQ(g_uFPS, 25u) << "0.2 * 125, the closing frame of the slot before with it";
}

TEST_F(Statistics, TheRateIsOneMultiplicationInSinglePrecision) {
    Setup(300); // window 900
    uFrameRing[0] = 27;
    Frame(301 * c_iMs);
    EXPECT_EQ(g_uFPS, static_cast<u32>((1000.0f / 900.0f) * 27.0f));
    EXPECT_EQ(g_uFPS, 30u);
}

TEST_F(Statistics, LeastAndMostKeepTheFirstPartialSampleForGood) {
    TakeSample(2);
    EXPECT_EQ(g_uFPS_Min, 2u);
    EXPECT_EQ(g_uFPS_Max, 2u);
    TakeSample(60);
    TakeSample(45);
    EXPECT_EQ(g_uFPS_Min, 2u);
    EXPECT_EQ(g_uFPS_Max, 60u);
    Setup(50);
    EXPECT_EQ(g_uFPS_Min, 2u);
    EXPECT_EQ(g_uFPS_Max, 60u);
}

TEST_F(Statistics, WithNothingCountedTheFirstSampleIs0AndStaysTheLeast) {
    Frame(900 * c_iMs); // the time of the build counts
    EXPECT_EQ(g_uFPS_Min, 0u);
    Frames(300, 10 * c_iMs);
    EXPECT_EQ(g_uFPS_Min, 0u);
}

TEST_F(Statistics, OneSampleIsAllThreePercentiles) {
    ShowPercentiles();
    TakeSample(47);
    EXPECT_EQ(g_uFPS_1P, 47u);
    EXPECT_EQ(g_uFPS_01P, 47u);
    EXPECT_EQ(g_uFPS_50P, 47u);
    EXPECT_EQ(g_uFPS_Avg, 47u);
}

TEST_F(Statistics, PercentilesAreTheElementsAtTheirIndexes) {
    ShowPercentiles();
    for (u32 u = 2000; u >= 2; --u) TakeSample(u);
    EXPECT_EQ(g_uFPS_01P, 3u) << "1999 samples: index 1 of 2, 3, 4 ...";
    EXPECT_EQ(g_uFPS_1P, 21u) << "index 19";
    EXPECT_EQ(g_uFPS_50P, 1001u) << "index 999";
    TakeSample(1);
    ASSERT_EQ(g_stFPSSamples.listSorted.size(), 2000u);
    EXPECT_EQ(g_uFPS_01P, 3u) << "index 2 of 1, 2, 3 ...";
    EXPECT_EQ(g_uFPS_1P, 21u) << "index 20";
    EXPECT_EQ(g_uFPS_50P, 1001u) << "index 1000";
    EXPECT_TRUE(std::is_sorted(g_stFPSSamples.listSorted.begin(), g_stFPSSamples.listSorted.end()));
}

TEST_F(Statistics, TheMeanDoesNotDrift) {
    ShowPercentiles();
    const u32 auSamples[] = {60, 61, 61, 59, 58, 60, 7};
    const u32 auMeans[] = {60, 60, 60, 60, 59, 59, 52};
    const u64 auRemainders[] = {0, 1, 2, 1, 4, 5, 2};
    for (u32 u = 0; u < 7; ++u) {
        TakeSample(auSamples[u]);
        EXPECT_EQ(g_uFPS_Avg, auMeans[u]) << u;
        EXPECT_EQ(g_stFPSSamples.u64MeanRemainder, auRemainders[u]) << u;
    }
}

TEST_F(Statistics, TheProductOfTheMeanHas32Bits) {
    ShowPercentiles();
    g_stFPSSamples.uMeanCount = 0x10000;
    g_uFPS_Avg = 0x10000;
    g_stFPSSamples.u64MeanRemainder = u64{1} << 40;
    TakeSample(60);
    EXPECT_EQ(g_uFPS_Avg, ((u64{1} << 40) + 60) / 0x10001);
}

TEST_F(Statistics, WithoutABoxForTheLowsTheirFiguresAndTheMeanStay0) {
    for (u32 uStyle = 0; uStyle < 4; ++uStyle) {
        g_uLayoutStyle = uStyle;
        TakeSample(60 + uStyle);
    }
    EXPECT_EQ(g_uFPS_Avg, 0u);
    EXPECT_EQ(g_uFPS_50P, 0u);
    EXPECT_EQ(g_uFPS_1P, 0u);
    EXPECT_EQ(g_uFPS_01P, 0u);
    EXPECT_TRUE(g_stFPSSamples.listSorted.empty());
    EXPECT_EQ(g_uFPS_Max, 63u);
}

TEST_F(Statistics, AnUpdateWithoutANewSampleAddsNone) {
    ShowPercentiles();
    Frames(5, 10 * c_iMs);
    EXPECT_TRUE(g_stFPSSamples.listSorted.empty());
}

TEST_F(Statistics, TheSampleVectorIsNeverClearedAndTakesRoomInSteps) {
    ShowPercentiles();
    TakeSample(30);
    EXPECT_EQ(g_stFPSSamples.listSorted.capacity(), g_uFPSSampleStep);
    g_stFPSSamples.listSorted.assign(g_uFPSSampleStep - 1, 60);
    TakeSample(61);
    EXPECT_EQ(g_stFPSSamples.listSorted.capacity(), g_uFPSSampleStep);
    Setup(100);
    TakeSample(62);
    EXPECT_EQ(g_stFPSSamples.listSorted.size(), g_uFPSSampleStep + 1);
    EXPECT_EQ(g_stFPSSamples.listSorted.capacity(), 2 * g_uFPSSampleStep);
    EXPECT_EQ(g_uFPS_1P, 60u);
    EXPECT_EQ(g_stFPSSamples.listSorted.back(), 62u);
}

TEST_F(Statistics, FramesAreNeverCounted) {
    Frames(500, 10 * c_iMs);
    EXPECT_EQ(g_uFrameCnt, 0u);
}

// --- which layouts show what

class ShownFigures : public Statistics {
  protected:
    void SetUp() override {
        Statistics::SetUp();
        g_fnClearControlIds();
        m_ppNumBoxBefore = g_ppNumBox;
        g_ppNumBox = m_apNumBox;
    }
    void TearDown() override {
        g_ppNumBox = m_ppNumBoxBefore;
        g_fnClearControlIds();
        Statistics::TearDown();
    }
    /// Only its being there counts; nothing of it is used.
    void Place(u32 uIndex, u32 uBID) {
        const u32 uPtr_ID = g_stNumBoxIds.m_fnTake(g_fnMakeLB_ID(uIndex, uBID), 8);
        m_apNumBox[uPtr_ID] = reinterpret_cast<CNumBox_Base*>(&m_aPlace);
    }
    bool ShownIn(u32 uStyle, bool (*fnTest)() noexcept) {
        g_uLayoutStyle = uStyle;
        return fnTest();
    }
    alignas(16) u8 m_aPlace[16] = {};
    CNumBox_Base* m_apNumBox[8] = {};
    CNumBox_Base** m_ppNumBoxBefore = nullptr;
};

TEST_F(ShownFigures, FrameTimeStandsInBox1OfClassicAndBox8OfRV5) {
    Place(0, 1);
    EXPECT_TRUE(ShownIn(0, g_fnFrameTimeShownByStyle));
    EXPECT_FALSE(ShownIn(1, g_fnFrameTimeShownByStyle));
    EXPECT_FALSE(ShownIn(2, g_fnFrameTimeShownByStyle));
    Place(0, 8);
    EXPECT_TRUE(ShownIn(1, g_fnFrameTimeShownByStyle));
    EXPECT_FALSE(ShownIn(7, g_fnFrameTimeShownByStyle)) << "builds Classic, but is none of the three";
}

TEST_F(ShownFigures, InCustomTheListsDecide) {
    g_stShownFigures.m_fnCustomFrameTime = []() noexcept { return true; };
    EXPECT_TRUE(ShownIn(2, g_fnFrameTimeShownByStyle));
    EXPECT_FALSE(ShownIn(0, g_fnFrameTimeShownByStyle));
}

TEST_F(ShownFigures, EachOfTheThreeBoxesShowsTheLows) {
    for (u32 uBID : {48u, 49u, 50u}) {
        g_fnClearControlIds();
        Place(0, uBID);
        EXPECT_TRUE(ShownIn(0, g_fnPercentilesShownByStyle)) << uBID;
        EXPECT_FALSE(ShownIn(1, g_fnPercentilesShownByStyle)) << uBID;
    }
    for (u32 uBID : {4u, 5u, 6u}) {
        g_fnClearControlIds();
        Place(0, uBID);
        EXPECT_TRUE(ShownIn(1, g_fnPercentilesShownByStyle)) << uBID;
        EXPECT_FALSE(ShownIn(0, g_fnPercentilesShownByStyle)) << uBID;
    }
    g_fnClearControlIds();
    Place(0, 47);
    Place(0, 51);
    EXPECT_FALSE(ShownIn(0, g_fnPercentilesShownByStyle));
}

TEST_F(ShownFigures, CustomNeverShowsTheLowsNorDoesAnOtherStyle) {
    for (u32 uBID : {4u, 5u, 6u, 48u, 49u, 50u}) Place(0, uBID);
    EXPECT_FALSE(ShownIn(2, g_fnPercentilesShownByStyle));
    EXPECT_FALSE(ShownIn(7, g_fnPercentilesShownByStyle));
}

TEST_F(ShownFigures, ABoxOfAnotherInstanceIsNotMeant) {
    Place(1, 48);
    Place(1, 1);
    EXPECT_FALSE(ShownIn(0, g_fnPercentilesShownByStyle));
    EXPECT_FALSE(ShownIn(0, g_fnFrameTimeShownByStyle));
}

TEST_F(ShownFigures, ABoxMakesFrameTimesBeSampledWithoutTheQuery) {
    Place(0, 1);
    Frame(10 * c_iMs);
    EXPECT_EQ(g_uFrameSampleCount, 1u);
    EXPECT_EQ(m_vecSamples[0], 1000u);
}

TEST_F(Statistics, WithQueryOffAndNoBoxTheFrameTimeStaysAtItsLastValue) {
    bQueryFrameTime = true;
    Frames(20, 10 * c_iMs);
    EXPECT_EQ(g_iFrameTime, 1000);
    bQueryFrameTime = false;
    g_uFrameSampleCount = 0;
    m_vecSamples.assign(g_uFrameSampleMax, 0);
    Frames(50, 20 * c_iMs);
    EXPECT_EQ(g_iFrameTime, 1000);
    EXPECT_EQ(g_uFrameSampleCount, 0u);
    EXPECT_EQ(m_vecSamples[0], 0u);
}

TEST_F(Statistics, AFrameOfManyHoursWrapsAroundAsASignedSample) {
    bQueryFrameTime = true;
    g_fnSampleFrameTime(43000.0f); // 4,300,000,000 units
    EXPECT_EQ(m_vecSamples[0], static_cast<u32>(static_cast<i64>(43000.0f * 100000.0f)));
}

TEST_F(Statistics, SamplesAreSortedAsUnsignedNumbers) {
    bQueryFrameTime = true;
    g_fnSampleFrameTime(-0.5f); // as unsigned the largest of the three
    g_fnSampleFrameTime(0.02f);
    platform::headless::AdvanceClock(101 * c_iMs);
    g_fnSampleFrameTime(0.01f);
    EXPECT_EQ(g_iFrameTime, static_cast<i32>(0.02f * 100000.0f));
}

TEST_F(Statistics, AnEvenNumberOfSamplesTakesTheUpperMiddle) {
    bQueryFrameTime = true;
    g_fnSampleFrameTime(0.04f);
    g_fnSampleFrameTime(0.01f);
    g_fnSampleFrameTime(0.02f);
    platform::headless::AdvanceClock(101 * c_iMs);
    g_fnSampleFrameTime(0.03f);
    EXPECT_EQ(g_iFrameTime, static_cast<i32>(0.03f * 100000.0f)) << "index 2 of four";
}
