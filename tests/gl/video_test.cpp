// Video boxes on a real context: their pixels, and the whole road of a frame from the block of another
// program.
#include "capture/control_block.h"
#include "controls/video_box.h"
#include "draw/canvas.h"
#include "frame/context_state.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#include "shared/frame_sources.h"
#include "tests/gl/profile_fixture.h"
#include "tests/support/gl_recorder.h"

#include <cstring>

namespace {

namespace headless = platform::headless;

class VideoPixels : public DrawFixture {
  protected:
    /// A box at a place, with the two by two frame of c_au8Frame if it has been written.
    CVideoBox_Base& AddBox(f32 x, f32 y, f32 w, f32 h) {
        CVideoBox_Base& box = *m_apBoxes.emplace_back(new CVideoBox_Base);
        box.m_fnSetColorB(255, 255, 255, 255);
        box.m_fnSetBoxSize(w, h);
        box.m_fnSetFrameSize(2, 2);
        EXPECT_TRUE(box.m_fnInitialize());
        box.m_fnSetPosition(x, y, 0);
        m_manager.m_fnAttachBack(&box, g_uLayerTexture);
        return box;
    }
    void TearDown() override {
        m_apBoxes.clear();
        DrawFixture::TearDown();
    }
    std::vector<std::unique_ptr<CVideoBox_Base>> m_apBoxes;
};

/// A pixel's middle lies half a pixel beside that of its texel of 50, so its neighbours count one in a
/// hundred.
constexpr int c_iMixed = 6;
/// Red, green; blue, half-clear white.
constexpr u8 c_au8Frame[16] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 128};

