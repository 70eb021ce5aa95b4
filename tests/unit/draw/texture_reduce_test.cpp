#include "draw/texture_reduce.h"

#include "draw/texture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<u8>;

Bytes Reduce(const Bytes& source, u32 uWidth, u32 uHeight, u32 uChannels, bool bGain) {
    Bytes out(static_cast<std::size_t>(std::max(1u, uWidth / 2)) * std::max(1u, uHeight / 2) * uChannels);
    g_fnReduceLevel(source.data(), uWidth, uHeight, uChannels, bGain, out.data());
    return out;
}

/// Weight of source pixel c for output pixel x, by the rule as it is told: spans walked one after another.
f32 WeightOf(u32 uSide, u32 uNewSide, u32 x, u32 c) {
    const f32 fScale = static_cast<f32>(static_cast<f64>(uNewSide) / static_cast<f64>(uSide));
    f32 fStart = 0, fEnd = 0;
    for (u32 i = 0; i <= x; ++i) {
        fStart = fEnd;
        fEnd = static_cast<f32>(i + 1) / fScale;
        if (fEnd >= static_cast<f32>(uSide - 1)) fEnd = static_cast<f32>(uSide - 1);
    }
    const u32 uFirst = static_cast<u32>(fStart), uLast = static_cast<u32>(fEnd);
    if (c < uFirst || c > uLast) return 0;
    return c == uLast && c != uFirst ? 1.0f - (static_cast<f32>(c + 1) - fEnd) : 1.0f;
}

/// Every source pixel is asked for its weight: slow and plain.
u8 PlainPixel(const Bytes& source, u32 uWidth, u32 uHeight, u32 x, u32 y, bool bGain) {
    f32 fSum = 0, fWeights = 0;
    for (u32 r = 0; r < uHeight; ++r)
        for (u32 c = 0; c < uWidth; ++c) {
            const f32 f = WeightOf(uWidth, std::max(1u, uWidth / 2), x, c) *
                          WeightOf(uHeight, std::max(1u, uHeight / 2), y, r);
            fSum += source[r * uWidth + c] * (f * f);
            fWeights += f * f;
        }
    const f32 fMean = fSum / fWeights;
    return static_cast<u8>(bGain ? std::min(fMean * 1.5f, 255.0f) : fMean);
}

Bytes Noise(u32 uBytes, u32 uSeed) {
    std::mt19937 random(uSeed);
    Bytes bytes(uBytes);
    for (u8& u8Value : bytes) u8Value = static_cast<u8>(random());
    return bytes;
}

u8* Level(CTexture_Base& texture, u32 uLevel) {
    u8* pPixels = nullptr;
    texture.m_fnGetLevel(&pPixels, 0, uLevel);
    return pPixels;
}

} // namespace

TEST(TextureReduce, FourByFourByHand) {
    const Bytes source = {10, 20,  30,  40,  50,  61,  70,  80, //
                          90, 100, 110, 120, 130, 140, 150, 160};
    // Top left: (10 + 20 + 50 + 61) / 4 = 35.25. Top right: (30 + 70) / 2. Bottom left: (90 + 100) / 2.
    EXPECT_EQ(Reduce(source, 4, 4, 1, false), (Bytes{35, 50, 95, 110}));
    // The same before truncation, times 1.5: 52.875, 75, 142.5, 165.
    EXPECT_EQ(Reduce(source, 4, 4, 1, true), (Bytes{52, 75, 142, 165}));
}

TEST(TextureReduce, FiveColumnsByHandShowTheSquaredWeight) {
    // First span 0 to 2.5: weights 1, 1, 0.5, squared 1, 1, 0.25: (10 + 20 + 10) / 2.25 = 17.8. Unsquared it
    // would be 20. Second span 2.5 to 4: column 2 weighs 1 again, column 4 nothing: (40 + 80) / 2.
    const Bytes source = {10, 20, 40, 80, 160};
    EXPECT_EQ(Reduce(source, 5, 1, 1, false), (Bytes{17, 60}));
    EXPECT_EQ(Reduce(source, 5, 1, 1, true), (Bytes{26, 90}));
    EXPECT_EQ(Reduce(source, 1, 5, 1, false), (Bytes{17, 60}));
}

