// The animation that confirms a screenshot: its file, its steps, its end.
#include "capture/shutter.h"

#include "base/timer.h"
#include "capture/shot_request.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

namespace headless = platform::headless;

std::string Anm(std::initializer_list<u32> values) {
    std::string str;
    for (u32 u : values)
        for (int i = 0; i < 4; ++i, u >>= 8) str.push_back(static_cast<char>(u));
    return str;
}
/// Two seconds, four steps.
const std::string g_strFour = Anm({2000, 4, 10, 20, 30, 0xFFFFFFFF});

struct Shutter : ::testing::Test {
    void SetUp() override {
        headless::ResetAll();
        headless::SetClock(1'000'000'000);
        g_timerShutter.Reset();
        g_bShutter = false;
    }
    void TearDown() override {
        g_fnFreeShutter();
        g_timerShutter.Reset();
        g_bShutter = false;
        headless::ResetAll();
    }
};

/// Step that shows; -1: over.
i64 StepAt(const std::string& strFile, f32 fSeconds) {
    stShutterView st;
    return g_fnShutterAt(g_fnParseShutter(strFile), fSeconds, st) ? static_cast<i64>(st.uFrame) : -1;
}

} // namespace

TEST_F(Shutter, AFileIsDurationCountAndSides) {
    const stShutterSteps st = g_fnParseShutter(g_strFour);
    EXPECT_TRUE(st.bLoaded);
    EXPECT_EQ(st.uDurationMs, 2000u);
    EXPECT_EQ(st.vecSides, (std::vector<u32>{10, 20, 30, 0xFFFFFFFF}));
}

TEST_F(Shutter, AnyOtherSizeIsAnAnimationThatIsOverAtOnce) {
    for (const std::string& str : {std::string(), std::string("\1\2\3"), Anm({2000}), Anm({2000, 1}),
                                   Anm({2000, 1, 2, 3}), g_strFour + '\0', Anm({2000, 0x40000000})}) {
        const stShutterSteps st = g_fnParseShutter(str);
        EXPECT_TRUE(st.bLoaded) << str.size();
        EXPECT_TRUE(st.vecSides.empty());
        EXPECT_EQ(StepAt(str, 0.0f), -1);
    }
}

TEST_F(Shutter, StepsShareTheDurationAndItsEndComesFirst) {
    EXPECT_EQ(StepAt(g_strFour, 0.0f), 0);
    EXPECT_EQ(StepAt(g_strFour, 0.499f), 0);
    EXPECT_EQ(StepAt(g_strFour, 0.5f), 1);
    EXPECT_EQ(StepAt(g_strFour, 1.999f), 3);
    EXPECT_EQ(StepAt(g_strFour, 2.0f), -1);
    EXPECT_EQ(StepAt(g_strFour, 100.0f), -1);
}

TEST_F(Shutter, TheSideIsThatOfTheStep) {
    stShutterView st;
    EXPECT_TRUE(g_fnShutterAt(g_fnParseShutter(g_strFour), 1.0f, st));
    EXPECT_EQ(st.uFrame, 2u);
    EXPECT_EQ(st.uSide, 30u);
}

TEST_F(Shutter, NoStepsShowNothingUntilTheEnd) {
    stShutterView st{7, 7};
    EXPECT_TRUE(g_fnShutterAt(g_fnParseShutter(Anm({1000, 0})), 0.5f, st));
    EXPECT_EQ(st.uSide, 0u);
    EXPECT_EQ(StepAt(Anm({0, 1, 5}), 0.0f), -1) << "no duration";
    EXPECT_EQ(StepAt(Anm({0xFFFFFFFF, 1, 5}), 4294966.0f), 0);
}

TEST_F(Shutter, TheEndStopsTheTimerAndTakesTheFlagBack) {
    CTestDataFolder data(false);
    data.Write("Screenshot.anm", g_strFour);
    g_fnLoadShutter();
    g_fnStartShutter();
    headless::AdvanceClock(1'900'000'000);
    g_fnStepShutter();
    EXPECT_TRUE(g_bShutter);
    EXPECT_EQ(g_timerShutter.m_bStopped, 0);
    headless::AdvanceClock(200'000'000);
    g_fnStepShutter();
    EXPECT_FALSE(g_bShutter);
    EXPECT_NE(g_timerShutter.m_bStopped, 0);
    EXPECT_EQ(g_timerShutter.Elapsed(), 0.0f);
}

TEST_F(Shutter, AMissingFileEndsAtOnce) {
    CTestDataFolder data(false);
    g_fnLoadShutter();
    g_fnStartShutter();
    g_fnStepShutter();
    EXPECT_FALSE(g_bShutter);
}

TEST_F(Shutter, WhatWasNotLoadedDoesNothing) {
    g_fnStartShutter();
    g_fnStepShutter();
    EXPECT_TRUE(g_bShutter);
}

TEST_F(Shutter, IsReadOnceUntilItIsFreed) {
    CTestDataFolder data(false);
    data.Write("Screenshot.anm", g_strFour);
    g_fnLoadShutter();
    data.Write("Screenshot.anm", "");
    g_fnLoadShutter();
    g_fnStartShutter();
    g_fnStepShutter();
    EXPECT_TRUE(g_bShutter);
    g_fnFreeShutter();
    g_fnLoadShutter();
    g_fnStepShutter();
    EXPECT_FALSE(g_bShutter);
}

TEST_F(Shutter, AFileBeyondAllMeasureIsNotRead) {
    CTestDataFolder data(false);
    std::string str = Anm({2000, 1u << 18});
    str.resize(8 + (4u << 18), '\1');
    data.Write("Screenshot.anm", str);
    g_fnLoadShutter();
    g_fnStartShutter();
    g_fnStepShutter();
    EXPECT_FALSE(g_bShutter);
}
