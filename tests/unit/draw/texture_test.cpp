#include "base/timer.h"
#include "draw/texture.h"

#include "platform/folders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

u8* Level(CTexture_Base& texture, u32 uFrame, u32 uLevel) {
    u8* pPixels = reinterpret_cast<u8*>(1);
    texture.m_fnGetLevel(&pPixels, uFrame, uLevel);
    return pPixels;
}

/// Writes down what it is handed; refuses one level on demand.
class CNotingTexture : public CTexture_Base {
  public:
    struct stUpload {
        const void* pPixels;
        u32 uFrame, uLevel;
    };
    bool m_fnUploadLevel(const void* pPixels, u32 uFrame, u32 uLevel) override {
        m_aUploads.push_back({pPixels, uFrame, uLevel});
        return uLevel != m_uRefused;
    }
    void m_fnFreeFrames() override {
        ++m_uFreed;
        CTexture_Base::m_fnFreeFrames();
    }
    std::vector<stUpload> m_aUploads;
    u32 m_uRefused = 99;
    u32 m_uFreed = 0;
};

/// An animation of two frames with delays of 100 and 200 ms.
struct TextureAdvance : ::testing::Test {
    void SetUp() override {
        ASSERT_TRUE(m_texture.m_fnCreate(1, 1, g_uFormatRGBA8, 2, false));
        m_texture.m_mapFrameDelay = {{0, 100}, {1, 200}};
    }
    void TearDown() override { g_fLastFrameSeconds = 0.0f; }
    /// Steps until the frame shown changes.
    u32 StepsToChange(f32 fSeconds) {
        g_fLastFrameSeconds = fSeconds;
        const u32 uBefore = m_texture.m_fnGetCurrentFrame();
        for (u32 uSteps = 1; uSteps < 1000; ++uSteps) {
            m_texture.m_fnAdvance();
            if (m_texture.m_fnGetCurrentFrame() != uBefore) return uSteps;
        }
        return 0;
    }
    CTexture_Base m_texture;
};

/// A file of the test's own below the temporary folder.
class CTestFile {
  public:
    explicit CTestFile(const char* szName)
        : m_path(std::filesystem::temp_directory_path() /
                 (std::string("orvin_texture_") + szName + "_" +
                  std::to_string(reinterpret_cast<std::uintptr_t>(this)))) {}
    ~CTestFile() {
        std::error_code error;
        std::filesystem::remove(m_path, error);
    }
    std::u16string Path() const { return m_path.u16string(); }
    std::vector<u8> Read() const {
        std::ifstream file(m_path, std::ios::binary);
        return std::vector<u8>(std::istreambuf_iterator<char>(file), {});
    }
    void Write(u32 uBytes) const { std::ofstream(m_path, std::ios::binary) << std::string(uBytes, 'x'); }

  private:
    std::filesystem::path m_path;
};

} // namespace

TEST(Texture, LevelsThatWereDroppedComeBackZeroed) {
    CTexture_Base texture;
    EXPECT_FALSE(texture.m_fnTakeLevels(0)) << "no frame yet";
    texture.m_fnDropLevels(0);
    ASSERT_TRUE(texture.m_fnCreate(4, 4, g_uFormatR8, 2, true));
    for (u32 u = 0; u < 3; ++u) *Level(texture, 0, u) = *Level(texture, 1, u) = 9;
    u8* const pKept = Level(texture, 1, 0);
    texture.m_fnDropLevels(0);
    texture.m_fnDropLevels(0);
    EXPECT_EQ(Level(texture, 0, 0), nullptr);
    EXPECT_EQ(Level(texture, 0, 2), nullptr);
    ASSERT_TRUE(texture.m_fnTakeLevels(0));
    for (u32 u = 0; u < 3; ++u) EXPECT_EQ(*Level(texture, 0, u), 0) << u;
    *Level(texture, 0, 0) = 5;
    ASSERT_TRUE(texture.m_fnTakeLevels(0));
    EXPECT_EQ(*Level(texture, 0, 0), 5) << "there already";
    EXPECT_EQ(Level(texture, 1, 0), pKept) << "the other frame stays";
    EXPECT_FALSE(texture.m_fnTakeLevels(2));
    texture.m_fnDropLevels(2);
    texture.m_fnDropLevels(1); // and the end finds a frame without levels
}

