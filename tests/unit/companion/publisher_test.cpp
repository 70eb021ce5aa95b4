#include "companion/sensors/collector.h"
#include "companion/sensors/published.h"
#include "companion/sensors/publisher.h"
#include "companion/values.h"
#include "entry/exports.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/monitor_data.h"
#include "shared/process_records.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <random>

using namespace companion;
using namespace companion::sensors;

namespace {

struct Calls {
    int iOffsets = 0, iData = 0, iCommands = 0;
} g_stCalls;

void CountOffsets(const std::map<std::string, u32>& mapOffsets, const void* pData, i32 iSize) {
    ++g_stCalls.iOffsets;
    SetMonitorDataOffsetFromGWexeToGWDll_GL(mapOffsets, pData, iSize);
}

void CountData(const void* pData, i32 iSize) {
    ++g_stCalls.iData;
    SetMonitorDataFromGWexeToGWDll_GL(pData, iSize);
}

u32 CountCommand(u32 uCommand, u32 uPid, u32 uTid, i64 iArgument) {
    ++g_stCalls.iCommands;
    EXPECT_EQ(uCommand, 9u);
    return sendCmd_GWDLL_GL(uCommand, uPid, uTid, iArgument);
}

class PublisherTest : public ::testing::Test {
  protected:
    void SetUp() override {
        platform::headless::ResetAll();
        g_stCalls = {};
    }
    void TearDown() override { platform::headless::ResetAll(); }

    static stSharedSegment& Segment() { return *platform::SharedSegment(); }
    static PublishTarget Target() {
        return {CountOffsets, CountData, SetMonitorFilterDataFromGWexeToGWDll_GL, CountCommand, &Segment()};
    }
    /// Values by name as the companion reads them back; every name must be whole.
    static ValueMap ReadBack() {
        ValueMap mapValues;
        for (const PublishedValue& st : ReadPublished(Segment())) {
            EXPECT_TRUE(st.bWhole && st.bInRoom) << st.strName;
            mapValues[st.strName] = st.iValue;
        }
        return mapValues;
    }
    /// The value as a program finds it.
    static std::optional<i32> Seen(const char* szName) {
        const u32* pData = g_fnGetMonitorDataPtr(szName);
        return pData != nullptr ? std::optional(g_fnReadData(pData)) : std::nullopt;
    }
    static Reading Has(const std::string& strName, std::optional<i32> iValue) {
        return {strName, "", "", iValue};
    }
};

/// Sensors that a test adds and takes away.
class ScriptedSource : public Source {
  public:
    explicit ScriptedSource(const std::map<std::string, std::optional<i32>>& mapSensors)
        : m_mapSensors(mapSensors) {}
    void Probe(Numbers&) override {}
    void List(const Numbers&) override {
        m_listReadings.clear();
        for (const auto& [strName, iValue] : m_mapSensors)
            m_listReadings.push_back({strName, "", "script", {}});
    }
    void Read() override {
        for (Reading& st : m_listReadings) {
            const auto it = m_mapSensors.find(st.strName);
            st.iValue = it != m_mapSensors.end() ? it->second : std::nullopt;
        }
    }

  private:
    const std::map<std::string, std::optional<i32>>& m_mapSensors;
};

} // namespace

TEST_F(PublisherTest, FirstPublicationIsWholeAndTellsEveryProgram) {
    RegisterProcess(41, 42);
    Publisher publisher(Target());
    EXPECT_EQ(publisher.Publish(ValueMap{{"GPU_CLK#0", 1905}, {"CPU_TEMP#0", -3}}),
              Publisher::Outcome::Names);
    EXPECT_EQ(Segment().uDataBank, 1u);
    EXPECT_EQ(Seen("GPU_CLK#0"), 1905);
    EXPECT_EQ(Seen("CPU_TEMP#0"), -3);
    EXPECT_EQ(Seen("GPU_CLK#1"), std::nullopt);
    EXPECT_EQ(g_stCalls.iCommands, 1);
    EXPECT_EQ(Segment().CommandTable[0].bChanged, 1);
    EXPECT_EQ(Segment().CommandTable[0].Command.bRebuildUpdate, 1);
}

