// Pixels that are kept small while nobody looks at them.
#include "font/packed_pixels.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using Pixels = std::vector<u8>;

/// What stands in a blank place after the way there and back.
Pixels ThereAndBack(const Pixels& pixels, bool bTaken = true) {
    CPackedPixels packed;
    EXPECT_EQ(packed.Take(pixels.data(), pixels.size()), bTaken);
    EXPECT_EQ(packed.IsEmpty(), !bTaken);
    Pixels back(pixels.size());
    packed.Give(back.data());
    EXPECT_TRUE(packed.IsEmpty());
    return back;
}

} // namespace

TEST(PackedPixels, ComeBackToTheLastByte) {
    std::mt19937 random(1);
    for (const u32 uInk : {0u, 1u, 3u, 40u, 100u}) {
        Pixels pixels(64 * 64);
        for (u32 u = 0; u < uInk; ++u) pixels[random() % pixels.size()] = static_cast<u8>(random() | 1);
        EXPECT_EQ(ThereAndBack(pixels), pixels) << uInk;
    }
}

TEST(PackedPixels, FullPixelsTakeABitEach) {
    Pixels pixels(1024);
    for (u32 u = 0; u < 1024; u += 3) pixels[u] = 255; // no blank word, so only bits save half
    EXPECT_EQ(ThereAndBack(pixels), pixels);
    pixels[3] = 254;
    EXPECT_EQ(ThereAndBack(pixels, false), Pixels(1024));
}

TEST(PackedPixels, RunsLongerThanANumberHoldsAreCutInPieces) {
    for (const u8 u8Ink : {u8{255}, u8{0}}) {
        Pixels pixels(8 * 200'000, u8Ink);
        pixels[8 * 70'000] = static_cast<u8>(~u8Ink);
        EXPECT_EQ(ThereAndBack(pixels), pixels);
    }
}

TEST(PackedPixels, InkAtBothEndsComesBack) {
    Pixels pixels(1024);
    pixels.front() = 1;
    pixels.back() = 255;
    EXPECT_EQ(ThereAndBack(pixels), pixels);
}

TEST(PackedPixels, WhatWouldSaveTooLittleIsLeftAlone) {
    EXPECT_EQ(ThereAndBack(Pixels(1024, 7), false), Pixels(1024));
    EXPECT_EQ(ThereAndBack(Pixels(8), false), Pixels(8)) << "eight bytes for eight";
    EXPECT_EQ(ThereAndBack(Pixels(1023), false), Pixels(1023)) << "no whole words";
    EXPECT_EQ(ThereAndBack({}, false), Pixels());
}

TEST(PackedPixels, GivingNothingWritesNothing) {
    CPackedPixels packed;
    u8 u8Pixel = 9;
    packed.Give(&u8Pixel);
    EXPECT_EQ(u8Pixel, 9);
    const Pixels pixels(1024);
    ASSERT_TRUE(packed.Take(pixels.data(), pixels.size()));
    packed.Drop();
    packed.Give(&u8Pixel);
    EXPECT_EQ(u8Pixel, 9);
}