TEST(Texture, ALentLevelStaysTheLenders) {
    CTexture_Base texture;
    u8 au8Lent[16] = {7};
    texture.m_fnLendLevel(0, au8Lent); // no frame yet
    ASSERT_TRUE(texture.m_fnCreate(4, 4, g_uFormatR8, 2, true));
    *Level(texture, 0, 1) = 9;
    texture.m_fnLendLevel(0, au8Lent);
    EXPECT_EQ(Level(texture, 0, 0), au8Lent);
    ASSERT_TRUE(texture.m_fnTakeLevels(0));
    EXPECT_EQ(Level(texture, 0, 0), au8Lent) << "there already";
    EXPECT_EQ(*Level(texture, 0, 1), 0) << "the others are taken anew";
    texture.m_fnDropLevels(0);
    EXPECT_EQ(Level(texture, 0, 0), nullptr);
    EXPECT_EQ(au8Lent[0], 7);
    texture.m_fnLendLevel(1, au8Lent);
    texture.m_fnFreeFrames(); // and neither does the end free it
}

TEST(TextureFormat, BytesAPixel) {
    const std::pair<u32, std::vector<u32>> aSizes[] = {
        {1, {1, 2, 4, 5, 6}},
        {2, {7, 8, 9, 10, 18, 19, 20, 21, 22, 23}},
        {4, {11, 12, 14, 15, 16, 17, 24, 25, 26, 27, 28, 34, 35, 36, 37, 47}},
        {8, {29, 30, 31, 32, 33, 38, 39, 40}},
        {12, {41, 42, 43}},
        {16, {44, 45, 46}},
        {0, {0, 3, 13, 48, 49, 55, 0xFFFFFFFF}},
    };
    for (const auto& [uBytes, codes] : aSizes)
        for (u32 uCode : codes) EXPECT_EQ(g_fnBytesPerPixel(uCode), uBytes) << uCode;
}

TEST(TextureFormat, BitsAPixelForADecoder) {
    const std::pair<u32, std::vector<u32>> aSizes[] = {
        {32, {11, 12, 35, 47, 49, 55}},
        {16, {18, 20, 51, 54}},
        {64, {29, 30}},
        {128, {44}},
        {8, {0, 1, 2, 13, 19, 25, 31, 36, 48, 1000}},
    };
    for (const auto& [uBits, codes] : aSizes)
        for (u32 uCode : codes) EXPECT_EQ(g_fnBitsPerPixel(uCode), uBits) << uCode;
}

TEST(TextureFormat, LevelsDownToOneByOne) {
    EXPECT_EQ(g_fnLevelCount(1, 1), 1u);
    EXPECT_EQ(g_fnLevelCount(2, 1), 2u);
    EXPECT_EQ(g_fnLevelCount(1, 8), 4u);
    EXPECT_EQ(g_fnLevelCount(5, 3), 3u);
    EXPECT_EQ(g_fnLevelCount(4096, 4096), 13u);
    EXPECT_EQ(g_fnLevelSide(5, 1), 2u);
    EXPECT_EQ(g_fnLevelSide(5, 3), 1u);
    EXPECT_EQ(g_fnLevelSide(5, 40), 1u);
}

TEST(Texture, FiveByThreeHasLevelsOf5x3And2x1And1x1) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(5, 3, g_uFormatR8, 1, true));
    EXPECT_EQ(texture.m_uLevelCount, 3);
    EXPECT_EQ(texture.m_uFrameBytes, 15u);
    const u32 auBytes[] = {15, 2, 1};
    for (u32 uLevel = 0; uLevel < 3; ++uLevel) {
        u8* pPixels = Level(texture, 0, uLevel);
        ASSERT_NE(pPixels, nullptr);
        EXPECT_EQ(std::count(pPixels, pPixels + auBytes[uLevel], 0), static_cast<long>(auBytes[uLevel]));
    }
    EXPECT_EQ(Level(texture, 0, 3), nullptr);
}

TEST(Texture, CreationStoresWhatItWasGiven) {
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(6, 4, g_uFormatBGRA8, 3, false));
    u32 uWidth = 0, uHeight = 0;
    texture.m_fnGetSize(&uWidth, &uHeight);
    EXPECT_EQ(uWidth, 6u);
    EXPECT_EQ(uHeight, 4u);
    texture.m_fnGetSize(nullptr, nullptr);
    EXPECT_EQ(texture.m_uFormat, 47u);
    EXPECT_EQ(texture.m_uBytesPerPixel, 4u);
    EXPECT_EQ(texture.m_uFrameBytes, 96u);
    EXPECT_EQ(texture.m_uLevelCount, 1);
    EXPECT_FALSE(texture.m_bMipmap);
    EXPECT_EQ(texture.m_uFrameCount, 3);
    EXPECT_NE(Level(texture, 2, 0), nullptr);
}

