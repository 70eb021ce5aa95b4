#include "companion/reports.h"
#include "companion/segment_json.h"
#include "companion/segment_view.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>

using namespace companion;

namespace {

std::unique_ptr<stSharedSegment> InitialSegment() {
    auto pSegment = std::make_unique<stSharedSegment>();
    g_fnApplyInitialImage(*pSegment);
    return pSegment;
}

void Register(stProcessRecord& stRecord, u32 uPid, u32 uTid) {
    stRecord.uProcessId = uPid;
    stRecord.uThreadId = uTid;
}

/// A segment as after one attached program, its record in different slots of the two tables.
std::unique_ptr<stSharedSegment> OneProgram() {
    auto pSegment = InitialSegment();
    Register(pSegment->CommandTable[2], 41, 42);
    pSegment->CommandTable[2].bChanged = 1;
    pSegment->CommandTable[2].Command.bRelease = 1;
    Register(pSegment->StatusTable[5], 41, 42);
    pSegment->StatusTable[5].Command.uApiCode = 1024;
    pSegment->StatusTable[5].Command.fFrameTime = 16.5f;
    return pSegment;
}

nlohmann::ordered_json Dump(const stSharedSegment& stSegment, DumpOptions stOptions = {}) {
    return nlohmann::ordered_json::parse(JsonToText(SegmentToJson(stSegment, stOptions)));
}

} // namespace

TEST(CompanionSegment, InitialImageDecoded) {
    const auto js = Dump(*InitialSegment());
    EXPECT_EQ(js["bGlobalEnable"], 1);
    EXPECT_EQ(js["bSegmentReady"], 0);
    EXPECT_EQ(js["DefaultCommand"]["bRelease"], 1);
    EXPECT_EQ(js["DefaultCommand"]["Pos2"]["uAlign"], 1);
    EXPECT_TRUE(js["CommandTable"].empty());
    EXPECT_TRUE(js["ProcessProfile"].empty());
    EXPECT_EQ(js["MonitorPos"].size(), 16u);
}

TEST(CompanionSegment, RecordsKeepTheirSlots) {
    const auto js = Dump(*OneProgram());
    ASSERT_EQ(js["CommandTable"].size(), 1u);
    EXPECT_EQ(js["CommandTable"][0]["slot"], 2);
    EXPECT_EQ(js["CommandTable"][0]["uThreadId"], 42);
    EXPECT_EQ(js["CommandTable"][0]["Command"]["bRelease"], 1);
    EXPECT_EQ(js["StatusTable"][0]["slot"], 5);
    EXPECT_FLOAT_EQ(js["StatusTable"][0]["Command"]["fFrameTime"].get<f32>(), 16.5f);
}

TEST(CompanionSegment, AllSlotsOnDemand) {
    const auto js = Dump(*InitialSegment(), {true, false});
    EXPECT_EQ(js["CommandTable"].size(), 100u);
    EXPECT_EQ(js["StatusTable"].size(), 100u);
    EXPECT_EQ(js["ProcessProfile"].size(), 200u);
}

TEST(CompanionSegment, EveryFieldOfACommandIsShown) {
    auto pSegment = OneProgram();
    stSharedCommand& st = pSegment->CommandTable[2].Command;
    st.uTargetPid = 1, st.uTargetTid = 2, st.uStatus = 3, st.bStatusChanged = 4;
    std::copy_n(u"Prof", 4, st.wzTargetProfile);
    st.bPos0Changed = 5, st.uPos0Align = 6, st.uPos0X = 7, st.uPos0Y = 8;
    st.bPos1Changed = 9, st.uPos1Align = 10, st.uPos1X = 11, st.uPos1Y = 12;
    st.bPos2Changed = 13, st.uPos2Align = 14, st.uPos2X = 15, st.uPos2Y = 16;
    st.u8Screenshot = 17, st.bReloadCamera = 18, st.u8Timer = 19, st.uFPS = 20, st.bRebuildUpdate = 21;
    const auto js = Dump(*pSegment)["CommandTable"][0]["Command"];
    const auto jsExpected =
        nlohmann::ordered_json::parse(R"({"uTargetPid":1,"uTargetTid":2,"wzTargetProfile":"Prof",
        "bRelease":1,"uStatus":3,"bStatusChanged":4,"Pos0":{"bChanged":5,"uAlign":6,"uX":7,"uY":8},
        "Pos1":{"bChanged":9,"uAlign":10,"uX":11,"uY":12},"Pos2":{"bChanged":13,"uAlign":14,"uX":15,"uY":16},
        "u8Screenshot":17,"bReloadCamera":18,"u8Timer":19,"uFPS":20,"fFrameTime":0.0,"uApiCode":0,
        "bRebuildUpdate":21})");
    EXPECT_EQ(js, jsExpected);
}