TEST(TextureReduce, SevenColumnsByHand) {
    // Ends 7/3, 14/3, 6. Squared weights: 1 1 1/9; 1 1 4/9; 1 1 0.
    const Bytes source = {0, 0, 90, 30, 69, 21, 255};
    EXPECT_EQ(Reduce(source, 7, 1, 1, false), (Bytes{4, 61, 45}));
}

TEST(TextureReduce, ThreeByThreeByHand) {
    const Bytes source = {10, 21, 255, 30, 40, 255, 255, 255, 255};
    EXPECT_EQ(Reduce(source, 3, 3, 1, false), (Bytes{25})); // 101 / 4
    EXPECT_EQ(Reduce(source, 3, 3, 1, true), (Bytes{37}));  // 37.875
}

TEST(TextureReduce, LastSourceRowAndColumnNeverCount) {
    for (u32 uSide : {2u, 3u, 4u, 5u, 6u, 7u, 8u}) {
        Bytes source(uSide * uSide, 40);
        for (u32 i = 0; i < uSide; ++i) source[(uSide - 1) * uSide + i] = source[i * uSide + uSide - 1] = 255;
        const Bytes out = Reduce(source, uSide, uSide, 1, false);
        EXPECT_LE(*std::max_element(out.begin(), out.end()), 40) << uSide;
        EXPECT_GE(*std::min_element(out.begin(), out.end()), 39) << uSide;
    }
}

TEST(TextureReduce, ASideOfOneStaysOne) {
    EXPECT_EQ(Reduce({77}, 1, 1, 1, false), (Bytes{77}));
    EXPECT_EQ(Reduce({77}, 1, 1, 1, true), (Bytes{115}));
    EXPECT_EQ(Reduce({10, 21, 30, 40}, 4, 1, 1, false), (Bytes{15, 30}));
    EXPECT_EQ(Reduce({10, 21, 30, 40}, 1, 4, 1, false), (Bytes{15, 30}));
    EXPECT_EQ(Reduce({50, 200}, 2, 1, 1, false), (Bytes{50}));
}

TEST(TextureReduce, GainKeeps255AndRaises170To255) {
    for (u32 uSide : {2u, 4u, 6u, 64u}) {
        EXPECT_EQ(Reduce(Bytes(uSide * uSide, 255), uSide, uSide, 1, true), Bytes(uSide * uSide / 4, 255));
        EXPECT_EQ(Reduce(Bytes(uSide * uSide, 170), uSide, uSide, 1, true), Bytes(uSide * uSide / 4, 255));
        EXPECT_EQ(Reduce(Bytes(uSide * uSide, 170), uSide, uSide, 1, false), Bytes(uSide * uSide / 4, 170));
    }
    EXPECT_EQ(Reduce(Bytes(25, 255), 5, 5, 1, true), Bytes(4, 255));
}

TEST(TextureReduce, AtOddSidesRoundingMayLeave254Of170) {
    // First span of 13 columns: weights 1, 1 and a sixth, which single precision can't hold.
    EXPECT_EQ(Reduce(Bytes(13, 170), 13, 1, 1, true)[0], 254);
}

TEST(TextureReduce, FourChannelsStandAloneAndTakeNoGain) {
    const Bytes source = {10, 200, 3, 255, 20, 101, 4, 0,  //
                          30, 50,  5, 99,  90, 90,  9, 90, //
                          1,  1,   1, 1,   2,  2,   2, 2,  //
                          3,  3,   3, 3,   4,  4,   4, 4};
    // 4 by 2: the lower row weighs nothing. (10 + 20) / 2, (200 + 101) / 2, (3 + 4) / 2, (255 + 0) / 2; then
    // column 2 alone.
    EXPECT_EQ(Reduce(source, 4, 2, 4, false), (Bytes{15, 150, 3, 127, 30, 50, 5, 99}));
}

TEST(TextureReduce, EvenSidesAgreeWithThePlainRule) {
    const std::pair<u32, u32> aSizes[] = {{2, 2}, {2, 8}, {8, 2}, {4, 6}, {10, 12}, {16, 16}, {26, 14}};
    for (const auto& [uWidth, uHeight] : aSizes)
        for (bool bGain : {false, true}) {
            const Bytes source = Noise(uWidth * uHeight, uWidth * 100 + uHeight);
            const Bytes out = Reduce(source, uWidth, uHeight, 1, bGain);
            for (u32 i = 0; i < out.size(); ++i)
                ASSERT_EQ(out[i],
                          PlainPixel(source, uWidth, uHeight, i % (uWidth / 2), i / (uWidth / 2), bGain))
                    << uWidth << "x" << uHeight << " at " << i;
        }
}

