// Command lines of video and the control block, and the picture that needs no source.
#include "companion/options.h"
#include "companion/test_pattern.h"
#include "companion/video.h"
#include <array>
#include <gtest/gtest.h>

using namespace companion;
using Words = std::vector<std::string>;

namespace {

VideoOptions Accepted(Words listWords) {
    const Parsed st = ParseArguments(std::move(listWords));
    EXPECT_FALSE(st.bLeave) << st.strText;
    return st.stOptions.stVideo;
}

void Refused(Words listWords, const char* szWhy) {
    const Parsed st = ParseArguments(std::move(listWords));
    EXPECT_TRUE(st.bLeave);
    EXPECT_EQ(st.iExitCode, 2);
    EXPECT_NE(st.strText.find(szWhy), std::string::npos) << st.strText;
}

constexpr u32 kWidth = 240, kHeight = 80;

std::vector<u8> Pattern(u32 uFrame) {
    std::vector<u8> aPixels(size_t{kWidth} * kHeight * 4, 7);
    DrawTestPattern(aPixels.data(), kWidth, kHeight, uFrame);
    return aPixels;
}

std::array<u8, 4> At(const std::vector<u8>& aPixels, u32 x, u32 y) {
    const u8* const p = aPixels.data() + (size_t{y} * kWidth + x) * 4;
    return {p[0], p[1], p[2], p[3]};
}

constexpr std::array<u8, 4> kWhite = {255, 255, 255, 255};

} // namespace

TEST(VideoOptions, SourceAndSize) {
    const VideoOptions st = Accepted({"video", "7", "--size", "3839x1080", "--fps", "100"});
    EXPECT_EQ(st.uSource, 7u);
    EXPECT_EQ(st.stSize.uWidth, 3839u);
    EXPECT_EQ(st.stSize.uHeight, 1080u);
    EXPECT_EQ(st.uFps, 100u);
    EXPECT_EQ(st.strFormat, "rgba");
    EXPECT_TRUE(Accepted({"video", "list"}).bList);
}

TEST(VideoOptions, WhatIsNoSource) {
    for (const char* szSource : {"8", "-1", "4294967296", "x", "0x1", "", "1 "})
        Refused({"video", szSource}, "SOURCE");
    Refused({"video"}, "source");
}

TEST(VideoOptions, WhatIsNoSize) {
    for (const char* szSize :
         {"640", "640x", "x360", "640x360x", "0x360", "640x0", "-1x2", "99999999999x1", "a"})
        Refused({"video", "0", "--size", szSize}, "--size");
    Refused({"video", "0", "--size", "3840x1080"}, "4147199");
    Refused({"video", "0", "--setup", "--box", "1by1"}, "--box");
}

TEST(VideoOptions, ValuesOutsideTheirRanges) {
    Refused({"video", "0", "--fps", "0"}, "--fps");
    Refused({"video", "0", "--fps", "101"}, "--fps");
    Refused({"video", "0", "--format", "argb"}, "--format");
    Refused({"video", "0", "--setup", "--transparency", "101"}, "--transparency");
    Refused({"video", "0", "--setup", "--anchor", "10"}, "--anchor");
}

TEST(VideoOptions, ThePlaceBelongsToTheSettings) {
    Refused({"video", "0", "--box", "10x10"}, "--setup");
    Refused({"video", "0", "--setup", "--disable"}, "--disable");
    const VideoOptions st = Accepted({"video", "0", "--setup", "--position", "7,-8", "--anchor", "-5"});
    EXPECT_EQ(st.listPosition, (std::vector<i32>{7, -8}));
    EXPECT_EQ(st.iAnchor, -5);
}

TEST(ControlOptions, Colours) {
    const VideoOptions st = Accepted({"control", "recolour", "2", "#10fF30"});
    EXPECT_EQ(st.eControl, ControlVerb::Recolour);
    EXPECT_EQ(st.uIndex, 2u);
    EXPECT_EQ((std::array<u8, 4>{st.au8Color[0], st.au8Color[1], st.au8Color[2], st.au8Color[3]}),
              (std::array<u8, 4>{0x10, 0xFF, 0x30, 255}));
    EXPECT_EQ(Accepted({"control", "recolour", "0", "#10203040"}).au8Color[3], 0x40);
    for (const char* szColor : {"102030", "#1020", "#1020304", "#10203g", "#1020304050", "red", "#+10203"})
        Refused({"control", "recolour", "0", szColor}, "COLOUR");
    Refused({"control", "recolour", "3", "#102030"}, "index");
    Refused({"control"}, "ubcommand");
    EXPECT_EQ(Accepted({"control", "rebuild"}).eControl, ControlVerb::Rebuild);
    EXPECT_EQ(Accepted({"control", "off"}).eControl, ControlVerb::Off);
}

TEST(TestPattern, BarsOverARampAndALineThatMoves) {
    const auto aFirst = Pattern(0), aLater = Pattern(60);
    EXPECT_EQ(At(aFirst, 45, 0), (std::array<u8, 4>{255, 255, 0, 255})) << "the second bar";
    EXPECT_EQ(At(aFirst, 45, 59), (std::array<u8, 4>{255, 255, 0, 255})) << "down to the ramp";
    EXPECT_EQ(At(aFirst, 239, 0), (std::array<u8, 4>{0, 0, 0, 255}));
    EXPECT_EQ(At(aFirst, 239, 60), kWhite);
    EXPECT_LT(At(aFirst, 30, 79)[0], 40);
    EXPECT_EQ(At(aLater, 120, 0), kWhite) << "half of the way";
    EXPECT_EQ(At(aLater, 0, 60), (std::array<u8, 4>{0, 0, 0, 255}));
    EXPECT_EQ(At(aFirst, 0, 60), kWhite);
    EXPECT_EQ(Pattern(120), aFirst);
}

TEST(TestPattern, SmallestPictures) {
    std::vector<u8> aPixels(16, 7);
    DrawTestPattern(aPixels.data(), 1, 1, 0);
    EXPECT_EQ(aPixels[3], 255);
    EXPECT_EQ(aPixels[4], 7) << "nothing behind it";
    DrawTestPattern(aPixels.data(), 0, 4, 0);
    DrawTestPattern(aPixels.data(), 4, 0, 0);
    EXPECT_EQ(aPixels[4], 7);
}
