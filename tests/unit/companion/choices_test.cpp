#include "companion/choices.h"
#include "tools/profile/list_command.h"

#include <gtest/gtest.h>

using namespace companion;

namespace {

TEST(CompanionChoices, AProgramIsKnownByItsFileName) {
    EXPECT_EQ(PlainProgramName("/usr/games/Game"), "game");
    EXPECT_EQ(PlainProgramName("C:\\Games\\GAME.EXE"), "game");
    EXPECT_EQ(PlainProgramName("game.x86_64"), "game.x86_64");
    EXPECT_EQ(PlainProgramName("folder/"), "");
    EXPECT_EQ(PlainProgramName(""), "");
}

TEST(CompanionChoices, TheTextComesBack) {
    const Choices stWritten{"FPS",
                            {{"game", "Gauges"},
                             {"spiel \xc3\xa4", "Gr\xc3\xb6\xc3\x9f"
                                                "e"}}};
    Choices stRead;
    ASSERT_TRUE(ParseChoices(ChoicesText(stWritten), stRead));
    EXPECT_EQ(stRead.strProfile, stWritten.strProfile);
    EXPECT_EQ(stRead.mapPrograms, stWritten.mapPrograms);
    ASSERT_TRUE(ParseChoices(ChoicesText({}), stRead));
    EXPECT_EQ(stRead.strProfile, "");
    EXPECT_TRUE(stRead.mapPrograms.empty());
}

TEST(CompanionChoices, WhatIsNoSuchTextChangesNothing) {
    Choices st{"FPS", {}};
    for (const char* szText : {"", "{", "[]", "null", "7", "{\"profile\": \"A\"} x", "\xff\xfe"})
        EXPECT_FALSE(ParseChoices(szText, st)) << szText;
    EXPECT_EQ(st.strProfile, "FPS");
    EXPECT_FALSE(ParseChoices(std::string(100000, '['), st)) << "as deep as it is long";
}

TEST(CompanionChoices, NamesThatNoProfileCanHaveAreLeftOut) {
    Choices st;
    ASSERT_TRUE(
        ParseChoices(R"({"profile": "../x", "programs": {"a": "b/c", "d": 7, "e": "Good", "f": null}})", st));
    EXPECT_EQ(st.strProfile, "");
    EXPECT_EQ(st.mapPrograms, (std::map<std::string, std::string>{{"e", "Good"}}));
    ASSERT_TRUE(ParseChoices(R"({"profile": 3, "programs": ["a"], "later": {"x": 1}})", st));
    EXPECT_EQ(st.strProfile, "");
    EXPECT_TRUE(st.mapPrograms.empty());
}

TEST(CompanionChoices, AreListedWhereNothingShowsThemYet) {
    std::vector<ProfileRow> listRows{{"FPS", "Custom", {"all programs"}}, {"Gauges", "Custom", {}}};
    AddChoices({"FPS", {{"game", "Gone"}}}, listRows);
    EXPECT_EQ(listRows[0].listUses, std::vector<std::string>{"all programs"});
    ASSERT_EQ(listRows.size(), 3u);
    EXPECT_EQ(listRows[2].strStyle, "missing");
    EXPECT_EQ(listRows[2].listUses, std::vector<std::string>{"game"});
    AddChoices({"Gauges", {}}, listRows);
    EXPECT_EQ(listRows[1].listUses, std::vector<std::string>{"all programs from their next start"});
}

} // namespace
