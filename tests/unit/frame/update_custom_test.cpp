// List builder of the custom style, over real data banks.
#include "base/layout_style.h"
#include "frame/update/local_clock.h"
#include "frame/update/update_flags.h"
#include "tests/unit/frame/update_fixture.h"

namespace {

class UpdateCustom : public UpdateCustomTest {
  protected:
    /// The next data walk.
    static void Walk() {
        g_bUpdateData[0] = 1;
        Frame(1);
    }
};

TEST_F(UpdateCustom, ACompanionValueIsBoundByTheItemsName) {
    Publish({{"GPU_CLK#0", 2505}, {"GPU_TEMP#1", 61}});
    CNumBox_Base* pClock = NumberItem("Clk@Gpu", "GPU_CLK#0");
    CNumBox_Base* pTemp = NumberItem("Temp", "GPU_TEMP#1");
    g_fnBuildUpdateCustom();
    EXPECT_EQ(g_listUpdateData_N.size(), 2u);
    EXPECT_EQ(g_uUpdateRecordCount, 2u);
    EXPECT_TRUE(g_listUpdateFPS_N.empty());
    Walk();
    EXPECT_EQ(Shown(pClock), "2505");
    EXPECT_EQ(Shown(pTemp), "61");
    EXPECT_EQ(g_listUpdateData_N.front().m_uNumBoxBID, Id("Clk@Gpu"));
}

TEST_F(UpdateCustom, ValuesInThePublishedBankAreSeenAtTheNextWalk) {
    Publish({{"GPU_CLK#0", 2505}});
    CNumBox_Base* p = NumberItem("Clk", "GPU_CLK#0");
    g_fnBuildUpdateCustom();
    Walk();
    Change({2610});
    Frame(1);
    EXPECT_EQ(Shown(p), "2505") << "between two walks nothing changes";
    Walk();
    EXPECT_EQ(Shown(p), "2610");
}

TEST_F(UpdateCustom, AppValuesTakeTheTablesDecimalsAndTheFPSList) {
    CNumBox_Base* pFPS = NumberItem("Fps", "FPS");
    CNumBox_Base* pTime = NumberItem("Ft", "FRAME_TIME");
    g_fnBuildUpdateCustom();
    EXPECT_EQ(g_listUpdateFPS_N.size(), 2u);
    EXPECT_TRUE(g_listUpdateData_N.empty());
    EXPECT_EQ(g_uUpdateRecordCount, 0u);
    g_uFPS = 144;
    g_iFrameTime = 694;
    g_bUpdateFPS[0] = 1;
    Frame(1);
    EXPECT_EQ(Shown(pFPS), "144");
    EXPECT_EQ(Shown(pTime), "6.94");
    g_iFrameTime = 0;
}

TEST_F(UpdateCustom, TheBuildPutsItsUpdaterInForce) {
    g_fnBuildUpdateCustom();
    EXPECT_EQ(g_fnUpdateFPS, &g_fnUpdateFPSCustom);
}

TEST_F(UpdateCustom, AFrameTimeItemMakesTheFrameTimeCount) {
    NumberItem("Fps", "FPS");
    g_fnBuildUpdateCustom();
    ASSERT_NE(g_stShownFigures.m_fnCustomFrameTime, nullptr);
    EXPECT_FALSE(g_stShownFigures.m_fnCustomFrameTime());
    EXPECT_FALSE(g_fnFrameTimeShownByStyle());
    NumberItem("Ft", "FRAME_TIME");
    g_fnBuildUpdateCustom();
    EXPECT_TRUE(g_stShownFigures.m_fnCustomFrameTime());
    EXPECT_TRUE(g_fnFrameTimeShownByStyle());
    g_fnClearItems();
    g_fnBuildUpdateCustom();
    EXPECT_FALSE(g_stShownFigures.m_fnCustomFrameTime());
}

TEST_F(UpdateCustom, ASensorsFormatComesFromTheTable) {
    Publish({{"GPU_VOLTAGE#0", 1250}, {"PUMP_RPM#0", 2400}});
    g_stDisplay.mapFormat["GPU_VOLTAGE"] = {3, 1000};
    g_stDisplay.mapFormat["PUMP_RPM"] = {0, 0};
    CNumBox_Base* pVoltage = NumberItem("V", "GPU_VOLTAGE#0");
    CNumBox_Base* pPump = NumberItem("P", "PUMP_RPM#0");
    g_fnBuildUpdateCustom();
    Walk();
    EXPECT_EQ(Shown(pVoltage), "1.250");
    EXPECT_EQ(Shown(pPump), "2400") << "a divisor of 0 shows the plain value";
}

TEST_F(UpdateCustom, AnUnknownSensorIsEmptiedThoughItsValueIsThere) {
    Publish({{"PUMP_RPM#0", 2400}});
    CNumBox_Base* p = NumberItem("P", "PUMP_RPM#0");
    p->m_fnSetInt(5, 0);
    g_fnBuildUpdateCustom();
    EXPECT_EQ(Shown(p), "");
    EXPECT_TRUE(g_listUpdateData_N.empty());
    EXPECT_TRUE(Logged("item \"P\" szDataFullName: \"PUMP_RPM#0\" missing"));
}

TEST_F(UpdateCustom, ABoxWithoutDataIsEmptiedAndStaysSoUntilTheNextRebuild) {
    CNumBox_Base* p = NumberItem("Clk", "GPU_CLK#0");
    p->m_fnSetInt(1, 0);
    g_fnBuildUpdateCustom();
    EXPECT_EQ(Shown(p), "");
    EXPECT_TRUE(Logged("item \"Clk\" szDataFullName: \"GPU_CLK#0\" missing"));
    Publish({{"GPU_CLK#0", 2505}});
    Walk();
    EXPECT_EQ(Shown(p), "") << "the data turned up later";
    g_fnResetUpdate();
    Frame(1);
    EXPECT_EQ(Shown(p), "2505");
}

TEST_F(UpdateCustom, ANameThatGoesEmptiesItsBoxAtTheNextRebuild) {
    Publish({{"GPU_CLK#0", 2505}});
    CNumBox_Base* p = NumberItem("Clk", "GPU_CLK#0");
    g_fnBuildUpdateCustom();
    Walk();
    Publish({{"GPU_TEMP#0", 50}});
    Walk();
    EXPECT_EQ(Shown(p), "2505");
    g_fnResetUpdate();
    Frame(1);
    EXPECT_EQ(Shown(p), "");
}

TEST_F(UpdateCustom, AfterABankFlipTheOldBankIsReadUntilTheRebuild) {
    Publish({{"GPU_CLK#0", 2505}});
    CNumBox_Base* p = NumberItem("Clk", "GPU_CLK#0");
    g_fnBuildUpdateCustom();
    Publish({{"GPU_CLK#0", 1000}, {"GPU_TEMP#0", 50}});
    Change({1111, 51});
    Walk();
    EXPECT_EQ(Shown(p), "2505");
    g_fnResetUpdate();
    Frame(1);
    EXPECT_EQ(Shown(p), "1111");
    Publish({{"AAA", 7}, {"GPU_CLK#0", 2000}});
    Walk();
    EXPECT_EQ(Shown(p), "1111") << "back in the first bank, still not looked at";
    g_fnResetUpdate();
    Frame(1);
    EXPECT_EQ(Shown(p), "2000");
}

TEST_F(UpdateCustom, ItemsWithoutABoxMakeNoRecord) {
    Publish({{"GPU_CLK#0", 1}});
    Item("Nobody", "GPU_CLK#0");
    Item("Lost", "GPU_CLK#0");
    Number(Id("Lost"), "Lost");
    g_stNumBoxIds.m_fnGiveBack(Id("Lost"));
    g_fnBuildUpdateCustom();
    EXPECT_TRUE(g_listUpdateData_N.empty());
}

TEST_F(UpdateCustom, EachBuildStartsFromEmptyLists) {
    Publish({{"GPU_CLK#0", 1}});
    NumberItem("Clk", "GPU_CLK#0");
    NumberItem("Fps", "FPS");
    g_listUpdateFPS_L.resize(1);
    g_listUpdateData_L.resize(1);
    g_listUpdateMixed.resize(1);
    for (u32 u = 0; u < 3; ++u) g_fnBuildUpdateCustom();
    EXPECT_EQ(g_listUpdateData_N.size(), 1u);
    EXPECT_EQ(g_listUpdateFPS_N.size(), 1u);
    EXPECT_TRUE(g_listUpdateFPS_L.empty() && g_listUpdateData_L.empty() && g_listUpdateMixed.empty());
}

TEST_F(UpdateCustom, ResettingRaisesAllFlagsOfAllSlots) {
    g_fnResetUpdate();
    for (u8* pFlags : {g_bUpdateFPS, g_bUpdateTime, g_bUpdateData, g_bUpdateFrameTime})
        for (u32 u = 0; u < 20; ++u) EXPECT_EQ(pFlags[u], 1);
}

TEST_F(UpdateCustom, AnyOtherStyleIsNotReset) {
    g_listUpdateData_N.resize(2);
    for (const u32 uStyle : {3u, 7u, 0xFFFFFFFFu}) {
        g_uLayoutStyle = uStyle;
        g_fnResetUpdate();
        EXPECT_EQ(g_listUpdateData_N.size(), 2u);
        EXPECT_EQ(g_bUpdateData[0], 0);
    }
}

TEST_F(UpdateCustom, TheBuildReadsTheClockSoThatNoFrameIsTheFirstToDoSo) {
    g_fnBuildUpdateCustom();
    EXPECT_EQ(platform::headless::LocalTimeReads(), 1u);
    g_bStopWatchOn = 1;
    g_fnBuildUpdateCustom();
    EXPECT_EQ(platform::headless::LocalTimeReads(), 1u) << "a running stopwatch keeps its fields";
}

TEST_F(UpdateCustom, ATruncatedNameOrOffsetBeyondTheBlockResolvesToNothing) {
    SetMonitorDataOffsetFromGWexeToGWDll_GL({{"GPU_CLK#0", 16380}, {"GPU_TEMP#0", 16381}}, nullptr, -1);
    CNumBox_Base* pClock = NumberItem("Clk", "GPU_CLK#0");
    CNumBox_Base* pTemp = NumberItem("Temp", "GPU_TEMP#0");
    g_fnBuildUpdateCustom();
    Walk();
    EXPECT_EQ(g_listUpdateData_N.size(), 1u);
    EXPECT_NE(Shown(pClock), "");
    EXPECT_EQ(Shown(pTemp), "");
}

TEST_F(UpdateCustom, DataNamesAreKnownByTheirBase) {
    stDataFormat st;
    EXPECT_EQ(g_fnDataBaseName("GPU_CLK#0"), "GPU_CLK");
    EXPECT_EQ(g_fnDataBaseName("A#B#12"), "A#B");
    EXPECT_EQ(g_fnDataBaseName("FPS"), "FPS");
    for (const char* sz : {"GPU_CLK#0", "POWER_DETECTOR#3", "CPU_USAGE#1", "PIN_6#0", "MB_PIN_1#0",
                           "POWER_PIN_1#0", "POWER_MB_PIN_6#2", "VOLTAGE_0_95#0"}) {
        st = {9, 9};
        EXPECT_TRUE(g_fnFindDataFormat(sz, st)) << sz;
        EXPECT_EQ(st.uDecimals, 0u);
        EXPECT_EQ(st.uDivisor, 1u);
    }
    for (const char* sz : {"PIN_0#0", "PIN_7#0", "PIN_", "", "#0", "GPU_CLOCK#0", "POWER_PIN_10#0"})
        EXPECT_FALSE(g_fnFindDataFormat(sz, st)) << sz;
    g_stDisplay.mapFormat["GPU_CLK"] = {1, 10};
    EXPECT_TRUE(g_fnFindDataFormat("GPU_CLK#4", st));
    EXPECT_EQ(st.uDecimals, 1u);
    EXPECT_EQ(st.uDivisor, 10u);
}

} // namespace
