#include "capture/source_pixels.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// Pixels of a code as encoders get them.
std::vector<u8> Converted(u32 uCode, std::vector<u8> vec, u32 uPixels, const char* szTo) {
    const stChannelPixels st = g_fnPrepareSource(vec.data(), uPixels, 1, uCode);
    EXPECT_TRUE(st.pPixels);
    if (!st.pPixels) return {};
    const ChannelBuffer p = g_fnConvertChannels(st.pPixels, uPixels, 1, st.szOrder, szTo);
    return {p.get(), p.get() + uPixels * std::string(szTo).size()};
}
using Bytes = std::vector<u8>;

} // namespace

TEST(SourcePixels, RgbaOfOpenGLGetsTheOrderOfEachEncoderAndIsOpaque) {
    const Bytes vec = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(Converted(11, vec, 2, "BGR"), (Bytes{3, 2, 1, 7, 6, 5}));
    EXPECT_EQ(Converted(11, vec, 2, "BGRA"), (Bytes{3, 2, 1, 255, 7, 6, 5, 255}));
    EXPECT_EQ(Converted(14, vec, 2, "BGR"), (Bytes{3, 2, 1, 7, 6, 5}));
}

TEST(SourcePixels, Code13CountsAsRgb) { EXPECT_EQ(Converted(13, {1, 2, 3, 4}, 1, "BGR"), (Bytes{3, 2, 1})); }

TEST(SourcePixels, Codes47To50AreBlueFirst) {
    for (u32 uCode = 47; uCode <= 50; ++uCode)
        EXPECT_EQ(Converted(uCode, {1, 2, 3, 4}, 1, "BGRA"), (Bytes{1, 2, 3, 255})) << uCode;
}

TEST(SourcePixels, FieldsOf16BitsFillTheByte) {
    for (const u32 uCode : {51u, 52u}) {
        EXPECT_EQ(Converted(uCode, {0x00, 0xF8}, 1, "BGR"), (Bytes{0, 0, 255})) << uCode;
        EXPECT_EQ(Converted(uCode, {0xE0, 0x07}, 1, "BGR"), (Bytes{0, 255, 0})) << uCode;
        EXPECT_EQ(Converted(uCode, {0x10, 0x00}, 1, "BGR"), (Bytes{132, 0, 0})) << uCode; // 16 of 31
    }
    EXPECT_EQ(Converted(53, {0x00, 0xFC}, 1, "BGR"), (Bytes{0, 0, 255})) << "alpha counts for nothing";
    EXPECT_EQ(Converted(54, {0x21, 0xF8}, 1, "BGRA"), (Bytes{17, 34, 136, 255}));
}

TEST(SourcePixels, TenBitsBecomeEight) {
    EXPECT_EQ(Converted(55, {0xFF, 0x03, 0x00, 0x00}, 1, "BGR"), (Bytes{0, 0, 255}));
    EXPECT_EQ(Converted(56, {0xFF, 0x03, 0x00, 0x00}, 1, "BGR"), (Bytes{255, 0, 0}));
    EXPECT_EQ(Converted(55, {0x00, 0x00, 0x00, 0x20}, 1, "BGR"), (Bytes{128, 0, 0})); // 512 of 1023
}

TEST(SourcePixels, HalvesAreHeldToTheRangeOfBytes) {
    // 0.5, 1 and 2; then minus 1, infinity and the smallest number above 0.
    EXPECT_EQ(Converted(29, {0x00, 0x38, 0x00, 0x3C, 0x00, 0x40, 0, 0}, 1, "BGR"), (Bytes{255, 255, 128}));
    EXPECT_EQ(Converted(29, {0x00, 0xBC, 0x00, 0x7C, 0x01, 0x00, 0, 0}, 1, "BGR"), (Bytes{0, 255, 0}));
    EXPECT_EQ(Converted(29, {0x01, 0x7C, 0, 0, 0, 0, 0, 0}, 1, "BGR"), (Bytes{0, 0, 0})) << "no number";
}

TEST(SourcePixels, OtherCodesAreRefused) {
    const u8 au8[8] = {};
    for (const u32 uCode : {0u, 2u, 10u, 12u, 15u, 28u, 30u, 46u, 57u, ~0u}) {
        EXPECT_FALSE(g_fnPrepareSource(au8, 1, 1, uCode).pPixels) << uCode;
        EXPECT_EQ(g_fnSourceBytes(uCode), 0u) << uCode;
    }
    EXPECT_FALSE(g_fnPrepareSource(nullptr, 1, 1, 11).pPixels);
    EXPECT_EQ(g_fnSourceBytes(11), 4u);
    EXPECT_EQ(g_fnSourceBytes(29), 8u);
    EXPECT_EQ(g_fnSourceBytes(54), 2u);
}

TEST(ConvertChannels, ALetterWithoutASourceStays255AndXTakesNoRoom) {
    const u8 au8[] = {10, 20, 30, 40};
    const ChannelBuffer p = g_fnConvertChannels(au8, 1, 1, "RGBX", "AXRG");
    ASSERT_TRUE(p);
    EXPECT_EQ((Bytes{p.get(), p.get() + 3}), (Bytes{255, 10, 20}));
}

TEST(ConvertChannels, ASizeThatNoMemoryHasIsRefused) {
    const u8 au8[4] = {};
    EXPECT_FALSE(g_fnConvertChannels(au8, 0, 5, "RGBX", "BGR"));
    EXPECT_FALSE(g_fnConvertChannels(au8, 0xFFFFFFFF, 0xFFFFFFFF, "RGBX", "BGR"));
    EXPECT_FALSE(g_fnConvertChannels(au8, 0x10000, 0x10000, "RGBX", "BGR"));
}
