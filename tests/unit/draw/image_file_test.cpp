#include "draw/image_file.h"

#include "base/log.h"
#include "platform/utf.h"
#include "tests/support/gif_maker.h"
#include "tests/support/odd_files.h"
#include "tests/support/test_data_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using platform::stImageFile;

/// Notes which frames go up, with their pixels; can refuse a format.
class CLoadedTexture : public CTexture_Base {
  public:
    bool m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap) override {
        m_aAsked.push_back(uFormat);
        return uFormat != m_uRefused && CTexture_Base::m_fnCreate(uWidth, uHeight, uFormat, uFrames, bMipmap);
    }
    bool m_fnUploadLevel(const void* pPixels, u32 uFrame, u32 uLevel) override {
        EXPECT_EQ(uFrame, m_aUploads.size());
        EXPECT_EQ(uLevel, 0u);
        m_aUploads.push_back(Letters(static_cast<const u8*>(pPixels)));
        return true;
    }
    /// A letter a pixel: a colour of GifTable() in the order that the format says, '.' for clear, '?' else.
    std::string Letters(const u8* p) const {
        std::string strOut;
        const u32 uRed = m_uFormat == g_uFormatBGRA8 ? 2 : 0;
        for (u32 u = 0; u < m_uWidth * m_uHeight; ++u, p += 4) {
            const int iRed = p[uRed], iBlue = p[2 - uRed];
            const bool bColor = p[3] == 255 && iRed % 10 == 0 && p[1] == iRed + 1 && iBlue == iRed + 2;
            strOut += bColor                         ? static_cast<char>('A' + iRed / 10 - 1)
                      : p[0] || p[1] || p[2] || p[3] ? '?'
                                                     : '.';
        }
        return strOut;
    }
    std::string Frame(u32 uFrame) {
        u8* pPixels = nullptr;
        m_fnGetLevel(&pPixels, uFrame, 0);
        return pPixels ? Letters(pPixels) : "none";
    }
    std::vector<u32> m_aAsked;
    std::vector<std::string> m_aUploads;
    u32 m_uRefused = 0;
};

struct ImageFileLoad : ::testing::Test {
    void SetUp() override {
        s_aLines.clear();
        g_fnLogSink = [](const char* szLine) { s_aLines.emplace_back(szLine); };
    }
    void TearDown() override { g_fnLogSink = m_fnFormer; }
    bool Load(const std::string& strBytes) {
        m_data.Write("picture", strBytes);
        char16_t wzPath[1024];
        return platform::Utf8ToUtf16(m_data.Path("picture").c_str(), wzPath, 1024) &&
               m_texture.m_fnLoadTexture(wzPath);
    }
    bool Load(const CGifMaker& gif) { return Load(gif.File()); }
    std::string Log() const {
        std::string strAll;
        for (const std::string& strLine : s_aLines) strAll += strLine;
        return strAll;
    }
    static std::vector<std::string> s_aLines;
    void (*m_fnFormer)(const char*) = g_fnLogSink;
    CTestDataFolder m_data{false};
    CLoadedTexture m_texture;
};
std::vector<std::string> ImageFileLoad::s_aLines;

/// One pixel of 24 bits, red 10, green 11, blue 12.
std::string TinyBmp() {
    std::string str("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0", 30);
    return str + std::string(24, '\0') + std::string("\x0C\x0B\x0A\0", 4);
}

} // namespace

TEST_F(ImageFileLoad, AllDelaysOfZeroPlayAt90Milliseconds) {
    CGifMaker gif(2, 1);
    ASSERT_TRUE(Load(gif.Control(0, 1).Frame(0, 0, 2, 1, "AB").Control(0, 1).Frame(0, 0, 2, 1, "CD")));
    EXPECT_EQ(m_texture.m_mapFrameDelay, (std::map<u32, u32>{{0, 90}, {1, 90}}));
}

TEST_F(ImageFileLoad, DelaysAreTensOfMillisecondsAndAMissingOneIs90) {
    CGifMaker gif(1, 1);
    ASSERT_TRUE(Load(gif.Control(7, 1)
                         .Frame(0, 0, 1, 1, "A")
                         .Frame(0, 0, 1, 1, "B")
                         .Control(300, 1)
                         .Frame(0, 0, 1, 1, "C")));
    EXPECT_EQ(m_texture.m_mapFrameDelay, (std::map<u32, u32>{{0, 70}, {1, 90}, {2, 3000}}));
}

