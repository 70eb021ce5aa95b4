#include "entry/exports.h"
#include "tests/support/headless/shared_fixture.h"
#include <cstring>
#include <memory>

class ProcessRecords : public SharedTest {};
class ProfileSelection : public SharedTest {};

namespace {

stSharedCommand Position0(u32 uAlign, u32 uX, u32 uY) {
    stSharedCommand stCommand{};
    stCommand.bPos0Changed = 1;
    stCommand.uPos0Align = uAlign, stCommand.uPos0X = uX, stCommand.uPos0Y = uY;
    return stCommand;
}

bool SameBytes(const void* pA, const void* pB, std::size_t uBytes) {
    return std::memcmp(pA, pB, uBytes) == 0;
}

} // namespace

TEST_F(ProcessRecords, RegisterTakesTheFirstFreeSlotOfEachTable) {
    CommandSlot(0).uThreadId = 7;
    RegisterProcess(10, 11);
    EXPECT_EQ(CommandSlot(1).uThreadId, 11u);
    EXPECT_EQ(CommandSlot(1).uProcessId, 10u);
    EXPECT_EQ(StatusSlot(0).uThreadId, 11u);
    EXPECT_EQ(StatusSlot(0).uProcessId, 10u);
}

TEST_F(ProcessRecords, FreedRecordKeepsCommandForItsNextHolder) {
    RegisterProcess(10, 11);
    WriteCommandRecord(10, 11, 1, Position0(9, 5, 6), 3);
    UnregisterProcess(10, 11);
    EXPECT_EQ(CommandSlot(0).uThreadId, 0u);
    EXPECT_EQ(CommandSlot(0).uProcessId, 0u);

    RegisterProcess(20, 21);
    u8 bChanged = 0;
    stSharedCommand stCommand{};
    ASSERT_TRUE(ReadCommandRecord(20, 21, 3, &bChanged, &stCommand));
    EXPECT_EQ(bChanged, 1);
    EXPECT_EQ(stCommand.bPos0Changed, 1);
    EXPECT_EQ(stCommand.uPos0X, 5u);
}

TEST_F(ProcessRecords, FreedRecordIsEmptyAfterAClear) {
    RegisterProcess(10, 11);
    WriteCommandRecord(10, 11, 1, Position0(9, 5, 6), 3);
    UnregisterProcess(10, 11);
    g_fnClearRecordTables();
    RegisterProcess(20, 21);
    u8 bChanged = 9;
    stSharedCommand stCommand{};
    ASSERT_TRUE(ReadCommandRecord(20, 21, 3, &bChanged, &stCommand));
    EXPECT_EQ(bChanged, 0);
    EXPECT_EQ(stCommand.bPos0Changed, 0);
    EXPECT_EQ(stCommand.uPos0Align, 0u);
}

TEST_F(ProcessRecords, UnregisterFreesOnlyTheFirstMatch) {
    RegisterProcess(10, 11);
    RegisterProcess(10, 12);
    UnregisterProcess(10, 99);
    EXPECT_EQ(CommandSlot(0).uThreadId, 0u);
    EXPECT_EQ(CommandSlot(1).uThreadId, 12u);
    EXPECT_EQ(StatusSlot(1).uThreadId, 12u);
}

TEST_F(ProcessRecords, MatchesOnThreadOrProcessAndTheFirstWins) {
    RegisterProcess(10, 11);
    RegisterProcess(20, 21);
    CommandSlot(0).Command.uStatus = 100;
    CommandSlot(1).Command.uStatus = 200;
    stSharedCommand stCommand{};
    ASSERT_TRUE(ReadCommandRecord(20, 999, 2, nullptr, &stCommand));
    EXPECT_EQ(stCommand.uStatus, 200u);
    ASSERT_TRUE(ReadCommandRecord(999, 11, 2, nullptr, &stCommand));
    EXPECT_EQ(stCommand.uStatus, 100u);
    ASSERT_TRUE(ReadCommandRecord(20, 11, 2, nullptr, &stCommand));
    EXPECT_EQ(stCommand.uStatus, 100u);
    EXPECT_FALSE(ReadCommandRecord(998, 999, 2, nullptr, &stCommand));
    EXPECT_FALSE(ReadCommandRecord(20, 0, 2, nullptr, &stCommand));
}

