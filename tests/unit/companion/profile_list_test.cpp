#include "companion/profile_commands.h"
#include "tools/profile/list_command.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <nlohmann/json.hpp>

using namespace companion;

namespace {

bool AllLive(u32) { return true; }
bool OddLive(u32 uProcessId) { return uProcessId % 2 == 1; }

/// A table as a fresh segment has it.
std::unique_ptr<stSharedSegment> FreshSegment() { return std::make_unique<stSharedSegment>(); }

u32 Records(const ProfileTable& aTable) {
    return static_cast<u32>(std::count_if(std::begin(aTable), std::end(aTable),
                                          [](const stProcessProfile& st) { return st.uProcessId != 0; }));
}

const std::string kMine = "Mine", kOther = "Other";

} // namespace

TEST(CompanionProcessProfiles, AProcessGetsAndLosesItsOwn) {
    const auto p = FreshSegment();
    ASSERT_TRUE(SetProcessProfile(p->ProcessProfile, 11, &kMine, AllLive));
    const stProcessProfile* pFound = FindProcessProfile(p->ProcessProfile, 11, 99);
    ASSERT_NE(pFound, nullptr);
    EXPECT_STREQ(reinterpret_cast<const char*>(pFound->wzProfileName), "M") << "UTF-16, low byte first";
    EXPECT_EQ(std::u16string(pFound->wzProfileName), u"Mine");
    EXPECT_EQ(pFound->uThreadId, 0u) << "no other process's thread may match";
    EXPECT_EQ(FindProcessProfile(p->ProcessProfile, 12, 99), nullptr);
    ASSERT_TRUE(SetProcessProfile(p->ProcessProfile, 11, nullptr, AllLive));
    EXPECT_EQ(FindProcessProfile(p->ProcessProfile, 11, 99), nullptr);
    EXPECT_EQ(Records(p->ProcessProfile), 0u);
}

TEST(CompanionProcessProfiles, AnotherProfileTakesThePlaceOfTheFirst) {
    const auto p = FreshSegment();
    ASSERT_TRUE(SetProcessProfile(p->ProcessProfile, 11, &kMine, AllLive));
    ASSERT_TRUE(SetProcessProfile(p->ProcessProfile, 11, &kOther, AllLive));
    EXPECT_EQ(Records(p->ProcessProfile), 1u);
    EXPECT_EQ(std::u16string(FindProcessProfile(p->ProcessProfile, 11, 99)->wzProfileName), u"Other");
}

TEST(CompanionProcessProfiles, EndedProcessesMakeRoom) {
    const auto p = FreshSegment();
    for (u32 u = 0; u < g_uProcessProfileCount; ++u)
        ASSERT_TRUE(SetProcessProfile(p->ProcessProfile, u + 1, &kMine, AllLive));
    EXPECT_FALSE(SetProcessProfile(p->ProcessProfile, 1001, &kMine, AllLive));
    EXPECT_TRUE(SetProcessProfile(p->ProcessProfile, 1001, &kMine, OddLive));
    EXPECT_EQ(Records(p->ProcessProfile), g_uProcessProfileCount / 2 + 1);
}

TEST(CompanionProcessProfiles, ARecordMaySendItsProcessBackToTheProfileOfAll) {
    const auto p = FreshSegment();
    ASSERT_TRUE(SetProcessProfile(p->ProcessProfile, 11, &kMine, AllLive));
    p->ProcessProfile[0].bUseGlobal = 1;
    EXPECT_EQ(FindProcessProfile(p->ProcessProfile, 11, 99), nullptr);
}

TEST(CompanionProfileList, UsesComeFromTheSegment) {
    const auto p = FreshSegment();
    std::u16string(u"Gauges").copy(p->wzGlobalProfile, 6);
    ASSERT_TRUE(SetProcessProfile(p->ProcessProfile, 7, &kMine, AllLive));
    std::vector<ProfileRow> listRows{{"Gauges", "Custom", {}}, {"Plain", "Custom", {}}};
    AddUses(*p, {{7, 70, "game"}, {8, 80, "tool"}}, listRows);
    ASSERT_EQ(listRows.size(), 3u);
    EXPECT_EQ(listRows[0].listUses, std::vector<std::string>{"all programs"});
    EXPECT_TRUE(listRows[1].listUses.empty());
    EXPECT_EQ(listRows[2].strName, "Mine");
    EXPECT_EQ(listRows[2].strStyle, "missing");
    EXPECT_EQ(listRows[2].listUses, std::vector<std::string>{"game (7)"});
}

TEST(CompanionProfileList, NoNameMeansDefaultAndNoProgramsNothing) {
    const auto p = FreshSegment();
    std::vector<ProfileRow> listRows{{"Default", "Custom", {}}};
    AddUses(*p, {}, listRows);
    EXPECT_TRUE(listRows[0].listUses.empty());
    AddUses(*p, {{7, 70, "game"}}, listRows);
    EXPECT_EQ(listRows[0].listUses, std::vector<std::string>{"all programs"});
}

TEST(CompanionProfileList, AsTableAndAsJson) {
    const std::vector<ProfileRow> listRows{{"A", "Custom", {"all programs", "game (7)"}},
                                           {"B", "unreadable", {}}};
    EXPECT_EQ(ProfileTableText(listRows), "PROFILE  STYLE       SHOWN IN\n"
                                          "A        Custom      all programs, game (7)\n"
                                          "B        unreadable\n");
    const auto json = nlohmann::json::parse(ProfileJson(listRows));
    EXPECT_EQ(json[0]["shownIn"][1], "game (7)");
    EXPECT_EQ(json[1]["style"], "unreadable");
}
