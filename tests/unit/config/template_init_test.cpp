#include "config/fixed/template_init.h"

#include "base/log.h"
#include "config/chain_report.h"
#include "config/settings/settings.h"
#include "controls/control_ids.h"
#include "controls/num_box.h"
#include "controls/panel.h"
#include "draw/canvas.h"
#include "platform/headless/test_controls.h"
#include "template_fixture.h"
#include "tests/unit/controls/text_fixture.h"

namespace {

class TemplateInit : public TextTest, public CTemplateText {
  protected:
    void SetUp() override {
        TextTest::SetUp();
        g_ppFont[5] = new CTestFont;
        *g_stTemplates.poolTextBoxStyle.m_fnUse(3) = {5, 16, 1, 2};
        *g_stTemplates.poolNumBoxStyle.m_fnUse(3) = {5, 16, 0, 0};
        *g_stTemplates.poolFlipBoxStyle.m_fnUse(3) = {5, 16, 1, 2};
        *g_stTemplates.poolPanelStyle.m_fnUse(3) = {120, 24};
    }
    template <class T> static T& Place(T& st) {
        st.uStyleID = 3;
        st.iAnchor = -7;
        st.iAnchorX = 11;
        st.iAnchorY = 12;
        return st;
    }
    template <class T> static void ExpectPlace(const T& st, u64 u64Id) {
        EXPECT_EQ(st.u64LB_ID, u64Id);
        EXPECT_EQ(st.iAnchorCode, -7);
        EXPECT_EQ(st.iX, 11);
        EXPECT_EQ(st.iY, 12);
    }
    static std::vector<u32> Bytes(const stTextColors& st) {
        return {st.m_u8TextR,   st.m_u8TextG,   st.m_u8TextB,   st.m_u8TextA,
                st.m_u8ShadowR, st.m_u8ShadowG, st.m_u8ShadowB, st.m_u8ShadowA};
    }
    template <class T> static void ExpectLook(const T& st) {
        EXPECT_EQ(st.uFont, 5u);
        EXPECT_EQ(st.stLook.m_fTextSize, 16);
        EXPECT_TRUE(st.stLook.m_bShadow);
        EXPECT_EQ(Bytes(st.stLook), Bytes(g_stColors));
    }
    static constexpr stTextColors g_stColors{1, 2, 3, 0, 4, 5, 6, 7, 0, 8};
    static constexpr stItemInstance g_stInstance{2, 1085, 17, g_uNoTemplate};
    static constexpr u64 g_u64Id = (u64{2} << 32) | 1085;
};

TEST_F(TemplateInit, ATextsRecord) {
    Place(*g_stTemplates.poolTextBox.m_fnUse(1085)).wzText = u"MHz";
    stTextInit st{};
    ASSERT_TRUE(g_fnMakeTextInit(g_stInstance, g_stColors, true, st));
    ExpectPlace(st, g_u64Id);
    ExpectLook(st);
    EXPECT_EQ(st.stLook.m_fTextSpacingX, 1);
    EXPECT_EQ(st.stLook.m_fTextSpacingY, 2);
    EXPECT_TRUE(st.bAutoSize && st.bFitToText);
    EXPECT_FALSE(st.bMemo);
    EXPECT_EQ(std::u16string(st.wzText), u"MHz");
}

TEST_F(TemplateInit, ANumbersRecord) {
    stNumTemplate& stTemplate = Place(*g_stTemplates.poolNumBox.m_fnUse(1085));
    stTemplate.iWidth = 40;
    stTemplate.iHeight = 20;
    stTemplate.fDigitSpacing = 0.5f;
    stTemplate.uDigitPadding = 3;
    stTemplate.uHideDigitPad = 0;
    stNumInit st{};
    ASSERT_TRUE(g_fnMakeNumInit(g_stInstance, g_stColors, true, st));
    ExpectPlace(st, g_u64Id);
    ExpectLook(st);
    EXPECT_EQ(st.stLook.m_fTextSpacingX, 0.5f);
    EXPECT_EQ(st.iWidth, 40);
    EXPECT_EQ(st.iHeight, 20);
    EXPECT_EQ(st.uPadDigits, 3u);
    EXPECT_EQ(st.uHidePad, 0u);
    EXPECT_EQ(st.uDataKind, g_uDataKindNone);
    EXPECT_EQ(st.uDataArg, 17u);
}

TEST_F(TemplateInit, AFlipsRecord) {
    stFlipTemplate& stTemplate = Place(*g_stTemplates.poolFlipBox.m_fnUse(1085));
    stTemplate.awzText[0] = u"zero";
    stTemplate.awzText[2] = u"two";
    stFlipInit st{};
    ASSERT_TRUE(g_fnMakeFlipInit(g_stInstance, g_stColors, true, st));
    ExpectPlace(st, g_u64Id);
    ExpectLook(st);
    EXPECT_EQ(st.stLook.m_fTextSpacingX, 1);
    EXPECT_EQ(st.stLook.m_fTextSpacingY, 2);
    EXPECT_EQ(st.uDataArg, 17u);
    EXPECT_EQ(std::u16string(st.awzText[0]), u"zero");
    EXPECT_EQ(std::u16string(st.awzText[1]), u"");
    EXPECT_EQ(std::u16string(st.awzText[2]), u"two");
}

TEST_F(TemplateInit, APanelsRecord) {
    Place(*g_stTemplates.poolPanel.m_fnUse(1085)).bHidden = true;
    stPanelInit st{};
    ASSERT_TRUE(g_fnMakePanelInit(g_stInstance, {10, 20, 30, 40, PANEL_TYPE_FROSTED, 12}, st));
    ExpectPlace(st, g_u64Id);
    EXPECT_EQ(st.iWidth, 120);
    EXPECT_EQ(st.iHeight, 24);
    EXPECT_EQ(st.m_u8PanelR, 10);
    EXPECT_EQ(st.m_u8PanelG, 20);
    EXPECT_EQ(st.m_u8PanelB, 30);
    EXPECT_EQ(st.m_u8PanelA, 40);
    EXPECT_EQ(st.m_uPanelShape, g_uShapeRect);
    EXPECT_EQ(st.m_uPanelType, PANEL_TYPE_FROSTED);
    EXPECT_EQ(st.m_uPanelScatter, 12u);
    EXPECT_TRUE(st.bHidden);
}

TEST_F(TemplateInit, APanelTakesItsOwnSizeOnlyWhereTheStyleHasNone) {
    stPanelTemplate& stTemplate = Place(*g_stTemplates.poolPanel.m_fnUse(1));
    stTemplate.iWidth = 300;
    stTemplate.iHeight = 40;
    stPanelInit st{};
    ASSERT_TRUE(g_fnMakePanelInit({0, 1}, {}, st));
    EXPECT_EQ(st.iWidth, 120);
    g_stTemplates.poolPanelStyle.m_fnFind(3)->iWidth = 0;
    ASSERT_TRUE(g_fnMakePanelInit({0, 1}, {}, st));
    EXPECT_EQ(st.iWidth, 300);
    EXPECT_EQ(st.iHeight, 24);
}

TEST_F(TemplateInit, WithoutATemplateThereIsNoRecord) {
    stTextInit stText{};
    stNumInit stNum{};
    stFlipInit stFlip{};
    stPanelInit stPanel{};
    stText.u64LB_ID = stNum.u64LB_ID = stFlip.u64LB_ID = stPanel.u64LB_ID = 99;
    EXPECT_FALSE(g_fnMakeTextInit(g_stInstance, g_stColors, true, stText));
    EXPECT_FALSE(g_fnMakeNumInit(g_stInstance, g_stColors, true, stNum));
    EXPECT_FALSE(g_fnMakeFlipInit(g_stInstance, g_stColors, true, stFlip));
    EXPECT_FALSE(g_fnMakePanelInit(g_stInstance, {}, stPanel));
    for (const u64 u64Id : {stText.u64LB_ID, stNum.u64LB_ID, stFlip.u64LB_ID, stPanel.u64LB_ID})
        EXPECT_EQ(u64Id, 99u);
}

TEST_F(TemplateInit, WithoutItsStyleThereIsNoRecordEither) {
    for (const u32 uStyle : {4u, 64u, 0xFFFFFFFFu}) {
        Place(*g_stTemplates.poolTextBox.m_fnUse(1085)).uStyleID = uStyle;
        Place(*g_stTemplates.poolNumBox.m_fnUse(1085)).uStyleID = uStyle;
        Place(*g_stTemplates.poolFlipBox.m_fnUse(1085)).uStyleID = uStyle;
        Place(*g_stTemplates.poolPanel.m_fnUse(1085)).uStyleID = uStyle;
        stTextInit stText{};
        stNumInit stNum{};
        stFlipInit stFlip{};
        stPanelInit stPanel{};
        EXPECT_FALSE(g_fnMakeTextInit(g_stInstance, g_stColors, true, stText));
        EXPECT_FALSE(g_fnMakeNumInit(g_stInstance, g_stColors, true, stNum));
        EXPECT_FALSE(g_fnMakeFlipInit(g_stInstance, g_stColors, true, stFlip));
        EXPECT_FALSE(g_fnMakePanelInit(g_stInstance, {}, stPanel));
    }
}

TEST_F(TemplateInit, AnotherItemsTemplateStandsInAndAnOwnOneGoesBefore) {
    stItemInstance stSensor{9, 70, 9, 60};
    Place(*g_stTemplates.poolTextBox.m_fnUse(60)).wzText = u"any";
    stTextInit st{};
    ASSERT_TRUE(g_fnMakeTextInit(stSensor, g_stColors, true, st));
    EXPECT_EQ(std::u16string(st.wzText), u"any");
    EXPECT_EQ(st.u64LB_ID, (u64{9} << 32) | 70);
    Place(*g_stTemplates.poolTextBox.m_fnUse(70)).wzText = u"own";
    ASSERT_TRUE(g_fnMakeTextInit(stSensor, g_stColors, true, st));
    EXPECT_EQ(std::u16string(st.wzText), u"own");
}

TEST_F(TemplateInit, ColoursAreWhiteOnBlackByDefault) {
    EXPECT_EQ(Bytes(g_stPlainTextColors), (std::vector<u32>{255, 255, 255, 255, 0, 0, 0, 255}));
    EXPECT_EQ(stPanelLook{}.m_uPanelScatter, 30u);
}

TEST_F(TemplateInit, RecordsMakeTheControlsThatTheySay) {
    Place(*g_stTemplates.poolTextBox.m_fnUse(1085)).wzText = u"ab";
    Place(*g_stTemplates.poolNumBox.m_fnUse(10)).uDigitPadding = 2;
    Place(*g_stTemplates.poolPanel.m_fnUse(5));
    stTextInit stText{};
    stNumInit stNum{};
    stPanelInit stPanel{};
    ASSERT_TRUE(g_fnMakeTextInit(g_stInstance, g_stColors, true, stText));
    ASSERT_TRUE(g_fnMakeNumInit({3, 10}, g_stColors, false, stNum));
    ASSERT_TRUE(g_fnMakePanelInit({0, 5}, {0, 0, 0, 128, PANEL_TYPE_GELLOPHANE, 30}, stPanel));
    ASSERT_TRUE(g_fnCreateTextBoxes({&stText, 1}) && g_fnCreateNumBoxes({&stNum, 1}) &&
                g_fnCreatePanels({&stPanel, 1}));
    const CTextBox_Base* pText = g_fnFindCtrl(2, 1085, g_stTextBoxIds, g_ppTextBox);
    ASSERT_NE(pText, nullptr);
    EXPECT_EQ(std::u16string(pText->m_wzText.get()), u"ab");
    EXPECT_EQ(pText->m_iAnchorCode, -7);
    EXPECT_EQ(pText->m_fSizeW, 8 + 1 + 8);
    EXPECT_NE(g_fnFindCtrl(3, 10, g_stNumBoxIds, g_ppNumBox), nullptr);
    const CPanel_Base* pPanel = g_fnFindCtrl(0, 5, g_stPanelIds, g_ppPanel);
    ASSERT_NE(pPanel, nullptr);
    EXPECT_EQ(pPanel->m_fPanelW, 120);
}

TEST_F(TemplateInit, TheThreeTextsOfTheSettingsArePercentOfTheCanvasHeight) {
    g_uCanvasH = 1080;
    EXPECT_EQ(g_fnSettingsTextSize(5), 54);
    EXPECT_EQ(g_fnSettingsTextSize(1), 10.8f);
    EXPECT_EQ(g_fnSettingsTextSize(0), 0);
    g_uCanvasH = 720;
    EXPECT_EQ(g_fnSettingsTextSize(5), 36);
}

TEST_F(TemplateInit, AFailedStepIsShownOnlyWhereMessageBoxesAreAskedFor) {
    platform::headless::ResetAll();
    g_stSettings.bDebugMessageBox = false;
    g_fnReportChainFailure("g_fnCreate_Tavo_ResourceByClassicStyle", 3);
    EXPECT_TRUE(platform::headless::MessageBoxes().empty());
    g_stSettings.bDebugMessageBox = true;
    g_fnReportChainFailure("g_fnCreate_Tavo_ResourceByClassicStyle", 3);
    g_stSettings.bDebugMessageBox = false;
    ASSERT_EQ(platform::headless::MessageBoxes().size(), 1u);
    EXPECT_EQ(platform::headless::MessageBoxes()[0].first, u"Error code : 3");
    EXPECT_EQ(platform::headless::MessageBoxes()[0].second, "g_fnCreate_Tavo_ResourceByClassicStyle");
    platform::headless::ResetAll();
}

} // namespace