TEST_F(PublisherTest, SameNamesAreWrittenInPlace) {
    Publisher publisher(Target());
    publisher.Publish(ValueMap{{"A", 1}, {"B", 2}});
    const u32* pData = g_fnGetMonitorDataPtr("B");
    ASSERT_NE(pData, nullptr);
    EXPECT_EQ(publisher.Publish(ValueMap{{"A", 3}, {"B", 4}}), Publisher::Outcome::Values);
    EXPECT_EQ(g_fnReadData(pData), 4); // the address that a program holds
    EXPECT_EQ(Segment().uDataBank, 1u);
    EXPECT_EQ(g_stCalls.iOffsets, 1);
    EXPECT_EQ(g_stCalls.iData, 1);
    EXPECT_EQ(g_stCalls.iCommands, 1);
    EXPECT_EQ(ReadBack(), (ValueMap{{"A", 3}, {"B", 4}}));
}

TEST_F(PublisherTest, SensorsAppearAndVanish) {
    std::map<std::string, std::optional<i32>> mapSensors{{"CPU_USAGE#0", std::nullopt},
                                                         {"RAM_USAGE_P#0", 40}};
    Sources listSources;
    listSources.push_back(std::make_unique<ScriptedSource>(mapSensors));
    Collector collector(std::move(listSources));
    Publisher publisher(Target());
    const auto fnTick = [&](bool bProbe) {
        if (bProbe) collector.Probe();
        collector.Read();
        return publisher.Publish(collector.Readings());
    };
    EXPECT_EQ(fnTick(true), Publisher::Outcome::Names);
    EXPECT_EQ(ReadBack(), (ValueMap{{"RAM_USAGE_P#0", 40}})); // a load needs a second look: absent, not 0
    mapSensors["CPU_USAGE#0"] = 12;
    EXPECT_EQ(fnTick(false), Publisher::Outcome::Names);
    EXPECT_EQ(fnTick(false), Publisher::Outcome::Values);
    EXPECT_EQ(ReadBack(), (ValueMap{{"CPU_USAGE#0", 12}, {"RAM_USAGE_P#0", 40}}));
    mapSensors["CPU_USAGE#0"] = std::nullopt; // cannot be read this time
    EXPECT_EQ(fnTick(false), Publisher::Outcome::Names);
    EXPECT_EQ(Seen("CPU_USAGE#0"), std::nullopt);
    EXPECT_EQ(Seen("RAM_USAGE_P#0"), 40);
    mapSensors.clear();
    EXPECT_EQ(fnTick(true), Publisher::Outcome::Names);
    EXPECT_TRUE(ReadBack().empty());
    EXPECT_EQ(fnTick(true), Publisher::Outcome::Values); // still nothing
    mapSensors["GPU_CLK#0"] = 300;
    fnTick(true);
    EXPECT_EQ(ReadBack(), (ValueMap{{"GPU_CLK#0", 300}}));
}

TEST_F(PublisherTest, BanksAreUsedInTurn) {
    Publisher publisher(Target());
    publisher.Publish(ValueMap{{"A", 1}});
    EXPECT_EQ(Segment().uDataBank, 1u);
    publisher.Publish(ValueMap{{"B", 2}});
    EXPECT_EQ(Segment().uDataBank, 0u);
    EXPECT_EQ(Seen("A"), std::nullopt);
    EXPECT_EQ(Seen("B"), 2);
    publisher.Publish(ValueMap{});
    EXPECT_EQ(Segment().uDataBank, 1u);
    EXPECT_EQ(Seen("B"), std::nullopt);
}

TEST_F(PublisherTest, OfEqualNamesTheFirstCountsAndUnreadOnesAreLeftOut) {
    Publisher publisher(Target());
    publisher.Publish(
        std::vector<Reading>{Has("A", std::nullopt), Has("A", 1), Has("A", 2), Has("B", std::nullopt)});
    EXPECT_EQ(ReadBack(), (ValueMap{{"A", 1}}));
}

