// From data names to pointers: APP data, the companion's banks, and the report on them.
#include "entry/exports.h"
#include "frame/update/app_data.h"
#include "frame/update/statistics.h"
#include "shared/monitor_data.h"
#include "shared/offset_tree.h"
#include "tests/support/headless/shared_fixture.h"
#include <cstring>
#include <memory>
#include <random>

namespace {

using Names = std::map<std::string, u32>;

class MonitorData : public SharedTest {
  protected:
    void SetUp() override {
        SharedTest::SetUp();
        ClearAppData();
        g_fnRegisterAllAppData();
    }
    void TearDown() override {
        ClearAppData();
        SharedTest::TearDown();
    }
    static void ClearAppData() { g_mapAppData.clear(); }
    static void Publish(const Names& mapNames, const std::vector<u32>& vecValues) {
        SetMonitorDataOffsetFromGWexeToGWDll_GL(mapNames, vecValues.data(),
                                                static_cast<i32>(vecValues.size() * 4));
    }
    static const void* InBank(u32 uBank, u32 uOffset) { return Segment().RawData[uBank] + uOffset; }
    static std::string Hex(const void* p) {
        char sz[32];
        std::snprintf(sz, sizeof sz, "%#x", static_cast<u32>(reinterpret_cast<std::uintptr_t>(p)));
        return sz;
    }
    static std::string Report() {
        testing::internal::CaptureStdout();
        EXPECT_EQ(GetTavoDataToGWDll("0"), 0);
        return testing::internal::GetCapturedStdout();
    }
};

constexpr char c_szLine[] = "--------------------------------\n";

} // namespace

// --- APP data

TEST_F(MonitorData, TheElevenRowsWithTheirDecimalsAndDivisors) {
    const char* const aszNames[] = {"FPS",     "FPS_AVG",    "FPS_MAX",   "FPS_MIN", "FPS_50P", "FPS_1P",
                                    "FPS_01P", "FRAME_TIME", "FRAME_CNT", "PID",     "TID"};
    const void* const apData[] = {&g_uFPS,      &g_uFPS_Avg, &g_uFPS_Max, &g_uFPS_Min,
                                  &g_uFPS_50P,  &g_uFPS_1P,  &g_uFPS_01P, &g_iFrameTime,
                                  &g_uFrameCnt, &g_uPID,     &g_uTID};
    EXPECT_EQ(g_mapAppData.size(), 11u);
    for (u32 u = 0; u < 11; ++u) {
        const bool bFrameTime = u == 7;
        const stAppData& st = g_mapAppData.at(aszNames[u]);
        EXPECT_EQ(st.m_uDecimals, bFrameTime ? 2u : 0u) << aszNames[u];
        EXPECT_EQ(st.m_uDivisor, bFrameTime ? 100u : 1u) << aszNames[u];
        EXPECT_EQ(static_cast<const void*>(st.m_pData), apData[u]) << aszNames[u];
        EXPECT_EQ(g_fnGetMonitorDataPtr(aszNames[u]), st.m_pData) << aszNames[u];
    }
}

TEST_F(MonitorData, ProcessAndThreadIdAreSetWithTheRegistration) {
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("PID")), static_cast<i32>(c_uPid));
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("TID")), static_cast<i32>(c_uTid));
    platform::headless::SetThreadId(99);
    g_fnRegisterAllAppData();
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("TID")), 99);
}

TEST_F(MonitorData, FrameCountShowsTheLowHalf) {
    g_uFrameCnt = 0x500000007;
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("FRAME_CNT")), 7);
    g_uFrameCnt = 0;
}

TEST_F(MonitorData, ALaterRegistrationReplacesTheRecord) {
    const u32 uValue = 31;
    g_fnRegisterAppData("FPS", 1, 10, &uValue);
    EXPECT_EQ(g_mapAppData.size(), 11u);
    EXPECT_EQ(g_mapAppData.at("FPS").m_uDecimals, 1u);
    EXPECT_EQ(g_mapAppData.at("FPS").m_uDivisor, 10u);
    EXPECT_EQ(g_fnGetMonitorDataPtr("FPS"), &uValue);
}

