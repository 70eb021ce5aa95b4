#include "base/layout_style.h"
#include "config/make/panel_records.h"
#include "draw/backdrop.h"

#include "base/log.h"
#include "config/load.h"
#include "draw/draw_keys.h"
#include "tests/unit/controls/manager_fixture.h"
#include "tests/unit/controls/recording_flavour.h"

namespace {

std::vector<std::string> g_aLines;

class PanelRecords : public ManagerTest {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        recording::Install();
        g_fnClearConfiguration();
        g_aLines.clear();
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        ManagerTest::TearDown();
        g_fnClearConfiguration();
    }
    static stPanelInit Record(u64 id, u32 uType, u32 uScatter = 30) {
        return {{255, 51, 0, 102, uType, uScatter, g_uShapeRect, 0, 0}, id, 1, 10, 20, 300, 200, false};
    }
    static CPanel_Base* Find(u64 id) { return g_fnFindCtrlById(id, g_stPanelIds, g_ppPanel); }
    ControlList List(const void* pKey) {
        ControlList* p = m_pManager->m_fnGetDrawList(pKey);
        return p ? *p : ControlList{};
    }
    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
};

TEST_F(PanelRecords, AlphaGoesThroughWholePercentAndBack) {
    EXPECT_EQ(g_fnAlphaToPercent(255), 100u);
    EXPECT_EQ(g_fnPercentToAlpha(100), 255);
    EXPECT_EQ(g_fnAlphaToPercent(3), 1u);
    EXPECT_EQ(g_fnPercentToAlpha(1), 2);
    EXPECT_EQ(g_fnAlphaToPercent(128), 50u);
    EXPECT_EQ(g_fnPercentToAlpha(50), 127);
    EXPECT_EQ(g_fnAlphaToPercent(0), 0u);
    for (u32 u = 0; u <= 255; ++u) EXPECT_LE(g_fnAlphaToPercent(u), 100u);
}

TEST_F(PanelRecords, ARecordSetsEverythingOnItsPanel) {
    const stPanelInit aRecords[] = {Record(7, PANEL_TYPE_GELLOPHANE)};
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    CPanel_Base* p = Find(7);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_fPanelW, 300);
    EXPECT_EQ(p->m_fPanelH, 200);
    EXPECT_EQ(p->m_fOutset, 1);
    EXPECT_EQ(p->m_fThickness, 1);
    EXPECT_EQ(p->m_fCornerSize, 10);
    EXPECT_EQ(p->m_fRectOutset, 0);
    EXPECT_EQ(p->m_fAnchorX, 10);
    EXPECT_EQ(p->m_fAnchorY, 20);
    EXPECT_EQ(p->m_afColor[0], 1.0f);
    EXPECT_EQ(p->m_afColor[1], 51 / 255.0f);
    EXPECT_EQ(p->m_afColor[3], 102 / 255.0f);
    EXPECT_NE(p->m_pEntity, nullptr);
    EXPECT_EQ(List(g_keyColorList), ControlList{p});
}

TEST_F(PanelRecords, Type0HasAPlaceInTheTreeAndNoPixel) {
    const stPanelInit aRecords[] = {Record(7, PANEL_TYPE_INVISIBLE)};
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    CPanel_Base* p = Find(7);
    ASSERT_NE(p, nullptr);
    m_pManager->m_fnAddChild(nullptr, p);
    EXPECT_EQ(p->m_fPosX, 10);
    EXPECT_TRUE(m_pManager->m_mapDrawList.empty());
    EXPECT_FALSE(g_bCaptureBackdrop);
}

TEST_F(PanelRecords, TypesAbove2ActAsType0) {
    const stPanelInit aRecords[] = {Record(7, 3), Record(8, 0xFFFFFFFF)};
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    EXPECT_NE(Find(8), nullptr);
    EXPECT_TRUE(m_pManager->m_mapDrawList.empty());
}