TEST_F(PublisherTest, NamesThatCannotBeFoundAreNotPublished) {
    Publisher publisher(Target());
    publisher.Publish(ValueMap{{"", 1},
                               {"FPS", 2},
                               {"a b", 3},
                               {"\x80", 4},
                               {std::string("a\0b", 3), 5},
                               {std::string(256, 'x'), 6},
                               {std::string(255, 'x'), 7}});
    EXPECT_EQ(ReadBack(), (ValueMap{{std::string(255, 'x'), 7}}));
}

TEST_F(PublisherTest, TheFilterOfAnEarlierCommandDoesNotStopTheNews) {
    RegisterProcess(41, 42);
    stMonitorFilter stFilter{};
    stFilter.uProcessId = 7;
    SetMonitorFilterDataFromGWexeToGWDll_GL(&stFilter);
    Publisher(Target()).Publish(ValueMap{{"A", 1}});
    EXPECT_EQ(Segment().MonitorFilter.uProcessId, 0u);
    EXPECT_EQ(Segment().CommandTable[0].Command.bRebuildUpdate, 1);
}

TEST_F(PublisherTest, CompanionKilledWhileItWroteTheOtherBank) {
    Publisher(Target()).Publish(ValueMap{{"A", 1}, {"B", 2}});
    // Half a tree and half the values in the bank that was to be next, and no flip.
    std::memset(Segment().DataTable[0], 0x5A, 1000);
    std::memset(Segment().RawData[0], 0x5A, 6);
    EXPECT_EQ(Seen("A"), 1);
    Publisher restarted(Target());
    EXPECT_EQ(restarted.Publish(ValueMap{{"A", 3}, {"B", 4}}), Publisher::Outcome::Names);
    EXPECT_EQ(Segment().uDataBank, 0u);
    EXPECT_EQ(ReadBack(), (ValueMap{{"A", 3}, {"B", 4}}));
    EXPECT_EQ(restarted.Publish(ValueMap{{"A", 5}, {"B", 6}}), Publisher::Outcome::Values);
    EXPECT_EQ(Seen("B"), 6);
}

TEST_F(PublisherTest, CompanionKilledBetweenTheFlipAndItsCommand) {
    RegisterProcess(41, 42);
    PublishTarget stTarget = Target();
    stTarget.fnSendCommand = [](u32, u32, u32, i64) -> u32 { return 0; };
    Publisher(stTarget).Publish(ValueMap{{"A", 1}});
    EXPECT_EQ(Segment().CommandTable[0].bChanged, 0);
    Publisher(Target()).Publish(ValueMap{{"A", 1}});
    EXPECT_EQ(Segment().CommandTable[0].Command.bRebuildUpdate, 1);
    EXPECT_EQ(Seen("A"), 1);
}

TEST_F(PublisherTest, CompanionKilledWhileItWroteValues) {
    Publisher(Target()).Publish(ValueMap{{"A", 1}, {"B", 2}});
    const i32 iHalf = 9;
    SetMonitorDataFromGWexeToGWDll_GL(&iHalf, sizeof(iHalf));
    Publisher restarted(Target());
    restarted.Publish(ValueMap{{"A", 10}, {"B", 11}});
    EXPECT_EQ(ReadBack(), (ValueMap{{"A", 10}, {"B", 11}}));
}

TEST_F(PublisherTest, AnotherCompanionsPublicationIsReplacedWhole) {
    Publisher first(Target()), second(Target());
    first.Publish(ValueMap{{"A", 1}, {"C", 3}});
    second.Publish(ValueMap{{"B", 2}, {"C", 4}});
    // Values written at the first one's offsets would now reach the wrong names.
    EXPECT_EQ(first.Publish(ValueMap{{"A", 5}, {"C", 6}}), Publisher::Outcome::Names);
    EXPECT_EQ(ReadBack(), (ValueMap{{"A", 5}, {"C", 6}}));
    EXPECT_EQ(Seen("B"), std::nullopt);
}

TEST_F(PublisherTest, BlockHoldsAtMost4096Values) {
    ValueMap mapValues;
    for (int i = 0; i < 5000; ++i) mapValues["N" + std::to_string(10000 + i)] = i;
    Publisher publisher(Target());
    publisher.Publish(mapValues);
    EXPECT_EQ(publisher.Values().size(), 4096u);
    EXPECT_EQ(Seen("N10000"), 0);
    EXPECT_EQ(Seen("N14095"), 4095); // at offset 16380, the last one
    EXPECT_EQ(Seen("N14096"), std::nullopt);
    EXPECT_EQ(ReadPublished(Segment()).size(), 4096u); // no room for names as text; the tree's own remain
}