TEST_F(ProcessRecords, ReadGivesWhatTheMaskAsks) {
    RegisterProcess(10, 11);
    CommandSlot(0).bChanged = 1;
    CommandSlot(0).Command.uStatus = 5;
    u8 bChanged = 7;
    stSharedCommand stCommand{};
    EXPECT_TRUE(ReadCommandRecord(10, 11, g_uRecordChanged, &bChanged, nullptr));
    EXPECT_EQ(bChanged, 1);
    EXPECT_TRUE(ReadCommandRecord(10, 11, g_uRecordCommand, nullptr, &stCommand));
    EXPECT_EQ(stCommand.uStatus, 5u);
}

TEST_F(ProcessRecords, BroadcastReachesOnlyLiveSlotsOfTheCommandTable) {
    RegisterProcess(10, 11);
    RegisterProcess(20, 21);
    UnregisterProcess(10, 11);
    auto pBefore = std::make_unique<stSharedSegment>(Segment());
    WriteCommandRecord(0, 0, 1, Position0(9, 5, 6), 3);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
    EXPECT_EQ(CommandSlot(0).Command.bPos0Changed, 0);
    EXPECT_EQ(CommandSlot(1).bChanged, 1);
    EXPECT_EQ(CommandSlot(1).Command.uPos0Y, 6u);
    for (u32 u = 2; u < g_uProcessRecordCount; ++u)
        EXPECT_TRUE(SameBytes(&CommandSlot(u), &pBefore->CommandTable[u], sizeof(stProcessRecord)));
    EXPECT_TRUE(SameBytes(Segment().StatusTable, pBefore->StatusTable, sizeof pBefore->StatusTable));
}

TEST_F(ProcessRecords, TheHundredAndFirstProcessHasNoSlot) {
    for (u32 u = 1; u <= 101; ++u) RegisterProcess(1000 + u, 5000 + u);
    stSharedCommand stStatus{};
    stStatus.fFrameTime = 4.0f;
    Segment().bEnableQueryFrameTime = 1;
    WriteStatusRecord(1100, 5100, stStatus);
    WriteStatusRecord(1101, 5101, stStatus);
    EXPECT_FLOAT_EQ(GetFrameTimeByPID_GL(1100), 4.0f);
    EXPECT_FLOAT_EQ(GetFrameTimeByPID_GL(1101), 0.0f);
    u8 bChanged = 0;
    EXPECT_FALSE(ReadCommandRecord(1101, 5101, 1, &bChanged, nullptr));
    UnregisterProcess(1101, 5101);
    EXPECT_EQ(CommandSlot(99).uThreadId, 5100u);

    UnregisterProcess(1050, 5050);
    RegisterProcess(1101, 5101);
    EXPECT_EQ(CommandSlot(49).uProcessId, 1101u);
    sendCmd_GWDLL_GL(9, 0, 0, 0);
    for (u32 u = 0; u < g_uProcessRecordCount; ++u) EXPECT_EQ(CommandSlot(u).Command.bRebuildUpdate, 1);
}

TEST_F(ProcessRecords, WaitingReleaseIsNotOverwrittenByARebuild) {
    RegisterProcess(10, 11);
    RegisterProcess(20, 21);
    stSharedCommand stRelease{};
    stRelease.bRelease = 1;
    WriteCommandRecord(10, 11, 0, stRelease, 3);
    stSharedCommand stRebuild{};
    stRebuild.bRebuildUpdate = 1;
    WriteCommandRecord(0, 0, 1, stRebuild, 3);
    EXPECT_EQ(CommandSlot(0).Command.bRelease, 1);
    EXPECT_EQ(CommandSlot(0).Command.bRebuildUpdate, 0);
    EXPECT_EQ(CommandSlot(0).bChanged, 1);
    EXPECT_EQ(CommandSlot(1).Command.bRebuildUpdate, 1);
}

TEST_F(ProcessRecords, AnyOtherCommandCancelsAWaitingRelease) {
    RegisterProcess(10, 11);
    stSharedCommand stRelease{};
    stRelease.bRelease = 1;
    WriteCommandRecord(10, 11, 1, stRelease, 3);
    WriteCommandRecord(10, 11, 1, Position0(9, 5, 6), 3);
    EXPECT_EQ(CommandSlot(0).Command.bRelease, 0);
    EXPECT_EQ(CommandSlot(0).Command.bPos0Changed, 1);
}