TEST(TextureReduce, ASinglePixelOnABlankPictureAgreesWithThePlainRule) {
    for (u32 uPixel = 0; uPixel < 8 * 6; ++uPixel) {
        Bytes source(8 * 6, 0);
        source[uPixel] = 201;
        const Bytes out = Reduce(source, 8, 6, 1, true);
        for (u32 i = 0; i < out.size(); ++i)
            ASSERT_EQ(out[i], PlainPixel(source, 8, 6, i % 4, i / 4, true)) << uPixel << " at " << i;
    }
}

TEST(TextureReduce, OddSidesAgreeWithThePlainRule) {
    const std::pair<u32, u32> aSizes[] = {{3, 5}, {9, 4}, {4, 9}, {11, 13}, {1, 7}, {21, 1}, {33, 17}};
    for (const auto& [uWidth, uHeight] : aSizes)
        for (bool bGain : {false, true}) {
            const Bytes source = Noise(uWidth * uHeight, uWidth * 100 + uHeight);
            const Bytes out = Reduce(source, uWidth, uHeight, 1, bGain);
            const u32 uNewWidth = std::max(1u, uWidth / 2);
            for (u32 i = 0; i < out.size(); ++i)
                ASSERT_EQ(out[i], PlainPixel(source, uWidth, uHeight, i % uNewWidth, i / uNewWidth, bGain))
                    << uWidth << "x" << uHeight << " at " << i;
        }
}

TEST(TextureReduce, SidesAndChannelsThatCannotBeDoNothing) {
    u8 u8Out = 9;
    const u8 u8In = 1;
    g_fnReduceLevel(&u8In, 0, 1, 1, false, &u8Out);
    g_fnReduceLevel(&u8In, 1, 0, 1, false, &u8Out);
    g_fnReduceLevel(&u8In, 1, 1, 0, false, &u8Out);
    g_fnReduceLevel(&u8In, 1, 1, 5, false, &u8Out);
    EXPECT_EQ(u8Out, 9);
}

TEST(TextureChain, EachLevelComesFromTheOneBefore) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(4, 4, g_uFormatR8, 1, true));
    const Bytes source = {10, 20,  30,  40,  50,  61,  70,  80, //
                          90, 100, 110, 120, 130, 140, 150, 160};
    EXPECT_TRUE(g_fnFillChain(texture, source.data(), 0));
    EXPECT_EQ(Bytes(Level(texture, 0), Level(texture, 0) + 16), source);
    EXPECT_EQ(Bytes(Level(texture, 1), Level(texture, 1) + 4), (Bytes{52, 75, 142, 165}));
    EXPECT_EQ(*Level(texture, 2), 78); // 52 alone, times 1.5
}

TEST(TextureChain, FourBytesAPixelTakeNoGain) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(2, 2, g_uFormatRGBA8, 1, true));
    const Bytes source = {100, 110, 120, 130, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_TRUE(g_fnFillChain(texture, source.data(), 0));
    EXPECT_EQ(Bytes(Level(texture, 1), Level(texture, 1) + 4), (Bytes{100, 110, 120, 130}));
}

TEST(TextureChain, OneByOneIsCopiedAndGetsNoChain) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(1, 1, g_uFormatR8, 1, true));
    const u8 u8Pixel = 200;
    EXPECT_TRUE(g_fnFillChain(texture, &u8Pixel, 0));
    EXPECT_EQ(*Level(texture, 0), 200);
    EXPECT_EQ(Level(texture, 1), nullptr);
}

TEST(TextureChain, TheWalkEndsAtAWidthOfOneSoATallTextureKeepsZeroLevels) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(2, 8, g_uFormatR8, 1, true));
    EXPECT_EQ(texture.m_uLevelCount, 4);
    EXPECT_TRUE(g_fnFillChain(texture, Bytes(16, 100).data(), 0));
    EXPECT_EQ(Bytes(Level(texture, 1), Level(texture, 1) + 4), Bytes(4, 150));
    EXPECT_EQ(Bytes(Level(texture, 2), Level(texture, 2) + 2), Bytes(2, 0));
    EXPECT_EQ(*Level(texture, 3), 0);
}

