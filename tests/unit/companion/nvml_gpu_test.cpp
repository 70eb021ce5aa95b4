#include "companion/sensors/collector.h"
#include "companion/sensors/nvml_gpu.h"
#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>

using namespace companion::sensors;

namespace {

/// A driver's library made of plain numbers.
struct FakeCard {
    unsigned uBus = 1, uClock = 1905, uMemoryClock = 9501, uTemp = 67, uLoad = 88, uPower = 285499;
    unsigned uLimit = 352000, uDefault = 320000, uFans = 2, uSpeed = 1830;
    unsigned long long uTotal = 8ull << 30, uUsed = 2ull << 30;
    bool bLost = false;
};

struct FakeDriver {
    std::vector<FakeCard> listCards;
    bool bPresent = true, bStarts = true, bSpeeds = true;
    int iStarts = 0, iStops = 0;
} g_stFake;

FakeCard* CardOf(NvmlCalls::Device hDevice) { return reinterpret_cast<FakeCard*>(hDevice); }

/// An answer of a card: 0, or 15 from one that was lost.
template <unsigned FakeCard::*pMember> int Answer(NvmlCalls::Device hDevice, unsigned* puValue) {
    *puValue = CardOf(hDevice)->*pMember;
    return CardOf(hDevice)->bLost ? 15 : 0;
}

int GetClock(NvmlCalls::Device hDevice, int iKind, unsigned* puValue) {
    return iKind == 0 ? Answer<&FakeCard::uClock>(hDevice, puValue)
                      : Answer<&FakeCard::uMemoryClock>(hDevice, puValue);
}

int GetMemory(NvmlCalls::Device hDevice, NvmlCalls::Memory* pMemory) {
    *pMemory = {CardOf(hDevice)->uTotal, 0, CardOf(hDevice)->uUsed};
    return CardOf(hDevice)->bLost ? 15 : 0;
}

int GetFanSpeed(NvmlCalls::Device hDevice, NvmlCalls::FanSpeed* pSpeed) {
    if (pSpeed->uVersion != 0x0100000C) return 25;
    pSpeed->uSpeed = CardOf(hDevice)->uSpeed + pSpeed->uFan;
    return 0;
}

bool OpenFake(NvmlCalls& st) {
    if (!g_stFake.bPresent) return false;
    st.fnInit = [] { return ++g_stFake.iStarts, g_stFake.bStarts ? 0 : 9; };
    st.fnShutdown = [] { return ++g_stFake.iStops, 0; };
    st.fnGetCount = [](unsigned* pu) { return *pu = static_cast<unsigned>(g_stFake.listCards.size()), 0; };
    st.fnGetHandle = [](unsigned u, NvmlCalls::Device* ph) {
        *ph = reinterpret_cast<NvmlCalls::Device>(&g_stFake.listCards[u]);
        return 0;
    };
    st.fnGetPciInfo = [](NvmlCalls::Device h, NvmlCalls::PciInfo* p) { return p->uBus = CardOf(h)->uBus, 0; };
    st.fnGetName = [](NvmlCalls::Device, char* sz, unsigned u) { return std::snprintf(sz, u, "Card X"), 0; };
    st.fnGetClock = GetClock;
    st.fnGetTemperature = [](NvmlCalls::Device h, int, unsigned* pu) {
        return Answer<&FakeCard::uTemp>(h, pu);
    };
    st.fnGetUtilization = [](NvmlCalls::Device h, NvmlCalls::Utilization* p) {
        return Answer<&FakeCard::uLoad>(h, &p->uGpu);
    };
    st.fnGetMemory = GetMemory;
    st.fnGetFanCount = Answer<&FakeCard::uFans>;
    st.fnGetFanDuty = [](NvmlCalls::Device, unsigned uFan, unsigned* pu) { return *pu = 40 + uFan, 0; };
    st.fnGetFanSpeed = g_stFake.bSpeeds ? GetFanSpeed : nullptr;
    st.fnGetPower = Answer<&FakeCard::uPower>;
    st.fnGetPowerLimit = Answer<&FakeCard::uLimit>;
    st.fnGetPowerDefault = Answer<&FakeCard::uDefault>;
    return true;
}

using Values = std::map<std::string, std::optional<i32>>;

class NvmlGpuTest : public ::testing::Test {
  protected:
    void SetUp() override {
        g_stFake = {};
        g_stFake.listCards.resize(1);
    }
    static Collector Start() {
        Sources listSources;
        listSources.push_back(std::make_unique<NvmlGpu>(OpenFake));
        return Collector(std::move(listSources));
    }
    static Values Look(Collector& collector) {
        collector.Probe();
        return Again(collector);
    }
    static Values Again(Collector& collector) {
        collector.Read();
        Values mapValues;
        for (const Reading& st : collector.Readings()) mapValues[st.strName] = st.iValue;
        return mapValues;
    }
};

} // namespace

