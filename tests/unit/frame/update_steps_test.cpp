// The order, flags and timers of an update.
#include "base/layout_style.h"
#include "base/timer.h"
#include "config/settings/settings.h"
#include "draw/creation_table.h"
#include "frame/parts.h"
#include "frame/update/local_clock.h"
#include "frame/update/status_items.h"
#include "frame/update/timers.h"
#include "frame/update/update_flags.h"
#include "frame/update/update_steps.h"
#include "frame/update/update_warnings.h"
#include "platform/clock.h"
#include "platform/shared_block.h"
#include "tests/unit/frame/update_fixture.h"

namespace {

namespace headless = platform::headless;

u32 g_uFPSUpdates, g_uDataWalks, g_uTimeWalks;

class UpdateSteps : public UpdateTest {
  protected:
    void SetUp() override {
        UpdateTest::SetUp();
        g_uFPSUpdates = g_uDataWalks = g_uTimeWalks = 0;
        g_fnUpdateFPS = [] { ++g_uFPSUpdates; };
    }
    void TearDown() override {
        g_stParts = {};
        g_stCreationTable = {};
        for (stWarningSlot& st : g_stWarnings.aSlots) st = {};
        g_stWarnings.apBanner[0] = g_stWarnings.apBanner[1] = nullptr;
        g_stSettings.bWarningTwinkle = true;
        g_pMonitorVGA = nullptr;
        update::CheckWarnings();
        UpdateTest::TearDown();
    }
    /// A record whose walks are counted.
    static void WatchData() {
        CUpdateDataFuncN record;
        record.m_iNumBox = 0;
        record.m_fnSimple = [](i32, const u32*, u32, u32) { ++g_uDataWalks; };
        g_listUpdateData_N.push_back(record);
        g_fnCountUpdateRecords(g_uLayoutStyle);
    }
    static void WatchMixed() {
        stUpdateMixedData record;
        record.m_fn = [](stUpdateMixedData&) { ++g_uTimeWalks; };
        g_listUpdateMixed.push_back(record);
    }
    /// Clock boxes of a style: hour, minute, second.
    void ClockBoxes(std::initializer_list<u64> ids) {
        u32 u = 0;
        for (const u64 u64Id : ids) {
            m_apClock[u] = Number(u64Id);
            boxes::g_stDirect.aiTime[u++] = boxes::FindNumBox(u64Id);
        }
    }
    std::string Clock() const {
        return Shown(m_apClock[0]) + ":" + Shown(m_apClock[1]) + ":" + Shown(m_apClock[2]);
    }
    CNumBox_Base* m_apClock[3] = {};
};

TEST_F(UpdateSteps, ReadsTheCounterOnce) {
    g_uLayoutStyle = 0;
    ClockBoxes({2, 3, 4});
    for (const i64 iStep : {1, 16, 600, 1100}) {
        const u64 uReads = headless::ClockReads();
        Frame(iStep);
        EXPECT_EQ(headless::ClockReads(), uReads + 1) << iStep;
    }
}

TEST_F(UpdateSteps, AReadingInsideAnotherSharesIt) {
    headless::SetClockStepPerRead(1000);
    CTimer timer;
    timer.Restart();
    {
        const CTimerReading outer;
        const f32 fFirst = timer.Elapsed();
        {
            const CTimerReading inner;
            EXPECT_EQ(timer.Elapsed(), fFirst);
        }
        EXPECT_EQ(timer.Elapsed(), fFirst) << "the inner one's end leaves the outer one's reading";
    }
    const f32 fAfter = timer.Elapsed();
    EXPECT_GT(timer.Elapsed(), fAfter);
}

TEST_F(UpdateSteps, TheLastFramesSecondsAreThoseBetweenTwoUpdates) {
    Frame(20);
    EXPECT_FLOAT_EQ(g_fLastFrameSeconds, 0.02f);
    Frame(35);
    EXPECT_FLOAT_EQ(g_fLastFrameSeconds, 0.035f);
}

TEST_F(UpdateSteps, DataIsWalkedWhenItsIntervalIsReached) {
    WatchData();
    Frame(499);
    EXPECT_EQ(g_uDataWalks, 0u);
    Frame(1);
    EXPECT_EQ(g_uDataWalks, 1u) << "the interval itself suffices";
    Frame(0);
    EXPECT_EQ(g_uDataWalks, 1u);
    Frame(600);
    EXPECT_EQ(g_uDataWalks, 2u);
    Frame(450);
    EXPECT_EQ(g_uDataWalks, 2u) << "the timer starts from the late walk";
}

TEST_F(UpdateSteps, RaisingSetsAllSlotsAndConsumingClearsTheCurrentOne) {
    WatchData();
    Frame(500);
    EXPECT_EQ(g_bUpdateData[0], 0);
    for (u32 u = 1; u < 20; ++u) EXPECT_EQ(g_bUpdateData[u], 1);
    g_bUpdateFrameTime[0] = g_bUpdateFrameTime[7] = 1;
    Frame(1);
    EXPECT_EQ(g_bUpdateFrameTime[0], 0);
    EXPECT_EQ(g_bUpdateFrameTime[7], 1);
}

TEST_F(UpdateSteps, ARaisedFPSFlagRunsTheStylesUpdaterOnce) {
    Frame(10);
    EXPECT_EQ(g_uFPSUpdates, 0u);
    Frame(100);
    EXPECT_EQ(g_uFPSUpdates, 1u) << "the sample of this update is shown in this update";
    EXPECT_EQ(g_bUpdateFPS[0], 0);
    Frame(1);
    EXPECT_EQ(g_uFPSUpdates, 1u);
}

TEST_F(UpdateSteps, WithoutAnUpdaterTheFPSFlagIsStillCleared) {
    g_fnUpdateFPS = nullptr;
    g_bUpdateFPS[0] = 1;
    Frame(1);
    EXPECT_EQ(g_bUpdateFPS[0], 0);
}

TEST_F(UpdateSteps, AnyStyleRunsTheUpdaterThatItsBuildInstalled) {
    g_uLayoutStyle = 7;
    Frame(150);
    EXPECT_EQ(g_uFPSUpdates, 1u);
}

TEST_F(UpdateSteps, MixedItemsAreWalkedWithDataAndInCustomStyleWithTime) {
    WatchMixed();
    g_uLayoutStyle = 2;
    g_bUpdateData[0] = 1;
    Frame(1);
    EXPECT_EQ(g_uTimeWalks, 1u);
    g_bUpdateTime[0] = 1;
    Frame(1);
    EXPECT_EQ(g_uTimeWalks, 2u);
    g_uLayoutStyle = 0;
    g_bUpdateTime[0] = 1;
    Frame(1);
    EXPECT_EQ(g_uTimeWalks, 2u);
}

TEST_F(UpdateSteps, BatchHooksStandAroundADataWalkThatHasRecords) {
    static std::string szOrder;
    szOrder.clear();
    g_stCreationTable.Begin = [] { szOrder += "["; };
    g_stCreationTable.End = [] { szOrder += "]"; };
    Frame(500);
    EXPECT_EQ(szOrder, "") << "nothing to walk";
    CUpdateDataFuncN record;
    record.m_iNumBox = 0;
    record.m_fnSimple = [](i32, const u32*, u32, u32) { szOrder += "n"; };
    g_listUpdateData_N.push_back(record);
    g_fnCountUpdateRecords(0);
    Frame(500);
    EXPECT_EQ(szOrder, "[n]");
    szOrder.clear();
    g_stCreationTable.End = nullptr;
    Frame(500);
    EXPECT_EQ(szOrder, "[n");
}

TEST_F(UpdateSteps, CustomFPSIsWalkedInsideTheHooksWhereTheyExist) {
    static std::string szOrder;
    szOrder.clear();
    CUpdateDataFuncN number;
    number.m_iNumBox = 0;
    number.m_fnSimple = [](i32, const u32*, u32, u32) { szOrder += "n"; };
    CUpdateDataFuncL graph;
    graph.m_iIndex = 0;
    graph.m_fn = [](i32, const u32*, u32) { szOrder += "l"; };
    g_listUpdateFPS_N.push_back(number);
    g_listUpdateFPS_L.push_back(graph);
    g_fnUpdateFPSCustom();
    g_stCreationTable.Begin = [] { szOrder += "["; };
    g_stCreationTable.End = [] { szOrder += "]"; };
    g_fnUpdateFPSCustom();
    EXPECT_EQ(szOrder, "nl[nl]");
}

TEST_F(UpdateSteps, TheTimeOfDayIsReadOnceASecond) {
    g_uLayoutStyle = 0;
    ClockBoxes({2, 3, 4});
    headless::SetLocalTime({2026, 11, 21, 9, 5, 3});
    Frame(999);
    EXPECT_EQ(headless::LocalTimeReads(), 0u);
    EXPECT_EQ(Clock(), "::");
    Frame(1);
    EXPECT_EQ(headless::LocalTimeReads(), 1u);
    EXPECT_EQ(Clock(), "09:05:03") << "two digits each";
    EXPECT_EQ(g_stLocalClock.uYear, 2026u);
    EXPECT_EQ(g_stLocalClock.uMonth, 11u);
    EXPECT_EQ(g_stLocalClock.uDay, 21u);
    for (u32 u = 0; u < 60; ++u) Frame(16);
    EXPECT_EQ(headless::LocalTimeReads(), 1u);
    Frame(50);
    EXPECT_EQ(headless::LocalTimeReads(), 2u);
}

TEST_F(UpdateSteps, RV5ShowsTheTimeInItsOwnBoxes) {
    g_uLayoutStyle = 1;
    ClockBoxes({9, 10, 11});
    headless::SetLocalTime({2026, 11, 21, 23, 59, 58});
    Frame(1000);
    EXPECT_EQ(Clock(), "23:59:58");
}

TEST_F(UpdateSteps, AnyOtherStyleShowsNoTime) {
    g_uLayoutStyle = 7;
    ClockBoxes({2, 3, 4});
    Frame(1000);
    EXPECT_EQ(Clock(), "::");
    EXPECT_EQ(g_bUpdateTime[0], 0);
}

TEST_F(UpdateSteps, MidnightInTwelveHourModeShows12) {
    g_stSettings.bClock12H = true;
    const std::pair<u32, u32> aHours[] = {{0, 12}, {1, 1}, {11, 11}, {12, 12}, {13, 1}, {23, 11}, {24, 12}};
    for (const auto& [uHour, uShown] : aHours) {
        headless::SetLocalTime({2026, 1, 1, uHour, 0, 0});
        g_fnReadLocalTime();
        EXPECT_EQ(g_stLocalClock.uHour, uShown) << uHour;
    }
    g_stSettings.bClock12H = false;
    headless::SetLocalTime({2026, 1, 1, 0, 0, 0});
    g_fnReadLocalTime();
    EXPECT_EQ(g_stLocalClock.uHour, 0u);
}

TEST_F(UpdateSteps, TheStopwatchCountsHundredthsSecondsAndMinutes) {
    g_uLayoutStyle = 0;
    ClockBoxes({2, 3, 4});
    Frame(10);
    g_bStopWatchOn = 1;
    Frame(0);
    Frame(61'250);
    EXPECT_EQ(Clock(), "01:01:25");
    Frame(49);
    EXPECT_EQ(Clock(), "01:01:25") << "twenty times a second";
    Frame(2);
    EXPECT_EQ(Clock(), "01:01:30");
    EXPECT_EQ(headless::LocalTimeReads(), 0u);
}

TEST_F(UpdateSteps, ARunningStopwatchIgnoresTwelveHourMode) {
    g_stSettings.bClock12H = true;
    g_bStopWatchOn = 1;
    Frame(0);
    Frame(15 * 60'000 + 50);
    EXPECT_EQ(g_stLocalClock.uHour, 15u);
    EXPECT_EQ(g_stLocalClock.uMinute, 0u);
}

TEST_F(UpdateSteps, EachToggleStartsTheStopwatchFromZero) {
    g_bStopWatchOn = 1;
    Frame(0);
    Frame(5'000);
    EXPECT_EQ(g_stLocalClock.uMinute, 5u);
    g_bStopWatchOn = 0;
    Frame(0);
    Frame(3'000);
    g_bStopWatchOn = 1;
    Frame(0);
    Frame(70);
    EXPECT_EQ(g_stLocalClock.uHour, 0u);
    EXPECT_EQ(g_stLocalClock.uMinute, 0u);
    EXPECT_EQ(g_stLocalClock.uSecond, 7u);
}

TEST_F(UpdateSteps, AfterTheStopwatchTheClockComesBackWithinASecond) {
    headless::SetLocalTime({2026, 11, 21, 9, 5, 3});
    g_bStopWatchOn = 1;
    Frame(0);
    Frame(60);
    g_bStopWatchOn = 0;
    Frame(500);
    EXPECT_EQ(headless::LocalTimeReads(), 0u);
    Frame(500);
    EXPECT_EQ(g_stLocalClock.uHour, 9u);
}

TEST_F(UpdateSteps, DebugTimeRunsEveryFrame) {
    g_uLayoutStyle = 0;
    ClockBoxes({2, 3, 4});
    g_stSettings.bDebugTime = true;
    headless::SetUnixMilliseconds(1'700'000'123'456);
    Frame(1);
    EXPECT_EQ(Clock(), "12:34:56");
    headless::SetUnixMilliseconds(1'700'000'123'457);
    Frame(0);
    EXPECT_EQ(Clock(), "12:34:57");
    for (u32 u = 1; u < 20; ++u) EXPECT_EQ(g_bUpdateTime[u], 1);
}

TEST_F(UpdateSteps, SeveralManagersShareACopyOfTheAdapterBlock) {
    const u8* pSegments = platform::SharedSegment()->MonitorVGA;
    Frame(500);
    EXPECT_EQ(g_pMonitorVGA, nullptr) << "one manager needs no copy";
    g_apOSDManager[4] = new COSDManager;
    platform::SharedSegment()->MonitorVGA[17] = 99;
    Frame(500);
    ASSERT_NE(g_pMonitorVGA, nullptr);
    EXPECT_NE(g_pMonitorVGA, pSegments);
    platform::SharedSegment()->MonitorVGA[17] = 1;
    EXPECT_EQ(g_pMonitorVGA[17], 99);
    Frame(500);
    EXPECT_EQ(g_pMonitorVGA[17], 1);
}

TEST_F(UpdateSteps, VideoIsAskedForOnlyWhileABoxExists) {
    static u32 uTransfers;
    uTransfers = 0;
    g_stParts.m_fnTransferVideo = [] { ++uTransfers; };
    Frame(1);
    EXPECT_EQ(uTransfers, 0u);
    g_ppVideoBox[7] = new CVideoBox_Base;
    Frame(1);
    EXPECT_EQ(uTransfers, 1u);
}

TEST_F(UpdateSteps, ControlBlockThenShutterThenStatus) {
    static std::string szOrder;
    szOrder.clear();
    g_stParts.m_fnPollControlBlock = [] { szOrder += "c"; };
    g_stParts.m_fnShutter = [] { szOrder += "s"; };
    Frame(1);
    EXPECT_EQ(szOrder, "cs");
}

TEST_F(UpdateSteps, TheStatusStepRunsFortyTimesASecondAtMost) {
    g_auStatus[0] = 1;
    g_ppStylePanel[1] = new recording::CPanel;
    g_ppStylePanel[1]->m_fnMoveTo(0, -1, 0);
    Frame(24);
    EXPECT_EQ(Top(g_ppStylePanel[1]), -1);
    Frame(1);
    EXPECT_NE(Top(g_ppStylePanel[1]), -1);
    const f32 fTop = Top(g_ppStylePanel[1]);
    Frame(24);
    EXPECT_EQ(Top(g_ppStylePanel[1]), fTop);
    g_auStatus[0] = 0;
}

TEST_F(UpdateSteps, TheShutterImageFollowsStylePanel5) {
    class CImgBox : public virtual CControl, public virtual CImgBox_Base {};
    g_ppImgBox[8] = new CImgBox;
    g_ppStylePanel[5] = new recording::CPanel;
    g_ppStylePanel[5]->m_fnMoveTo(300, 400, 0);
    Frame(1);
    EXPECT_EQ(Left(g_ppImgBox[8]), 0);
    g_abShutterMove[0] = 1;
    Frame(1);
    EXPECT_EQ(Left(g_ppImgBox[8]), 300);
    EXPECT_EQ(Top(g_ppImgBox[8]), 400);
    EXPECT_EQ(g_abShutterMove[0], 0);
}

TEST_F(UpdateSteps, AShutterMoveWithoutImageOrPanelOnlyClearsTheFlag) {
    g_abShutterMove[0] = 1;
    Frame(1);
    EXPECT_EQ(g_abShutterMove[0], 0);
}

TEST_F(UpdateSteps, NothingIsWatchedByDefault) {
    for (const stWarningSlot& st : g_stWarnings.aSlots) EXPECT_EQ(st.m_pWatched, nullptr);
    Frame(5'000);
    EXPECT_EQ(g_stTimers.Warning.m_fTotal, 0.0f) << "no banner, no blinking";
}

TEST_F(UpdateSteps, AWatchedValueSwitchesItsMarkAndTheBannerBlinks) {
    u32 uWatched = 0;
    CTextBox_Base* pMark = Text(1);
    CTextBox_Base* pBanner = Text(2);
    pMark->m_fnSetFont(&m_font);
    pBanner->m_fnSetFont(&m_font);
    const auto IsShown = [this](CControl* p) { return m_pManager->m_fnIsAttached(p, g_uLayerFont); };
    const auto Red = [pBanner] {
        f32 fRed = 0;
        pBanner->m_fnGetTextColor(&fRed, nullptr, nullptr, nullptr);
        return fRed;
    };
    g_stWarnings.aSlots[19] = {&uWatched, 0, pMark, g_uLayerFont};
    g_stWarnings.apBanner[0] = pBanner;
    Frame(1);
    EXPECT_FALSE(IsShown(pMark));
    uWatched = 3;
    Frame(1);
    EXPECT_TRUE(IsShown(pMark));
    EXPECT_TRUE(IsShown(pBanner));
    EXPECT_FLOAT_EQ(Red(), 0.5f) << "no blink yet";
    Frame(1'000);
    EXPECT_FLOAT_EQ(Red(), 1.0f);
    Frame(999);
    EXPECT_FLOAT_EQ(Red(), 1.0f);
    Frame(1);
    EXPECT_FLOAT_EQ(Red(), 0.0f);
    g_stSettings.bWarningTwinkle = false;
    Frame(1'000);
    EXPECT_FLOAT_EQ(Red(), 0.0f) << "without twinkling the colour stays";
    uWatched = 0;
    Frame(1);
    EXPECT_FALSE(IsShown(pMark));
    EXPECT_FALSE(IsShown(pBanner));
}

} // namespace
