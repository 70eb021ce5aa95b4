#include "companion/limiter_nurse.h"
#include <gtest/gtest.h>
#include <vector>

using namespace companion;

namespace {

constexpr u32 kRate = 60;
constexpr f32 kDead = 1.0f, kWell = 16.7f; ///< milliseconds

/// Looks every 250 ms at a frame time; what was to be done, and when.
struct Patient {
    LimiterNurse nurse;
    u64 uNow = 1000;
    std::vector<std::pair<u64, LimiterStep>> listSteps;

    void Pass(u64 uMilliseconds, f32 fFrameTime, bool bLimited = true, u32 uRate = kRate) {
        for (const u64 uEnd = uNow + uMilliseconds; uNow < uEnd; uNow += 250) {
            const LimiterStep eStep = nurse.Look({uNow, bLimited, uRate, fFrameTime});
            if (eStep != LimiterStep::Nothing) listSteps.emplace_back(uNow, eStep);
        }
    }
};

} // namespace

TEST(LimiterNurse, ALimiterThatHoldsIsLeftAlone) {
    Patient st;
    st.Pass(120000, kWell);
    st.Pass(5000, 12.0f);        // a little fast
    st.Pass(5000, 40.0f);        // slower than the limit
    st.Pass(5000, 0.0f);         // no frames
    st.Pass(5000, kDead, false); // no limit
    st.Pass(5000, kDead, true, 0);
    EXPECT_TRUE(st.listSteps.empty());
}

TEST(LimiterNurse, ADeadOneIsHeldLowerForASecondAfterASecond) {
    Patient st;
    st.Pass(2000, kWell);
    const u64 uDied = st.uNow;
    st.Pass(750, kDead);
    EXPECT_TRUE(st.listSteps.empty());
    st.Pass(1500, kDead);
    ASSERT_EQ(st.listSteps.size(), 2u);
    EXPECT_EQ(st.listSteps[0], std::pair(uDied + 1000, LimiterStep::Lower));
    EXPECT_EQ(st.listSteps[1], std::pair(uDied + 2000, LimiterStep::Restore));
    EXPECT_EQ(st.nurse.LowRate(), 15u);
    st.Pass(30000, kWell);
    EXPECT_EQ(st.listSteps.size(), 2u);
}

TEST(LimiterNurse, AShortBurstIsNoDeath) {
    Patient st;
    for (int i = 0; i < 20; ++i) {
        st.Pass(750, kDead);
        st.Pass(250, kWell);
    }
    EXPECT_TRUE(st.listSteps.empty());
}

TEST(LimiterNurse, OneThatDiesAgainIsHeldLowerStillAfterLongerPauses) {
    Patient st;
    std::vector<u32> listRates;
    std::vector<u64> listTimes;
    for (size_t uSeen = 0; listRates.size() < 9; uSeen = st.listSteps.size()) {
        st.Pass(250, kDead);
        if (st.listSteps.size() == uSeen || st.listSteps.back().second != LimiterStep::Lower) continue;
        listRates.push_back(st.nurse.LowRate());
        listTimes.push_back(st.uNow);
    }
    EXPECT_EQ(listRates, (std::vector<u32>{15, 3, 1, 1, 1, 1, 1, 1, 1}));
    std::vector<u64> listPauses;
    for (size_t u = 1; u < listTimes.size(); ++u) listPauses.push_back(listTimes[u] - listTimes[u - 1]);
    // A second lowered, the pause, and a second until it counts as dead.
    EXPECT_EQ(listPauses, (std::vector<u64>{12000, 22000, 42000, 82000, 162000, 322000, 602000, 602000}));
}

TEST(LimiterNurse, AMinuteOfHealthForgetsTheAttempts) {
    Patient st;
    st.Pass(15000, kDead);
    EXPECT_EQ(st.nurse.Attempts(), 2u);
    st.Pass(60000, kWell);
    st.Pass(61000, kWell);
    EXPECT_EQ(st.nurse.Attempts(), 0u);
    st.Pass(1250, kDead);
    EXPECT_EQ(st.nurse.LowRate(), 15u);
}

TEST(LimiterNurse, ALimitOfOneFrameASecondStaysOne) {
    Patient st;
    st.Pass(1250, kDead, true, 1);
    EXPECT_EQ(st.nurse.LowRate(), 1u);
}
