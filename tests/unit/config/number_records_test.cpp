#include "config/make/number_records.h"

#include "base/log.h"
#include "controls/link_controls.h"
#include "tests/unit/controls/text_fixture.h"

namespace {

std::vector<std::string> g_aLines;

class NumberRecords : public TextTest {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        g_ppFont[2] = m_pFont = new CTestFont;
        g_aLines.clear();
        g_fnLogSink = [](const char* szLine) { g_aLines.emplace_back(szLine); };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        TextTest::TearDown();
        EXPECT_EQ(CLiveNumBox::s_iLive, 0);
    }
    static stNumInit Record(u64 id) {
        stNumInit st{};
        st.u64LB_ID = id;
        st.uFont = 2;
        st.stLook.m_fTextSize = 16;
        st.stLook.m_fTextSpacingX = 1;
        st.iAnchorCode = 3;
        st.iX = 10;
        st.iY = 20;
        st.iWidth = 100;
        st.iHeight = 40;
        st.uPadDigits = 3;
        st.uHidePad = 1;
        st.stLook.m_u8TextG = 255;
        st.stLook.m_u8TextA = 51;
        st.stLook.m_u8ShadowB = 255;
        st.stLook.m_u8ShadowA = 102;
        st.stLook.m_bShadow = true;
        st.uDataKind = g_uDataKindNone;
        return st;
    }
    static CNumBox_Base* Find(u64 id) { return g_fnFindCtrlById(id, g_stNumBoxIds, g_ppNumBox); }

    CTestFont* m_pFont = nullptr; ///< the manager's
    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
};

TEST_F(NumberRecords, ARecordSetsEverythingOnItsBox) {
    const stNumInit st = Record(7);
    ASSERT_TRUE(g_fnCreateNumBoxes({&st, 1}));
    CNumBox_Base* p = Find(7);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_pFont, m_pFont);
    EXPECT_EQ(p->m_fCellWidth, 0.5f);
    EXPECT_EQ(p->m_fTextSize, 16);
    EXPECT_EQ(p->m_fSpacingX, 1);
    EXPECT_EQ(p->m_fSpacingY, 0);
    EXPECT_EQ(p->m_uPadDigits, 3u);
    EXPECT_TRUE(p->m_bPadBlank);
    EXPECT_TRUE(p->m_bAutoSize);
    EXPECT_TRUE(p->m_bShadow);
    EXPECT_EQ(p->m_iAnchorCode, 3);
    EXPECT_EQ(p->m_fAnchorX, 10);
    EXPECT_EQ(p->m_fAnchorY, 20);
    EXPECT_EQ(p->m_afTextColor[1], 1.0f);
    EXPECT_EQ(p->m_afTextColor[3], 51 / 255.0f);
    EXPECT_EQ(p->m_afShadowColor[2], 1.0f);
    EXPECT_EQ(p->m_afShadowColor[3], 102 / 255.0f);
    EXPECT_EQ(p->m_uVertexBytes, 28672u);
    EXPECT_NE(p->m_ppEntities, nullptr);
    EXPECT_NE(p->m_pMesh, nullptr);
    EXPECT_EQ(p->m_iDrawCount, -1);
    EXPECT_EQ(recording::g_iUploads, 1);
}

TEST_F(NumberRecords, TheSpacingOverwritesTheRecordsSize) {
    const stNumInit st = Record(1);
    ASSERT_TRUE(g_fnCreateNumBoxes({&st, 1}));
    EXPECT_EQ(Find(1)->m_fSizeW, -8 - 2 * 1);
    EXPECT_EQ(Find(1)->m_fSizeH, 16);
}

TEST_F(NumberRecords, PaddingHidesForAnyFlagButZero) {
    stNumInit aRecords[] = {Record(1), Record(2)};
    aRecords[0].uHidePad = 0;
    aRecords[1].uHidePad = 256;
    ASSERT_TRUE(g_fnCreateNumBoxes(aRecords));
    EXPECT_FALSE(Find(1)->m_bPadBlank);
    EXPECT_TRUE(Find(2)->m_bPadBlank);
}

