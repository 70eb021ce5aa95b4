#include "base/layout_style.h"
#include "capture/shot_request.h"
#include "draw/creation_table.h"
#include "entry/exports.h"
#include "frame/command_handler.h"
#include "frame/parts.h"
#include "frame/update/local_clock.h"
#include "frame/update/status_items.h"
#include "frame/update/update_flags.h"
#include "shared/api_code.h"
#include "tests/support/headless/shared_fixture.h"
#include <cstring>

namespace {

u32 s_uReleases, s_uCameras;

} // namespace

class CommandHandler : public SharedTest {
  protected:
    void SetUp() override {
        SharedTest::SetUp();
        RegisterProcess(c_uPid, c_uTid);
        s_uReleases = s_uCameras = 0;
        m_stOldTable = g_stCreationTable;
        g_stCreationTable.m_fnReleaseHook = []() noexcept { ++s_uReleases; };
    }
    void TearDown() override {
        g_stCreationTable = m_stOldTable;
        SharedTest::TearDown();
    }

    static stSharedCommand& Record() { return CommandSlot(0).Command; }
    /// What a swap does with a waiting command.
    static void Receive() {
        stSharedCommand stBlock{};
        ASSERT_TRUE(ReadCommandRecord(c_uPid, c_uTid, g_uRecordCommand, nullptr, &stBlock));
        g_fnTavo_ProcessCommand(stBlock);
        WriteCommandRecord(c_uPid, c_uTid, 0, stBlock, g_uRecordChanged);
    }
    static void SendFour(i64 iBits) {
        u32 auPos[16];
        for (u32 u = 0; u < 16; ++u) auPos[u] = 100 + u;
        SetMonitorPosDataFromGWexeToGWDll_GL(auPos);
        ASSERT_EQ(sendCmd_GWDLL_GL(4, 0, 0, iBits), 0u);
    }
    static void SendByte(u32 uCommand) {
        const u8 uOne = 1;
        SetMonitorScreenshotDataFromGWexeToGWDll_GL(&uOne);
        SetMonitorTimerDataFromGWexeToGWDll_GL(&uOne);
        ASSERT_EQ(sendCmd_GWDLL_GL(uCommand, 0, 0, 0), 0u);
    }

    stCreationTable m_stOldTable;
};

TEST_F(CommandHandler, ObeysByProcessThenThreadThenProfile) {
    stSharedCommand stBlock{};
    EXPECT_TRUE(g_fnCommandIsForUs(stBlock));
    stBlock.uTargetPid = c_uPid, stBlock.uTargetTid = 1;
    EXPECT_TRUE(g_fnCommandIsForUs(stBlock)); // the thread is not asked once a process is named
    stBlock.uTargetPid = 1, stBlock.uTargetTid = c_uTid;
    EXPECT_FALSE(g_fnCommandIsForUs(stBlock));
    stBlock.uTargetPid = 0;
    EXPECT_TRUE(g_fnCommandIsForUs(stBlock));
    stBlock.uTargetTid = 5;
    EXPECT_FALSE(g_fnCommandIsForUs(stBlock));
    stBlock.uTargetTid = 0;
    SetName(stBlock.wzTargetProfile, u"Racing");
    EXPECT_FALSE(g_fnCommandIsForUs(stBlock)); // before the first load the profile is the default one
    g_wzProfileName[0] = 0;
    EXPECT_TRUE(g_fnCommandIsForUs(stBlock));
    g_fnSetProfileName(u"Racing");
    EXPECT_TRUE(g_fnCommandIsForUs(stBlock));
    g_fnSetProfileName(u"Racing2");
    EXPECT_FALSE(g_fnCommandIsForUs(stBlock));
    g_fnSetProfileName(u"racing");
    EXPECT_FALSE(g_fnCommandIsForUs(stBlock));
}

TEST_F(CommandHandler, ProfileWithoutTerminatorEndsAtItsField) {
    stSharedCommand stBlock{};
    std::fill(std::begin(stBlock.wzTargetProfile), std::end(stBlock.wzTargetProfile), u'x');
    g_fnSetProfileName(std::u16string(64, u'x').c_str());
    EXPECT_TRUE(g_fnCommandIsForUs(stBlock));
    g_fnSetProfileName(std::u16string(65, u'x').c_str());
    EXPECT_FALSE(g_fnCommandIsForUs(stBlock));
    g_fnSetProfileName(std::u16string(63, u'x').c_str());
    EXPECT_FALSE(g_fnCommandIsForUs(stBlock));
}