TEST_F(ImageFileLoad, Of1001FramesTheFirst1000AreKept) {
    CGifMaker gif(1, 1);
    for (u32 i = 0; i < 1001; ++i)
        gif.Control(1, 1).Frame(0, 0, 1, 1, std::string(1, static_cast<char>('A' + i % 4)));
    ASSERT_TRUE(Load(gif));
    EXPECT_EQ(m_texture.m_uFileFrames, 1001u);
    EXPECT_EQ(m_texture.m_uFrameCount, 1000);
    EXPECT_EQ(m_texture.m_mapFrameDelay.size(), 1000u);
    ASSERT_EQ(m_texture.m_aUploads.size(), 1000u);
    EXPECT_EQ(m_texture.m_aUploads[999], "D");
}

/// First frame whole, then one with the disposal under test, then one of a single pixel.
static CGifMaker Undoing(int iDisposal) {
    CGifMaker gif(4, 1, 3);
    gif.Control(1, 1).Frame(0, 0, 4, 1, "AAAA").Control(1, iDisposal).Frame(0, 0, 2, 1, "BB");
    gif.Control(1, 1).Frame(3, 0, 1, 1, "C").Control(1, 1).Frame(2, 0, 1, 1, "D");
    return gif;
}

TEST_F(ImageFileLoad, Disposal0And1And3KeepTheFormerFrame) {
    for (int iDisposal : {0, 1, 3}) {
        m_texture.m_aUploads.clear();
        ASSERT_TRUE(Load(Undoing(iDisposal)));
        EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"AAAA", "BBAA", "BBAC", "BBDC"}))
            << iDisposal;
    }
}

TEST_F(ImageFileLoad, AfterDisposal2TheNextFrameStartsFromTheBackground) {
    ASSERT_TRUE(Load(Undoing(2)));
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"AAAA", "BBAA", "DDDC", "DDDC"}));
    EXPECT_EQ(m_texture.m_fBackground[0], 40.0f);
    EXPECT_EQ(m_texture.m_fBackground[1], 41.0f);
    EXPECT_EQ(m_texture.m_fBackground[2], 42.0f);
    EXPECT_EQ(m_texture.m_fBackground[3], 255.0f);
}

TEST_F(ImageFileLoad, AfterAnUnknownDisposalTheNextFrameIsLeftOutAndTheLastStaysClear) {
    for (int iDisposal : {4, 5, 6, 7}) {
        m_texture.m_aUploads.clear();
        ASSERT_TRUE(Load(Undoing(iDisposal)));
        EXPECT_EQ(m_texture.m_uStoredFrames, 3u);
        EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"AAAA", "BBAA", "BBDA", "...."}))
            << iDisposal;
        EXPECT_EQ(m_texture.m_mapFrameDelay.size(), 4u);
    }
}

TEST_F(ImageFileLoad, TheFirstFrameOfAnAnimationLiesOnTheBackground) {
    CGifMaker gif(3, 1, 1);
    ASSERT_TRUE(Load(gif.Control(1, 1).Frame(1, 0, 1, 1, "A").Control(1, 1).Frame(2, 0, 1, 1, "C")));
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"BAB", "BAC"}));
}

TEST_F(ImageFileLoad, AStillLiesOnNothing) {
    CGifMaker gif(3, 1, 1);
    ASSERT_TRUE(Load(gif.Control(1, 1).Frame(1, 0, 1, 1, "A")));
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{".A."}));
    EXPECT_TRUE(m_texture.m_mapFrameDelay.empty());
    EXPECT_EQ(m_texture.m_uFrameCount, 1);
}

TEST_F(ImageFileLoad, AFrameSmallerThanTheScreenLeavesTheRestOfTheFormerOne) {
    CGifMaker gif(3, 2);
    gif.Control(1, 1).Frame(0, 0, 3, 2, "ABCDAB").Control(1, 1).Frame(1, 1, 2, 1, "CC");
    ASSERT_TRUE(Load(gif));
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"ABCDAB", "ABCDCC"}));
}