TEST_F(MonitorData, AnAppHitIsLogged) {
    g_fnGetMonitorDataPtr("FPS");
    EXPECT_TRUE(Logged("g_fnGetMonitorDataPtr szDataFullName: FPS / pData: " + Hex(&g_uFPS) + " - APP Data"));
}

// --- names

TEST_F(MonitorData, FullNamesAreFormedFromBaseAndIndex) {
    char szName[16];
    EXPECT_TRUE(g_fnGetDataFullName(0, "GPU_CLK", szName));
    EXPECT_STREQ(szName, "GPU_CLK#0");
    EXPECT_TRUE(g_fnGetDataFullName(-1, "CPU_TEMP", szName));
    EXPECT_STREQ(szName, "CPU_TEMP#-1");
    EXPECT_FALSE(g_fnGetDataFullName(12, "EXT_FAN1_DUTY", szName));
    EXPECT_STREQ(szName, "EXT_FAN1_DUTY#1") << "cut and ended";
}

TEST_F(MonitorData, ByIndexIsBothInOne) {
    Publish({{"CPU_TEMP#1", 4}}, {40, 41});
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtrByIndex(1, "CPU_TEMP")), 41);
    EXPECT_EQ(g_fnGetMonitorDataPtrByIndex(0, "CPU_TEMQ"), nullptr);
    EXPECT_EQ(g_fnGetMonitorDataPtrByIndex(0, nullptr), nullptr);
    EXPECT_EQ(g_fnGetMonitorDataPtrByIndex(1, std::string(600, 'x').c_str()), nullptr);
}

// --- the companion's data

TEST_F(MonitorData, ATreeWithoutNamesGivesNothingButAppData) {
    Publish({}, {1, 2, 3});
    EXPECT_LT(g_fnOffsetTreeValuesStart(Segment().DataTable[1], g_uDataTableBytes), 4u);
    EXPECT_EQ(g_fnGetMonitorDataPtr("GPU_CLK#0"), nullptr);
    EXPECT_TRUE(Logged("g_fnGetMonitorDataPtr szDataFullName: GPU_CLK#0 / pData: NULL - ???"));
    EXPECT_NE(g_fnGetMonitorDataPtr("FPS"), nullptr);
}

TEST_F(MonitorData, AnUntouchedSegmentGivesNothingButAppData) {
    EXPECT_EQ(g_fnGetMonitorDataPtr("GPU_CLK#0"), nullptr);
    EXPECT_EQ(g_fnGetMonitorDataPtr(""), nullptr);
    EXPECT_EQ(g_fnGetMonitorDataPtr(nullptr), nullptr);
    EXPECT_NE(g_fnGetMonitorDataPtr("FPS_AVG"), nullptr);
}

TEST_F(MonitorData, ACompanionNameEqualToAnAppNameIsShadowed) {
    Publish({{"FPS", 0}, {"FPS_AVG", 4}, {"FPS_LIMIT", 8}}, {111, 222, 333});
    EXPECT_EQ(g_fnGetMonitorDataPtr("FPS"), &g_uFPS);
    EXPECT_EQ(g_fnGetMonitorDataPtr("FPS_AVG"), &g_uFPS_Avg);
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("FPS_LIMIT")), 333);
    ClearAppData();
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("FPS")), 111) << "only while it is registered";
}

TEST_F(MonitorData, AnOffsetOf16380ResolvesAnd16381DoesNot) {
    Publish({{"LAST#0", 16380}, {"OVER#0", 16381}}, std::vector<u32>(4096, 7));
    const u32* pData = g_fnGetMonitorDataPtr("LAST#0");
    EXPECT_EQ(static_cast<const void*>(pData), InBank(1, 16380));
    EXPECT_EQ(g_fnReadData(pData), 7);
    EXPECT_TRUE(Logged("g_fnGetMonitorDataPtr szDataFullName: LAST#0 / pData: " + Hex(pData) +
                       " - RV5 Data / DataOffset: 16380"));
    EXPECT_EQ(g_fnGetMonitorDataPtr("OVER#0"), nullptr);
    EXPECT_TRUE(Logged(
        "g_fnGetMonitorDataPtr szDataFullName: OVER#0 / pData: <error> - RV5 Data / DataOffset: 16381"));
}

