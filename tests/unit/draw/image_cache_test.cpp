#include "draw/image_cache.h"

#include "tests/support/odd_files.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr const char* g_szCache = "Screenshot.png.cache";

class CNotingTexture : public CTexture_Base {
  public:
    bool m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap) override {
        m_aAsked.push_back(uFormat);
        return uFormat != m_uRefused && CTexture_Base::m_fnCreate(uWidth, uHeight, uFormat, uFrames, bMipmap);
    }
    bool m_fnUploadLevel(const void* pPixels, u32 uFrame, u32) override {
        m_uFrame = uFrame;
        m_strPixels.assign(static_cast<const char*>(pPixels), m_uFrameBytes);
        return m_bUploads;
    }
    std::vector<u32> m_aAsked;
    u32 m_uRefused = 0, m_uFrame = 99;
    std::string m_strPixels;
    bool m_bUploads = true;
};

std::string Header(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames) {
    std::string str;
    for (u32 uValue : {uWidth, uHeight, uFormat, uFrames})
        for (u32 i = 0; i < 4; ++i) str += static_cast<char>(uValue >> (8 * i));
    return str;
}

struct ImageCache : ::testing::Test {
    bool Load(const std::string& strBytes) {
        m_data.Write(g_szCache, strBytes);
        return m_texture.m_fnLoadCache();
    }
    CTestDataFolder m_data{false};
    CNotingTexture m_texture;
};

} // namespace

TEST_F(ImageCache, PixelsGoUpAsTheyAre) {
    ASSERT_TRUE(Load(Header(2, 1, 11, 1) + "abcdefgh"));
    EXPECT_EQ(m_texture.m_strPixels, "abcdefgh");
    EXPECT_EQ(m_texture.m_uFrame, 0u);
    EXPECT_EQ(m_texture.m_uWidth, 2u);
}

TEST_F(ImageCache, OneOfAnotherNameIsNeverRead) {
    m_data.Write("picture.png.cache", Header(1, 1, 11, 1) + "abcd");
    EXPECT_FALSE(m_texture.m_fnLoadCache());
}

TEST_F(ImageCache, FramesBeyondTheFirstStayEmpty) {
    ASSERT_TRUE(Load(Header(1, 1, 11, 3) + "abcdefghijkl"));
    EXPECT_EQ(m_texture.m_uFrameCount, 3);
    EXPECT_EQ(m_texture.m_strPixels, "abcd");
}

TEST_F(ImageCache, ASideOrCountOfZeroIsRefused) {
    EXPECT_FALSE(Load(Header(0, 1, 11, 1) + "abcd"));
    EXPECT_FALSE(Load(Header(1, 0, 11, 1) + "abcd"));
    EXPECT_FALSE(Load(Header(1, 1, 11, 0) + "abcd"));
}

TEST_F(ImageCache, MoreThan1000FramesAreRefused) {
    EXPECT_TRUE(Load(Header(1, 1, 11, 1000) + "abcd"));
    EXPECT_FALSE(Load(Header(1, 1, 11, 1001) + "abcd"));
}

TEST_F(ImageCache, AnUnknownFormatIsRefused) { EXPECT_FALSE(Load(Header(1, 1, 99, 1) + "abcd")); }

TEST_F(ImageCache, AHeaderThatEndsEarlyHasZeros) {
    EXPECT_FALSE(Load(""));
    EXPECT_FALSE(Load(Header(1, 1, 11, 1).substr(0, 12)));
    EXPECT_TRUE(Load(Header(1, 1, 11, 1).substr(0, 13))); // the rest of the count is 0 anyway
}

TEST_F(ImageCache, PixelsThatAreMissingAreZero) {
    ASSERT_TRUE(Load(Header(2, 1, 11, 1) + "abc"));
    EXPECT_EQ(m_texture.m_strPixels, std::string("abc\0\0\0\0\0", 8));
}

TEST_F(ImageCache, WithoutRgbaItIsTakenAsBgra) {
    m_texture.m_uRefused = 11;
    ASSERT_TRUE(Load(Header(1, 1, 11, 1) + "abcd"));
    EXPECT_EQ(m_texture.m_aAsked, (std::vector<u32>{11, 47}));
    EXPECT_EQ(m_texture.m_strPixels, "abcd");
    m_texture.m_uRefused = 47;
    EXPECT_FALSE(Load(Header(1, 1, 47, 1) + "abcd"));
}

TEST_F(ImageCache, TheResultIsThatOfTheUpload) {
    m_texture.m_bUploads = false;
    EXPECT_FALSE(Load(Header(1, 1, 11, 1) + "abcd"));
}

TEST_F(ImageCache, SizesBeyondTheBoundsTakeNoMemory) {
    EXPECT_FALSE(Load(Header(0xFFFFFFFF, 0xFFFFFFFF, 11, 1)));
    EXPECT_FALSE(Load(Header(65536, 65536, 11, 1)));
    EXPECT_FALSE(Load(Header(4096, 4096, 11, 1000)));
    EXPECT_TRUE(m_texture.m_aAsked.empty());
}

TEST_F(ImageCache, WhatIsNoFileIsNeverWaitedForOrRead) {
    ForEachOddFile(m_data.Path(g_szCache),
                   [&](const char* szKind) { EXPECT_FALSE(m_texture.m_fnLoadCache()) << szKind; });
}