TEST_F(ImageFileLoad, ClearPixelsLeaveWhatIsThere) {
    CGifMaker gif(3, 1);
    gif.Control(1, 1).Frame(0, 0, 3, 1, "ABC").Control(1, 1, 2).Frame(0, 0, 3, 1, "CDC");
    ASSERT_TRUE(Load(gif));
    EXPECT_EQ(m_texture.m_aUploads[1], "ADC");
}

TEST_F(ImageFileLoad, PixelsOutsideTheScreenAreDropped) {
    CGifMaker gif(2, 2);
    gif.Control(1, 1)
        .Frame(1, 1, 2, 2, "ABCD")
        .Control(1, 1)
        .Frame(2, 0, 1, 2, "CC")
        .Control(1, 1)
        .Frame(0, 9, 2, 1, "DD");
    ASSERT_TRUE(Load(gif));
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"AAAA", "AAAA", "AAAA"}));
    CGifMaker corner(2, 2, 1);
    m_texture.m_aUploads.clear();
    ASSERT_TRUE(Load(corner.Control(1, 1).Frame(1, 1, 2, 2, "CDDD").Control(1, 1).Frame(0, 0, 1, 1, "A")));
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"BBBC", "ABBC"}));
}

TEST_F(ImageFileLoad, ATextureWithoutRgbaTakesBgraAndSwaps) {
    m_texture.m_uRefused = g_uFormatRGBA8;
    ASSERT_TRUE(Load(Undoing(2)));
    EXPECT_EQ(m_texture.m_aAsked, (std::vector<u32>{g_uFormatRGBA8, g_uFormatBGRA8}));
    EXPECT_TRUE(m_texture.m_bSwapRB);
    EXPECT_EQ(m_texture.m_uFormat, g_uFormatBGRA8);
    EXPECT_EQ(m_texture.m_uSourceFormat, g_uFormatRGBA8);
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"AAAA", "BBAA", "DDDC", "DDDC"}));
}

TEST_F(ImageFileLoad, ASecondLoadForgetsTheFirst) {
    m_texture.m_uRefused = g_uFormatRGBA8;
    CGifMaker gif(1, 1);
    gif.Application("NETSCAPE2.0", std::string("\1\5\0", 3))
        .Control(1, 1)
        .Frame(0, 0, 1, 1, "A")
        .Control(1, 1);
    ASSERT_TRUE(Load(gif.Frame(0, 0, 1, 1, "B")));
    EXPECT_TRUE(m_texture.m_bLoops);
    EXPECT_EQ(m_texture.m_uLoopCount, 5u);
    m_texture.m_uRefused = 0;
    m_texture.m_uCurrentFrame = 1;
    m_texture.m_fFrameTime = 3.0f;
    m_texture.m_aUploads.clear();
    ASSERT_TRUE(Load(TinyBmp()));
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"A"}));
    EXPECT_TRUE(m_texture.m_mapFrameDelay.empty());
    EXPECT_FALSE(m_texture.m_bSwapRB || m_texture.m_bLoops);
    EXPECT_EQ(m_texture.m_uLoopCount + m_texture.m_uCurrentFrame, 0u);
    EXPECT_EQ(m_texture.m_fFrameTime, 0.0f);
}

TEST_F(ImageFileLoad, DecodersLiveOnlyDuringTheLoad) {
    ASSERT_TRUE(Load(TinyBmp()));
    EXPECT_EQ(m_texture.m_pDecoder, nullptr);
    EXPECT_EQ(m_texture.m_pDecoderFactory, nullptr);
    EXPECT_EQ(s_aLines.front(), "pTexture_Base: m_fnLoadTexture() Start\n");
    EXPECT_EQ(s_aLines.back(), "Texture_Base: m_fnLoadTexture() End\n");
}

TEST_F(ImageFileLoad, AFrameThatCannotBeDecodedIsLeftOut) {
    CGifMaker gif(2, 1);
    gif.Control(1, 1)
        .Frame(0, 0, 2, 1, "AB")
        .Control(1, 1)
        .BrokenFrame(2, 1)
        .Control(1, 1)
        .Frame(0, 0, 1, 1, "C");
    const bool bLoaded = Load(gif);
    if (!bLoaded) GTEST_SKIP() << "this decoder looks at all frames when it opens a file";
    EXPECT_EQ(m_texture.m_uStoredFrames, 2u);
    EXPECT_EQ(m_texture.m_aUploads, (std::vector<std::string>{"AB", "CB", ".."}));
}