TEST_F(PanelRecords, ScatteringOfAFlatPanelHasNoEffect) {
    const stPanelInit aRecords[] = {Record(7, PANEL_TYPE_GELLOPHANE, 30)};
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    EXPECT_TRUE(g_mapBlurDiameters.empty());
    EXPECT_FALSE(g_bCaptureBackdrop);
    EXPECT_TRUE(m_pManager->m_fnGetLayer(g_uLayerBlur).empty());
}

TEST_F(PanelRecords, Scatter10And20NeedTwoProgramsAnd30Twice) {
    const stPanelInit aTwo[] = {Record(1, PANEL_TYPE_FROSTED, 10), Record(2, PANEL_TYPE_FROSTED, 20)};
    ASSERT_TRUE(g_fnCreatePanels(aTwo));
    EXPECT_EQ(g_mapBlurDiameters.size(), 2u);
    EXPECT_TRUE(g_bCaptureBackdrop);
    EXPECT_EQ(List(g_keyBlurByDiameter[10]), ControlList{Find(1)});
    EXPECT_EQ(List(g_keyBlurByDiameter[20]), ControlList{Find(2)});
    g_mapBlurDiameters.clear();
    const stPanelInit aSame[] = {Record(3, PANEL_TYPE_FROSTED, 30), Record(4, PANEL_TYPE_FROSTED, 30)};
    ASSERT_TRUE(g_fnCreatePanels(aSame));
    EXPECT_EQ(g_mapBlurDiameters.size(), 1u);
    EXPECT_EQ(g_mapBlurDiameters.at(30), 2u);
    EXPECT_EQ(List(g_keyBlurByDiameter[30]), (ControlList{Find(4), Find(3)}));
}

TEST_F(PanelRecords, ScatterAbove100ActsAs100) {
    const stPanelInit aRecords[] = {Record(1, PANEL_TYPE_FROSTED, 101),
                                    Record(2, PANEL_TYPE_FROSTED, 0xFFFFFFFF),
                                    Record(3, PANEL_TYPE_FROSTED, 0)};
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    EXPECT_EQ(g_mapBlurDiameters.at(100), 2u);
    EXPECT_EQ(g_mapBlurDiameters.at(0), 1u);
    EXPECT_EQ(List(g_keyBlurByDiameter[100]).size(), 2u);
}

TEST_F(PanelRecords, OutsideCustomAllFrostedPanelsShareOneKeyAndAreCountedAsConfigured) {
    g_uLayoutStyle = 0;
    const stPanelInit aRecords[] = {Record(1, PANEL_TYPE_FROSTED, 12)};
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    EXPECT_EQ(Find(1)->m_fnGetDrawKey(), static_cast<const void*>(g_keyBlurList));
    EXPECT_EQ(g_mapBlurDiameters.at(12), 1u);
    EXPECT_FALSE(g_mapBlurDiameters.contains(30));
}

TEST_F(PanelRecords, LaterPanelsLieUnderEarlierOnes) {
    const stPanelInit aRecords[] = {Record(1, 1), Record(2, 1), Record(3, 1)};
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    EXPECT_EQ(List(g_keyColorList), (ControlList{Find(3), Find(2), Find(1)}));
}

TEST_F(PanelRecords, AFrameWithAlpha0IsDrawnAllTheSame) {
    stPanelInit st = Record(1, 1);
    st.m_u8PanelA = 0;
    ASSERT_TRUE(g_fnCreatePanels({&st, 1}));
    EXPECT_EQ(List(g_keyColorList), ControlList{Find(1)});
}

