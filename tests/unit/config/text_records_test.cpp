#include "config/make/text_records.h"

#include "base/log.h"
#include "controls/link_controls.h"
#include "controls/text_file.h"
#include "shared/process_records.h"
#include "tests/support/test_data_folder.h"
#include "tests/unit/controls/text_fixture.h"

#include <filesystem>

namespace {

std::vector<std::string> g_aLines;

class TextRecords : public TextTest {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        g_ppFont[3] = m_pFont = new CTestFont;
        std::filesystem::create_directories(m_folder.Path("Profiles/Mine"));
        g_fnSetProfileName(u"Mine");
        g_aLines.clear();
        g_fnLogSink = [](const char* szLine) { g_aLines.emplace_back(szLine); };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        g_wzProfileName[0] = g_wzProfileFolder[0] = 0;
        TextTest::TearDown();
        EXPECT_EQ(CLiveTextBox::s_iLive, 0);
    }
    static stTextInit Record(u64 id, const char16_t* wzText) {
        stTextInit st{};
        st.u64LB_ID = id;
        st.uFont = 3;
        st.stLook.m_fTextSize = 16;
        st.iAnchorCode = 1;
        st.iX = 10;
        st.iY = 20;
        st.iWidth = 100;
        st.iHeight = 40;
        st.stLook.m_u8TextR = 255;
        st.stLook.m_u8TextA = 51;
        st.stLook.m_u8ShadowB = 255;
        st.stLook.m_u8ShadowA = 102;
        st.bAutoSize = st.bFitToText = true;
        st.wzText = wzText;
        return st;
    }
    static stTextInit Memo(u64 id, const char16_t* wzName) {
        stTextInit st = Record(id, wzName);
        st.bMemo = true;
        return st;
    }
    static CTextBox_Base* Find(u64 id) { return g_fnFindCtrlById(id, g_stTextBoxIds, g_ppTextBox); }
    static std::u16string TextOf(u64 id) { return Find(id)->m_wzText.get(); }

    CTestFont* m_pFont = nullptr; ///< the manager's
    CTestDataFolder m_folder{false};
    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
};

TEST_F(TextRecords, ARecordSetsEverythingOnItsBox) {
    stTextInit st = Record(7, u"ab");
    st.stLook.m_fTextSpacingX = 2;
    st.stLook.m_fTextSpacingY = 3;
    st.stLook.m_bShadow = true;
    ASSERT_TRUE(g_fnCreateTextBoxes({&st, 1}));
    CTextBox_Base* p = Find(7);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(TextOf(7), u"ab");
    EXPECT_EQ(p->m_pFont, m_pFont);
    EXPECT_EQ(p->m_fTextSize, 16);
    EXPECT_EQ(p->m_fSpacingX, 2);
    EXPECT_EQ(p->m_fSpacingY, 3);
    EXPECT_EQ(p->m_iAnchorCode, 1);
    EXPECT_EQ(p->m_fAnchorX, 10);
    EXPECT_EQ(p->m_fAnchorY, 20);
    EXPECT_TRUE(p->m_bShadow && p->m_bAutoSize && p->m_bFitToText);
    EXPECT_EQ((Four{p->m_afTextColor[0], p->m_afTextColor[1], p->m_afTextColor[2], p->m_afTextColor[3]}),
              (Four{1, 0, 0, 0.2f}));
    EXPECT_EQ(p->m_afShadowColor[2], 1.0f);
    EXPECT_EQ(p->m_afShadowColor[3], 102 / 255.0f);
    EXPECT_EQ(p->m_fSizeW, 8 + 2 + 8);
    EXPECT_EQ(p->m_fSizeH, 16);
    EXPECT_NE(p->m_pEntity, nullptr);
    EXPECT_NE(p->m_pMesh, nullptr);
    EXPECT_EQ(recording::g_iUploads, 1);
}

TEST_F(TextRecords, WithoutAutoSizeTheRecordsSizeHoldsAndLinesWrap) {
    stTextInit st = Record(1, u"aaaaaaaaaaaaaaaa");
    st.bAutoSize = false;
    ASSERT_TRUE(g_fnCreateTextBoxes({&st, 1}));
    EXPECT_EQ(Find(1)->m_fSizeW, 100);
    EXPECT_EQ(Find(1)->m_fSizeH, 32); // two lines
    EXPECT_EQ(Find(1)->m_fClipWidth, 0);
}

TEST_F(TextRecords, WithAutoSizeAndWithoutFitTheTextIsClippedToTheRecordsWidth) {
    stTextInit st = Record(1, u"aaaaaaaaaaaaaaaa");
    st.iAnchorCode = 7;
    st.iX = 0;
    st.bFitToText = false;
    ASSERT_TRUE(g_fnCreateTextBoxes({&st, 1}));
    EXPECT_EQ(Find(1)->m_fClipWidth, 100);
    EXPECT_EQ(Find(1)->m_fSizeW, 96); // twelve glyphs fit whole
    EXPECT_EQ(Find(1)->m_fSizeH, 16);
}