TEST_F(ProcessRecords, ReleaseCopiesTheWholeBlock) {
    RegisterProcess(10, 11);
    stSharedCommand stRelease{};
    std::memset(static_cast<void*>(&stRelease), 0x5A, sizeof stRelease);
    WriteCommandRecord(10, 11, 1, stRelease, 3);
    EXPECT_TRUE(SameBytes(&CommandSlot(0).Command, &stRelease, sizeof stRelease));
}

TEST_F(ProcessRecords, MergeLeavesTargetsAlone) {
    RegisterProcess(10, 11);
    CommandSlot(0).Command.uTargetPid = 1;
    CommandSlot(0).Command.uTargetTid = 2;
    SetName(CommandSlot(0).Command.wzTargetProfile, u"old");
    stSharedCommand stCommand = Position0(9, 5, 6);
    stCommand.uTargetPid = 8, stCommand.uTargetTid = 9;
    SetName(stCommand.wzTargetProfile, u"new");
    WriteCommandRecord(10, 11, 1, stCommand, 3);
    EXPECT_EQ(CommandSlot(0).Command.uTargetPid, 1u);
    EXPECT_EQ(CommandSlot(0).Command.uTargetTid, 2u);
    EXPECT_EQ(std::u16string(CommandSlot(0).Command.wzTargetProfile), u"old");
}

TEST_F(ProcessRecords, EqualPositionFlagKeepsStoredCoordinates) {
    RegisterProcess(10, 11);
    WriteCommandRecord(10, 11, 1, Position0(9, 5, 6), 3);
    WriteCommandRecord(10, 11, 1, Position0(7, 50, 60), 3);
    EXPECT_EQ(CommandSlot(0).Command.uPos0Align, 9u);
    EXPECT_EQ(CommandSlot(0).Command.uPos0X, 5u);
    EXPECT_EQ(CommandSlot(0).Command.uPos0Y, 6u);
}

TEST_F(ProcessRecords, DifferingFlagsBringTheirValues) {
    stSharedCommand stStored{}, stIncoming{};
    stIncoming.bPos1Changed = 1, stIncoming.uPos1Align = 1, stIncoming.uPos1X = 2, stIncoming.uPos1Y = 3;
    stIncoming.bPos2Changed = 1, stIncoming.uPos2Align = 4, stIncoming.uPos2X = 5, stIncoming.uPos2Y = 6;
    stIncoming.bStatusChanged = 1, stIncoming.uStatus = 7;
    stIncoming.u8Timer = 8, stIncoming.u8Screenshot = 9, stIncoming.bReloadCamera = 10;
    stIncoming.bRebuildUpdate = 11;
    g_fnMergeCommand(stStored, stIncoming);
    EXPECT_TRUE(SameBytes(&stStored, &stIncoming, sizeof stStored));
}

TEST_F(ProcessRecords, StatusValueStaysWhileItsFlagIsEqual) {
    stSharedCommand stStored{}, stIncoming{};
    stStored.uStatus = 3;
    stIncoming.uStatus = 4;
    g_fnMergeCommand(stStored, stIncoming);
    EXPECT_EQ(stStored.uStatus, 3u);
}

TEST_F(ProcessRecords, WriteBackDirectionClearsFlagsAndKeepsChanged) {
    RegisterProcess(10, 11);
    WriteCommandRecord(10, 11, 1, Position0(9, 5, 6), 3);
    stSharedCommand stDone{};
    WriteCommandRecord(10, 11, 0, stDone, 2);
    EXPECT_EQ(CommandSlot(0).bChanged, 1);
    EXPECT_EQ(CommandSlot(0).Command.bPos0Changed, 0);
    EXPECT_EQ(CommandSlot(0).Command.uPos0X, 0u);
    WriteCommandRecord(10, 11, 0, stDone, 1);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
}

TEST_F(ProcessRecords, WriteWithoutMatchDoesNothing) {
    RegisterProcess(10, 11);
    auto pBefore = std::make_unique<stSharedSegment>(Segment());
    WriteCommandRecord(77, 78, 1, Position0(9, 5, 6), 3);
    WriteStatusRecord(77, 78, Position0(9, 5, 6));
    EXPECT_TRUE(SameBytes(&Segment(), pBefore.get(), sizeof(stSharedSegment)));
}