TEST(CompanionSegment, AreasByUseChecksumAndBytes) {
    auto pSegment = InitialSegment();
    std::memcpy(pSegment->RawData[1], "123456789", 9);
    const auto js = Dump(*pSegment, {false, true});
    EXPECT_EQ(js["RawData"][0]["used"], 0);
    EXPECT_EQ(js["RawData"][1]["used"], 9);
    EXPECT_EQ(js["RawData"][1]["bytes"], 16384);
    EXPECT_EQ(js["RawData"][1]["hex"], "313233343536373839");
    EXPECT_FALSE(Dump(*pSegment)["RawData"][1].contains("hex"));
    EXPECT_NE(js["RawData"][0]["crc32"], js["RawData"][1]["crc32"]);
    EXPECT_EQ(js["DataTable"][1]["bytes"], 0x40000);
    EXPECT_EQ(js["MonitorVGA"]["bytes"], 18532);
}

TEST(CompanionSegment, NamesWithoutTerminatorEndAtTheirField) {
    auto pSegment = OneProgram();
    std::fill(std::begin(pSegment->wzGlobalProfile), std::end(pSegment->wzGlobalProfile), u'G');
    std::fill(std::begin(pSegment->MonitorFilter.wzProfileName),
              std::end(pSegment->MonitorFilter.wzProfileName), u'F');
    stSharedCommand& stCommand = pSegment->CommandTable[2].Command;
    std::fill(std::begin(stCommand.wzTargetProfile), std::end(stCommand.wzTargetProfile), u'T');
    const auto js = Dump(*pSegment);
    EXPECT_EQ(js["wzGlobalProfile"], std::string(512, 'G'));
    EXPECT_EQ(js["MonitorFilter"]["wzProfileName"], std::string(512, 'F'));
    EXPECT_EQ(js["CommandTable"][0]["Command"]["wzTargetProfile"], std::string(64, 'T'));
}

TEST(CompanionSegment, NumbersThatJsonCannotHoldAreNull) {
    auto pSegment = OneProgram();
    pSegment->StatusTable[5].Command.fFrameTime = std::nanf("");
    EXPECT_TRUE(Dump(*pSegment)["StatusTable"][0]["Command"]["fFrameTime"].is_null());
    pSegment->StatusTable[5].Command.fFrameTime = INFINITY;
    EXPECT_TRUE(Dump(*pSegment)["StatusTable"][0]["Command"]["fFrameTime"].is_null());
}

TEST(CompanionSegment, RandomBytesGiveValidJsonAndPlainText) {
    auto pSegment = std::make_unique<stSharedSegment>();
    std::mt19937 random(7);
    for (int iRound = 0; iRound < 3; ++iRound) {
        auto* pBytes = reinterpret_cast<u8*>(pSegment.get());
        for (size_t i = 0; i < sizeof(*pSegment); ++i)
            pBytes[i] = static_cast<u8>(iRound == 0 ? 0xFF : random());
        const auto jsTree = SegmentToJson(*pSegment, {true, true});
        EXPECT_TRUE(nlohmann::json::accept(JsonToText(jsTree)));
        const std::string strText = TreeToText(jsTree);
        EXPECT_TRUE(std::none_of(strText.begin(), strText.end(),
                                 [](char c) { return static_cast<u8>(c) < 32 && c != '\n'; }));
        EXPECT_LE(Instances(*pSegment).size(), 200u);
        EXPECT_NO_THROW(StatusTable({{Instances(*pSegment)[0], {}}}, true));
    }
}

TEST(CompanionSegment, TextIsAnIndentedTree) {
    const std::string strText = TreeToText(SegmentToJson(*OneProgram(), {}));
    EXPECT_NE(strText.find("bGlobalEnable: 1\n"), std::string::npos);
    EXPECT_NE(strText.find("CommandTable:\n  [0]\n    slot: 2\n    uThreadId: 42\n"), std::string::npos);
    EXPECT_NE(strText.find("MonitorPos:\n  0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n"), std::string::npos);
    EXPECT_NE(strText.find("ProcessProfile: none\n"), std::string::npos);
}

TEST(CompanionSegment, InstancesJoinBothTables) {
    auto pSegment = OneProgram();
    Register(pSegment->CommandTable[0], 77, 78); // found no status slot
    Register(pSegment->StatusTable[6], 41, 43);  // the same process twice
    const auto listInstances = Instances(*pSegment);
    ASSERT_EQ(listInstances.size(), 2u);
    EXPECT_EQ(listInstances[0].uProcessId, 41u);
    EXPECT_EQ(listInstances[0].uCommandSlot, 2u);
    EXPECT_EQ(listInstances[0].uStatusSlot, 5u);
    EXPECT_TRUE(listInstances[0].bCommandWaiting);
    EXPECT_EQ(listInstances[0].uApiCode, 1024u);
    EXPECT_EQ(listInstances[1].uProcessId, 77u);
    EXPECT_FALSE(listInstances[1].uStatusSlot);
    EXPECT_EQ(listInstances[1].uApiCode, 9527u);
}