TEST_F(CommandHandler, ReleaseCallsTheHookAndForgetsTheApi) {
    g_uApiCode = 1024;
    sendCmd_GWDLL_GL(3, 0, 0, 0);
    Receive();
    EXPECT_EQ(s_uReleases, 1u);
    EXPECT_EQ(g_uApiCode, 0u);
    EXPECT_EQ(Record().bRelease, 0);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
}

TEST_F(CommandHandler, ReleaseBeforeAnyResourceOnlyForgetsTheApi) {
    g_stCreationTable.m_fnReleaseHook = nullptr;
    g_uApiCode = 1024;
    sendCmd_GWDLL_GL(7, 0, 0, 0);
    Receive();
    EXPECT_EQ(g_uApiCode, 0u);
    EXPECT_EQ(Record().bRelease, 0);
}

TEST_F(CommandHandler, RebuildRaisesFlagsForTheThreeStylesOnly) {
    for (const u32 uStyle : {0u, 1u, 2u, 3u, 7u, 0xFFFFFFFFu}) {
        g_uLayoutStyle = uStyle;
        std::memset(g_bUpdateFPS, 0, sizeof g_bUpdateFPS);
        sendCmd_GWDLL_GL(9, 0, 0, 0);
        Receive();
        EXPECT_EQ(g_bUpdateFPS[19], uStyle <= 2 ? 1 : 0) << uStyle;
        EXPECT_EQ(Record().bRebuildUpdate, 0);
    }
}

TEST_F(CommandHandler, CameraIsReadAgainWhereAReaderIsInstalled) {
    SendFour(16);
    Receive();
    EXPECT_EQ(Record().bReloadCamera, 0);
    g_stParts.m_fnReloadCamera = [] { ++s_uCameras; };
    SendFour(16);
    Receive();
    EXPECT_EQ(s_uCameras, 1u);
}

TEST_F(CommandHandler, ScreenshotCarriesItsValue) {
    const u8 uShot = 5;
    SetMonitorScreenshotDataFromGWexeToGWDll_GL(&uShot);
    sendCmd_GWDLL_GL(5, 0, 0, 0);
    Receive();
    EXPECT_EQ(g_bShotPending, 5);
    EXPECT_TRUE(g_bShutter);
    EXPECT_EQ(g_timerShutter.m_bStopped, 0);
    EXPECT_EQ(Record().u8Screenshot, 0);
}

TEST_F(CommandHandler, ScreenshotForAnotherProfileIsClearedNotQueued) {
    g_fnSetProfileName(u"Mine");
    stMonitorFilter stFilter{};
    SetName(stFilter.wzProfileName, u"Other");
    SetMonitorFilterDataFromGWexeToGWDll_GL(&stFilter);
    sendCmd_GWDLL_GL(3, 0, 0, 0); // a release brings the target into the record
    Receive();
    EXPECT_EQ(s_uReleases, 0u);
    SendByte(5);
    EXPECT_EQ(Record().u8Screenshot, 1);
    Receive();
    EXPECT_EQ(g_bShotPending, 0);
    EXPECT_EQ(Record().u8Screenshot, 0);
    g_fnSetProfileName(u"Other");
    SendByte(5);
    Receive();
    EXPECT_EQ(g_bShotPending, 1);
}

TEST_F(CommandHandler, TargetsComeOnlyWithARelease) {
    stMonitorFilter stFilter{};
    stFilter.uProcessId = 1;
    SetMonitorFilterDataFromGWexeToGWDll_GL(&stFilter);
    SendByte(5);
    EXPECT_EQ(Record().uTargetPid, 0u);
    Receive();
    EXPECT_EQ(g_bShotPending, 1); // obeyed in spite of the filter
}

TEST_F(CommandHandler, StrangersCommandIsClearedWhole) {
    Record().uTargetPid = 1;
    SendFour(31);
    Receive();
    EXPECT_EQ(Record().bStatusChanged | Record().bReloadCamera, 0);
    EXPECT_EQ(Record().bPos0Changed | Record().bPos1Changed | Record().bPos2Changed, 0);
    EXPECT_EQ(g_abStatusDue[0], 0);
}

TEST_F(CommandHandler, TimerToggles) {
    SendByte(6);
    Receive();
    EXPECT_EQ(g_bStopWatchOn, 1);
    EXPECT_EQ(g_bStopWatchShown, 1);
    EXPECT_EQ(Record().u8Timer, 0);
    SendByte(6);
    Receive();
    EXPECT_EQ(g_bStopWatchOn, 0);
}

