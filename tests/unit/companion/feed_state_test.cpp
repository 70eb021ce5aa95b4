#include "companion/feed_state.h"
#include "companion/sensors/published.h"
#include "companion/sensors/publisher.h"
#include "companion/values.h"
#include "entry/exports.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "platform/tool.h"
#include "shared/monitor_data.h"
#include "shared/process_records.h"
#include <cstring>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>

using namespace companion;
using namespace companion::sensors;

namespace {

bool AllGone(u32, u32) noexcept { return true; }
bool AllLive(u32, u32) noexcept { return false; }

class FeedStateTest : public ::testing::Test {
  protected:
    void SetUp() override { platform::headless::ResetAll(); }
    void TearDown() override { platform::headless::ResetAll(); }

    static stSharedSegment& Segment() { return *platform::SharedSegment(); }
    static ControlLibrary Library() {
        ControlLibrary st;
        st.fnSendCommand = sendCmd_GWDLL_GL;
        st.fnSetFilter = SetMonitorFilterDataFromGWexeToGWDll_GL;
        st.fnSetData = SetMonitorDataFromGWexeToGWDll_GL;
        st.fnSetOffsets = SetMonitorDataOffsetFromGWexeToGWDll_GL;
        st.pSegment = &Segment();
        return st;
    }
    static void PublishAs(const Publication& stBy, const ValueMap& mapValues = {{"A#0", 1}, {"B#0", 2}}) {
        Publisher(TargetOf(Library()), stBy).Publish(mapValues);
    }
    static FeedState Look(u64 uLater = 0, bool (*fnIsGone)(u32, u32) noexcept = AllLive) {
        const auto stBy = ReadPublication(Segment());
        return LookAtFeed(Segment(), (stBy ? stBy->uTime : 0) + uLater, fnIsGone);
    }
};

} // namespace

TEST_F(FeedStateTest, NothingPublishedIsNoFeed) {
    EXPECT_EQ(Look().eLife, FeedLife::None);
    EXPECT_EQ(FeedText(Look()), "No feed is alive; no values are published.\n");
}

TEST_F(FeedStateTest, AFeedThatLivesIsNamedWithTheAgeOfItsValues) {
    PublishAs({77, 5, 0});
    const FeedState st = Look(400);
    EXPECT_EQ(st.eLife, FeedLife::Alive);
    EXPECT_EQ(FeedText(st), "The feed 77 publishes 2 values, 0.4 s old.\n");
    EXPECT_EQ(FeedText(Look(70000)), "The feed 77 lives but has published nothing for 70 s.\n");
    EXPECT_EQ(FeedJson(st)["state"], "alive");
    EXPECT_EQ(FeedJson(st)["ageMs"], 400);
}

TEST_F(FeedStateTest, EachPublicationInPlaceMakesTheValuesYoung) {
    Publisher publisher(TargetOf(Library()), ThisFeed());
    publisher.Publish(ValueMap{{"A#0", 1}});
    Segment().RawData[1][0] = 9; // what another wrote there goes with the next values
    u64 uOld = 1;
    auto& aBank = Segment().RawData[CurrentBank(Segment())];
    const auto stBy = ReadPublication(Segment());
    ASSERT_TRUE(stBy);
    for (u8* p = aBank; p + sizeof(u64) < aBank + g_uRawDataBytes; ++p)
        if (std::memcmp(p, &stBy->uTime, sizeof(u64)) == 0) std::memcpy(p, &uOld, sizeof(u64));
    ASSERT_EQ(ReadPublication(Segment())->uTime, 1u);
    EXPECT_EQ(publisher.Publish(ValueMap{{"A#0", 2}}), Publisher::Outcome::Values);
    EXPECT_GE(ReadPublication(Segment())->uTime, stBy->uTime);
    EXPECT_EQ(g_fnReadData(g_fnGetMonitorDataPtr("A#0")), 2);
}

TEST_F(FeedStateTest, AClockThatWasSetBackMakesNoAge) {
    PublishAs({77, 5, 0});
    EXPECT_EQ(LookAtFeed(Segment(), 1, AllLive).uAge, 0u);
}