TEST_F(VideoPixels, ShowsNothingUntilTheFirstFrameAndThenItsFourQuarters) {
    CVideoBox_Base& box = AddBox(40, 20, 200, 100); // the square frame fills 100 by 100 at its left
    Batcher();
    const Picture blank = Draw(0.2f, 0.4f, 0.6f);
    // Within half a texel of an edge the border of textures, opaque black, mixes in.
    for (const auto& [x, y] : {std::pair{65u, 45u}, {115u, 95u}, {90u, 70u}})
        EXPECT_TRUE(Near(blank.At(x, y), {51, 102, 153, 255}, c_iMixed)) << x << "," << y;
    box.m_fnWriteFrame(c_au8Frame, g_uFormatRGBA8);
    const Picture shown = Draw(0.2f, 0.4f, 0.6f);
    // In the middle of each texel its own colour stands whole.
    EXPECT_TRUE(Near(shown.At(65, 45), {255, 0, 0, 255}, c_iMixed));
    EXPECT_TRUE(Near(shown.At(115, 45), {0, 255, 0, 255}, c_iMixed));
    EXPECT_TRUE(Near(shown.At(65, 95), {0, 0, 255, 255}, c_iMixed));
    EXPECT_TRUE(Near(shown.At(115, 95), {153, 178, 204, 191}, c_iMixed))
        << "half of white over the background";
    for (const auto& [x, y] : {std::pair{38u, 45u}, {142u, 45u}, {200u, 45u}, {65u, 18u}, {65u, 122u}})
        EXPECT_TRUE(Near(shown.At(x, y), {51, 102, 153, 255}, 1)) << x << "," << y;
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(VideoPixels, TheTintsAlphaMakesThePictureClear) {
    CVideoBox_Base& box = AddBox(0, 0, 100, 100);
    box.m_fnSetColorB(255, 255, 255, 117);
    box.m_fnWriteFrame(c_au8Frame, g_uFormatRGBA8);
    Batcher();
    const Picture shown = Draw(0, 0, 0);
    EXPECT_TRUE(Near(shown.At(25, 25), {117, 0, 0, 192}, c_iMixed));
}

TEST_F(VideoPixels, AFrameOfTheOtherFormatHasItsColoursToo) {
    CVideoBox_Base& box = AddBox(0, 0, 100, 100);
    u8 au8Other[16];
    std::memcpy(au8Other, c_au8Frame, sizeof au8Other);
    for (u32 u = 0; u < 16; u += 4) std::swap(au8Other[u], au8Other[u + 2]);
    box.m_fnWriteFrame(au8Other, g_uFormatBGRA8);
    Batcher();
    const Picture shown = Draw(0, 0, 0);
    EXPECT_TRUE(Near(shown.At(25, 25), {255, 0, 0, 255}, c_iMixed));
    EXPECT_TRUE(Near(shown.At(25, 75), {0, 0, 255, 255}, c_iMixed));
}

/// A program with the overlay, and the settings of its video sources.
class VideoRoad : public ProfileFixture {
  protected:
    static std::u16string Key(const char16_t* wzRest) {
        return std::u16string(u"SOFTWARE\\Zarn\\ORVIN-OSD\\Video") + wzRest;
    }
    static void Set(const char16_t* wzKey, const char16_t* wzName, u32 uValue) {
        headless::SetSettingsNumber(Key(wzKey).c_str(), wzName, uValue);
    }
    /// Source 0 in the middle of the picture, of frames of two by two.
    void BeginWithSource(std::initializer_list<const char*> listKeys) {
        WriteProfile("Video", "");
        Set(u"", u"Enable", 1);
        for (const auto& [wzName, uValue] :
             std::initializer_list<std::pair<const char16_t*, u32>>{{u"Enable", 1},
                                                                    {u"BufferSize: W", 2},
                                                                    {u"BufferSize: H", 2},
                                                                    {u"FrameSize: W", 400},
                                                                    {u"FrameSize: H", 400},
                                                                    {u"Anchor", 5},
                                                                    {u"Alpha", 0}})
            Set(u"\\0", wzName, uValue);
        headless::SetSettingsText(Key(u"\\0").c_str(), u"FileMappingName", u"Frames");
        SetCare(listKeys);
        ASSERT_TRUE(Begin(true, u"Video"));
        ASSERT_TRUE(RunUntilBuilt());
    }
    static void Write(u8 r, u8 g, u8 b) {
        u8* const pBlock = headless::MappingContents("Frames");
        for (u32 u = 0; u < 4; ++u) {
            const u8 au8[4] = {r, g, b, 255};
            std::memcpy(pBlock + u * 4, au8, 4);
        }
    }
    Picture NextFrame() {
        headless::AdvanceClock(30'000'000);
        return Frame();
    }
    static Pixel Middle(const Picture& picture) {
        return picture.At(picture.uWidth / 2, picture.uHeight / 2);
    }
};

TEST_F(VideoRoad, AFrameReachesThePictureInBothFlavours) {
    for (const bool bMerged : {false, true}) {
        if (bMerged)
            BeginWithSource({"MergedDraw"});
        else
            BeginWithSource({});
        ASSERT_FALSE(HasFatalFailure());
        const Pixel before = Middle(NextFrame());
        Write(255, 0, 0);
        EXPECT_TRUE(Near(Middle(NextFrame()), {255, 0, 0, 255}, 2)) << bMerged;
        Write(0, 0, 255);
        EXPECT_TRUE(Near(Middle(NextFrame()), {0, 0, 255, 255}, 2)) << bMerged;
        // The block outlives a program.
        if (!bMerged) {
            EXPECT_FALSE(Near(before, {0, 0, 255, 255}, 2));
        }
        // A block that is cut leaves the last frame, and the program alive.
        headless::CutMapping("Frames", 8);
        Write(0, 255, 0);
        EXPECT_TRUE(Near(Middle(NextFrame()), {0, 0, 255, 255}, 2)) << bMerged;
        TearDown();
        EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
        SetUp();
    }
}

TEST_F(VideoRoad, AFrameThatIsNotDueUploadsNothing) {
    BeginWithSource({});
    ASSERT_FALSE(HasFatalFailure());
    NextFrame();
    const u32 uReads = headless::WatchedReads();
    EXPECT_EQ(CountCalls(RecordSwap(), "glTexImage2D"), 0u);
    EXPECT_EQ(headless::WatchedReads(), uReads + 1) << "the control block alone";
    headless::AdvanceClock(30'000'000);
    EXPECT_EQ(CountCalls(RecordSwap(), "glTexImage2D"), 1u);
}

TEST_F(VideoRoad, ARebuildByTheControlBlockClosesAndOpensEverythingOnce) {
    BeginWithSource({});
    ASSERT_FALSE(HasFatalFailure());
    Write(255, 0, 0);
    NextFrame();
    const CVideoBox_Base* const pBox = g_ppVideoBox[0];
    ASSERT_NE(pBox, nullptr);
    EXPECT_EQ(headless::OpenWatchedBlocks(), 2u);
    const u32 auRequest[2] = {CONTROL_REBUILD, 1};
    std::memcpy(headless::MappingContents("TavoCtrl"), auRequest, sizeof auRequest);
    NextFrame();
    EXPECT_TRUE(g_bInitGL) << "the poll itself releases nothing";
    NextFrame();
    u32 uBuilds = 0;
    for (u32 u = 0; u < 8; ++u) {
        const bool bWas = g_bInitGL;
        NextFrame();
        uBuilds += !bWas && g_bInitGL;
    }
    EXPECT_LE(uBuilds, 1u);
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(headless::OpenWatchedBlocks(), 2u);
    EXPECT_TRUE(Near(Middle(NextFrame()), {255, 0, 0, 255}, 2));
}

} // namespace
