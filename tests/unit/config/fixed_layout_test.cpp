#include "config/fixed_layout.h"
#include "config/load.h"

#include "controls/anchor.h"
#include "draw/draw_keys.h"
#include "frame/frame_driver.h"
#include "shared/process_records.h"
#include "tests/unit/controls/manager_fixture.h"
#include "tests/unit/controls/recording_flavour.h"

namespace {

struct stRect {
    f32 l, t, r, b;
    bool operator==(const stRect&) const = default;
};

void PrintTo(const stRect& st, std::ostream* p) { *p << st.l << ' ' << st.t << ' ' << st.r << ' ' << st.b; }

constexpr const char16_t* g_awzProfiles[] = {u"Default", u"Shapes",  u"Panels20",  u"Frosted20", u"Boxes8",
                                             u"Boxes37", u"Boxes80", u"TextSheet", u"Status",    u"Empty"};

class FixedLayout : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        recording::Install();
    }
    void TearDown() override {
        Choose(u"");
        ManagerTest::TearDown();
        g_fnClearConfiguration();
    }
    static void Choose(std::u16string_view wz) {
        wz.copy(g_wzProfileName, wz.size());
        g_wzProfileName[wz.size()] = 0;
    }
    static bool Build(std::u16string_view wz) {
        Choose(wz);
        return g_fnBuildFixedLayout();
    }
    static CPanel_Base* Find(u64 id) { return g_fnFindCtrlById(id, g_stPanelIds, g_ppPanel); }
    static stRect Place(CPanel_Base* p) {
        f32 x, y, w, h;
        p->m_fnGetPosition(&x, &y, nullptr);
        p->m_fnGetSize(&w, &h);
        return {x, y, x + w, y + h};
    }
    static size_t CountPanels() {
        size_t u = 0;
        for (u32 i = 0; i < g_uPanelEntries; ++i) u += g_ppPanel[i] != nullptr;
        return u;
    }
};

TEST_F(FixedLayout, TheNameChoosesAndAnUnknownOneGivesDefault) {
    for (const char16_t* wz : g_awzProfiles) EXPECT_EQ(g_fnFindFixedLayout(wz).wzProfile, wz);
    for (const char16_t* wz : {u"", u"default", u"Panels2", u"Panels200"})
        EXPECT_EQ(g_fnFindFixedLayout(wz).wzProfile, u"Default");
}

TEST_F(FixedLayout, EveryLayoutLiesInsideTheCanvasWithItsMargins) {
    for (u32 uW : {1920u, 1440u, 2560u}) {
        g_uCanvasW = uW;
        for (const char16_t* wz : g_awzProfiles) {
            ASSERT_TRUE(Build(wz));
            for (u32 i = 0; i < g_uPanelEntries; ++i) {
                if (!g_ppPanel[i]) continue;
                const stRect st = Place(g_ppPanel[i]);
                EXPECT_GE(st.l, 24) << uW << ' ' << i;
                EXPECT_GE(st.t, 24) << uW << ' ' << i;
                EXPECT_LE(st.r, static_cast<f32>(uW - 24)) << uW << ' ' << i;
                EXPECT_LE(st.b, 1056) << uW << ' ' << i;
            }
        }
    }
}

TEST_F(FixedLayout, DefaultStandsWhereItShouldAt16To9) {
    ASSERT_TRUE(Build(u"Default"));
    EXPECT_EQ(CountPanels(), 17u);
    EXPECT_EQ(Place(Find(2)), (stRect{24, 24, 444, 96}));
    EXPECT_EQ(Place(Find(4)), (stRect{24, 120, 444, 384}));
    EXPECT_EQ(Place(Find(6)), (stRect{1536, 24, 1896, 192}));
    EXPECT_EQ(Place(Find(7)), (stRect{840, 24, 1080, 72}));
    EXPECT_EQ(Place(Find(8)), (stRect{24, 456, 30, 624}));
    EXPECT_EQ(Place(Find(9)), (stRect{1680, 432, 1896, 648}));
    EXPECT_EQ(Place(Find(10)), (stRect{24, 888, 312, 1056}));
    EXPECT_EQ(Place(Find(11)), (stRect{36, 900, 300, 1044}));
    EXPECT_EQ(Place(Find(13)), (stRect{600, 996, 1320, 1056}));
    EXPECT_EQ(Place(Find(15)), (stRect{1608, 888, 1896, 1056}));
}