TEST(TextureChain, AWideTextureIsFilledToTheEnd) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(8, 2, g_uFormatR8, 1, true));
    EXPECT_TRUE(g_fnFillChain(texture, Bytes(16, 40).data(), 0));
    EXPECT_EQ(*Level(texture, 1), 60);
    EXPECT_EQ(*Level(texture, 2), 90);
    EXPECT_EQ(*Level(texture, 3), 135);
}

TEST(TextureChain, WithoutAChainOnlyLevel0IsCopied) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(4, 4, g_uFormatR8, 2, false));
    const Bytes source = Noise(16, 1);
    EXPECT_TRUE(g_fnFillChain(texture, source.data(), 1));
    EXPECT_EQ(Bytes(Level(texture, 0), Level(texture, 0) + 16), Bytes(16, 0));
    u8* pPixels = nullptr;
    texture.m_fnGetLevel(&pPixels, 1, 0);
    EXPECT_EQ(Bytes(pPixels, pPixels + 16), source);
}

TEST(TextureChain, TheTexturesOwnLevel0MayBeTheSource) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(2, 2, g_uFormatR8, 1, true));
    *Level(texture, 0) = 80;
    EXPECT_TRUE(g_fnFillChain(texture, Level(texture, 0), 0));
    EXPECT_EQ(*Level(texture, 0), 80);
    EXPECT_EQ(*Level(texture, 1), 120);
}

TEST(TextureChain, OtherPixelSizesAreLeftAlone) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(2, 2, 7, 1, true));
    EXPECT_FALSE(g_fnFillChain(texture, Bytes(8, 5).data(), 0));
    EXPECT_EQ(Bytes(Level(texture, 0), Level(texture, 0) + 8), Bytes(8, 0));
}

TEST(TextureChain, RowsKnownToBeBlankChangeNoLevel) {
    for (const u32 uSide : {64u, 96u, 50u})
        for (const u32 uRows : {0u, 1u, 7u, 8u, 33u, uSide - 1, uSide}) {
            Bytes source(uSide * uSide);
            std::copy_n(Noise(uSide * uSide, uRows).begin(), uRows * uSide, source.begin());
            CTexture_Base whole, spared, fresh;
            ASSERT_TRUE(whole.m_fnCreate(uSide, uSide, g_uFormatR8, 1, true));
            ASSERT_TRUE(spared.m_fnCreate(uSide, uSide, g_uFormatR8, 1, true));
            ASSERT_TRUE(fresh.m_fnCreate(uSide, uSide, g_uFormatR8, 1, true));
            EXPECT_TRUE(g_fnFillChain(whole, source.data(), 0));
            EXPECT_TRUE(g_fnFillChain(spared, source.data(), 0, uRows));
            EXPECT_TRUE(g_fnFillChain(fresh, source.data(), 0, uRows, true));
            for (u32 u = 0; static_cast<i32>(u) < whole.m_uLevelCount; ++u) {
                const u32 uBytes = g_fnLevelSide(uSide, u) * g_fnLevelSide(uSide, u);
                EXPECT_TRUE(std::equal(Level(whole, u), Level(whole, u) + uBytes, Level(spared, u)))
                    << uSide << " rows " << uRows << " level " << u;
                EXPECT_TRUE(std::equal(Level(whole, u), Level(whole, u) + uBytes, Level(fresh, u)))
                    << uSide << " rows " << uRows << " level " << u;
            }
        }
}

TEST(TextureChain, NeedsASourceAndAFrame) {
    CTexture_Base texture;
    const u8 u8Pixel = 1;
    EXPECT_FALSE(g_fnFillChain(texture, &u8Pixel, 0));
    ASSERT_TRUE(texture.m_fnCreate(1, 1, g_uFormatR8, 1, true));
    EXPECT_FALSE(g_fnFillChain(texture, nullptr, 0));
    EXPECT_FALSE(g_fnFillChain(texture, &u8Pixel, 1));
}