TEST_F(TextRecords, BeforeItsTextABoxIsAsLargeAsALetter) {
    stTextInit st = Record(1, u"\xD800");
    ASSERT_TRUE(g_fnCreateTextBoxes({&st, 1}));
    // The text is refused, and the empty one measures nothing across.
    EXPECT_EQ(TextOf(1), u"");
    EXPECT_EQ(Find(1)->m_fSizeW, 0);
    EXPECT_EQ(Find(1)->m_fSizeH, 16);
}

TEST_F(TextRecords, AMemoShowsItsFile) {
    m_folder.Write("Profiles/Mine/memo.txt", "one\r\ntwo");
    const stTextInit st = Memo(5, u"memo.txt");
    ASSERT_TRUE(g_fnCreateTextBoxes({&st, 1}));
    EXPECT_EQ(TextOf(5), u"one\r\ntwo");
    EXPECT_EQ(Find(5)->m_fSizeH, 32);
    EXPECT_TRUE(g_aLines.empty());
}

TEST_F(TextRecords, AMemoWithoutAFileIsPassedOver) {
    const stTextInit aRecords[] = {Memo(1, u"absent.txt"), Memo(2, nullptr), Record(3, u"a")};
    ASSERT_TRUE(g_fnCreateTextBoxes(aRecords));
    EXPECT_EQ(Find(1), nullptr);
    EXPECT_EQ(Find(2), nullptr);
    EXPECT_NE(Find(3), nullptr);
    EXPECT_EQ(g_aLines,
              (std::vector<std::string>{"g_fnCheckMemoFile() error !\n", "g_fnCheckMemoFile() error !\n"}));
}

TEST_F(TextRecords, AMemoFileWithoutTextEndsTheCreation) {
    m_folder.Write("Profiles/Mine/empty.txt", "");
    const stTextInit aRecords[] = {Record(1, u"a"), Memo(2, u"empty.txt"), Record(3, u"c")};
    EXPECT_FALSE(g_fnCreateTextBoxes(aRecords));
    EXPECT_NE(Find(1), nullptr);
    EXPECT_EQ(Find(2), nullptr);
    EXPECT_EQ(Find(3), nullptr);
    EXPECT_EQ(CLiveTextBox::s_iLive, 1);
    ASSERT_EQ(g_aLines.size(), 2u);
    EXPECT_TRUE(g_aLines[0].starts_with("m_fnLoadText(): "));
    EXPECT_TRUE(g_aLines[0].ends_with("/Profiles/Mine/empty.txt\n"));
    EXPECT_EQ(g_aLines[1], "m_fnLoadText() error !\n");
}

TEST_F(TextRecords, AFontThatIsNotThereEndsTheCreation) {
    for (u32 uFont : {4u, g_uFontEntries, 0xFFFFFFFFu}) {
        stTextInit st = Record(1, u"a");
        st.uFont = uFont;
        EXPECT_FALSE(g_fnCreateTextBoxes({&st, 1}));
        EXPECT_EQ(Find(1), nullptr);
        EXPECT_EQ(CLiveTextBox::s_iLive, 0);
    }
}

TEST_F(TextRecords, AMeshThatCannotBeMadeEndsTheCreation) {
    recording::g_iMeshesLeft = 1;
    const stTextInit aRecords[] = {Record(1, u"a"), Record(2, u"b"), Record(3, u"c")};
    EXPECT_FALSE(g_fnCreateTextBoxes(aRecords));
    EXPECT_NE(Find(1), nullptr);
    EXPECT_EQ(Find(2), nullptr);
    EXPECT_EQ(CLiveTextBox::s_iLive, 1);
}

TEST_F(TextRecords, ARepeatedIdIsRefusedAndLoggedAndTheOthersAreMade) {
    const stTextInit aRecords[] = {Record(1, u"first"), Record(1, u"second"), Record(2, u"third")};
    ASSERT_TRUE(g_fnCreateTextBoxes(aRecords));
    EXPECT_EQ(TextOf(1), u"first");
    EXPECT_EQ(TextOf(2), u"third");
    EXPECT_EQ(CLiveTextBox::s_iLive, 2);
    EXPECT_EQ(g_aLines.size(), 1u);
}

TEST_F(TextRecords, AFlavourWithoutTextBoxesMakesNone) {
    g_stCreationTable.m_fnCreateTextBox = nullptr;
    const stTextInit st = Record(1, u"a");
    EXPECT_TRUE(g_fnCreateTextBoxes({&st, 1}));
    EXPECT_EQ(Find(1), nullptr);
}

TEST_F(TextRecords, LinkingPutsEveryBoxIntoItsFontsList) {
    const stTextInit aRecords[] = {Record(9, u"a"), Record(4, u"b")};
    ASSERT_TRUE(g_fnCreateTextBoxes(aRecords));
    g_fnLinkControls();
    const void* const pKey = static_cast<CFontUniCode*>(m_pFont);
    EXPECT_TRUE(m_pManager->m_fnIsInLayer(pKey, g_uLayerFont));
    EXPECT_EQ(*m_pManager->m_fnGetDrawList(pKey), (ControlList{Find(9), Find(4)}));
}

} // namespace
