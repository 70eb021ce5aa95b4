#include "entry/console.h"
#include "entry/exclusion_table.h"
#include "entry/exports.h"
#include "tests/support/headless/shared_fixture.h"
#include <cstring>
#include <memory>
#include <sstream>

class Exports : public SharedTest {
  protected:
    void SetUp() override {
        SharedTest::SetUp();
        RegisterProcess(c_uPid, c_uTid);
    }
    static const stSharedCommand& Sent() { return CommandSlot(0).Command; }
};
class Exclusion : public SharedTest {};

TEST_F(Exports, DisablingAnswersFailureYetWorks) {
    EXPECT_EQ(sendCmd_GWDLL_GL(0, 0, 0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(Segment().bGlobalEnable, 0);
    EXPECT_EQ(sendCmd_GWDLL_GL(0, 0, 0, 5), 0u);
    EXPECT_EQ(Segment().bGlobalEnable, 1);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
}

TEST_F(Exports, EnablingTestsAllBitsOfTheArgument) {
    EXPECT_EQ(sendCmd_GWDLL_GL(0, 0, 0, i64{1} << 40), 0u);
    EXPECT_EQ(Segment().bGlobalEnable, 1);
}

TEST_F(Exports, UnknownAndUnusedCommandsFailWithoutARecord) {
    for (const u32 uCommand : {2u, 8u, 10u, 11u, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(sendCmd_GWDLL_GL(uCommand, 0, 0, 1), 0xFFFFFFFFu);
    EXPECT_EQ(sendCmd_GWDLL_GL(1, 0, 0, 1), 0u);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
}

TEST_F(Exports, ReleaseCarriesTheFilter) {
    stMonitorFilter stFilter{};
    stFilter.uProcessId = 5, stFilter.uThreadId = 6;
    SetName(stFilter.wzProfileName, u"Racing");
    SetMonitorFilterDataFromGWexeToGWDll_GL(&stFilter);
    EXPECT_EQ(sendCmd_GWDLL_GL(3, 0, 0, 0), 0u);
    EXPECT_EQ(CommandSlot(0).bChanged, 1);
    EXPECT_EQ(Sent().bRelease, 1);
    EXPECT_EQ(Sent().uTargetPid, 5u);
    EXPECT_EQ(Sent().uTargetTid, 6u);
    EXPECT_EQ(std::u16string(Sent().wzTargetProfile), u"Racing");
}

TEST_F(Exports, LongFilterNameIsCutAndTerminated) {
    stMonitorFilter stFilter{};
    std::fill(std::begin(stFilter.wzProfileName), std::end(stFilter.wzProfileName), u'y');
    SetMonitorFilterDataFromGWexeToGWDll_GL(&stFilter);
    sendCmd_GWDLL_GL(3, 0, 0, 0);
    EXPECT_EQ(std::u16string(Sent().wzTargetProfile), std::u16string(63, u'y'));
}

TEST_F(Exports, CommandSevenReleasesEveryoneAndLeavesTheFilter) {
    stMonitorFilter stFilter{};
    stFilter.uProcessId = 5;
    SetName(stFilter.wzProfileName, u"Racing");
    SetMonitorFilterDataFromGWexeToGWDll_GL(&stFilter);
    EXPECT_EQ(sendCmd_GWDLL_GL(7, 0, 0, 0), 0u);
    stSharedCommand stExpected{};
    stExpected.bRelease = 1;
    EXPECT_EQ(std::memcmp(&Sent(), &stExpected, sizeof stExpected), 0);
    EXPECT_EQ(Segment().MonitorFilter.uProcessId, 5u);
}

TEST_F(Exports, CommandFourWithoutArgumentSendsNothing) {
    EXPECT_EQ(sendCmd_GWDLL_GL(4, 0, 0, 0), 0u);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
}

TEST_F(Exports, CommandFourTakesWordsByBits) {
    u32 auPos[16];
    for (u32 u = 0; u < 16; ++u) auPos[u] = 100 + u;
    SetMonitorPosDataFromGWexeToGWDll_GL(auPos);
    EXPECT_EQ(sendCmd_GWDLL_GL(4, 0, 0, 31), 0u);
    EXPECT_EQ(Sent().bPos0Changed & Sent().bPos1Changed & Sent().bPos2Changed, 1);
    EXPECT_EQ(Sent().uPos0X, 100u);
    EXPECT_EQ(Sent().uPos0Y, 101u);
    EXPECT_EQ(Sent().uPos0Align, 102u);
    EXPECT_EQ(Sent().uPos1X, 103u);
    EXPECT_EQ(Sent().uPos1Align, 105u);
    EXPECT_EQ(Sent().uPos2Y, 107u);
    EXPECT_EQ(Sent().uPos2Align, 108u);
    EXPECT_EQ(Sent().uStatus, 109u);
    EXPECT_EQ(Sent().bStatusChanged, 1);
    EXPECT_EQ(Sent().bReloadCamera, 1);
}

TEST_F(Exports, CommandFourWithHighBitsOnlyWritesABlockWithoutFlags) {
    EXPECT_EQ(sendCmd_GWDLL_GL(4, 0, 0, i64{1} << 33), 0u);
    EXPECT_EQ(CommandSlot(0).bChanged, 1);
    stSharedCommand stExpected{};
    EXPECT_EQ(std::memcmp(&Sent(), &stExpected, sizeof stExpected), 0);
}

TEST_F(Exports, ScreenshotAndTimerCarryTheirBytesEvenZero) {
    const u8 uShot = 3, uTimer = 4, uZero = 0;
    EXPECT_EQ(SetMonitorScreenshotDataFromGWexeToGWDll_GL(&uShot), 3);
    EXPECT_EQ(SetMonitorTimerDataFromGWexeToGWDll_GL(&uTimer), 4);
    sendCmd_GWDLL_GL(5, 0, 0, 0);
    EXPECT_EQ(Sent().u8Screenshot, 3);
    sendCmd_GWDLL_GL(6, 0, 0, 0);
    EXPECT_EQ(Sent().u8Timer, 4);
    EXPECT_EQ(Sent().u8Screenshot, 0);
    CommandSlot(0).bChanged = 0;
    SetMonitorTimerDataFromGWexeToGWDll_GL(&uZero);
    sendCmd_GWDLL_GL(6, 0, 0, 0);
    EXPECT_EQ(CommandSlot(0).bChanged, 1);
    EXPECT_EQ(Sent().u8Timer, 0);
}

TEST_F(Exports, CommandGoesToTheFirstMatchOnly) {
    RegisterProcess(50, 51);
    EXPECT_EQ(sendCmd_GWDLL_GL(9, 50, 51, 0), 0u);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
    EXPECT_EQ(CommandSlot(1).Command.bRebuildUpdate, 1);
    EXPECT_EQ(sendCmd_GWDLL_GL(9, 70, 71, 0), 0u);
    EXPECT_EQ(CommandSlot(0).bChanged, 0);
}

TEST_F(Exports, FrameTimeSkipsMatchesOfZero) {
    RegisterProcess(c_uPid, 1);
    StatusSlot(1).Command.fFrameTime = 7.5f;
    EXPECT_FLOAT_EQ(GetFrameTimeByPID_GL(c_uPid), 7.5f);
    EXPECT_FLOAT_EQ(GetFrameTimeByPID_GL(0), 0.0f);
    EXPECT_FLOAT_EQ(GetFrameTimeByPID_GL(123), 0.0f);
}

TEST_F(Exports, ApiVersionNeverAnswersTheCodeAndArmsTheField) {
    StatusSlot(0).Command.uApiCode = 1024;
    EXPECT_EQ(GetAPIVerByTID_GL(c_uTid), 9527u);
    EXPECT_EQ(StatusSlot(0).Command.uApiCode, 9527u);
    EXPECT_EQ(GetAPIVerByTID_GL(0), 0u);
    EXPECT_EQ(GetAPIVerByTID_GL(77), 0u);
}

TEST_F(Exports, RawDataGoesToTheCurrentBankWithinItsSize) {
    const std::vector<u8> vecData(g_uRawDataBytes + 1, 0x77);
    SetMonitorDataFromGWexeToGWDll_GL(vecData.data(), 16385);
    SetMonitorDataFromGWexeToGWDll_GL(vecData.data(), -1);
    EXPECT_EQ(Segment().RawData[0][0], 0);
    SetMonitorDataFromGWexeToGWDll_GL(vecData.data(), 16384);
    EXPECT_EQ(Segment().RawData[0][16383], 0x77);
    EXPECT_EQ(Segment().RawData[1][0], 0);
    Segment().uDataBank = 0xFFFFFFFF; // above 0 is bank 1
    SetMonitorDataFromGWexeToGWDll_GL(vecData.data(), 1);
    EXPECT_EQ(Segment().RawData[1][0], 0x77);
    EXPECT_EQ(Segment().RawData[1][1], 0);
}

TEST_F(Exports, OffsetSetterWritesTheOtherBankAndFlipsEvenWhenTheDataIsRefused) {
    const std::vector<u8> vecData(g_uRawDataBytes + 1, 0x77);
    SetMonitorDataOffsetFromGWexeToGWDll_GL({}, vecData.data(), 16384);
    EXPECT_EQ(Segment().uDataBank, 1u);
    EXPECT_EQ(Segment().RawData[1][16383], 0x77);
    EXPECT_EQ(Segment().RawData[0][0], 0);
    SetMonitorDataOffsetFromGWexeToGWDll_GL({}, vecData.data(), 16385);
    EXPECT_EQ(Segment().uDataBank, 0u);
    EXPECT_EQ(Segment().RawData[0][0], 0);
    SetMonitorDataOffsetFromGWexeToGWDll_GL({}, vecData.data(), 4);
    EXPECT_EQ(Segment().uDataBank, 1u);
}

TEST_F(Exports, BlocksAreCopiedWholeAndNullIsIgnored) {
    const std::vector<u8> vecData(sizeof Segment().ProcessProfile, 0x33);
    SetMonitorVGADataFromGWexeToGWDll_GL(vecData.data());
    EXPECT_EQ(Segment().MonitorVGA[18531], 0x33);
    EXPECT_EQ(Segment().aPad5[0], 0);
    SetProcessID2ProfileNameFromGWexeToGWDll_GL(vecData.data());
    EXPECT_EQ(Segment().ProcessProfile[199].bUseGlobal, 0x33333333u);
    SetOSDGlobalProfileNameFromGWexeToGWDll_GL(reinterpret_cast<const char16_t*>(vecData.data()));
    EXPECT_EQ(Segment().wzGlobalProfile[511], 0x3333);
    EXPECT_EQ(Segment().RawData[0][0], 0);
    SetProcessID2ProfileNameFromGWexeToGWDll_GL(nullptr);
    SetOSDGlobalProfileNameFromGWexeToGWDll_GL(nullptr);
    EXPECT_EQ(Segment().wzGlobalProfile[0], 0x3333);
}

TEST_F(Exports, QueryFrameTimeWritesTheByteItGets) {
    EnableQueryFrameTime_GL(200);
    EXPECT_EQ(Segment().bEnableQueryFrameTime, 200);
}

TEST_F(Exports, SmallExportsAnswerZero) {
    EXPECT_EQ(SetTavoDataToGWDll(), 0);
    EXPECT_EQ(GetTavoDataToGWDll(nullptr), 0);
    EXPECT_EQ(GetTavoDataToGWDll(""), 0);
    EXPECT_EQ(GetDataFullNamesFromProfile_GL(nullptr, nullptr), 0);
    CGWDll a, b;
    EXPECT_EQ(&(a = b), &a);
    EXPECT_EQ(&(a = CGWDll()), &a);
}

TEST_F(Exports, ReportOnePrintsTheExclusionTableInColour) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(GetTavoDataToGWDll("1"), 0);
    const std::string str = testing::internal::GetCapturedStdout();
    EXPECT_EQ(str.rfind("\033[38;2;255;255;255;24m\033[48;2;0;0;0;24m[0]: 3DMark.exe\n", 0), 0u);
    EXPECT_NE(str.find("\n[411]: zplayer.exe\n"), std::string::npos);
    std::istringstream stream(str);
    u32 uLines = 0;
    for (std::string strLine; std::getline(stream, strLine);) ++uLines;
    EXPECT_EQ(uLines, 488u);
    EXPECT_NE(str.find("\n[487]: "), std::string::npos);
}

TEST_F(Exclusion, EveryRowIsAnImageNameWithALeadingBackslash) {
    for (u32 u = 0; u < g_uExclusionRowCount; ++u) {
        ASSERT_NE(g_aszExclusionTable[u], nullptr);
        EXPECT_EQ(g_aszExclusionTable[u][0], '\\');
        EXPECT_GT(std::strlen(g_aszExclusionTable[u]), 4u);
    }
    EXPECT_STREQ(g_aszExclusionTable[0], "\\3DMark.exe");
    EXPECT_STREQ(g_aszExclusionTable[411], "\\zplayer.exe");
    EXPECT_STREQ(g_aszExclusionTable[412], "\\orvin-osd.exe");
}