TEST_F(MonitorData, AnUnalignedValueIsRead) {
    std::vector<u8> vecData{0, 0x11, 0x22, 0x33, 0x44};
    SetMonitorDataOffsetFromGWexeToGWDll_GL({{"ODD#0", 1}}, vecData.data(), 5);
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("ODD#0")), 0x44332211);
}

TEST_F(MonitorData, TwoNameUpdatesReturnToTheFirstBank) {
    Publish({{"A#0", 0}}, {10});
    EXPECT_EQ(g_fnCurrentDataBank(), 1u);
    EXPECT_EQ(static_cast<const void*>(g_fnGetMonitorDataPtr("A#0")), InBank(1, 0));
    Publish({{"B#0", 0}}, {20});
    EXPECT_EQ(g_fnCurrentDataBank(), 0u);
    EXPECT_EQ(g_fnGetMonitorDataPtr("A#0"), nullptr);
    EXPECT_EQ(static_cast<const void*>(g_fnGetMonitorDataPtr("B#0")), InBank(0, 0));
    Publish({{"A#0", 0}}, {30});
    EXPECT_EQ(static_cast<const void*>(g_fnGetMonitorDataPtr("A#0")), InBank(1, 0));
}

TEST_F(MonitorData, APointerStaysWithItsBankUntilTheNextLookUp) {
    Publish({{"A#0", 0}}, {10});
    const u32* pOld = g_fnGetMonitorDataPtr("A#0");
    Publish({{"A#0", 0}}, {20});
    EXPECT_EQ(g_fnReadData(pOld), 10);
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("A#0")), 20);
}

TEST_F(MonitorData, BetweenNameUpdatesValuesChangeInPlace) {
    Publish({{"A#0", 0}, {"A#1", 4}}, {10, 11});
    const u32* pData = g_fnGetMonitorDataPtr("A#1");
    const u32 auValues[] = {20, 21};
    SetMonitorDataFromGWexeToGWDll_GL(auValues, sizeof auValues);
    EXPECT_EQ(g_fnReadData(pData), 21);
}

TEST_F(MonitorData, AnOversizedBlockLeavesTheValuesYetTheNamesComeWithTheFlip) {
    Publish({{"A#0", 0}}, {10});
    Publish({{"A#0", 0}}, {20});
    Publish({{"B#0", 0}}, std::vector<u32>(4097, 30));
    EXPECT_EQ(g_fnCurrentDataBank(), 1u);
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("B#0")), 10) << "what the bank held before";
}

TEST_F(MonitorData, AWriterThatDiesBeforeTheFlipIsNotSeen) {
    Publish({{"A#0", 0}}, {10});
    std::memset(Segment().DataTable[0], 0x5A, g_uDataTableBytes / 2);
    std::memset(Segment().RawData[0], 0x5A, g_uRawDataBytes);
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("A#0")), 10);
    EXPECT_EQ(g_fnGetMonitorDataPtr("B#0"), nullptr);
    Publish({{"B#0", 0}}, {20}); // its successor
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("B#0")), 20);
}

TEST_F(MonitorData, ATreeThatDoesNotFitIsEmptyAndTheFlipHappens) {
    Names mapMany;
    for (u32 u = 0; u < 30000; ++u) mapMany[std::to_string(u * 7919)] = 0;
    Publish(mapMany, {1});
    EXPECT_EQ(g_fnCurrentDataBank(), 1u);
    EXPECT_EQ(g_fnGetMonitorDataPtr("7919"), nullptr);
}

TEST_F(MonitorData, AnyBankNumberAbove0IsBank1) {
    Publish({{"A#0", 0}}, {10});
    Segment().uDataBank = 0xFFFFFFFF;
    EXPECT_EQ(static_cast<const void*>(g_fnGetMonitorDataPtr("A#0")), InBank(1, 0));
    Publish({{"A#0", 0}}, {20});
    EXPECT_EQ(Segment().uDataBank, 0u);
}

