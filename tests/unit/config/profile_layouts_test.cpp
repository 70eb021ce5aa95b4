// The profiles that are shipped and those of the tests, built from their files: where things stand at every
// shape of the picture, and what they are bound to.
#include "config/profile/profile_panel_keys.h"
#include "config/settings/settings.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "frame/layout.h"
#include "frame/update/update_records.h"
#include "platform/headless/test_controls.h"
#include "platform/segment.h"
#include "platform/shared_block.h"
#include "tests/unit/config/custom_fixture.h"

#include <set>

namespace headless = platform::headless;
namespace fs = std::filesystem;

namespace {

struct stRect {
    f32 l, t, r, b;
    bool operator==(const stRect&) const = default;
};

void PrintTo(const stRect& st, std::ostream* p) { *p << st.l << ' ' << st.t << ' ' << st.r << ' ' << st.b; }

constexpr u32 g_auCanvasWidths[] = {1440, 1920, 2560, 3840}; // 4:3 to two screens side by side

class ProfileLayouts : public CustomTest {
  protected:
    void SetUp() override {
        CustomTest::SetUp();
        InstallTestData(m_folder.Path(""), false);
    }
    void TearDown() override {
        g_fnForgetFailedLoad();
        g_fnStoreSize(1280, 720);
        g_stLooks.bTextShadow = false;
        CustomTest::TearDown();
        headless::ResetAll();
        g_stSettings.uWowKeys = 1;
        g_fnLoadGlobalSettings();
        g_fnReadFeatureSwitches();
        g_fnReadSettingsBatch(200, 200);
    }
    static bool Build(const std::string& strProfile) {
        std::copy_n(strProfile.c_str(), strProfile.size() + 1, platform::SharedSegment()->wzGlobalProfile);
        return g_fnMakeLayout();
    }
    std::set<std::string> All() const {
        std::set<std::string> setNames;
        for (const auto& entry : fs::directory_iterator(m_folder.Path("Profiles")))
            if (fs::exists(entry.path() / "OSD.xml")) setNames.insert(entry.path().filename().string());
        return setNames;
    }
    static stRect Place(CPanel_Base* p) {
        f32 x, y, w, h;
        p->m_fnGetPosition(&x, &y, nullptr);
        p->m_fnGetSize(&w, &h);
        return {x, y, x + w, y + h};
    }
    static stRect Place(const char* szPanel) {
        EXPECT_NE(Panel(szPanel), nullptr) << szPanel;
        return Panel(szPanel) ? Place(Panel(szPanel)) : stRect{};
    }
};

TEST_F(ProfileLayouts, AllAreBuiltAtEveryShapeInsideThePicture) {
    const std::set<std::string> setNames = All();
    ASSERT_EQ(setNames.size(), 20u);
    for (const std::string& strName : setNames)
        for (const u32 uWidth : g_auCanvasWidths) {
            SCOPED_TRACE(strName + " " + std::to_string(uWidth));
            g_fnStoreSize(uWidth, 1080);
            ASSERT_TRUE(Build(strName));
            for (u32 i = 0; i < g_uPanelEntries; ++i) {
                if (!g_ppPanel[i]) continue;
                const stRect st = Place(g_ppPanel[i]);
                EXPECT_GE(st.l, 24) << i;
                EXPECT_GE(st.t, 24) << i;
                EXPECT_LE(st.r, static_cast<f32>(uWidth - 24)) << i;
                EXPECT_LE(st.b, 1056) << i;
            }
        }
}

TEST_F(ProfileLayouts, AllHaveEveryItemAssembledAndInTheTree) {
    for (const std::string& strName : All()) {
        SCOPED_TRACE(strName);
        ASSERT_TRUE(Build(strName));
        EXPECT_EQ(g_mapAssembleInfo.size(), g_mapItemByName.size());
        for (const auto& [u64Id, st] : g_mapAssembleInfo)
            EXPECT_TRUE(IsInTree(g_fnFindCtrlById(st.u64FramePanelLB_ID, g_stPanelIds, g_ppPanel)))
                << st.m_szItemName;
    }
}

TEST_F(ProfileLayouts, WhatHangsInAnItemOfAShippedOneStandsInsideIt) {
    for (const char* szName : {"Default", "Emblem", "FPS", "Full", "Gauges", "Graphs", "Streamer"}) {
        SCOPED_TRACE(szName);
        ASSERT_TRUE(Build(szName));
        for (const auto& [strItem, pItem] : g_mapItemByName) {
            std::string strOwner;
            if (!g_fnItemOwner(*pItem, strOwner)) continue;
            const stRect in = Place(g_fnItemControlName(*pItem, "_F").c_str());
            const stRect out = Place(Panel((strOwner + "_F").c_str()));
            EXPECT_TRUE(in.l >= out.l && in.t >= out.t && in.r <= out.r && in.b <= out.b) << strItem;
        }
    }
}

TEST_F(ProfileLayouts, BenchStandsWhereItShouldAt16To9) {
    ASSERT_TRUE(Build("Bench"));
    EXPECT_EQ(Place("p02"), (stRect{24, 24, 444, 96}));
    EXPECT_EQ(Place("p04"), (stRect{24, 120, 444, 384}));
    EXPECT_EQ(Place("p06"), (stRect{1536, 24, 1896, 192}));
    EXPECT_EQ(Place("p07"), (stRect{840, 24, 1080, 72}));
    EXPECT_EQ(Place("p08"), (stRect{24, 456, 30, 624}));
    EXPECT_EQ(Place("p09"), (stRect{1680, 432, 1896, 648}));
    EXPECT_EQ(Place("p11"), (stRect{36, 900, 300, 1044}));
    EXPECT_EQ(Place("p13"), (stRect{600, 996, 1320, 1056}));
    EXPECT_EQ(Place("p15"), (stRect{1608, 888, 1896, 1056}));
}

TEST_F(ProfileLayouts, BenchStandsWhereItShouldAt4To3And21To9) {
    g_fnStoreSize(1440, 1080);
    ASSERT_TRUE(Build("Bench"));
    EXPECT_EQ(Place("p02"), (stRect{24, 24, 444, 96}));
    EXPECT_EQ(Place("p06"), (stRect{1056, 24, 1416, 192}));
    EXPECT_EQ(Place("p13"), (stRect{360, 996, 1080, 1056}));
    EXPECT_EQ(Place("p15"), (stRect{1128, 888, 1416, 1056}));
    g_fnStoreSize(2560, 1080);
    ASSERT_TRUE(Build("Bench"));
    EXPECT_EQ(Place("p06"), (stRect{2176, 24, 2536, 192}));
    EXPECT_EQ(Place("p07"), (stRect{1160, 24, 1400, 72}));
    EXPECT_EQ(Place("p15"), (stRect{2248, 888, 2536, 1056}));
}

TEST_F(ProfileLayouts, AResizeMovesWhatHangsAtTheFarEdge) {
    ASSERT_TRUE(Build("Bench"));
    g_fnStoreSize(1440, 1080);
    m_pManager->m_fnOnResize();
    EXPECT_EQ(Place("p15"), (stRect{1128, 888, 1416, 1056}));
    EXPECT_EQ(Place("p02"), (stRect{24, 24, 444, 96}));
}

TEST_F(ProfileLayouts, BenchHasTwoKindsOfGlass) {
    ASSERT_TRUE(Build("Bench"));
    EXPECT_TRUE(g_bCaptureBackdrop);
    EXPECT_EQ(g_mapBlurDiameters, (std::map<u32, u32>{{12, 1}, {30, 1}}));
}

TEST_F(ProfileLayouts, OwnFiguresAreBoundAndWhatNobodyPublishesStaysEmpty) {
    ASSERT_TRUE(Build("Bench"));
    EXPECT_EQ(g_listUpdateFPS_N.size(), 4u); // FPS, FRAME_TIME, FPS_MAX, PID
    EXPECT_TRUE(g_listUpdateData_N.empty());
    EXPECT_EQ(g_listUpdateMixed.size(), 2u);
    ASSERT_TRUE(Build("Gauges"));
    EXPECT_EQ(g_listUpdateFPS_L.size(), 3u) << "the rings that are always whole, and the dark lamp";
    EXPECT_TRUE(g_listUpdateFPS_N.empty());
    ASSERT_TRUE(Build("Graphs"));
    EXPECT_EQ(g_listUpdateFPS_L.size(), 4u)
        << "frame time, the area and the line of the frame rate, and the dark lamp";
}

TEST_F(ProfileLayouts, BoxesOfTheMeasuredProfiles) {
    const auto Count = [](auto* const* pp, u32 uEntries) {
        return std::count_if(pp, pp + uEntries, [](auto* p) { return p != nullptr; });
    };
    const std::pair<const char*, i64> aLayouts[] = {{"Boxes8", 8}, {"Boxes37", 37}, {"Boxes80", 80}};
    for (const auto& [szName, iBoxes] : aLayouts) {
        ASSERT_TRUE(Build(szName));
        EXPECT_EQ(Count(g_ppTextBox, g_uTextBoxEntries) + Count(g_ppNumBox, g_uNumBoxEntries), iBoxes);
    }
}

TEST_F(ProfileLayouts, BuildingAgainForgetsTheFormerLayout) {
    ASSERT_TRUE(Build("Frosted20"));
    ASSERT_TRUE(Build("Panels20"));
    EXPECT_EQ(recording::g_iLivePanels, 40) << "twenty panels and the frames of their items";
    EXPECT_FALSE(g_bCaptureBackdrop);
    EXPECT_TRUE(g_mapBlurDiameters.empty());
    EXPECT_TRUE(m_pManager->m_fnGetDrawList(g_keyBlurByDiameter[30])->empty());
    ASSERT_TRUE(Build("Bench"));
    ASSERT_TRUE(Build("Boxes8"));
    EXPECT_EQ(g_mapItemByName.size(), 9u);
    EXPECT_TRUE(g_listUpdateMixed.empty());
}

} // namespace
