// Frames from their blocks into the boxes: when, which bytes, and what odd blocks do.
#include "tests/unit/capture/capture_fixture.h"

#include <cmath>

namespace {

using namespace capture_test;

class PreviewFeed : public CaptureTest {};

TEST_F(PreviewFeed, PeriodsFollowIntervalAndFramesAndHaveALeast) {
    EXPECT_EQ(g_fnVideoPeriod(1000, 40), 0.025f);
    EXPECT_EQ(g_fnVideoPeriod(1000, 60), 1000.0f / 60.0f / 1000.0f);
    EXPECT_EQ(g_fnVideoPeriod(1000, 1000), 0.01f);
    EXPECT_EQ(g_fnVideoPeriod(0, 40), 0.01f);
    EXPECT_EQ(g_fnVideoPeriod(0xFFFFFFFF, 1), 4294967.5f);
    EXPECT_TRUE(std::isinf(g_fnVideoPeriod(1000, 0)));
    EXPECT_TRUE(std::isinf(g_fnVideoPeriod(0, 0)));
}

TEST_F(PreviewFeed, AFrameComesWithEachPeriodAndNotBetween) {
    Box(0, 2, 1);
    Block(0)[0] = 1;
    g_fnTransferVideo();
    EXPECT_TRUE(g_auFrames.empty()) << "the first period has not passed";
    Wait(24);
    g_fnTransferVideo();
    EXPECT_TRUE(g_auFrames.empty());
    Wait(1);
    g_fnTransferVideo();
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames, (std::vector<u32>{1}));
    Block(0)[0] = 2;
    Wait(25);
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames, (std::vector<u32>{1, 2}));
}

TEST_F(PreviewFeed, ASourceWithoutFramesASecondNeverGetsOne) {
    Box(0, 2, 1);
    g_stSettings.aVideoSource[0].uUpdateFrames = 0;
    Wait(100'000'000);
    g_fnTransferVideo();
    EXPECT_TRUE(g_auFrames.empty());
}

TEST_F(PreviewFeed, WhatATransferTakesComesOffTheNextWait) {
    Box(0, 2, 1);
    Wait(25);
    {
        const CTimerReading reading; // as in an update
        headless::SetClockStepPerRead(5'000'000);
        g_fnTransferVideo();
        headless::SetClockStepPerRead(0);
    }
    ASSERT_EQ(g_auFrames.size(), 1u);
    // It took 5 of the 10 ms that have passed since then, so 20 are the wait.
    Wait(9);
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames.size(), 1u);
    Wait(2);
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames.size(), 2u);
}

TEST_F(PreviewFeed, TheFrameIsTheBlocksFirstBytesInFormat11) {
    CVideoBox_Base* const pBox = Box(3, 2, 2);
    for (u32 u = 0; u < 16; ++u) Block(3)[u] = static_cast<u8>(u + 1);
    Wait(25);
    g_fnTransferVideo();
    std::vector<u8> aExpected(16);
    for (u32 u = 0; u < 16; ++u) aExpected[u] = static_cast<u8>(u + 1);
    EXPECT_EQ(dynamic_cast<CTexture&>(*pBox->m_pTexture).m_aPixels, aExpected);
    EXPECT_EQ(pBox->m_pConvertBuffer, nullptr);
}

TEST_F(PreviewFeed, EachManagerTakesTheFrameOnceAndOneLeads) {
    Box(0, 1, 1);
    auto* const pSecond = g_apOSDManager[1] = new COSDManager;
    ASSERT_TRUE(pSecond->m_fnInitialize());
    CVideoBox_Base* const pFirstBox = g_ppVideoBox[0];
    g_fnSetManagerSlot(1);
    g_ppVideoBox[0] = new CVideoBox_Base;
    g_ppVideoBox[0]->m_fnSetFrameSize(1, 1);
    ASSERT_TRUE(g_ppVideoBox[0]->m_fnInitialize());
    g_auFrames.clear();
    g_fnSetManagerSlot(0);
    Block(0)[0] = 7;
    Wait(25);
    g_fnTransferVideo();
    EXPECT_EQ(g_abVideoDue[0][0], 0);
    EXPECT_EQ(g_abVideoDue[0][1], 1);
    EXPECT_EQ(g_auFrames.size(), 1u);
    // The period started with the leader; the other one takes its frame without starting another.
    Wait(20);
    g_fnSetManagerSlot(1);
    g_fnTransferVideo();
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames.size(), 2u);
    Wait(6);
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames.size(), 3u);
    EXPECT_NE(g_ppVideoBox[0], pFirstBox);
}

