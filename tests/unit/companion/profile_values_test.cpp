#include "tools/profile/values.h"
#include <gtest/gtest.h>

using namespace companion;

TEST(CompanionSampleValues, StayPlausibleAndMove) {
    i32 iLow = 1000, iHigh = -1;
    for (int i = 0; i < 400; ++i) {
        const i32 iValue = SampleValue("GPU_USAGE#0", i * 0.1);
        iLow = std::min(iLow, iValue);
        iHigh = std::max(iHigh, iValue);
    }
    EXPECT_GE(iLow, 68);
    EXPECT_LE(iHigh, 98);
    EXPECT_GE(iHigh - iLow, 15);
}

TEST(CompanionSampleValues, MoveGently) {
    for (int i = 0; i < 400; ++i)
        EXPECT_LE(std::abs(SampleValue("CPU_TEMP#0", i * 0.1) - SampleValue("CPU_TEMP#0", (i + 1) * 0.1)), 1);
}

TEST(CompanionSampleValues, TwoOfAKindDiffer) {
    int iDifferent = 0;
    for (int i = 0; i < 50; ++i) iDifferent += SampleValue("CPU_USAGE#0", i) != SampleValue("CPU_USAGE#1", i);
    EXPECT_GT(iDifferent, 25);
}

TEST(CompanionSampleValues, AnyNameHasAValueBetween0And100) {
    for (const char* szName : {"X", "", "SOMETHING#7", "ÄÖÜ#1", "#"}) {
        for (int i = 0; i < 100; ++i) {
            EXPECT_GE(SampleValue(szName, i), 0) << szName;
            EXPECT_LE(SampleValue(szName, i), 100) << szName;
        }
    }
}

TEST(CompanionSampleValues, FramesComeSome70TimesASecond) {
    double dSeconds = 0.0;
    int iFrames = 0;
    for (; dSeconds < 100.0; ++iFrames) dSeconds += SampleFrameSeconds(dSeconds);
    EXPECT_GT(iFrames, 6500);
    EXPECT_LT(iFrames, 7500);
}

TEST(CompanionSampleValues, ASourceGivesTheNamesThatAreShownToo) {
    ValueSource source;
    ASSERT_TRUE(source.Open("sample", ""));
    const auto mapValues = source.At(1.0, {"ODD_ONE#3"});
    EXPECT_EQ(mapValues.count("ODD_ONE#3"), 1u);
    EXPECT_EQ(mapValues.count("CPU_USAGE#0"), 1u);
}

TEST(CompanionValueFile, LinesOfNameAndNumber) {
    sensors::ValueMap map;
    ASSERT_TRUE(ParseValues("; values\n\nGPU_CLK#0 1900\r\nCPU_USAGE#0=-7\n  A = 2147483647\n", map));
    EXPECT_EQ(map, (sensors::ValueMap{{"A", 2147483647}, {"CPU_USAGE#0", -7}, {"GPU_CLK#0", 1900}}));
}

TEST(CompanionValueFile, TheFirstBadLineIsTold) {
    for (const char* szBad : {"A", "A x", "A 1.5", "A 1 2", "A 2147483648", "A =", "FPS 60", "= 4"}) {
        sensors::ValueMap map;
        const Result st = ParseValues(std::string("B 1\n") + szBad + "\nC\n", map);
        EXPECT_EQ(st.iCode, kFailed) << szBad;
        EXPECT_EQ(st.strError.substr(0, 6), "line 2") << szBad;
    }
}

TEST(CompanionValueFile, MissingFile) {
    ValueSource source;
    EXPECT_EQ(source.Open("no such file", "").iCode, kNotFound);
}
