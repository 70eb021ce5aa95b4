#include "config/make/flip_records.h"

#include "controls/link_controls.h"
#include "tests/unit/controls/text_fixture.h"

namespace {

class FlipRecords : public TextTest {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        g_ppFont[3] = m_pFont = new CTestFont;
    }
    void TearDown() override {
        TextTest::TearDown();
        EXPECT_EQ(CLiveFlipBox::s_iLive, 0);
    }
    static stFlipInit Record(u64 id) {
        stFlipInit st{};
        st.u64LB_ID = id;
        st.uFont = 3;
        st.stLook.m_fTextSize = 16;
        st.stLook.m_fTextSpacingX = 2;
        st.stLook.m_fTextSpacingY = 3;
        st.stLook.m_u8TextR = 255;
        st.stLook.m_u8TextA = 51;
        st.stLook.m_u8ShadowB = 255;
        st.stLook.m_u8ShadowA = 102;
        st.stLook.m_bShadow = true;
        st.iAnchorCode = 4;
        st.iX = 10;
        st.iY = 20;
        st.awzText[0] = u"ok";
        st.awzText[1] = u"";
        st.awzText[2] = u"bad";
        return st;
    }
    static CFlipBox_Base* Find(u64 id) { return g_fnFindCtrlById(id, g_stFlipBoxIds, g_ppFlipBox); }
    CTestFont* m_pFont = nullptr; ///< the manager's
};

TEST_F(FlipRecords, ARecordSetsEverythingOnItsBox) {
    const stFlipInit st = Record(7);
    ASSERT_TRUE(g_fnCreateFlipBoxes({&st, 1}));
    CFlipBox_Base* const p = Find(7);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_pFont, m_pFont);
    EXPECT_EQ(p->m_fTextSize, 16);
    EXPECT_EQ(p->m_fSpacingX, 2);
    EXPECT_EQ(p->m_fSpacingY, 3);
    EXPECT_EQ(p->m_iAnchorCode, 4);
    EXPECT_EQ(p->m_fAnchorX, 10);
    EXPECT_EQ(p->m_fAnchorY, 20);
    EXPECT_TRUE(p->m_bShadow);
    ASSERT_EQ(p->m_mapStates.size(), 3u);
    for (const auto& [uState, state] : p->m_mapStates) {
        const f32* c = state.m_afColor;
        EXPECT_EQ((Four{c[0], c[1], c[2], c[3]}), (Four{1, 0, 0, 0.2f})) << uState;
    }
    EXPECT_EQ(
        (Four{p->m_afShadowColor[0], p->m_afShadowColor[1], p->m_afShadowColor[2], p->m_afShadowColor[3]}),
        (Four{0, 0, 1, 0.4f}));
    EXPECT_EQ(p->m_mapStates.at(2).m_uTextLength, 3u);
    EXPECT_EQ(p->m_fnGetCurrentState(), 0u);
    EXPECT_EQ(p->m_fSizeW, 2 * (8 + 2));
}

TEST_F(FlipRecords, BoxesEnterTheListOfTheirFont) {
    const stFlipInit a[] = {Record(7), Record(8)};
    ASSERT_TRUE(g_fnCreateFlipBoxes(a));
    g_fnLinkControls();
    EXPECT_EQ(*m_pManager->m_fnGetDrawList(m_pFont), (ControlList{Find(7), Find(8)}));
}

TEST_F(FlipRecords, ABadTextLeavesAnEmptyBox) {
    stFlipInit st = Record(7);
    st.awzText[1] = u"\xD83D";
    ASSERT_TRUE(g_fnCreateFlipBoxes({&st, 1}));
    EXPECT_EQ(Find(7)->m_mapStates.size(), 1u);
    EXPECT_EQ(Find(7)->m_fnGetTextWidth(), 0);
}

TEST_F(FlipRecords, WithoutAFontCreationFails) {
    stFlipInit a[] = {Record(7), Record(8)};
    a[1].uFont = 9;
    EXPECT_FALSE(g_fnCreateFlipBoxes(a));
    EXPECT_NE(Find(7), nullptr) << "those made before it stay";
    EXPECT_EQ(Find(8), nullptr);
}

TEST_F(FlipRecords, ARefusedBoxGoesAndTheOthersAreMade) {
    std::vector<stFlipInit> records;
    for (u64 u = 0; u < g_uFlipBoxEntries + 2; ++u) records.push_back(Record(u));
    EXPECT_TRUE(g_fnCreateFlipBoxes(records));
    EXPECT_EQ(CLiveFlipBox::s_iLive, static_cast<i32>(g_uFlipBoxEntries));
}

TEST_F(FlipRecords, AFlavourWithoutFlipBoxesMakesNone) {
    g_stCreationTable.m_fnCreateFlipBox = nullptr;
    const stFlipInit st = Record(7);
    EXPECT_TRUE(g_fnCreateFlipBoxes({&st, 1}));
    EXPECT_EQ(Find(7), nullptr);
}

} // namespace