TEST_F(CommandHandler, StatusGoesBeforePositionsWhichStayInTheRecord) {
    SendFour(1 | 8);
    Receive();
    for (u32 u = 0; u < 20; ++u) {
        EXPECT_EQ(g_abStatusDue[u], 1);
        EXPECT_EQ(g_auStatus[u], 109u);
    }
    EXPECT_EQ(g_timerStatus.m_bStopped, 0);
    EXPECT_EQ(Record().bStatusChanged, 0);
    EXPECT_EQ(Record().bPos0Changed, 1);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
}

TEST_F(CommandHandler, PendingPositionSurvivesOnlyIfTheNextBlockCarriesIt) {
    SendFour(1 | 8);
    Receive();
    u32 auPos[16] = {};
    SetMonitorPosDataFromGWexeToGWDll_GL(auPos);
    sendCmd_GWDLL_GL(4, 0, 0, 1);
    EXPECT_EQ(Record().uPos0X, 100u); // the flag was equal, so the old coordinates stay
    Receive();
    EXPECT_EQ(Record().bPos0Changed, 0);

    SendFour(1 | 8);
    Receive();
    sendCmd_GWDLL_GL(9, 0, 0, 0);
    EXPECT_EQ(Record().bPos0Changed, 0);
}

TEST_F(CommandHandler, PositionsAreTakenTogether) {
    SendFour(7);
    Receive();
    EXPECT_EQ(Record().bPos0Changed | Record().bPos1Changed | Record().bPos2Changed, 0);
    EXPECT_EQ(g_timerStatus.m_bStopped, 0);
    EXPECT_EQ(g_abStatusDue[0], 0);
}

TEST_F(CommandHandler, BlockWithoutFlagsRestartsTheStatusTimer) {
    SendFour(32);
    Receive();
    EXPECT_EQ(g_timerStatus.m_bStopped, 0);
}

TEST_F(CommandHandler, CustomStyleIgnoresTimerStatusAndPositions) {
    for (const u32 uStyle : {2u, 7u}) {
        g_uLayoutStyle = uStyle;
        SendFour(15);
        Record().u8Timer = 1;
        Receive();
        EXPECT_EQ(g_bStopWatchOn, 0);
        EXPECT_EQ(g_abStatusDue[0], 0);
        EXPECT_EQ(Record().u8Timer & Record().bStatusChanged, 1);
        EXPECT_EQ(Record().bPos0Changed & Record().bPos1Changed & Record().bPos2Changed, 1);
    }
}

TEST_F(CommandHandler, OneFlagAPassInOrder) {
    Record().bRebuildUpdate = Record().bReloadCamera = Record().u8Screenshot = Record().u8Timer = 1;
    Receive();
    EXPECT_EQ(Record().bRebuildUpdate, 0);
    EXPECT_EQ(Record().bReloadCamera, 1);
    Receive();
    EXPECT_EQ(Record().bReloadCamera, 0);
    EXPECT_EQ(g_bShotPending, 0);
    Receive();
    EXPECT_EQ(g_bShotPending, 1);
    EXPECT_EQ(g_bStopWatchOn, 0);
    Receive();
    EXPECT_EQ(g_bStopWatchOn, 1);
}

TEST_F(CommandHandler, ReleaseTogetherWithARebuildStaysInTheRecord) {
    Record().bRelease = Record().bRebuildUpdate = 1;
    Receive();
    EXPECT_EQ(s_uReleases, 1u);
    // The write-back still carries the rebuild, and a rebuild does not overwrite a waiting release.
    EXPECT_EQ(Record().bRelease, 1);
    EXPECT_EQ(Record().bRebuildUpdate, 1);
}

TEST_F(CommandHandler, NothingEscapesFromAReader) {
    g_stParts.m_fnReloadCamera = [] { throw 1; };
    SendFour(16);
    Receive();
    EXPECT_EQ(Record().bReloadCamera, 0);
}

TEST_F(CommandHandler, ProcessWithoutARecordIsLeftAlone) {
    UnregisterProcess(c_uPid, c_uTid);
    stSharedCommand stBlock{};
    stBlock.u8Timer = 1;
    g_fnTavo_ProcessCommand(stBlock);
    EXPECT_EQ(g_bStopWatchOn, 1);
}