TEST_F(NvmlGpuTest, OneCardWithTwoFans) {
    Collector collector = Start();
    EXPECT_EQ(Look(collector), (Values{{"GPU_CLK#0", 1905},
                                       {"GPU_TEMP#0", 67},
                                       {"GPU_USAGE#0", 88},
                                       {"VRAM_CLK#0", 9501},
                                       {"VRAM_USAGE_MB#0", 2048},
                                       {"VRAM_USAGE_P#0", 25},
                                       {"GPU_POWER#0", 285},
                                       {"POWER_TARGET#0", 110},
                                       {"FAN1_DUTY#0", 40},
                                       {"FAN1_RPM#0", 1830},
                                       {"FAN2_DUTY#0", 41},
                                       {"FAN2_RPM#0", 1831}}));
    EXPECT_EQ(collector.Readings()[0].strSource, "NVML, Card X");
}

TEST_F(NvmlGpuTest, WithoutTheLibraryThereIsNothing) {
    g_stFake.bPresent = false;
    Collector collector = Start();
    EXPECT_TRUE(Look(collector).empty());
    g_stFake.bPresent = true; // the driver was installed meanwhile
    EXPECT_FALSE(Look(collector).empty());
}

TEST_F(NvmlGpuTest, ADriverThatDoesNotStartIsTriedAgainAndNotShutDown) {
    g_stFake.bStarts = false;
    {
        Collector collector = Start();
        EXPECT_TRUE(Look(collector).empty());
        EXPECT_TRUE(Look(collector).empty());
    }
    EXPECT_EQ(g_stFake.iStarts, 2);
    EXPECT_EQ(g_stFake.iStops, 0);
}

TEST_F(NvmlGpuTest, StartedOnceAndShutDownOnce) {
    {
        Collector collector = Start();
        Look(collector);
        Look(collector);
    }
    EXPECT_EQ(g_stFake.iStarts, 1);
    EXPECT_EQ(g_stFake.iStops, 1);
}

TEST_F(NvmlGpuTest, WhatACardDoesNotAnswerIsAbsent) {
    g_stFake.bSpeeds = false;
    g_stFake.listCards[0].uFans = 0;
    Collector collector = Start();
    const Values mapValues = Look(collector);
    EXPECT_FALSE(mapValues.contains("FAN1_DUTY#0"));
    EXPECT_FALSE(mapValues.contains("FAN1_RPM#0"));
    EXPECT_TRUE(mapValues.contains("GPU_CLK#0"));
}

TEST_F(NvmlGpuTest, ALostCardLosesItsValues) {
    Collector collector = Start();
    Look(collector);
    g_stFake.listCards[0].bLost = true;
    Values mapValues = Again(collector);
    for (const char* szName :
         {"GPU_CLK#0", "GPU_TEMP#0", "GPU_USAGE#0", "VRAM_USAGE_MB#0", "GPU_POWER#0", "POWER_TARGET#0"})
        EXPECT_EQ(mapValues[szName], std::nullopt) << szName;
    EXPECT_FALSE(Look(collector).contains("GPU_CLK#0"));
}

TEST_F(NvmlGpuTest, ImplausibleAnswersAreNoValues) {
    g_stFake.listCards[0] = {1, ~0u, ~0u, 255, 101, ~0u, 5, 0, 9, 40000, 10, 11, false};
    Collector collector = Start();
    // What is left: four of nine fans have a name, with a duty and an impossible speed.
    EXPECT_EQ(Look(collector),
              (Values{{"FAN1_DUTY#0", 40}, {"FAN2_DUTY#0", 41}, {"FAN3_DUTY#0", 42}, {"FAN4_DUTY#0", 43}}));
}

TEST_F(NvmlGpuTest, CardsAreNumberedByMemoryThenByPlace) {
    g_stFake.listCards.resize(3);
    for (unsigned i = 0; i < 3; ++i) g_stFake.listCards[i].uBus = i + 1, g_stFake.listCards[i].uTemp = 50 + i;
    g_stFake.listCards[2].uTotal = 24ull << 30;
    Collector collector = Start();
    Values mapValues = Look(collector);
    EXPECT_EQ(mapValues["GPU_TEMP#0"], 52);
    EXPECT_EQ(mapValues["GPU_TEMP#1"], 50);
    EXPECT_EQ(mapValues["GPU_TEMP#2"], 51);
}