TEST_F(PublisherTest, LongNamesNeverOutgrowTheTree) {
    ValueMap mapValues;
    for (int i = 0; i < 4096; ++i) mapValues[std::to_string(10000 + i) + std::string(250, 'x')] = i;
    Publisher publisher(Target());
    publisher.Publish(mapValues);
    const size_t uCount = publisher.Values().size();
    EXPECT_GT(uCount, 800u);
    EXPECT_LT(uCount, 1100u);
    EXPECT_EQ(ReadPublished(Segment()).size(), uCount);
    EXPECT_EQ(Seen(("10000" + std::string(250, 'x')).c_str()), 0);
}

TEST_F(PublisherTest, RandomNameSetsAreReadBackWhole) {
    std::mt19937 random(7);
    for (int iRound = 0; iRound < 200; ++iRound) {
        ValueMap mapValues;
        for (u32 i = random() % 60; i > 0; --i) {
            std::string strName;
            for (u32 c = 1 + random() % 6; c > 0; --c) strName += "AB_?#0"[random() % 6];
            mapValues["X" + strName] = static_cast<i32>(random());
        }
        Publisher(Target()).Publish(mapValues);
        ASSERT_EQ(ReadBack(), mapValues);
        for (const auto& [strName, iValue] : mapValues) ASSERT_EQ(Seen(strName.c_str()), iValue) << strName;
    }
}

TEST_F(PublisherTest, SetKeepsWhatIsPublished) {
    Publisher(Target()).Publish(ValueMap{{"GPU_CLK#0", 1905}, {"GPU_TEMP#0", 60}});
    ASSERT_TRUE(SetValue(Target(), "MINE#0", -5));
    EXPECT_EQ(ReadBack(), (ValueMap{{"GPU_CLK#0", 1905}, {"GPU_TEMP#0", 60}, {"MINE#0", -5}}));
    EXPECT_EQ(Seen("GPU_TEMP#0"), 60);
    EXPECT_EQ(Seen("MINE#0"), -5);
}

TEST_F(PublisherTest, SetOfAPublishedNameIsWrittenInPlace) {
    Publisher(Target()).Publish(ValueMap{{"GPU_CLK#0", 1905}, {"GPU_TEMP#0", 60}});
    g_stCalls = {};
    ASSERT_TRUE(SetValue(Target(), "GPU_CLK#0", 7));
    EXPECT_EQ(g_stCalls.iOffsets, 0);
    EXPECT_EQ(g_stCalls.iCommands, 0);
    EXPECT_EQ(ReadBack(), (ValueMap{{"GPU_CLK#0", 7}, {"GPU_TEMP#0", 60}}));
}

TEST_F(PublisherTest, SetIntoAnEmptySegment) {
    ASSERT_TRUE(SetValue(Target(), "MINE#0", 2147483647));
    EXPECT_EQ(ReadBack(), (ValueMap{{"MINE#0", 2147483647}}));
}

TEST_F(PublisherTest, RunningFeedOverwritesWhatWasSet) {
    Publisher feed(Target());
    feed.Publish(ValueMap{{"GPU_CLK#0", 1}});
    SetValue(Target(), "GPU_CLK#0", 99);
    SetValue(Target(), "MINE#0", 98);
    EXPECT_EQ(Seen("GPU_CLK#0"), 99);
    feed.Publish(ValueMap{{"GPU_CLK#0", 2}});
    EXPECT_EQ(ReadBack(), (ValueMap{{"GPU_CLK#0", 2}}));
}