TEST_F(FeedStateTest, ValuesThatWereMeantToStandDoSo) {
    PublishAs({});
    const FeedState st = TakeBackDeadValues(Library());
    EXPECT_EQ(st.eLife, FeedLife::Once);
    EXPECT_FALSE(st.bTakenBack);
    EXPECT_NE(FeedText(st).find("2 values published once stand"), std::string::npos) << FeedText(st);
    EXPECT_NE(g_fnGetMonitorDataPtr("A#0"), nullptr);
}

TEST_F(FeedStateTest, ValuesOfSomebodyElseStand) {
    const u32 au32Values[] = {1, 2};
    SetMonitorDataOffsetFromGWexeToGWDll_GL({{"A#0", 0}, {"B#0", 4}}, au32Values, sizeof au32Values);
    const FeedState st = TakeBackDeadValues(Library());
    EXPECT_EQ(st.eLife, FeedLife::Unknown);
    EXPECT_NE(g_fnGetMonitorDataPtr("A#0"), nullptr);
}

TEST_F(FeedStateTest, ValuesOfAKilledFeedAreTakenBackAndEveryProgramBuildsAnew) {
    RegisterProcess(41, 42);
    const u32 uOther = platform::tool::OwnStamp() ^ 2; // of a process that had the id before
    PublishAs({platform::tool::OwnProcessId(), uOther, 0});
    Segment().CommandTable[0].bChanged = 0;
    const FeedState st = TakeBackDeadValues(Library());
    EXPECT_EQ(st.eLife, FeedLife::Dead);
    EXPECT_TRUE(st.bTakenBack);
    EXPECT_EQ(st.uValues, 2u);
    EXPECT_NE(TakenBackText(st).find("2 values of one that was killed, 0.0 s old, were taken back"),
              std::string::npos)
        << TakenBackText(st);
    EXPECT_EQ(g_fnGetMonitorDataPtr("A#0"), nullptr);
    EXPECT_EQ(Segment().CommandTable[0].bChanged, 1);
    EXPECT_EQ(Segment().CommandTable[0].Command.bRelease, 1);
    EXPECT_EQ(TakeBackDeadValues(Library()).eLife, FeedLife::None);
    EXPECT_EQ(TakenBackText(TakeBackDeadValues(Library())), "");
}

TEST_F(FeedStateTest, ValuesOfThisProcessStand) {
    PublishAs(ThisFeed());
    EXPECT_EQ(TakeBackDeadValues(Library()).eLife, FeedLife::Alive);
    EXPECT_NE(g_fnGetMonitorDataPtr("A#0"), nullptr);
}

TEST_F(FeedStateTest, AFeedThatEndedInPeaceLeavesNothingToTell) {
    PublishAs({77, 5, 0}, {});
    EXPECT_EQ(Look(0, AllGone).eLife, FeedLife::None);
    EXPECT_EQ(Look(0, AllLive).eLife, FeedLife::Alive); // a machine without a sensor
}

TEST_F(FeedStateTest, AnyBytesAreTaken) {
    std::mt19937 random(7);
    PublishAs({77, 5, 0});
    const auto pWhole = std::make_unique<stSharedSegment>(Segment());
    for (int i = 0; i < 3000; ++i) {
        Segment() = *pWhole;
        for (int k = 0; k < 4; ++k) Segment().RawData[1][random() % 64] = static_cast<u8>(random());
        FeedText(LookAtFeed(Segment(), 0, AllGone));
    }
}

TEST(FeedState, AgesInWords) {
    EXPECT_EQ(AgeText(0), "0.0 s");
    EXPECT_EQ(AgeText(9900), "9.9 s");
    EXPECT_EQ(AgeText(35000), "35 s");
    EXPECT_EQ(AgeText(179999), "179 s");
    EXPECT_EQ(AgeText(180000), "3 min");
    EXPECT_EQ(AgeText(10800000), "3 h");
    EXPECT_EQ(AgeText(172800000), "2 days");
}
