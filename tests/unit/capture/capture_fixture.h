#pragma once
// A manager, video boxes whose texture keeps what it is given, the back-end's blocks, and a clock that the
// test moves.
#include "capture/control_block.h"
#include "capture/preview_feed.h"
#include "config/settings/settings.h"
#include "controls/osd_manager.h"
#include "controls/video_box.h"
#include "draw/creation_table.h"
#include "platform/headless/test_controls.h"
#include "shared/process_records.h"
#include "tests/unit/controls/graph_fixture.h"

#include <string>
#include <vector>

namespace capture_test {

namespace headless = platform::headless;

/// Frames that reached a texture, by their first byte.
inline std::vector<u32> g_auFrames;

class CTexture final : public virtual CTexture_Base {
  public:
    bool m_fnUploadLevel(const void* pPixels, u32, u32) override {
        const u8* const pFirst = static_cast<const u8*>(pPixels);
        m_aPixels.assign(pFirst, pFirst + m_uFrameBytes);
        g_auFrames.push_back(m_aPixels[0]);
        return true;
    }
    std::vector<u8> m_aPixels;
};

inline std::string Narrow(const char16_t* wz) { return {wz, wz + std::char_traits<char16_t>::length(wz)}; }

class CaptureTest : public GraphTest {
  protected:
    void SetUp() override {
        headless::ResetAll();
        headless::SetClock(1'000'000'000);
        GraphTest::SetUp();
        g_stCreationTable.m_fnCreateTexture = []() -> CTexture_Base* { return new CTexture; };
        g_fnResetPreviewFeed();
        g_fnResetControlBlock();
        g_fnRestartVideoTimers();
    }
    void TearDown() override {
        g_fnResetPreviewFeed();
        g_fnResetControlBlock();
        EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
        GraphTest::TearDown();
        g_stSettings = {};
        g_bLocalPreview = false;
        headless::ResetAll();
    }
    /// A box of a source, with the source's block and a period in milliseconds.
    static CVideoBox_Base* Box(u32 uSource, u32 uWidth, u32 uHeight, u32 uPeriod = 25) {
        stVideoSource& st = g_stSettings.aVideoSource[uSource];
        st.uUpdateInterval = uPeriod;
        st.uUpdateFrames = 1;
        CVideoBox_Base* const pBox = g_ppVideoBox[uSource] = new CVideoBox_Base;
        pBox->m_fnSetFrameSize(static_cast<f32>(uWidth), static_cast<f32>(uHeight));
        EXPECT_TRUE(pBox->m_fnInitialize());
        const std::u16string wstrName = u"Frames" + std::u16string(1, static_cast<char16_t>(u'0' + uSource));
        EXPECT_TRUE(g_fnOpenFrameSource(uSource, wstrName.c_str()));
        g_auFrames.clear();
        return pBox;
    }
    static u8* Block(u32 uSource) {
        return headless::MappingContents(("Frames" + std::to_string(uSource)).c_str());
    }
    static void Wait(u32 uMilliseconds) { headless::AdvanceClock(i64{uMilliseconds} * 1'000'000); }
};

} // namespace capture_test