TEST_F(ProcessRecords, StatusReportsCodeAlwaysAndFrameTimeOnRequest) {
    RegisterProcess(10, 11);
    stSharedCommand stStatus{};
    stStatus.uApiCode = 1024, stStatus.fFrameTime = 16.5f, stStatus.uFPS = 60;
    WriteStatusRecord(10, 11, stStatus);
    EXPECT_EQ(StatusSlot(0).Command.uApiCode, 1024u);
    EXPECT_FLOAT_EQ(StatusSlot(0).Command.fFrameTime, 0.0f);
    EnableQueryFrameTime_GL(1);
    WriteStatusRecord(10, 11, stStatus);
    EXPECT_FLOAT_EQ(StatusSlot(0).Command.fFrameTime, 16.5f);
    EXPECT_EQ(StatusSlot(0).Command.uFPS, 0u);
}

TEST_F(ProcessRecords, ClearWritesOnlyTheFieldsItNames) {
    std::memset(Segment().CommandTable, 0xEE, sizeof Segment().CommandTable);
    std::memset(Segment().StatusTable, 0xEE, sizeof Segment().StatusTable);
    g_fnClearRecordTables();
    const stSharedCommand& stCommand = CommandSlot(99).Command;
    EXPECT_EQ(CommandSlot(99).uThreadId | CommandSlot(99).uProcessId | CommandSlot(99).bChanged, 0u);
    EXPECT_EQ(stCommand.wzTargetProfile[0], 0);
    EXPECT_EQ(stCommand.wzTargetProfile[1], 0xEEEE);
    EXPECT_EQ(stCommand.uStatus | stCommand.uPos0Align | stCommand.uPos1X | stCommand.uPos2Y, 0u);
    EXPECT_EQ(stCommand.bRelease | stCommand.bRebuildUpdate | stCommand.u8Timer | stCommand.u8Screenshot, 0);
    EXPECT_EQ(stCommand.uApiCode, 0xEEEEEEEEu);
    EXPECT_EQ(stCommand.uFPS, 0xEEEEEEEEu);
    const stSharedCommand& stStatus = StatusSlot(99).Command;
    EXPECT_EQ(stStatus.uApiCode, 9527u);
    EXPECT_EQ(stStatus.uFPS, 0u);
    EXPECT_FLOAT_EQ(stStatus.fFrameTime, 0.0f);
    EXPECT_EQ(stStatus.bRelease, 0xEE);
    EXPECT_EQ(StatusSlot(99).bChanged, 0xEE);
}

TEST_F(ProcessRecords, FirstAttachClearsOnce) {
    StatusSlot(3).uThreadId = 5;
    g_fnClearOnFirstAttach();
    EXPECT_EQ(Segment().bSegmentReady, 1);
    EXPECT_EQ(StatusSlot(3).uThreadId, 0u);
    StatusSlot(3).uThreadId = 5;
    g_fnClearOnFirstAttach();
    EXPECT_EQ(StatusSlot(3).uThreadId, 5u);
}

TEST_F(ProcessRecords, InitialSharedSegmentDataWipesLiveRecordsAndMessageIds) {
    RegisterProcess(10, 11);
    Segment().bSegmentReady = 1;
    Segment().bGlobalEnable = 0;
    Segment().bReserved = Segment().bEnableQueryFrameTime = 1;
    Segment().uMsgFromGWexe = Segment().uMsgUnhookThread = 0xC001;
    std::memset(static_cast<void*>(&Segment().DefaultCommand), 0xEE, sizeof(stSharedCommand));
    InitialSharedSegmentData_GL();
    EXPECT_EQ(CommandSlot(0).uThreadId, 0u);
    EXPECT_EQ(Segment().bSegmentReady, 0);
    EXPECT_EQ(Segment().bGlobalEnable, 1);
    EXPECT_EQ(Segment().bReserved | Segment().bEnableQueryFrameTime, 0);
    EXPECT_EQ(Segment().uMsgFromGWexe | Segment().uMsgUnhookThread, 0u);
    stSharedCommand stExpected{};
    stExpected.bRelease = 1;
    stExpected.uPos0Align = stExpected.uPos1Align = stExpected.uPos2Align = 1;
    EXPECT_TRUE(SameBytes(&Segment().DefaultCommand, &stExpected, sizeof stExpected));
}

