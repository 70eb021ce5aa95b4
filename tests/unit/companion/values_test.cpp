#include "companion/commands.h"
#include "companion/options.h"
#include "companion/top.h"
#include "companion/values.h"
#include "entry/exports.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>

using namespace companion;
using Words = std::vector<std::string>;

namespace {

Options Accepted(Words listWords) {
    const Parsed st = ParseArguments(std::move(listWords));
    EXPECT_FALSE(st.bLeave) << st.strText;
    return st.stOptions;
}

std::string Refused(Words listWords) {
    const Parsed st = ParseArguments(std::move(listWords));
    EXPECT_TRUE(st.bLeave);
    EXPECT_EQ(st.iExitCode, 2);
    EXPECT_EQ(st.strText.find('\n'), std::string::npos);
    return st.strText;
}

std::vector<u8> g_listSwitches; ///< what the report of frame times was set to

/// The library's exports as this program has them itself, over a segment in memory.
class CompanionOverSegment : public ::testing::Test {
  protected:
    void SetUp() override {
        platform::headless::ResetAll();
        g_listSwitches.clear();
    }
    void TearDown() override { platform::headless::ResetAll(); }

    static ControlLibrary Library() {
        ControlLibrary st;
        st.fnEnableQueryFrameTime = [](u8 b) { g_listSwitches.push_back(b), EnableQueryFrameTime_GL(b); };
        st.fnSendCommand = sendCmd_GWDLL_GL;
        st.fnSetFilter = SetMonitorFilterDataFromGWexeToGWDll_GL;
        st.fnSetData = SetMonitorDataFromGWexeToGWDll_GL;
        st.fnSetOffsets = SetMonitorDataOffsetFromGWexeToGWDll_GL;
        st.fnRearmApiCode = GetAPIVerByTID_GL;
        st.pSegment = platform::SharedSegment();
        return st;
    }
    static Options Once() {
        Options st;
        st.bOnce = true;
        st.uInterval = 50;
        return st;
    }
    static std::string WatchOnce() {
        ::testing::internal::CaptureStdout();
        Watch(Library(), Once());
        return ::testing::internal::GetCapturedStdout();
    }
};

StatusRow Row(const std::string& strName, u32 uPid, u32 uApiCode, f32 fFrameTime) {
    StatusRow st;
    st.stProcess.bExists = true;
    st.stProcess.strName = strName;
    st.stInstance.uProcessId = uPid;
    st.stInstance.uApiCode = uApiCode;
    st.stInstance.fFrameTime = fFrameTime;
    return st;
}

} // namespace

TEST(CompanionOptions, FeedAndItsInterval) {
    Options st = Accepted({"feed"});
    EXPECT_EQ(st.eVerb, Verb::Feed);
    EXPECT_EQ(st.uInterval, 0u);
    EXPECT_FALSE(st.bOnce);
    st = Accepted({"feed", "--interval", "50", "--once", "--library", "x"});
    EXPECT_EQ(st.uInterval, 50u);
    EXPECT_TRUE(st.bOnce);
    EXPECT_EQ(st.strLibrary, "x");
    EXPECT_EQ(Accepted({"feed", "--interval", "60000"}).uInterval, 60000u);
    for (const char* szBad : {"49", "60001", "-1", "x", "", "1.5", "99999999999"})
        Refused({"feed", "--interval", szBad});
    Refused({"feed", "now"});
}

TEST(CompanionOptions, SensorsAndNames) {
    EXPECT_EQ(Accepted({"sensors"}).eVerb, Verb::Sensors);
    EXPECT_TRUE(Accepted({"sensors", "--json"}).bJson);
    EXPECT_EQ(Accepted({"names"}).eVerb, Verb::Names);
    EXPECT_TRUE(Accepted({"names", "--json"}).bJson);
    Refused({"sensors", "--interval", "500"});
}

TEST(CompanionOptions, SetTakesANameAndAWholeNumber) {
    const Options st = Accepted({"set", "GPU_CLK#0", "-12"});
    EXPECT_EQ(st.eVerb, Verb::Set);
    EXPECT_EQ(st.strTarget, "GPU_CLK#0");
    EXPECT_EQ(st.iValue, -12);
    EXPECT_EQ(Accepted({"set", "A", "2147483647"}).iValue, std::numeric_limits<i32>::max());
    EXPECT_EQ(Accepted({"set", "A", "-2147483648"}).iValue, std::numeric_limits<i32>::min());
    for (const char* szBad : {"2147483648", "-2147483649", "1.5", "x", ""}) Refused({"set", "A", szBad});
    Refused({"set"});
    Refused({"set", "A"});
    Refused({"set", "A", "1", "2"});
}

TEST(CompanionOptions, SetRefusesNamesThatNobodyWouldFind) {
    EXPECT_EQ(Refused({"set", "FPS", "1"}), "set: the name FPS is measured by the overlay itself");
    EXPECT_EQ(Refused({"set", "", "1"}), "set: the name  is empty");
    EXPECT_EQ(Refused({"set", "a b", "1"}), "set: the name a b must be printable ASCII without blanks");
    Refused({"set", std::string(256, 'x'), "1"});
}

TEST(CompanionOptions, TopOnceOrByInterval) {
    EXPECT_EQ(Accepted({"top"}).eVerb, Verb::Top);
    EXPECT_TRUE(Accepted({"top", "--once", "--interval", "200"}).bOnce);
    EXPECT_EQ(Accepted({"top", "--interval", "200"}).uInterval, 200u);
    Refused({"top", "--interval", "0"});
}