TEST_F(NumberRecords, TheSourceIsHandedOnForKinds0And1) {
    stNumInit aRecords[] = {Record(1), Record(2), Record(3)};
    for (u32 i = 0; i < 3; ++i) {
        aRecords[i].uDataKind = i;
        aRecords[i].u8DataFlag = 9;
        aRecords[i].pDataSource = 0x123456789AULL;
        aRecords[i].uDataArg = 77;
    }
    ASSERT_TRUE(g_fnCreateNumBoxes(aRecords));
    EXPECT_EQ(Find(1)->m_uDataKind, 0u);
    EXPECT_EQ(Find(1)->m_u8DataFlag, 9);
    EXPECT_EQ(Find(1)->m_pDataSource, 0x123456789AULL);
    EXPECT_EQ(Find(1)->m_uDataArg, 77u);
    EXPECT_EQ(Find(2)->m_uDataKind, 1u);
    EXPECT_EQ(Find(2)->m_u8DataFlag, 0);
    EXPECT_EQ(Find(2)->m_pDataSource, 0x123456789AULL);
    EXPECT_EQ(Find(2)->m_uDataArg, 77u);
    EXPECT_EQ(Find(3)->m_uDataKind, 7u);
    EXPECT_EQ(Find(3)->m_pDataSource, 0u);
    EXPECT_EQ(Find(3)->m_uDataArg, 0u);
}

TEST_F(NumberRecords, AFontThatIsNotThereEndsTheCreation) {
    stNumInit aRecords[] = {Record(1), Record(2)};
    aRecords[1].uFont = g_uFontEntries;
    EXPECT_FALSE(g_fnCreateNumBoxes(aRecords));
    EXPECT_NE(Find(1), nullptr);
    EXPECT_EQ(Find(2), nullptr);
    EXPECT_EQ(CLiveNumBox::s_iLive, 1);
}

TEST_F(NumberRecords, AnEntityThatCannotBeMadeEndsTheCreation) {
    recording::g_iEntitiesLeft = 12;
    const stNumInit aRecords[] = {Record(1), Record(2), Record(3)};
    EXPECT_FALSE(g_fnCreateNumBoxes(aRecords));
    EXPECT_NE(Find(1), nullptr);
    EXPECT_EQ(Find(2), nullptr);
    EXPECT_EQ(CLiveNumBox::s_iLive, 1);
}

TEST_F(NumberRecords, ARepeatedIdIsRefusedAndLoggedAndTheOthersAreMade) {
    const stNumInit aRecords[] = {Record(1), Record(1), Record(2)};
    ASSERT_TRUE(g_fnCreateNumBoxes(aRecords));
    EXPECT_NE(Find(2), nullptr);
    EXPECT_EQ(CLiveNumBox::s_iLive, 2);
    EXPECT_EQ(g_aLines.size(), 1u);
}

TEST_F(NumberRecords, AFlavourWithoutNumberBoxesMakesNone) {
    g_stCreationTable.m_fnCreateNumBox = nullptr;
    const stNumInit st = Record(1);
    EXPECT_TRUE(g_fnCreateNumBoxes({&st, 1}));
    EXPECT_EQ(Find(1), nullptr);
}

TEST_F(NumberRecords, LinkingPutsEveryBoxIntoItsFontsList) {
    const stNumInit aRecords[] = {Record(9), Record(4)};
    ASSERT_TRUE(g_fnCreateNumBoxes(aRecords));
    g_fnLinkControls();
    const void* const pKey = static_cast<CFontUniCode*>(m_pFont);
    EXPECT_EQ(*m_pManager->m_fnGetDrawList(pKey), (ControlList{Find(9), Find(4)}));
}

} // namespace
