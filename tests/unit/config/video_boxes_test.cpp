// Video boxes as the settings store asks for them.
#include "config/make/video_boxes.h"

#include "controls/link_controls.h"
#include "controls/video_box.h"
#include "draw/creation_table.h"
#include "draw/draw_keys.h"
#include "shared/frame_sources.h"
#include "tests/unit/config/settings_fixture.h"
#include "tests/unit/controls/graph_fixture.h"

namespace {

std::u16string Key(u32 uSource) {
    return u"Video\\" + std::u16string(1, static_cast<char16_t>(u'0' + uSource));
}

class VideoBoxes : public SettingsTest {
  protected:
    void SetUp() override {
        SettingsTest::SetUp();
        g_apOSDManager[0] = new COSDManager;
        ASSERT_TRUE(g_apOSDManager[0]->m_fnInitialize());
        g_fnSelectManager();
        graphs::g_bMeshes = graphs::g_bEntities = true;
        g_stCreationTable.m_fnCreateMesh = []() -> CMesh_Base* {
            return graphs::g_bMeshes ? new graphs::CMesh : nullptr;
        };
        g_stCreationTable.m_fnCreateEntity = []() -> CEntity_Base* { return new graphs::CEntity; };
        g_stCreationTable.m_fnCreateTexture = []() -> CTexture_Base* { return new CTexture_Base; };
        Number(u"Video", u"Enable", 1);
    }
    void TearDown() override {
        g_fnCloseFrameSources();
        EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
        g_fnDestroyManagers();
        g_stCreationTable = {};
        SettingsTest::TearDown();
    }
    static void TurnOn(u32 uSource) {
        Number(Key(uSource).c_str(), u"Enable", 1);
        Text(Key(uSource).c_str(), u"FileMappingName", u"Frames" + Key(uSource).substr(6));
    }
    static void Set(u32 uSource, const char16_t* wzName, u32 uValue) {
        Number(Key(uSource).c_str(), wzName, uValue);
    }
    static void Create() {
        g_fnReadFeatureSwitches();
        g_fnCreateVideoBoxes();
    }
};

TEST_F(VideoBoxes, TheMasterSwitchComesFirst) {
    TurnOn(0);
    Number(u"Video", u"Enable", 0);
    Create();
    EXPECT_EQ(g_ppVideoBox[0], nullptr);
    EXPECT_EQ(headless::OpenWatchedBlocks(), 0u);
}

TEST_F(VideoBoxes, ASourceOfDefaultsHasABoxInTheBottomRightCorner) {
    TurnOn(2);
    Create();
    for (u32 u = 0; u < 8; ++u) EXPECT_EQ(g_ppVideoBox[u] != nullptr, u == 2) << u;
    const CVideoBox_Base& box = *g_ppVideoBox[2];
    EXPECT_EQ(box.m_fBoxW, 1280);
    EXPECT_EQ(box.m_fBoxH, 720);
    EXPECT_EQ(box.m_fSizeW, 1280);
    EXPECT_EQ(box.m_fFrameW, 640);
    EXPECT_EQ(box.m_fFrameH, 360);
    EXPECT_EQ(box.m_iAnchorCode, 9);
    EXPECT_EQ(box.m_fAnchorX, 0);
    EXPECT_EQ(box.m_afColor[0], 1);
    EXPECT_EQ(box.m_afColor[3], 117 / 255.0f);
    EXPECT_EQ(box.m_pTexture->m_uWidth, 640u);
    EXPECT_TRUE(g_fnHasFrameSource(2));
    EXPECT_NE(headless::MappingContents("Frames2"), nullptr);
}

TEST_F(VideoBoxes, PlaceAndSizesAreTheSettings) {
    TurnOn(0);
    Set(0, u"FrameSize: W", 300);
    Set(0, u"FrameSize: H", 200);
    Set(0, u"BufferSize: W", 32);
    Set(0, u"BufferSize: H", 16);
    Set(0, u"Anchor", static_cast<u32>(-5));
    Set(0, u"Position: X", 12);
    Set(0, u"Position: Y", static_cast<u32>(-34));
    Set(0, u"Alpha", 0);
    Create();
    ASSERT_NE(g_ppVideoBox[0], nullptr);
    const CVideoBox_Base& box = *g_ppVideoBox[0];
    EXPECT_EQ(box.m_fBoxW, 300);
    EXPECT_EQ(box.m_fBoxH, 200);
    EXPECT_EQ(box.m_fFrameW, 32);
    EXPECT_EQ(box.m_fFrameH, 16);
    EXPECT_EQ(box.m_iAnchorCode, -5);
    EXPECT_EQ(box.m_fAnchorX, 12);
    EXPECT_EQ(box.m_fAnchorY, -34);
    EXPECT_EQ(box.m_afColor[3], 1);
}

TEST_F(VideoBoxes, AlphaIsAPercentageOfTransparencyInABytesDress) {
    EXPECT_EQ(g_fnVideoAlpha(0), 255);
    EXPECT_EQ(g_fnVideoAlpha(100), 0);
    EXPECT_EQ(g_fnVideoAlpha(50), 128);
    EXPECT_EQ(g_fnVideoAlpha(101), 254);
    EXPECT_EQ(g_fnVideoAlpha(255), 117);
}

TEST_F(VideoBoxes, TheFrameDecidesWhetherASourceIsUsedAndTheBoxDoesNot) {
    const u32 aauSizes[8][2] = {{0, 0},          {3840, 1080}, {3839, 1080}, {0x40000001, 4},
                                {0, 0xFFFFFFFF}, {1, 1},       {5000, 5000}, {0x80000000, 2}};
    for (u32 u = 0; u < 8; ++u) {
        TurnOn(u);
        Set(u, u"BufferSize: W", aauSizes[u][0]);
        Set(u, u"BufferSize: H", aauSizes[u][1]);
        Set(u, u"FrameSize: W", 0);
        Set(u, u"FrameSize: H", 0xFFFFFFFF);
    }
    Create();
    for (u32 u = 0; u < 8; ++u) EXPECT_EQ(g_ppVideoBox[u] != nullptr, u == 2 || u == 5) << u;
}

TEST_F(VideoBoxes, ABoxThatCannotBeMadeLeavesItsPlaceEmpty) {
    TurnOn(0);
    graphs::g_bMeshes = false;
    Create();
    EXPECT_EQ(g_ppVideoBox[0], nullptr);
    EXPECT_EQ(graphs::g_iLiveEntities, 0);
    EXPECT_FALSE(g_fnHasFrameSource(0));
}

TEST_F(VideoBoxes, ASourceWhoseBlockCannotBeHadHasABoxThatStaysClear) {
    TurnOn(0);
    Text(Key(0).c_str(), u"FileMappingName", u"");
    Create();
    EXPECT_NE(g_ppVideoBox[0], nullptr);
    EXPECT_FALSE(g_fnHasFrameSource(0));
}

TEST_F(VideoBoxes, TheLastSourceHasAKeyThatNoPassWalks) {
    TurnOn(6);
    TurnOn(7);
    Create();
    g_fnLinkControls();
    ASSERT_NE(g_ppVideoBox[7], nullptr);
    EXPECT_EQ(g_ppVideoBox[7]->m_fnGetDrawKey(), g_keyVideoLast);
    const ControlList& list = *g_pOSDManager->m_fnGetDrawList(g_keyTextureList);
    EXPECT_EQ(list, (ControlList{g_ppVideoBox[6]}));
    EXPECT_TRUE(g_fnHasFrameSource(7));
}

TEST_F(VideoBoxes, ALaterBuildClosesTheSourcesOfTheOneBefore) {
    TurnOn(0);
    TurnOn(1);
    Create();
    EXPECT_EQ(headless::OpenWatchedBlocks(), 2u);
    g_apOSDManager[0]->m_fnStartOver();
    g_fnSelectManager();
    Set(1, u"Enable", 0);
    Create();
    EXPECT_EQ(headless::OpenWatchedBlocks(), 1u);
}

} // namespace