TEST_F(ImageFileLoad, FilesThatAreNoneAreRefusedInWords) {
    EXPECT_FALSE(m_texture.m_fnLoadTexture(nullptr));
    EXPECT_FALSE(m_texture.m_fnLoadTexture(u"no such picture.png"));
    for (const std::string& strBytes :
         std::vector<std::string>{"", "GIF89a", "text", "\x89PNG\r\n\x1A\n", "BM", "\xFF\xD8\xFF"}) {
        s_aLines.clear();
        EXPECT_FALSE(Load(strBytes)) << strBytes;
        EXPECT_NE(Log().find("refused: "), std::string::npos) << strBytes;
    }
}

TEST_F(ImageFileLoad, WhatIsNoFileIsNeverWaitedForOrRead) {
    char16_t wzPath[1024];
    ASSERT_TRUE(platform::Utf8ToUtf16(m_data.Path("picture").c_str(), wzPath, 1024));
    ForEachOddFile(m_data.Path("picture"),
                   [&](const char* szKind) { EXPECT_FALSE(m_texture.m_fnLoadTexture(wzPath)) << szKind; });
}

TEST_F(ImageFileLoad, PicturesBeyondTheBoundsAreRefusedBeforeMemoryIsTaken) {
    EXPECT_FALSE(Load(CGifMaker(65535, 65535).Frame(0, 0, 1, 1, "A")));
    EXPECT_NE(Log().find("too many pixels"), std::string::npos);
    EXPECT_EQ(m_texture.m_aAsked.size(), 0u);
    CGifMaker gif(8000, 4000); // one fits, five are beyond the sum
    for (int i = 0; i < 5; ++i) gif.Control(1, 1).Frame(0, 0, 1, 1, "A");
    s_aLines.clear();
    EXPECT_FALSE(Load(gif));
    EXPECT_NE(Log().find("too many pixels in all frames"), std::string::npos);
    EXPECT_EQ(m_texture.m_aAsked.size(), 0u);
    std::string strBmp = TinyBmp();
    strBmp.replace(18, 8, std::string("\x00\x00\x01\x00\x00\x00\x01\x00", 8));
    s_aLines.clear();
    EXPECT_FALSE(Load(strBmp));
    EXPECT_NE(Log().find("too many pixels"), std::string::npos);
}

// --- what a file says of itself
// -------------------------------------------------------------------------------------

static stImageFile Container(u32 uAspect) {
    stImageFile st;
    st.m_stWidth = {true, 100};
    st.m_stHeight = {true, 50};
    st.m_stPixelAspect = {true, uAspect};
    return st;
}

TEST(ImageContainer, APixelAspectByteOf49IsSquare) {
    EXPECT_EQ(g_fnReadImageContainer(Container(49)).m_uDisplayW, 100u);
    EXPECT_EQ(g_fnReadImageContainer(Container(49)).m_uDisplayH, 50u);
}

TEST(ImageContainer, AboveSquareTheHeightShrinksBelowTheWidth) {
    EXPECT_EQ(g_fnReadImageContainer(Container(113)).m_uDisplayW, 100u);
    EXPECT_EQ(g_fnReadImageContainer(Container(113)).m_uDisplayH, 25u);
    EXPECT_EQ(g_fnReadImageContainer(Container(17)).m_uDisplayW, 50u);
    EXPECT_EQ(g_fnReadImageContainer(Container(17)).m_uDisplayH, 50u);
    EXPECT_EQ(g_fnReadImageContainer(Container(48)).m_uDisplayW, 98u); // 98.4375
    EXPECT_EQ(g_fnReadImageContainer(Container(0)).m_uDisplayW, 100u);
}

static platform::stImageBytes Given(const std::string& str) {
    platform::stImageBytes st{true, true, static_cast<u32>(str.size()), {}};
    for (std::size_t u = 0; u < str.size() && u < sizeof st.m_au8; ++u) st.m_au8[u] = static_cast<u8>(str[u]);
    return st;
}