TEST_F(PreviewFeed, ABlockMadeSmallerKeepsTheLastFrameUntilItGrows) {
    Box(0, 4, 4);
    Block(0)[0] = 1;
    Wait(25);
    g_fnTransferVideo();
    headless::CutMapping("Frames0", 63);
    Wait(25);
    g_fnTransferVideo();
    headless::CutMapping("Frames0", 0);
    Wait(25);
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames, (std::vector<u32>{1}));
    headless::CutMapping("Frames0", 64);
    Block(0)[0] = 3;
    Wait(25);
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames, (std::vector<u32>{1, 3}));
}

TEST_F(PreviewFeed, ASmallerMissingOrUnreadableBlockIsNoSource) {
    const u8 au8[16] = {};
    headless::SeedMapping("Short", au8, sizeof au8);
    EXPECT_FALSE(g_fnOpenFrameSource(0, u"Short"));
    EXPECT_FALSE(g_fnOpenFrameSource(0, u""));
    EXPECT_FALSE(g_fnOpenFrameSource(0, nullptr));
    EXPECT_FALSE(g_fnOpenFrameSource(8, u"Eight"));
    headless::SetMapViewFails(true);
    EXPECT_FALSE(g_fnOpenFrameSource(0, u"View"));
    EXPECT_FALSE(g_fnHasFrameSource(0));
    EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
    Wait(100);
    g_ppVideoBox[0] = new CVideoBox_Base;
    g_ppVideoBox[0]->m_fnSetFrameSize(1, 1);
    ASSERT_TRUE(g_ppVideoBox[0]->m_fnInitialize());
    g_auFrames.clear();
    g_fnTransferVideo();
    EXPECT_TRUE(g_auFrames.empty());
}

TEST_F(PreviewFeed, AClosedSourceTakesNoFramesAndAnotherNameReplacesIt) {
    Box(0, 1, 1);
    EXPECT_TRUE(g_fnOpenFrameSource(0, u"Other"));
    EXPECT_EQ(headless::OpenWatchedBlocks(), 1u);
    headless::MappingContents("Other")[0] = 9;
    Wait(25);
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames, (std::vector<u32>{9}));
    g_fnCloseFrameSources();
    EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
    Wait(25);
    g_fnTransferVideo();
    EXPECT_EQ(g_auFrames.size(), 1u);
}

TEST_F(PreviewFeed, TheLargestFrameFits) {
    Box(0, 3839, 1080);
    Block(0)[3839 * 1080 * 4 - 1] = 5;
    Wait(25);
    g_fnTransferVideo();
    EXPECT_EQ(dynamic_cast<CTexture&>(*g_ppVideoBox[0]->m_pTexture).m_aPixels.back(), 5);
    EXPECT_EQ(g_fnTakeFrame(0, g_uFrameBlockBytes + 1), nullptr);
}

TEST_F(PreviewFeed, BesideThePreviewHostNothingIsOpenedOrCopied) {
    g_bLocalPreview = true;
    EXPECT_TRUE(g_fnOpenFrameSource(0, u"Frames0"));
    EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
    const u8* const pFrame = g_fnTakeFrame(0, 16);
    ASSERT_NE(pFrame, nullptr);
    EXPECT_EQ(pFrame, g_fnTakeFrame(0, g_uFrameBlockBytes));
    EXPECT_EQ(headless::WatchedReads(), 0u);
    g_fnCloseFrameSources();
}

TEST(FrameSize, ZeroAndAboveTheBlockAreOutAlsoWhereTheProductWraps) {
    EXPECT_FALSE(g_fnIsFrameSize(0, 0));
    EXPECT_FALSE(g_fnIsFrameSize(0, 720));
    EXPECT_TRUE(g_fnIsFrameSize(1, 1));
    EXPECT_FALSE(g_fnIsFrameSize(3840, 1080)) << "0xFD2000 bytes exactly";
    EXPECT_TRUE(g_fnIsFrameSize(3839, 1080));
    EXPECT_TRUE(g_fnIsFrameSize(0xFD1FFC / 4, 1));
    EXPECT_FALSE(g_fnIsFrameSize(0xFD2000 / 4, 1));
    EXPECT_FALSE(g_fnIsFrameSize(0x40000001, 4)) << "16 bytes in 32 bits";
    EXPECT_FALSE(g_fnIsFrameSize(0xFFFFFFFF, 0xFFFFFFFF));
}

} // namespace