TEST_F(FixedLayout, DefaultStandsWhereItShouldAt4To3) {
    g_uCanvasW = 1440;
    ASSERT_TRUE(Build(u"Default"));
    EXPECT_EQ(Place(Find(2)), (stRect{24, 24, 444, 96}));
    EXPECT_EQ(Place(Find(6)), (stRect{1056, 24, 1416, 192}));
    EXPECT_EQ(Place(Find(7)), (stRect{600, 24, 840, 72}));
    EXPECT_EQ(Place(Find(9)), (stRect{1200, 432, 1416, 648}));
    EXPECT_EQ(Place(Find(13)), (stRect{360, 996, 1080, 1056}));
    EXPECT_EQ(Place(Find(15)), (stRect{1128, 888, 1416, 1056}));
}

TEST_F(FixedLayout, DefaultStandsWhereItShouldAt21To9) {
    g_uCanvasW = 2560;
    ASSERT_TRUE(Build(u"Default"));
    EXPECT_EQ(Place(Find(6)), (stRect{2176, 24, 2536, 192}));
    EXPECT_EQ(Place(Find(7)), (stRect{1160, 24, 1400, 72}));
    EXPECT_EQ(Place(Find(13)), (stRect{920, 996, 1640, 1056}));
    EXPECT_EQ(Place(Find(15)), (stRect{2248, 888, 2536, 1056}));
}

TEST_F(FixedLayout, AResizeMovesWhatHangsAtTheFarEdge) {
    ASSERT_TRUE(Build(u"Default"));
    g_uCanvasW = 1440;
    m_pManager->m_fnOnResize();
    EXPECT_EQ(Place(Find(15)), (stRect{1128, 888, 1416, 1056}));
    EXPECT_EQ(Place(Find(2)), (stRect{24, 24, 444, 96}));
}

TEST_F(FixedLayout, DefaultHasTwoKindsOfGlassUnderItsFlatPanels) {
    ASSERT_TRUE(Build(u"Default"));
    EXPECT_EQ(g_uLayoutStyle, 2u);
    EXPECT_TRUE(g_bCaptureBackdrop);
    EXPECT_EQ(g_mapBlurDiameters.size(), 2u);
    EXPECT_EQ(g_mapBlurDiameters.at(30), 1u);
    EXPECT_EQ(g_mapBlurDiameters.at(12), 1u);
    EXPECT_EQ(*m_pManager->m_fnGetDrawList(g_keyBlurByDiameter[30]), ControlList{Find(4)});
    EXPECT_EQ(*m_pManager->m_fnGetDrawList(g_keyBlurByDiameter[12]), ControlList{Find(6)});
    const ControlList& flat = *m_pManager->m_fnGetDrawList(g_keyColorList);
    ASSERT_EQ(flat.size(), 13u);
    EXPECT_EQ(flat.front(), Find(15));
    EXPECT_EQ(flat.back(), Find(1));
    EXPECT_EQ(m_pManager->m_fnGetChildren(nullptr)->size(), 17u);
}

TEST_F(FixedLayout, DefaultShowsEachShape) {
    ASSERT_TRUE(Build(u"Default"));
    EXPECT_EQ(Find(2)->m_uShape, g_uShapeRect);
    EXPECT_EQ(Find(3)->m_uShape, g_uShapeFrame);
    EXPECT_EQ(Find(9)->m_uShape, g_uShapeBorder);
}

TEST_F(FixedLayout, Panels20HasTwentyFlatPanelsInAGrid) {
    g_uCanvasW = 1440;
    ASSERT_TRUE(Build(u"Panels20"));
    EXPECT_EQ(CountPanels(), 20u);
    EXPECT_FALSE(g_bCaptureBackdrop);
    EXPECT_TRUE(g_mapBlurDiameters.empty());
    EXPECT_EQ(m_pManager->m_fnGetDrawList(g_keyColorList)->size(), 20u);
    EXPECT_EQ(Place(Find(1)), (stRect{24, 24, 264, 264}));
    EXPECT_EQ(Place(Find(20)), (stRect{1080, 816, 1320, 1056}));
}