TEST(Texture, AWrongFrameOrLevelIsNull) {
    CTexture_Base texture;
    EXPECT_EQ(Level(texture, 0, 0), nullptr);
    ASSERT_TRUE(texture.m_fnCreate(4, 4, g_uFormatR8, 2, false));
    EXPECT_NE(Level(texture, 1, 0), nullptr);
    EXPECT_EQ(Level(texture, 2, 0), nullptr);
    EXPECT_EQ(Level(texture, 0, 1), nullptr);
    EXPECT_EQ(Level(texture, 0xFFFFFFFF, 0xFFFFFFFF), nullptr);
}

TEST(Texture, ASecondCreationReplacesTheFirst) {
    CNotingTexture texture;
    ASSERT_TRUE(texture.m_fnCreate(4, 4, g_uFormatRGBA8, 5, true));
    *Level(texture, 0, 0) = 7;
    ASSERT_TRUE(texture.m_fnCreate(2, 2, g_uFormatR8, 1, false));
    EXPECT_EQ(texture.m_uFreed, 2u);
    EXPECT_EQ(*Level(texture, 0, 0), 0);
    EXPECT_EQ(Level(texture, 1, 0), nullptr);
    EXPECT_EQ(Level(texture, 0, 1), nullptr);
}

TEST(Texture, SizesThatCannotBeAreRefused) {
    CTexture_Base texture;
    EXPECT_FALSE(texture.m_fnCreate(0, 4, g_uFormatR8, 1, false));
    EXPECT_FALSE(texture.m_fnCreate(4, 0, g_uFormatR8, 1, false));
    EXPECT_FALSE(texture.m_fnCreate(4, 4, g_uFormatR8, 0, false));
    EXPECT_FALSE(texture.m_fnCreate(4, 4, g_uFormatR8, 1001, false));
    EXPECT_FALSE(texture.m_fnCreate(4, 4, 3, 1, false));
    EXPECT_FALSE(texture.m_fnCreate(32768, 16384, g_uFormatRGBA8, 1, false)); // 2 GiB
    EXPECT_FALSE(texture.m_fnCreate(0xFFFFFFFF, 0xFFFFFFFF, 44, 1, true));
    EXPECT_FALSE(texture.m_fnCreate(0x80000000, 2, g_uFormatR8, 1, true));
    EXPECT_TRUE(texture.m_fnCreate(1, 1, g_uFormatR8, 1000, false));
    // A refused creation leaves nothing of the former one.
    EXPECT_FALSE(texture.m_fnCreate(0, 0, g_uFormatR8, 1, false));
    EXPECT_EQ(Level(texture, 0, 0), nullptr);
}

TEST(Texture, AFrameGoesUpLevelByLevelFromItsOwnChain) {
    CNotingTexture texture;
    ASSERT_TRUE(texture.m_fnCreate(4, 2, g_uFormatR8, 2, true));
    EXPECT_TRUE(texture.m_fnUploadFrame(nullptr, 1));
    ASSERT_EQ(texture.m_aUploads.size(), 3u);
    for (u32 i = 0; i < 3; ++i) {
        EXPECT_EQ(texture.m_aUploads[i].pPixels, Level(texture, 1, i));
        EXPECT_EQ(texture.m_aUploads[i].uFrame, 1u);
        EXPECT_EQ(texture.m_aUploads[i].uLevel, i);
    }
}

TEST(Texture, AFrameGoesUpFromGivenLevelsUntilOneIsRefused) {
    CNotingTexture texture;
    ASSERT_TRUE(texture.m_fnCreate(4, 2, g_uFormatR8, 1, true));
    const u8 au8Pixels[3] = {};
    const void* const apLevels[] = {&au8Pixels[0], &au8Pixels[1], &au8Pixels[2]};
    texture.m_uRefused = 1;
    EXPECT_FALSE(texture.m_fnUploadFrame(apLevels, 0));
    ASSERT_EQ(texture.m_aUploads.size(), 2u);
    EXPECT_EQ(texture.m_aUploads[1].pPixels, &au8Pixels[1]);
}

TEST(Texture, WithoutAFlavourUploadsSucceedAndBindsDoNothing) {
    CTexture_Base texture;
    EXPECT_TRUE(texture.m_fnUploadLevel(nullptr, 9, 9));
    texture.m_fnBindUnit(0);
    EXPECT_TRUE(texture.m_fnReserved16());
    EXPECT_FALSE(texture.m_fnLoadTexture(u"picture.png"));
    EXPECT_FALSE(texture.m_fnLoadCache());
}