TEST_F(ProcessRecords, DropFreesEveryRecordOfAProcess) {
    RegisterProcess(10, 11);
    RegisterProcess(20, 21);
    RegisterProcess(10, 12);
    g_fnDropRecordsOfProcess(10);
    EXPECT_EQ(CommandSlot(0).uThreadId | CommandSlot(2).uThreadId | StatusSlot(0).uThreadId, 0u);
    EXPECT_EQ(CommandSlot(1).uThreadId, 21u);
}

TEST_F(ProfileSelection, GlobalNameUnlessTheProcessHasItsOwn) {
    SetName(Segment().wzGlobalProfile, u"Global");
    g_fnSelectProfileName();
    EXPECT_EQ(std::u16string(g_wzProfileName), u"Global");
    EXPECT_EQ(std::u16string(g_wzProfileFolder), u"Profiles\\Global");

    Segment().ProcessProfile[150].uProcessId = c_uPid;
    SetName(Segment().ProcessProfile[150].wzProfileName, u"Own");
    g_fnSelectProfileName();
    EXPECT_EQ(std::u16string(g_wzProfileName), u"Own");
    EXPECT_EQ(std::u16string(g_wzProfileFolder), u"Profiles\\Own");
}

TEST_F(ProfileSelection, FirstRecordOfProcessOrThreadDecides) {
    SetName(Segment().wzGlobalProfile, u"Global");
    Segment().ProcessProfile[4].uThreadId = c_uTid;
    Segment().ProcessProfile[4].bUseGlobal = 1;
    SetName(Segment().ProcessProfile[4].wzProfileName, u"Unused");
    Segment().ProcessProfile[5].uProcessId = c_uPid;
    SetName(Segment().ProcessProfile[5].wzProfileName, u"Later");
    g_fnSelectProfileName();
    EXPECT_EQ(std::u16string(g_wzProfileName), u"Global");
}

/// As the library has it when it is loaded: taken before any test runs.
static const std::u16string s_strNameAtStart = g_wzProfileName, s_strFolderAtStart = g_wzProfileFolder;

TEST_F(ProfileSelection, BeforeTheFirstLoadTheProfileIsTheDefaultOne) {
    EXPECT_EQ(s_strNameAtStart, u"Default");
    EXPECT_EQ(s_strFolderAtStart, u"Profiles\\Default");
}

TEST_F(ProfileSelection, EmptyNameBecomesDefault) {
    g_fnSelectProfileName();
    EXPECT_EQ(std::u16string(g_wzProfileName), u"Default");
    EXPECT_EQ(std::u16string(g_wzProfileFolder), u"Profiles\\Default");
}

TEST_F(ProfileSelection, NameEndsAtItsField) {
    std::fill(std::begin(Segment().wzGlobalProfile), std::end(Segment().wzGlobalProfile), u'x');
    g_fnSelectProfileName();
    EXPECT_EQ(std::u16string(g_wzProfileName), std::u16string(g_uProfileNameUnits - 1, u'x'));
    EXPECT_EQ(std::u16string(g_wzProfileFolder),
              u"Profiles\\" + std::u16string(g_uProfileNameUnits - 1, u'x'));
}

TEST_F(ProfileSelection, NameThatIsNoPlainFolderNameDoesNotExist) {
    for (const char16_t* wzName :
         {u"..", u".", u"a\\b", u"a/b", u"..\\..\\x", u"C:", u"a\nb", u"a\x7F", u"*", u" ", u". ."}) {
        SetName(Segment().wzGlobalProfile, wzName);
        g_fnSelectProfileName();
        EXPECT_EQ(std::u16string(g_wzProfileFolder), u"");
    }
    for (const char16_t* wzName : {u"My profile", u"v1.2", u"\u4E2D\u6587", u"..a"}) {
        SetName(Segment().wzGlobalProfile, wzName);
        g_fnSelectProfileName();
        EXPECT_EQ(std::u16string(g_wzProfileFolder), u"Profiles\\" + std::u16string(wzName));
    }
}