TEST_F(PublisherTest, SetWithoutRoomFails) {
    ValueMap mapValues;
    for (int i = 0; i < 900; ++i) mapValues["N" + std::to_string(1000 + i)] = i;
    Publisher(Target()).Publish(mapValues);
    ASSERT_TRUE(SetValue(Target(), "Z", 1));
    EXPECT_EQ(ReadBack().size(), 901u);
    mapValues.clear();
    char szName[8];
    for (int i = 0; i < 4096; ++i) std::snprintf(szName, sizeof(szName), "%03X", i), mapValues[szName] = i;
    Publisher(Target()).Publish(mapValues);
    const Result stResult = SetValue(Target(), "zzz", 1);
    EXPECT_EQ(stResult.iCode, kFailed);
}

TEST_F(PublisherTest, NamesOfAnotherPublisherMayLackCharacters) {
    // Published without the text of the names: the tree does not hold the character before the branch.
    const i32 aiValues[] = {1, 2, 3};
    SetMonitorDataOffsetFromGWexeToGWDll_GL({{"TEST1", 0}, {"TEST2", 4}, {"FAR", 16381}}, aiValues,
                                            sizeof(aiValues));
    const auto listPublished = ReadPublished(Segment());
    ASSERT_EQ(listPublished.size(), 3u);
    EXPECT_EQ(listPublished[0].strName, "FAR");
    EXPECT_FALSE(listPublished[0].bInRoom);
    EXPECT_EQ(listPublished[1].strName, "TES?1");
    EXPECT_FALSE(listPublished[1].bWhole);
    EXPECT_EQ(listPublished[1].iValue, 1);
    ASSERT_TRUE(SetValue(Target(), "TEST2", 20)); // found as a program finds it
    EXPECT_EQ(Seen("TEST2"), 20);
    ::testing::internal::CaptureStderr();
    ASSERT_TRUE(SetValue(Target(), "NEW", 5));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "orvin-osd: 2 published names are not known whole and are dropped\n");
    EXPECT_EQ(ReadBack(), (ValueMap{{"NEW", 5}}));
}

TEST_F(PublisherTest, TextThatDoesNotFitTheTreeIsNotBelieved) {
    Publisher(Target()).Publish(ValueMap{{"TEST1", 1}, {"TEST2", 2}});
    u8* pText = Segment().RawData[1] + 8 + 4;
    ASSERT_STREQ(reinterpret_cast<const char*>(pText), "TEST1");
    std::memcpy(pText, "BEST1", 5);
    const auto listPublished = ReadPublished(Segment());
    EXPECT_EQ(listPublished[0].strName, "TES?1");
    EXPECT_EQ(listPublished[1].strName, "TEST2");
}

TEST_F(PublisherTest, HostileSegmentsAreReadWithinBounds) {
    std::mt19937 random(11);
    for (int iRound = 0; iRound < 40; ++iRound) {
        Publisher(Target()).Publish(ValueMap{{"GPU_CLK#0", 1}, {"GPU_TEMP#0", 2}, {"CPU_CLK#0", 3}});
        const u32 uBank = CurrentBank(Segment());
        for (int i = 0; i < 20; ++i) Segment().DataTable[uBank][random() % 120] = static_cast<u8>(random());
        for (int i = 0; i < 20; ++i) Segment().RawData[uBank][random() % 60] = static_cast<u8>(random());
        for (const PublishedValue& st : ReadPublished(Segment())) {
            ASSERT_TRUE(!st.bInRoom || st.uOffset <= 16380u);
        }
    }
    std::memset(Segment().RawData[0], 'N', sizeof(Segment().RawData[0])); // names without an end
    Segment().uDataBank = 0;
    ReadPublished(Segment());
    Segment().uDataBank = 0xFFFFFFFF; // anything above 0 is bank 1
    EXPECT_EQ(CurrentBank(Segment()), 1u);
}

TEST(CompanionNames, FaultsOfAName) {
    EXPECT_EQ(NameFault("GPU_CLK#0"), "");
    EXPECT_EQ(NameFault("FPS#0"), "");
    EXPECT_EQ(NameFault(""), "is empty");
    EXPECT_EQ(NameFault("FRAME_TIME"), "is measured by the overlay itself");
    EXPECT_EQ(NameFault(std::string(256, 'x')), "is longer than 255 characters");
    for (const char* szBad : {"a b", "a\tb", "\x7F", "GRÖSSE"})
        EXPECT_EQ(NameFault(szBad), "must be printable ASCII without blanks");
}