TEST(Texture, ReleaseFreesTheFrames) {
    CNotingTexture texture;
    ASSERT_TRUE(texture.m_fnCreate(4, 2, g_uFormatR8, 1, true));
    const u32 uFreed = texture.m_uFreed;
    texture.m_fnRelease();
    EXPECT_EQ(texture.m_uFreed, uFreed + 1);
    EXPECT_EQ(Level(texture, 0, 0), nullptr);
    texture.m_fnRelease();
}

TEST(Texture, ItsStopwatchRunsFromConstruction) {
    CTexture_Base texture;
    EXPECT_EQ(texture.m_timer.m_bStopped, 0);
}

TEST_F(TextureAdvance, At16MillisecondsAFrameEndsAtTheFirstBindAboveItsDelay) {
    EXPECT_EQ(StepsToChange(0.016f), 7u); // 112 ms, over a delay of 100
    EXPECT_EQ(m_texture.m_fnGetCurrentFrame(), 1u);
    EXPECT_EQ(m_texture.m_fFrameTime, 0.0f);
    EXPECT_EQ(StepsToChange(0.016f), 13u); // 208 ms, over a delay of 200
    EXPECT_EQ(m_texture.m_fnGetCurrentFrame(), 0u);
}

TEST_F(TextureAdvance, ADelayThatIsJustReachedIsNotYetOver) {
    m_texture.m_mapFrameDelay[0] = 250;
    EXPECT_EQ(StepsToChange(0.25f), 2u);
}

TEST_F(TextureAdvance, ALongFrameMakesOneStep) {
    g_fLastFrameSeconds = 60.0f;
    m_texture.m_fnAdvance();
    EXPECT_EQ(m_texture.m_fnGetCurrentFrame(), 1u);
    m_texture.m_fnAdvance();
    EXPECT_EQ(m_texture.m_fnGetCurrentFrame(), 0u);
}

TEST_F(TextureAdvance, TheLoopCountEndsNothing) {
    m_texture.m_uLoopCount = 1;
    m_texture.m_bLoops = true;
    g_fLastFrameSeconds = 1.0f;
    for (u32 i = 1; i <= 10; ++i) {
        m_texture.m_fnAdvance();
        EXPECT_EQ(m_texture.m_fnGetCurrentFrame(), i % 2);
    }
}

TEST_F(TextureAdvance, AFrameWithoutDelayIsEnteredWithNone) {
    m_texture.m_mapFrameDelay.clear();
    g_fLastFrameSeconds = 0.0f;
    m_texture.m_fnAdvance();
    EXPECT_EQ(m_texture.m_fnGetCurrentFrame(), 0u);
    EXPECT_EQ(m_texture.m_mapFrameDelay, (std::map<u32, u32>{{0, 0}}));
    EXPECT_EQ(StepsToChange(0.001f), 1u);
}

TEST_F(TextureAdvance, AFrameBeyondTheLastGoesOnInsideTheRange) {
    m_texture.m_fnSetCurrentFrame(1000);
    g_fLastFrameSeconds = 1.0f;
    m_texture.m_fnAdvance();
    EXPECT_EQ(m_texture.m_fnGetCurrentFrame(), 1u);
}

TEST(Texture, WithoutFramesNothingAdvances) {
    CTexture_Base texture;
    g_fLastFrameSeconds = 1.0f;
    texture.m_fnAdvance();
    EXPECT_EQ(texture.m_fnGetCurrentFrame(), 0u);
    g_fLastFrameSeconds = 0.0f;
}

TEST(TextureHeader, IsWidthHeightAndFrameCount) {
    const CTestFile file("header");
    CTexture_Base texture;
    ASSERT_TRUE(texture.m_fnCreate(0x102, 3, g_uFormatR8, 4, false));
    EXPECT_TRUE(texture.m_fnWriteHeader(file.Path().c_str()));
    EXPECT_EQ(file.Read(), (std::vector<u8>{2, 1, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0}));
    CTexture_Base other;
    EXPECT_TRUE(other.m_fnReadHeader(file.Path().c_str()));
    EXPECT_EQ(other.m_uWidth, 0u);
}

TEST(TextureHeader, NeedsTwelveBytesAndAFile) {
    const CTestFile file("short");
    CTexture_Base texture;
    EXPECT_FALSE(texture.m_fnReadHeader(file.Path().c_str()));
    file.Write(11);
    EXPECT_FALSE(texture.m_fnReadHeader(file.Path().c_str()));
    file.Write(12);
    EXPECT_TRUE(texture.m_fnReadHeader(file.Path().c_str()));
    EXPECT_FALSE(texture.m_fnReadHeader(nullptr));
    EXPECT_FALSE(texture.m_fnWriteHeader(nullptr));
    EXPECT_FALSE(texture.m_fnWriteHeader((file.Path() + u"/none/file").c_str()));
}