TEST_F(MonitorData, HostileTablesGiveOffsetsInsideTheBankOrNothing) {
    std::mt19937 rng(5);
    for (u32 uRound = 0; uRound < 2000; ++uRound) {
        for (u32 u = 0; u < 256; ++u)
            Segment().DataTable[0][u] = static_cast<u8>(rng() % 2 ? rng() % 64 : rng());
        Segment().DataTable[0][1] = Segment().DataTable[0][2] = Segment().DataTable[0][3] = 0;
        for (const char* szName : {"", "A#0", "GPU_CLK#0"}) {
            const u32* pData = g_fnGetMonitorDataPtr(szName);
            if (!pData) continue;
            const auto* pBytes = reinterpret_cast<const u8*>(pData);
            EXPECT_GE(pBytes, Segment().RawData[0]);
            EXPECT_LE(pBytes, Segment().RawData[0] + g_uMaxRawDataOffset);
        }
    }
}

TEST_F(MonitorData, HundredsOfSensorNamesAreFound) {
    Names mapNames;
    std::vector<u32> vecValues;
    for (const char* szBase : {"GPU_CLK", "GPU_TEMP", "VRAM_USAGE_P", "VRAM_USAGE_MB", "FAN1_DUTY",
                               "FAN1_RPM", "POWER_PIN_1", "CPU_CLK", "CPU_TEMP", "CPU_USAGE"})
        for (u32 u = 0; u < 40; ++u) {
            mapNames[szBase + ("#" + std::to_string(u))] = static_cast<u32>(vecValues.size() * 4);
            vecValues.push_back(static_cast<u32>(vecValues.size()) * 3);
        }
    Publish(mapNames, vecValues);
    for (const auto& [szName, uOffset] : mapNames) {
        const u32* pData = g_fnGetMonitorDataPtr(szName.c_str());
        ASSERT_EQ(static_cast<const void*>(pData), InBank(1, uOffset)) << szName;
        EXPECT_EQ(g_fnReadData(pData), static_cast<i32>(uOffset / 4 * 3));
    }
}

// --- the report

TEST_F(MonitorData, ReportOnAnEmptyBank) {
    EXPECT_EQ(Report(), std::string("maximum allowable raw data offset: 16380\n"
                                    "data table offset: 0\n"
                                    "raw data table offset: 0\n"
                                    "shift: 0\n") +
                            c_szLine +
                            "header size: -1\n"
                            "raw data offset: 0\n"
                            "no data\n" +
                            c_szLine + c_szLine);
}

TEST_F(MonitorData, ReportWithNamesOffsetsAndValues) {
    Publish({{"FPS_A", 4}, {"FPS_B", 1}, {"X", 16381}}, {0x01020304, static_cast<u32>(-5)});
    // Root branch 4 to 14; chain "PS" and branch behind 'F' 15 to 33; two ends 34 to 47; "X" 48 to 54.
    EXPECT_EQ(Report(), std::string("maximum allowable raw data offset: 16380\n"
                                    "data table offset: 262144\n"
                                    "raw data table offset: 16384\n"
                                    "shift: 1\n") +
                            c_szLine +
                            "header size: 54\n"
                            "raw data offset: 55\n"
                            "offset map size: 3\n"
                            "FPS?A: 4\n"
                            "FPS?B: 1\n"
                            "X: 16381\n" +
                            c_szLine +
                            "FPS?A: -5\n"
                            "FPS?B: " +
                            std::to_string(static_cast<i32>(0xFB010203)) +
                            "\n"
                            "X: <error>\n" +
                            c_szLine);
}

TEST_F(MonitorData, ReportKeepsControlCharactersFromTheConsole) {
    Publish({{"A\033[2J", 0}}, {1});
    const std::string str = Report();
    EXPECT_EQ(str.find('\033'), std::string::npos);
    EXPECT_NE(str.find("A?[2J: 0\n"), std::string::npos);
}

TEST_F(MonitorData, ReportOnHostileBytesEnds) {
    std::memset(Segment().DataTable[0], 0x04, g_uDataTableBytes);
    EXPECT_NE(Report().find("shift: 0\n"), std::string::npos);
    std::memset(Segment().DataTable[0], 0, 4096);
    Segment().DataTable[0][2] = 1; // a chain of nothing to address 0
    EXPECT_NE(Report().find("offset map size: 0\n"), std::string::npos);
}