TEST(CompanionSegment, FreedRecordsAreNotInstances) {
    auto pSegment = OneProgram();
    pSegment->CommandTable[2].uThreadId = 0;
    pSegment->StatusTable[5].uThreadId = 0;
    EXPECT_TRUE(Instances(*pSegment).empty());
    EXPECT_FALSE(FindRecord(pSegment->CommandTable, 41));
    EXPECT_FALSE(FindRecord(pSegment->CommandTable, 0));
}

TEST(CompanionSegment, FullTablesAreSeen) {
    auto pSegment = InitialSegment();
    for (u32 i = 0; i < g_uProcessRecordCount; ++i) Register(pSegment->CommandTable[i], 100 + i, 500 + i);
    EXPECT_TRUE(IsFull(pSegment->CommandTable));
    EXPECT_EQ(LiveCount(pSegment->CommandTable), 100u);
    EXPECT_FALSE(IsFull(pSegment->StatusTable));
    Evidence stEvidence;
    AddSegmentEvidence(*pSegment, 9, stEvidence);
    EXPECT_TRUE(stEvidence.bTablesFull);
    EXPECT_FALSE(stEvidence.bCommandRecord);
}

TEST(CompanionSegment, EvidenceOfOneProgram) {
    auto pSegment = OneProgram();
    pSegment->bEnableQueryFrameTime = 1;
    Evidence st;
    AddSegmentEvidence(*pSegment, 41, st);
    EXPECT_TRUE(st.bCommandRecord && st.bStatusRecord && st.bCommandWaiting && st.bGlobalEnable &&
                st.bQueryFrameTime);
    EXPECT_EQ(st.uApiCode, 1024u);
    EXPECT_FLOAT_EQ(st.fFrameTime, 16.5f);
}

TEST(CompanionSegment, SnapshotIsACopy) {
    auto pSegment = OneProgram();
    const auto pCopy = Snapshot(pSegment.get());
    pSegment->bGlobalEnable = 0;
    EXPECT_EQ(pCopy->bGlobalEnable, 1);
    EXPECT_EQ(pCopy->StatusTable[5].Command.uApiCode, 1024u);
}

TEST(CompanionSegment, FrameTimesThatMakeNoSenseAreDashes) {
    EXPECT_EQ(FrameTimeText(16.666f), "16.67");
    for (const f32 fBad : {0.0f, -1.0f, 1e30f, INFINITY, -INFINITY, std::nanf("")})
        EXPECT_EQ(FrameTimeText(fBad), "-");
}

TEST(CompanionReports, StatusTableOfProgramAndStaleRecord) {
    Instance stLive{41, 42, 2, 5, false, 1024, 16.5f}, stStale{50, 51, std::nullopt, 6, false, 9527, 0.0f};
    ProcessFacts stFacts;
    stFacts.bExists = stFacts.bReadable = stFacts.bLibraryMapped = true;
    stFacts.eDetour = Detour::Ours;
    stFacts.strName = "game.exe";
    EXPECT_EQ(StatusTable({{stLive, stFacts}, {stStale, {}}}, true),
              "PROCESS   PID  THREAD  API       FRAME MS  DETOUR  WAITING\n"
              "game.exe   41      42  OpenGL       16.50  laid    no\n"
              "(gone)     50      51  not seen         -  -       no\n");
}

TEST(CompanionReports, FrameTimesAreHiddenWhileNotReported) {
    Instance st{41, 42, 2, 5, false, 1024, 16.5f};
    EXPECT_EQ(StatusTable({{st, {}}}, false).find("16.50"), std::string::npos);
    auto pSegment = OneProgram();
    EXPECT_TRUE(StatusJson({{st, {}}}, *pSegment)["instances"][0]["frameTimeMs"].is_null());
    pSegment->bEnableQueryFrameTime = 1;
    EXPECT_FLOAT_EQ(StatusJson({{st, {}}}, *pSegment)["instances"][0]["frameTimeMs"].get<f32>(), 16.5f);
}

TEST(CompanionReports, ModuleMissingInAProcessThatHoldsARecord) {
    ProcessFacts stFacts;
    stFacts.bExists = stFacts.bReadable = true;
    stFacts.strName = "reused";
    EXPECT_NE(StatusTable({{Instance{}, stFacts}}, false).find("not mapped"), std::string::npos);
}
