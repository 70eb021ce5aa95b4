#include "companion/options.h"
#include "companion/profile_options.h"
#include <gtest/gtest.h>

using namespace companion;
using Words = std::vector<std::string>;

namespace {

ProfileOptions Accepted(Words listWords) {
    const Parsed st = ParseArguments(std::move(listWords));
    EXPECT_FALSE(st.bLeave) << st.strText;
    EXPECT_EQ(st.stOptions.eVerb, Verb::Profile);
    return st.stOptions.stProfile;
}

std::string Refused(Words listWords) {
    const Parsed st = ParseArguments(std::move(listWords));
    EXPECT_TRUE(st.bLeave);
    EXPECT_EQ(st.iExitCode, 2);
    EXPECT_EQ(st.strText.find('\n'), std::string::npos);
    return st.strText;
}

} // namespace

TEST(CompanionProfileOptions, EachCommandHasItsVerb) {
    EXPECT_EQ(Accepted({"profile", "list"}).eVerb, ProfileVerb::List);
    EXPECT_EQ(Accepted({"profile", "use", "A"}).eVerb, ProfileVerb::Use);
    EXPECT_EQ(Accepted({"profile", "for", "game", "A"}).eVerb, ProfileVerb::For);
    EXPECT_EQ(Accepted({"profile", "new", "B", "--from", "A"}).eVerb, ProfileVerb::New);
    EXPECT_EQ(Accepted({"profile", "check", "A"}).eVerb, ProfileVerb::Check);
    EXPECT_EQ(Accepted({"profile", "render", "A", "-o", "a.png"}).eVerb, ProfileVerb::Render);
    EXPECT_EQ(Accepted({"profile", "new", "B", "--style", "rv5"}).strStyle, "rv5");
    EXPECT_EQ(Accepted({"rows"}).eVerb, ProfileVerb::Rows);
    EXPECT_EQ(Accepted({"rows", "A", "--json"}).strProfile, "A");
    EXPECT_EQ(Accepted({"language", "list"}).eVerb, ProfileVerb::LanguageList);
    EXPECT_EQ(Accepted({"language", "use", "German"}).eVerb, ProfileVerb::LanguageUse);
    EXPECT_EQ(Accepted({"language", "off"}).eVerb, ProfileVerb::LanguageOff);
    EXPECT_EQ(Accepted({"fontcache", "write", "A"}).eVerb, ProfileVerb::FontWrite);
    EXPECT_EQ(Accepted({"fontcache", "list"}).eVerb, ProfileVerb::FontList);
    EXPECT_EQ(Accepted({"fontcache", "check", "2-Arial.fnt"}).eVerb, ProfileVerb::FontCheck);
}

TEST(CompanionProfileOptions, WhatIsRequired) {
    Refused({"language"});
    Refused({"language", "use"});
    Refused({"profile", "new", "B"});
    Refused({"profile", "new", "B", "--style", "other"});
    Refused({"profile", "new", "B", "--style", "rv5", "--from", "A"});
    Refused({"profile"});
    Refused({"profile", "paint"});
    Refused({"profile", "use"});
    Refused({"profile", "for"});
    Refused({"profile", "for", "game"});
    Refused({"profile", "new", "B"});
    Refused({"profile", "check"});
    Refused({"profile", "render", "A"});
    Refused({"fontcache"});
    Refused({"fontcache", "write"});
    Refused({"fontcache", "check"});
}

TEST(CompanionProfileOptions, NamesThatReachProgramsAreOnePlainFolderName) {
    for (const char* szBad : {"..", "a/b", "a\\b", "C:x", "a.", ""}) {
        Refused({"profile", "use", szBad});
        Refused({"profile", "for", "game", szBad});
        Refused({"profile", "new", szBad, "--from", "A"});
    }
    EXPECT_EQ(Accepted({"profile", "check", "../A"}).strProfile, "../A") << "paths can be checked";
}

TEST(CompanionProfileOptions, ForOneProgramOrBackToTheProfileOfAll) {
    const ProfileOptions st = Accepted({"profile", "for", "game", "A", "--force"});
    EXPECT_EQ(st.strProgram, "game");
    EXPECT_EQ(st.strProfile, "A");
    EXPECT_TRUE(st.bForce);
    EXPECT_TRUE(Accepted({"profile", "for", "4711", "--global"}).bGlobal);
    Refused({"profile", "for", "game", "A", "--global"});
}

