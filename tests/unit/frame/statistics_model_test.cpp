// The figures against a plain model of their rules, over simulated runs of a program.
#include "frame/update/update_flags.h"
#include "statistics_fixture.h"

#include <algorithm>
#include <deque>
#include <random>

namespace {

/// A stopwatch with the same rounding: one per reading, single precision.
struct ModelTimer {
    i64 iLast = 0;
    f32 fTotal = 0.0f;
    f32 Read(i64 iNow) {
        fTotal += static_cast<f32>(static_cast<double>(iNow - iLast) / 1e9);
        iLast = iNow;
        return fTotal;
    }
    void Restart(i64 iNow) {
        iLast = iNow;
        fTotal = 0.0f;
    }
};

/// Keeps everything it ever saw and works each figure out from that.
class Model {
  public:
    explicit Model(u32 uIntervalMs) : m_uIntervalMs(uIntervalMs) {
        const u32 uComplete = std::max(1000 / uIntervalMs, 1u);
        m_uWindowMs = uComplete * uIntervalMs;
        m_listSlots.assign(uComplete + 1, 0);
    }
    void Frame(i64 iNanoseconds) {
        m_iNow += iNanoseconds;
        SampleTime(static_cast<f32>(static_cast<double>(iNanoseconds) / 1e9));
        SampleRate();
    }

    u32 uFPS = 0, uMax = 0, uMin = 0x7FFFFFFF;
    i32 iFrameTime = 0;
    u32 uRises = 0, uDropped = 0;
    std::vector<u32> vecRates;

    u32 Mean() const {
        u64 u64Sum = 0;
        for (u32 u : vecRates) u64Sum += u;
        return vecRates.empty() ? 0 : static_cast<u32>(u64Sum / vecRates.size());
    }
    u32 Low(u32 uPart) const {
        std::vector<u32> vec = vecRates;
        if (vec.empty()) return 0;
        std::nth_element(vec.begin(), vec.begin() + static_cast<long>(vec.size() / uPart), vec.end());
        return vec[vec.size() / uPart];
    }

  private:
    f32 Interval() const { return static_cast<f32>(m_uIntervalMs) / 1000.0f; }

    void SampleTime(f32 fSeconds) {
        if (m_vecTimes.size() < 32768)
            m_vecTimes.push_back(static_cast<i32>(fSeconds * 100000.0f));
        else
            ++uDropped;
        if (m_timerTime.Read(m_iNow) <= Interval()) return;
        const auto itMiddle = m_vecTimes.begin() + static_cast<long>(m_vecTimes.size() / 2);
        std::nth_element(m_vecTimes.begin(), itMiddle, m_vecTimes.end());
        iFrameTime = *itMiddle;
        m_vecTimes.clear();
        m_timerTime.Restart(m_iNow);
    }

    /// The front of the list is the slot being filled.
    void SampleRate() {
        const f32 fElapsed = m_timerRate.Read(m_iNow) + m_fLate;
        if (fElapsed < Interval()) {
            ++m_listSlots.front();
            return;
        }
        m_listSlots.pop_back();
        u32 uSum = 0;
        for (u32 u : m_listSlots) uSum += u;
        m_listSlots.push_front(1);
        m_fLate = fElapsed - static_cast<f32>(static_cast<i64>(fElapsed / Interval())) * Interval();
        uFPS = static_cast<u32>(1000.0f / static_cast<f32>(m_uWindowMs) * static_cast<f32>(uSum));
        uMax = std::max(uMax, uFPS);
        uMin = std::min(uMin, uFPS);
        vecRates.push_back(uFPS);
        ++uRises;
        m_timerRate.Restart(m_iNow);
    }

    u32 m_uIntervalMs, m_uWindowMs;
    i64 m_iNow = 0;
    ModelTimer m_timerTime, m_timerRate;
    std::vector<i32> m_vecTimes;
    std::deque<u32> m_listSlots;
    f32 m_fLate = 0.0f;
};

} // namespace