TEST_F(FixedLayout, Frosted20HasTwentyFrostedPanelsOfOneDiameter) {
    ASSERT_TRUE(Build(u"Frosted20"));
    EXPECT_TRUE(g_bCaptureBackdrop);
    EXPECT_EQ(g_mapBlurDiameters.size(), 1u);
    EXPECT_EQ(g_mapBlurDiameters.at(30), 20u);
    EXPECT_EQ(m_pManager->m_fnGetDrawList(g_keyBlurByDiameter[30])->size(), 20u);
    EXPECT_TRUE(m_pManager->m_fnGetDrawList(g_keyColorList)->empty());
}

TEST_F(FixedLayout, StatusMakesTheThreeStylePanelsDetached) {
    ASSERT_TRUE(Build(u"Status"));
    EXPECT_EQ(g_uLayoutStyle, 0u);
    const ControlList& flat = *m_pManager->m_fnGetDrawList(g_keyColorList);
    EXPECT_EQ(flat.size(), 2u);
    for (u32 u = 0; u < g_uStylePanelEntries; ++u) {
        CPanel_Base* p = g_ppStylePanel[u];
        EXPECT_EQ(p != nullptr, u == 1 || u == 3 || u == 5) << u;
        if (!p) continue;
        EXPECT_FALSE(m_pManager->m_fnIsAttached(p, g_uLayerColor));
        EXPECT_TRUE(m_pManager->m_fnHasParent(p));
        EXPECT_NE(p->m_pEntity, nullptr);
    }
    EXPECT_EQ(Place(g_ppStylePanel[3]), (stRect{1800, 24, 1896, 120}));
    g_ppStylePanel[3]->m_fnSetAnchor(7, 10, 20);
    EXPECT_EQ(Place(g_ppStylePanel[3]), (stRect{10, 964, 106, 1060}));
    EXPECT_TRUE(m_pManager->m_fnAttachBack(g_ppStylePanel[3], g_uLayerColor));
}

TEST_F(FixedLayout, EmptyHasKeysAndNoPanel) {
    ASSERT_TRUE(Build(u"Empty"));
    EXPECT_EQ(CountPanels(), 0u);
    EXPECT_EQ(m_pManager->m_fnGetChildren(nullptr), nullptr);
    EXPECT_TRUE(m_pManager->m_fnIsInLayer(g_keyColorList, g_uLayerColor));
    EXPECT_FALSE(g_bCaptureBackdrop);
}

TEST_F(FixedLayout, BuildingAgainForgetsTheFormerLayout) {
    ASSERT_TRUE(Build(u"Frosted20"));
    ASSERT_TRUE(Build(u"Panels20"));
    EXPECT_EQ(recording::g_iLivePanels, 20);
    EXPECT_FALSE(g_bCaptureBackdrop);
    EXPECT_TRUE(g_mapBlurDiameters.empty());
    EXPECT_EQ(g_ppPanel, m_pManager->m_stArrays.m_ppPanel);
    EXPECT_EQ(m_pManager->m_fnGetChildren(nullptr)->size(), 20u);
    EXPECT_TRUE(m_pManager->m_fnGetDrawList(g_keyBlurByDiameter[30])->empty());
}

TEST_F(FixedLayout, AFailureIsReportedAndTheNextTrySucceeds) {
    recording::g_iMeshesLeft = 10;
    EXPECT_FALSE(Build(u"Panels20"));
    recording::g_iMeshesLeft = -1;
    recording::g_iEntitiesLeft = 3;
    EXPECT_FALSE(Build(u"Status"));
    recording::g_iEntitiesLeft = -1;
    EXPECT_TRUE(Build(u"Panels20"));
    EXPECT_EQ(recording::g_iLivePanels, 20);
}

TEST_F(FixedLayout, WithoutAManagerThereIsNothingToBuildIn) {
    g_fnDestroyManagers();
    EXPECT_FALSE(Build(u"Default"));
}

} // namespace