TEST(CompanionProfileOptions, RenderDefaults) {
    const ProfileOptions st = Accepted({"profile", "render", "A", "-o", "a.png"});
    EXPECT_EQ(st.strOutput, "a.png");
    EXPECT_EQ(st.uWidth, 1920u);
    EXPECT_EQ(st.uHeight, 1080u);
    EXPECT_EQ(st.strBackground, "dark");
    EXPECT_EQ(st.strValues, "sample");
    EXPECT_EQ(st.uFrames, 0u);
    EXPECT_FALSE(st.bWatch);
}

TEST(CompanionProfileOptions, RenderTakesAll) {
    const ProfileOptions st =
        Accepted({"profile", "render", "./A", "--output", "b.png", "--size", "3440x1440", "--background",
                  "#102030", "--values", "live", "--seconds", "2.5", "--watch", "-v", "--data", "D"});
    EXPECT_EQ(st.strProfile, "./A");
    EXPECT_EQ(st.uWidth, 3440u);
    EXPECT_EQ(st.uHeight, 1440u);
    EXPECT_EQ(st.strBackground, "#102030");
    EXPECT_EQ(st.strValues, "live");
    EXPECT_DOUBLE_EQ(st.fSeconds, 2.5);
    EXPECT_TRUE(st.bWatch);
    EXPECT_TRUE(st.bVerbose);
    EXPECT_EQ(st.strData, "D");
}

TEST(CompanionProfileOptions, RenderRefusesSizesAndTimesOutOfRange) {
    for (const char* szBad : {"1280", "x720", "1280x", "1280X720", "12 x 13", "15x720", "1280x8193", "-1x20"})
        Refused({"profile", "render", "A", "-o", "a.png", "--size", szBad});
    Refused({"profile", "render", "A", "-o", "a.png", "--frames", "0"});
    Refused({"profile", "render", "A", "-o", "a.png", "--frames", "100001"});
    Refused({"profile", "render", "A", "-o", "a.png", "--seconds", "0"});
    Refused({"profile", "render", "A", "-o", "a.png", "--seconds", "601"});
    Refused({"profile", "render", "A", "-o", "a.png", "--seconds", "1", "--frames", "2"});
}

TEST(CompanionProfileOptions, SizesAtTheirBounds) {
    u32 uWidth = 0, uHeight = 0;
    EXPECT_TRUE(ParseSize("16x8192", uWidth, uHeight));
    EXPECT_EQ(uWidth, 16u);
    EXPECT_EQ(uHeight, 8192u);
    EXPECT_FALSE(ParseSize("4294967312x16", uWidth, uHeight)) << "16 beyond 32 bits";
    EXPECT_EQ(uWidth, 16u);
}

TEST(CompanionProfileOptions, TheToolDoesWhatNeedsTheOverlaysCode) {
    for (const ProfileVerb eVerb :
         {ProfileVerb::List, ProfileVerb::Check, ProfileVerb::Render, ProfileVerb::FontWrite,
          ProfileVerb::FontList, ProfileVerb::FontCheck, ProfileVerb::Rows, ProfileVerb::LanguageList,
          ProfileVerb::LanguageUse, ProfileVerb::LanguageOff})
        EXPECT_TRUE(IsToolVerb(eVerb));
    for (const ProfileVerb eVerb : {ProfileVerb::None, ProfileVerb::Use, ProfileVerb::For, ProfileVerb::New})
        EXPECT_FALSE(IsToolVerb(eVerb));
}

TEST(CompanionProfileOptions, HelpOfEachCommand) {
    for (const char* szCommand : {"list", "use", "for", "new", "check", "render"}) {
        const Parsed st = ParseArguments({"profile", szCommand, "--help"});
        EXPECT_TRUE(st.bLeave);
        EXPECT_EQ(st.iExitCode, 0) << szCommand;
        EXPECT_NE(st.strText.find("--data"), std::string::npos) << szCommand;
    }
}