TEST(CompanionCommands, ValueCommandsNeedTheLibraryButSensorsDoNot) {
    for (const Words& listWords :
         {Words{"feed", "--once"}, Words{"names"}, Words{"set", "A", "1"}, Words{"top", "--once"}}) {
        Words listAll = listWords;
        listAll.insert(listAll.end(), {"--library", "no/such/library"});
        EXPECT_EQ(Main(listAll), 3) << listWords[0];
    }
    EXPECT_EQ(Main({"sensors", "--library", "no/such/library"}), 0);
    EXPECT_EQ(Main({"sensors", "--json"}), 0);
}

TEST(CompanionTables, SensorsShowMissingValuesAsDashes) {
    const std::vector<sensors::Reading> listReadings{{"GPU_CLK#0", "MHz", "NVML, Card", 1905},
                                                     {"GPU_TEMP#0", "C", "x", {}}};
    EXPECT_EQ(SensorTable(listReadings), "NAME        VALUE  UNIT  SOURCE\n"
                                         "GPU_CLK#0    1905  MHz   NVML, Card\n"
                                         "GPU_TEMP#0      -  C     x\n");
    const auto js = nlohmann::json::parse(SensorJson(listReadings));
    EXPECT_EQ(js[0]["value"], 1905);
    EXPECT_TRUE(js[1]["value"].is_null());
    EXPECT_EQ(js[1]["unit"], "C");
}

TEST(CompanionTables, NamesAreTheOverlaysElevenAndThePublishedOnes) {
    const std::vector<sensors::PublishedValue> listPublished{{"CPU_CLK#0", 0, 3600, true, true},
                                                             {"FA?", 16381, 0, false, false}};
    const std::string strTable = NameTable(listPublished);
    EXPECT_EQ(std::count(strTable.begin(), strTable.end(), '\n'), 1 + 11 + 2);
    EXPECT_NE(strTable.find("FRAME_TIME      -  each program\n"), std::string::npos);
    EXPECT_NE(strTable.find("CPU_CLK#0    3600  published\n"), std::string::npos);
    EXPECT_NE(strTable.find("FA?             -  published\n"), std::string::npos);
    const auto js = nlohmann::json::parse(NameJson(listPublished));
    ASSERT_EQ(js.size(), 13u);
    EXPECT_EQ(js[0]["name"], "FPS");
    EXPECT_EQ(js[0]["published"], false);
    EXPECT_EQ(js[11]["value"], 3600);
    EXPECT_TRUE(js[12]["value"].is_null());
}

TEST(CompanionTop, RatesOfFrameTimes) {
    EXPECT_EQ(RateText(16.6667f), "60.0");
    EXPECT_EQ(RateText(1000.0f), "1.0");
    EXPECT_EQ(RateText(0.5f), "2000.0");
    for (const f32 fBad :
         {0.0f, -1.0f, 1.0e8f, std::numeric_limits<f32>::infinity(), std::numeric_limits<f32>::quiet_NaN()})
        EXPECT_EQ(RateText(fBad), "-");
}

TEST(CompanionTop, OnlyProgramsWithFramesShowTimes) {
    EXPECT_EQ(TopTable({Row("game.exe", 41, 1024, 20.0f), Row("idle", 7, 9527, 16.0f),
                        Row("", 8, 1024, 16.0f), Row("young", 9, 1024, 0.0f)}),
              "PROCESS   PID  API     FRAME MS   FPS\n"
              "game.exe   41  OpenGL     20.00  50.0\n"
              "idle        7  -              -     -\n"
              "?           8  OpenGL     16.00  62.5\n"
              "young       9  OpenGL         -     -\n");
}

TEST_F(CompanionOverSegment, TopTurnsTheReportOnAndBackToWhatItWas) {
    WatchOnce();
    EXPECT_EQ(g_listSwitches, (std::vector<u8>{1, 0}));
    g_listSwitches.clear();
    platform::SharedSegment()->bEnableQueryFrameTime = 1;
    WatchOnce();
    EXPECT_EQ(g_listSwitches, (std::vector<u8>{1, 1}));
}

TEST_F(CompanionOverSegment, TopWithoutPrograms) {
    EXPECT_EQ(WatchOnce(), "PROCESS  PID  API  FRAME MS  FPS\nNo running program carries the overlay.\n");
}

TEST_F(CompanionOverSegment, TopResetsTheCodesSoThatOldTimesAreNotShown) {
    constexpr u32 uGone = 0x7FFFFFF0; // no process has this id
    RegisterProcess(uGone, 42);
    stProcessRecord& stRecord = platform::SharedSegment()->StatusTable[0];
    stRecord.Command.uApiCode = 1024;
    stRecord.Command.fFrameTime = 16.0f;
    EXPECT_NE(WatchOnce().find("No running program"),
              std::string::npos); // a record left behind is no program
    EXPECT_EQ(stRecord.Command.uApiCode, 9527u);
}

TEST_F(CompanionOverSegment, FeedOnceLeavesThisMachinesValues) {
    ::testing::internal::CaptureStdout();
    EXPECT_TRUE(Feed(Library(), Once()));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    const auto listPublished = sensors::ReadPublished(*platform::SharedSegment());
    const auto it =
        std::find_if(listPublished.begin(), listPublished.end(),
                     [](const sensors::PublishedValue& st) { return st.strName == "RAM_USAGE_MB#0"; });
    ASSERT_NE(it, listPublished.end());
    EXPECT_TRUE(it->bWhole);
    EXPECT_GT(it->iValue, 0);
}

TEST_F(CompanionOverSegment, NamesAreReadFromTheSegment) {
    SetValue(sensors::TargetOf(Library()), "GPU_CLK#0", 1905);
    ::testing::internal::CaptureStdout();
    PrintNames(Library(), {});
    EXPECT_NE(::testing::internal::GetCapturedStdout().find("GPU_CLK#0    1905  published\n"),
              std::string::npos);
}
