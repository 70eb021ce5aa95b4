// The settings of a screenshot in the text of a settings file, and the types of files.
#include "companion/shot.h"
#include "platform/tool_shot.h"

#include <gtest/gtest.h>

using namespace platform::tool;

namespace {

constexpr const char* c_szKey = "[SOFTWARE\\Zarn\\ORVIN-OSD\\Camera]\n";

} // namespace

TEST(ShotSettings, DefaultsStandWhereNothingIsSaid) {
    for (const std::string& str : {std::string(), std::string("[Other]\nCapMode = 1\n"),
                                   std::string(c_szKey) + "; CapMode = 1\nCapType = x\n"}) {
        const ShotSettings st = ParseShotSettings(str);
        EXPECT_EQ(st.strFolder, "");
        EXPECT_EQ(st.uMode, 2u);
        EXPECT_EQ(st.uType, 2u);
    }
}

TEST(ShotSettings, TheFirstValueOfANameCountsInAllSectionsOfTheKey) {
    const ShotSettings st =
        ParseShotSettings(std::string("\xEF\xBB\xBF") +
                          "[software\\zarn\\orvin-osd\\camera]\r\ncapmode = 1\r\n[X]\nCapType = 9\n" +
                          c_szKey + "CapMode = 7\nCapType = 0x3\nDirPath = \"/a b\"\n");
    EXPECT_EQ(st.uMode, 1u);
    EXPECT_EQ(st.uType, 3u);
    EXPECT_EQ(st.strFolder, "/a b");
}

TEST(ShotSettings, TheFirstRootCountsWhereThereIsOne) {
    const std::string str =
        std::string(c_szKey) + "CapMode = 1\n[SOFTWARE\\WOW6432Node\\Zarn\\ORVIN-OSD\\FPSLimiter]\n";
    EXPECT_EQ(ParseShotSettings(str).uMode, 2u);
    const auto strWith = TextWithShotSettings(str, {"/x", 1, 0}, 7);
    ASSERT_TRUE(strWith);
    EXPECT_EQ(ParseShotSettings(*strWith).strFolder, "/x");
}

TEST(ShotSettings, WhatIsPutInFrontWinsAndGoesAgain) {
    for (const std::string& str : {std::string(), std::string("\xEF\xBB\xBF; mine\n"),
                                   std::string(c_szKey) + "DirPath = /old\nCapMode = 5\nCapType = 6\n"}) {
        const auto strWith = TextWithShotSettings(str, {"/new", 1, 4}, 12);
        ASSERT_TRUE(strWith);
        const ShotSettings st = ParseShotSettings(*strWith);
        EXPECT_EQ(st.strFolder, "/new");
        EXPECT_EQ(st.uMode, 1u);
        EXPECT_EQ(st.uType, 4u);
        EXPECT_EQ(TextWithoutShotSettings(*strWith, 12), str);
        EXPECT_EQ(TextWithoutShotSettings(*strWith, 13), *strWith) << "that of another process stays";
        EXPECT_EQ(TextWithoutShotSettings(*strWith + "; added\n", 12), str + "; added\n");
    }
}

TEST(ShotSettings, Utf16IsLeftAlone) { EXPECT_FALSE(TextWithShotSettings("\xFF\xFE;", {}, 1)); }

TEST(ShotTypes, WordsAreTypesOfTheSettings) {
    EXPECT_EQ(companion::ShotTypeOf("bmp"), 0u);
    EXPECT_EQ(companion::ShotTypeOf("jpg"), 1u);
    EXPECT_EQ(companion::ShotTypeOf("png"), 2u);
    EXPECT_EQ(companion::ShotTypeOf("heic"), 3u);
    EXPECT_EQ(companion::ShotTypeOf("all"), 4u);
    EXPECT_EQ(companion::ShotTypeOf(""), companion::g_uNoShotType);
    EXPECT_EQ(companion::ShotExtensions(2), std::vector<std::string>{".png"});
    EXPECT_EQ(companion::ShotExtensions(77).size(), 3u);
}