TEST_F(PanelRecords, AHiddenPanelIsFoundByIdAndItsChildrenAreLaidOut) {
    stPanelInit aRecords[] = {Record(1, PANEL_TYPE_FROSTED), Record(2, 1)};
    aRecords[0].bHidden = true;
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    CPanel_Base *pHidden = Find(1), *pChild = Find(2);
    ASSERT_NE(pHidden, nullptr);
    EXPECT_FALSE(pHidden->m_fnIsRenderable());
    EXPECT_EQ(pHidden->m_pEntity, nullptr);
    EXPECT_FALSE(g_bCaptureBackdrop);
    EXPECT_TRUE(g_mapBlurDiameters.empty());
    m_pManager->m_fnAddChild(nullptr, pHidden);
    pChild->m_fnSetGeometry(30, 20);
    pChild->m_fnSetAnchor(9, 0, 0);
    m_pManager->m_fnAddChild(pHidden, pChild);
    EXPECT_EQ(pChild->m_fPosX, 280);
    EXPECT_EQ(pChild->m_fPosY, 200);
}

TEST_F(PanelRecords, ARecordThatCannotBeInitialisedStopsTheCreator) {
    stPanelInit aRecords[] = {Record(1, 1), Record(2, 1), Record(3, 1)};
    aRecords[1].m_uPanelShape = 9;
    EXPECT_FALSE(g_fnCreatePanels(aRecords));
    EXPECT_NE(Find(1), nullptr);
    EXPECT_EQ(Find(2), nullptr);
    EXPECT_EQ(Find(3), nullptr);
    EXPECT_EQ(recording::g_iLivePanels, 1);
}

TEST_F(PanelRecords, ABorderTakesThePlaceOfTheShapeAndFitsInside) {
    stPanelInit aRecords[] = {Record(1, 1), Record(2, 1), Record(3, 1)};
    aRecords[0].m_fPanelBorder = 4;
    aRecords[1].m_fPanelBorder = 101; // half of the height is the most
    aRecords[2].m_fPanelBorder = -4;
    ASSERT_TRUE(g_fnCreatePanels(aRecords));
    EXPECT_EQ(Find(1)->m_uShape, g_uShapeFrame);
    EXPECT_EQ(Find(1)->m_fThickness, 4);
    EXPECT_EQ(Find(1)->m_fOutset, 0);
    EXPECT_EQ(Find(2)->m_fThickness, 100);
    EXPECT_EQ(Find(3)->m_uShape, g_uShapeRect);
    EXPECT_EQ(Find(3)->m_fThickness, 1);
}

TEST_F(PanelRecords, APanelThatCannotBeAllocatedIsPassedOver) {
    recording::g_iPanelsLeft = 1;
    const stPanelInit aRecords[] = {Record(1, 1), Record(2, 1)};
    EXPECT_TRUE(g_fnCreatePanels(aRecords));
    EXPECT_NE(Find(1), nullptr);
    EXPECT_EQ(Find(2), nullptr);
}

TEST_F(PanelRecords, ARefusedIdIsLoggedAndTheRestGoesOn) {
    g_fnLogSink = [](const char* sz) { g_aLines.push_back(sz); };
    const stPanelInit aRecords[] = {Record(5, 1), Record(5, 1), Record(6, 1)};
    EXPECT_TRUE(g_fnCreatePanels(aRecords));
    ASSERT_EQ(g_aLines.size(), 2u);
    EXPECT_EQ(g_aLines[1], "g_fnRegisterPanelCtrl() error - u64PanelLB_ID: 5\n");
    EXPECT_EQ(List(g_keyColorList), (ControlList{Find(6), Find(5)}));
    EXPECT_EQ(recording::g_iLivePanels, 2);
}

TEST_F(PanelRecords, MorePanelsThanEntriesAreRefusedWithoutALeak) {
    std::vector<stPanelInit> records;
    for (u64 u = 0; u < g_uPanelEntries + 10; ++u) records.push_back(Record(u, PANEL_TYPE_INVISIBLE));
    EXPECT_TRUE(g_fnCreatePanels(records));
    EXPECT_EQ(recording::g_iLivePanels, static_cast<i32>(g_uPanelEntries));
    EXPECT_EQ(Find(g_uPanelEntries), nullptr);
}

} // namespace