TEST(ImageContainer, BothNamesOfTheLoopBlockCount) {
    for (const char* szName : {"NETSCAPE2.0", "ANIMEXTS1.0"}) {
        stImageFile st = Container(0);
        st.m_stApplication = Given(szName);
        st.m_stLoopData = Given("\3\1\x34\x12");
        EXPECT_EQ(g_fnReadImageContainer(st).m_uLoopCount, 0x1234u) << szName;
    }
}

TEST(ImageContainer, LoopDataOfAnotherKindCountsNothing) {
    for (const std::string& strData : {std::string("\0\1\5\0", 4), std::string("\3\2\5\0", 4)}) {
        stImageFile st = Container(0);
        st.m_stApplication = Given("NETSCAPE2.0");
        st.m_stLoopData = Given(strData);
        EXPECT_EQ(g_fnReadImageContainer(st).m_uLoopCount, 0u);
        EXPECT_EQ(g_fnReadImageContainer(st).m_uWidth, 100u);
    }
}

TEST(ImageContainer, AnAbsentOrForeignBlockLeavesTheSize) {
    EXPECT_EQ(g_fnReadImageContainer(Container(0)).m_uWidth, 100u);
    stImageFile st = Container(0);
    for (const char* szName : {"SOMETHING01", "NETSCAPE2.", "NETSCAPE2.0!"}) {
        st.m_stApplication = Given(szName);
        EXPECT_EQ(g_fnReadImageContainer(st).m_uWidth, 100u) << szName;
    }
}

TEST(ImageContainer, ABlockThatCannotBeReadGivesTheSizeUp) {
    stImageFile st = Container(0);
    st.m_stApplication = Given("NETSCAPE2.0");
    EXPECT_EQ(g_fnReadImageContainer(st).m_uWidth, 0u); // no data
    st.m_stLoopData = Given("\2\1\5");
    EXPECT_EQ(g_fnReadImageContainer(st).m_uWidth, 0u); // too short
    st.m_stApplication.m_bReadable = false;
    st.m_stLoopData = Given(std::string("\3\1\5\0", 4));
    EXPECT_EQ(g_fnReadImageContainer(st).m_uWidth, 0u); // of another type
}

TEST(ImageContainer, AMissingOrZeroSideGivesTheSizeUp) {
    stImageFile st = Container(0);
    st.m_stHeight.m_uValue = 0;
    EXPECT_EQ(g_fnReadImageContainer(st).m_uWidth, 0u);
    st = Container(0);
    st.m_stWidth.m_bGiven = false;
    EXPECT_EQ(g_fnReadImageContainer(st).m_uHeight, 0u);
}

static stImageFile WithBackground(u32 uIndex) {
    stImageFile st = Container(0);
    st.m_stGlobalTable = {true, 1};
    st.m_stBackgroundIndex = {true, uIndex};
    st.m_uPaletteColors = 2;
    st.m_auPalette[1] = 0x80FF4020;
    return st;
}

TEST(ImageContainer, TheBackgroundIsAnEntryOfTheGlobalTable) {
    const stImageContainer st = g_fnReadImageContainer(WithBackground(1));
    EXPECT_EQ(st.m_fBackground[0], 255.0f);
    EXPECT_EQ(st.m_fBackground[1], 64.0f);
    EXPECT_EQ(st.m_fBackground[2], 32.0f);
    EXPECT_EQ(st.m_fBackground[3], 128.0f);
}

TEST(ImageContainer, WithoutATableOrBeyondItTheBackgroundIsClear) {
    const auto sum = [](const stImageFile& st) {
        const stImageContainer stOut = g_fnReadImageContainer(st);
        return stOut.m_fBackground[0] + stOut.m_fBackground[1] + stOut.m_fBackground[2] +
               stOut.m_fBackground[3];
    };
    EXPECT_EQ(sum(WithBackground(2)), 0.0f);
    stImageFile st = WithBackground(1);
    st.m_stGlobalTable.m_uValue = 0;
    EXPECT_EQ(sum(st), 0.0f);
    st = WithBackground(1);
    st.m_stGlobalTable.m_bGiven = false;
    EXPECT_EQ(sum(st), 0.0f);
    st = WithBackground(1);
    st.m_stBackgroundIndex.m_bGiven = false;
    EXPECT_EQ(sum(st), 0.0f);
}