class StatisticsModel : public Statistics {
  protected:
    void Start(u32 uIntervalMs) {
        Setup(uIntervalMs);
        ShowPercentiles();
        bQueryFrameTime = true;
        m_model = Model(uIntervalMs);
    }
    void Both(i64 iNanoseconds) {
        const u32 uRisesBefore = m_model.uRises;
        std::memset(g_bUpdateFPS, 0, sizeof g_bUpdateFPS);
        Frame(iNanoseconds);
        m_model.Frame(iNanoseconds);
        ASSERT_EQ(g_bUpdateFPS[19] != 0, m_model.uRises != uRisesBefore);
        ASSERT_EQ(g_uFPS, m_model.uFPS);
        ASSERT_EQ(g_iFrameTime, m_model.iFrameTime);
    }
    void Run(u32 uFrames, i64 iNanoseconds) {
        for (u32 u = 0; u < uFrames && !HasFatalFailure(); ++u) Both(iNanoseconds);
    }
    void CompareAll() {
        EXPECT_EQ(g_uFPS_Max, m_model.uMax);
        EXPECT_EQ(g_uFPS_Min, m_model.uMin);
        EXPECT_EQ(g_uFPS_Avg, m_model.Mean());
        EXPECT_EQ(g_uFPS_50P, m_model.Low(2));
        EXPECT_EQ(g_uFPS_1P, m_model.Low(100));
        EXPECT_EQ(g_uFPS_01P, m_model.Low(1000));
        EXPECT_EQ(g_stFPSSamples.listSorted.size(), m_model.vecRates.size());
        EXPECT_EQ(g_fFrameTimeMs, static_cast<f32>(g_iFrameTime) * 0.01f);
    }
    Model m_model{100};
};

TEST_F(StatisticsModel, Steady60) {
    Start(100);
    Run(1200, 16'666'667);
    CompareAll();
    EXPECT_NEAR(g_uFPS, 60, 1);
    EXPECT_EQ(g_iFrameTime, 1666);
    EXPECT_NEAR(g_uFPS_50P, 60, 1);
}

TEST_F(StatisticsModel, Steady144) {
    Start(100);
    Run(2880, 6'944'444);
    CompareAll();
    EXPECT_NEAR(g_uFPS, 144, 1);
    EXPECT_EQ(g_iFrameTime, 694);
}

TEST_F(StatisticsModel, Slow3) {
    Start(100);
    Run(100, 333'333'333);
    CompareAll();
    EXPECT_EQ(g_uFPS, 10u);
    EXPECT_EQ(g_iFrameTime, 33333);
}

TEST_F(StatisticsModel, StallOfMinutes) {
    Start(100);
    Run(300, 16'666'667);
    Both(i64{420'000} * c_iMs);
    Run(300, 16'666'667);
    Both(i64{3'600'000} * c_iMs);
    Run(300, 6'944'444);
    CompareAll();
    EXPECT_NEAR(g_uFPS, 144, 1);
}

TEST_F(StatisticsModel, IntervalOf5000) {
    Start(5000);
    Run(3000, 16'666'667);
    CompareAll();
    EXPECT_NEAR(g_uFPS, 60, 1);
}

TEST_F(StatisticsModel, IntervalOf10And300) {
    for (u32 uInterval : {10u, 300u}) {
        ResetFigures();
        Start(uInterval);
        Run(700, 7'000'000);
        CompareAll();
    }
}

TEST_F(StatisticsModel, MoreSamplesThanTheBufferHolds) {
    Start(10000);
    Run(35000, 100'000); // 3.5 s
    Run(5000, 2'000'000);
    CompareAll();
    EXPECT_GT(m_model.uDropped, 5000u);
    EXPECT_EQ(g_iFrameTime, 10) << "the dropped ones were the long ones";
}

TEST_F(StatisticsModel, RandomPaceWithPauses) {
    for (u32 uSeed = 1; uSeed <= 8; ++uSeed) {
        ResetFigures();
        std::mt19937 rng(uSeed);
        const u32 auIntervals[] = {10, 50, 100, 250, 333, 1000, 1500, 5000};
        Start(auIntervals[uSeed - 1]);
        for (u32 u = 0; u < 3000 && !HasFatalFailure(); ++u)
            Both(static_cast<i64>(rng() % 500 ? 2'000'000 + rng() % 40'000'000 : rng() % 90'000 * c_iMs));
        CompareAll();
    }
}
