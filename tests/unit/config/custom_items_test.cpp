// From items to init records: names, ids, fonts, and what each type is made of.
#include "config/items/item_number.h"
#include "config/make/character_sets.h"
#include "config/profile/profile_panel_keys.h"
#include "controls/panel.h"
#include "tests/unit/config/custom_fixture.h"

namespace {

class CustomItems : public CustomTest {
  protected:
    void TearDown() override {
        g_stLooks.bTextShadow = false;
        CustomTest::TearDown();
    }
    static std::set<u32> Needed(u32 uFontId) {
        std::set<u32> codes;
        g_fnQueryTextByFontID(uFontId, &codes);
        return codes;
    }
    static bool Needs(u32 uFontId, std::u16string_view wzText) {
        const std::set<u32> codes = Needed(uFontId);
        return std::all_of(wzText.begin(), wzText.end(), [&](char16_t c) { return codes.contains(c); });
    }
    template <class Record> static std::vector<u64> IdsOf(const std::vector<Record>& records) {
        std::vector<u64> ids;
        for (const Record& st : records) ids.push_back(st.u64LB_ID);
        return ids;
    }
};

TEST_F(CustomItems, EveryItemHasAFramePanelInFrontOfItsOwn) {
    const stCustomInit st = Init(Item("Panel", "P@Own",
                                      "FrameSizeW='300' FrameSizeH='200' FrameAnchor='9' FrameAnchorX='7' "
                                      "FrameAnchorY='-8' ContentSizeW='100'"));
    ASSERT_EQ(st.panels.size(), 2u);
    const stPanelInit& frame = st.panels[0];
    EXPECT_EQ(frame.u64LB_ID, Id("P_F@Own"));
    EXPECT_EQ(frame.iWidth, 300);
    EXPECT_EQ(frame.iHeight, 200);
    EXPECT_EQ(frame.iAnchorCode, 9);
    EXPECT_EQ(frame.iX, 7);
    EXPECT_EQ(frame.iY, -8);
    EXPECT_EQ(frame.m_uPanelType, 1u);
    EXPECT_EQ(frame.m_uPanelScatter, 30u);
    EXPECT_EQ(frame.m_u8PanelR + frame.m_u8PanelG + frame.m_u8PanelB + frame.m_u8PanelA, 0);
    EXPECT_FALSE(frame.bHidden);
    EXPECT_EQ(st.panels[1].u64LB_ID, Id("P@Own"));
    EXPECT_EQ(g_fnControlNames('P')->at("P_F@Own"), frame.u64LB_ID);
    EXPECT_EQ(g_fnControlNames('P')->at("P@Own"), Id("P@Own"));
}

TEST_F(CustomItems, AFrameOfAnItemWithoutOwnerIsCalledByTheNameAndF) {
    const stCustomInit st = Init(Item("Panel", "P"));
    EXPECT_EQ(IdsOf(st.panels), (Ids{Id("P_F"), Id("P")}));
}

TEST_F(CustomItems, ATextBecomesOneTextControl) {
    const stCustomInit st = Init(
        Text("T", "Text='abc' TextSpacingX='2.5' ContentSizeW='90' ContentSizeH='20' ContentAnchor='5' "
                  "ContentAnchorX='3' ContentAnchorY='4' TextColorR='1' TextColorG='2' TextColorB='3' "
                  "TextColorA='51' ShadowColorR='4' ShadowColorG='5' ShadowColorB='6' ShadowColorA='102'"));
    ASSERT_EQ(st.texts.size(), 1u);
    const stTextInit& text = st.texts[0];
    EXPECT_EQ(text.u64LB_ID, Id("T"));
    EXPECT_EQ(std::u16string(text.wzText), u"abc");
    EXPECT_EQ(text.uFont, 0u);
    EXPECT_EQ(text.stLook.m_fTextSize, 16);
    EXPECT_EQ(text.stLook.m_fTextSpacingX, 2.5f);
    EXPECT_EQ(text.stLook.m_fTextSpacingY, 0);
    EXPECT_EQ(text.iAnchorCode, 5);
    EXPECT_EQ(text.iX, 3);
    EXPECT_EQ(text.iY, 4);
    EXPECT_EQ(text.iWidth, 90);
    EXPECT_EQ(text.iHeight, 20);
    EXPECT_EQ(text.stLook.m_u8TextR, 1);
    EXPECT_EQ(text.stLook.m_u8TextG, 2);
    EXPECT_EQ(text.stLook.m_u8TextB, 3);
    EXPECT_EQ(text.stLook.m_u8TextA, 51);
    EXPECT_EQ(text.stLook.m_u8ShadowR, 4);
    EXPECT_EQ(text.stLook.m_u8ShadowG, 5);
    EXPECT_EQ(text.stLook.m_u8ShadowB, 6);
    EXPECT_EQ(text.stLook.m_u8ShadowA, 102);
    EXPECT_FALSE(text.bMemo);
    EXPECT_EQ(Assembly("T").listTextBox, Ids{Id("T")});
    EXPECT_EQ(Assembly("T").u64FramePanelLB_ID, Id("T_F"));
    EXPECT_STREQ(Assembly("T").m_szItemName, "T");
    EXPECT_EQ(Assembly("T").pItem, g_mapItemById.at(Id("T")));
}

TEST_F(CustomItems, ATextWithAWidthIsCutOffAndAMemoWithOneWraps) {
    m_folder.Write("Profiles/Mine/m.txt", "memo");
    const std::string szMemo = "FontName='Face' FileName='m.txt' ";
    const stCustomInit st =
        Init(Text("a") + Text("b", "Text='x' ContentSizeW='50'") + Item("Memo", "c", szMemo) +
             Item("Memo", "d", szMemo + "ContentSizeW='50' TextSpacingY='3'"));
    ASSERT_EQ(st.texts.size(), 4u);
    EXPECT_TRUE(st.texts[0].bAutoSize && st.texts[0].bFitToText);
    EXPECT_TRUE(st.texts[1].bAutoSize);
    EXPECT_FALSE(st.texts[1].bFitToText);
    EXPECT_TRUE(st.texts[2].bAutoSize && st.texts[2].bFitToText);
    EXPECT_FALSE(st.texts[3].bAutoSize);
    EXPECT_TRUE(st.texts[3].bFitToText);
    EXPECT_TRUE(st.texts[2].bMemo && st.texts[3].bMemo);
    EXPECT_EQ(std::u16string(st.texts[3].wzText), u"m.txt");
    EXPECT_EQ(st.texts[3].stLook.m_fTextSpacingY, 3);
}

TEST_F(CustomItems, AMemoWithoutFileNameIsNoMemo) {
    const stCustomInit st = Init(Item("Memo", "m", "FontName='Face'"));
    ASSERT_EQ(st.texts.size(), 1u);
    EXPECT_FALSE(st.texts[0].bMemo);
}

TEST_F(CustomItems, ShadowsAreOneSwitchForAllLetters) {
    const std::string szItems = Text("t") + Number("n", "FPS") + Number("x", "RESOLUTION");
    for (const bool bShadow : {false, true}) {
        g_stLooks.bTextShadow = bShadow;
        const stCustomInit st = Init(szItems);
        for (const stTextInit& text : st.texts) EXPECT_EQ(text.stLook.m_bShadow, bShadow);
        for (const stNumInit& number : st.numbers) EXPECT_EQ(number.stLook.m_bShadow, bShadow);
    }
}

TEST_F(CustomItems, ANumberBecomesOneNumberControl) {
    const stCustomInit st = Init(Number("n@O", "GPU_CLK#0",
                                        "ContentSizeW='40' ContentSizeH='30' ContentAnchor='3' "
                                        "TextSpacingX='1.5' TextColorR='9' ShadowColorB='8'"));
    ASSERT_EQ(st.numbers.size(), 1u);
    const stNumInit& number = st.numbers[0];
    EXPECT_EQ(number.u64LB_ID, Id("n@O"));
    EXPECT_EQ(number.iAnchorCode, 3);
    EXPECT_EQ(number.iWidth, 40);
    EXPECT_EQ(number.iHeight, 30);
    EXPECT_EQ(number.stLook.m_fTextSize, 16);
    EXPECT_EQ(number.stLook.m_fTextSpacingX, 1.5f);
    EXPECT_EQ(number.stLook.m_u8TextR, 9);
    EXPECT_EQ(number.stLook.m_u8ShadowB, 8);
    EXPECT_EQ(number.stLook.m_u8TextA, 255);
    EXPECT_EQ(number.uDataKind, g_uDataKindNone);
    EXPECT_EQ(Assembly("n@O").listNumBox, Ids{Id("n@O")});
    EXPECT_TRUE(st.texts.empty());
}

TEST_F(CustomItems, AResolutionMakesThreeControlsWhereOneWasWritten) {
    const stCustomInit st = Init(Number("Size@O", "RESOLUTION", "TextSpacingX='4' TextColorG='7'"));
    EXPECT_EQ(IdsOf(st.texts), Ids{Id("Size@O")});
    EXPECT_EQ(IdsOf(st.numbers), (Ids{Id("Size[0]@O"), Id("Size[1]@O")}));
    EXPECT_EQ(IdsOf(st.panels), Ids{Id("Size_F@O")});
    EXPECT_EQ(std::u16string(st.texts[0].wzText), u"x");
    EXPECT_TRUE(st.texts[0].bAutoSize && st.texts[0].bFitToText);
    EXPECT_EQ(st.texts[0].stLook.m_fTextSpacingX, 4);
    EXPECT_EQ(st.texts[0].stLook.m_u8TextG, 7);
    EXPECT_EQ(st.numbers[1].stLook.m_u8TextG, 7);
    EXPECT_EQ(Assembly("Size@O").listTextBox, IdsOf(st.texts));
    EXPECT_EQ(Assembly("Size@O").listNumBox, IdsOf(st.numbers));
}

TEST_F(CustomItems, AClockMakesTwoSeparatorsAndThreeNumbersUnderTheSameNames) {
    const stCustomInit st = Init(Number("Clock", "SYSTEM_TIME"));
    EXPECT_EQ(IdsOf(st.texts), (Ids{Id("Clock[0]"), Id("Clock[1]")}));
    EXPECT_EQ(IdsOf(st.numbers), (Ids{Id("Clock[0]"), Id("Clock[1]"), Id("Clock[2]")}));
    for (const stTextInit& text : st.texts) EXPECT_EQ(std::u16string(text.wzText), u":");
    EXPECT_EQ(g_fnControlNames('T')->count("Clock"), 0u);
    EXPECT_EQ(g_fnControlNames('T')->count("Clock[1]"), 1u);
    EXPECT_EQ(g_fnControlNames('N')->count("Clock[2]"), 1u);
}

TEST_F(CustomItems, APanelTakesColourTypeAndScattering) {
    const stCustomInit st =
        Init(Item("Panel", "p",
                  "PanelColorR='1' PanelColorG='2' PanelColorB='3' PanelColorA='102' "
                  "PanelType='2' PanelScattering='120' ContentSizeW='30' ContentSizeH='40' "
                  "ContentAnchor='8' ContentAnchorX='5' ContentAnchorY='6'"));
    const stPanelInit& panel = st.panels.at(1);
    EXPECT_EQ(panel.m_u8PanelR, 1);
    EXPECT_EQ(panel.m_u8PanelG, 2);
    EXPECT_EQ(panel.m_u8PanelB, 3);
    EXPECT_EQ(panel.m_u8PanelA, 102);
    EXPECT_EQ(panel.m_uPanelType, 2u);
    EXPECT_EQ(panel.m_uPanelScatter, 120u);
    EXPECT_EQ(panel.iWidth, 30);
    EXPECT_EQ(panel.iHeight, 40);
    EXPECT_EQ(panel.iAnchorCode, 8);
    EXPECT_EQ(panel.iX, 5);
    EXPECT_EQ(panel.iY, 6);
    EXPECT_EQ(Assembly("p").listPanel, Ids{Id("p")});
}

TEST_F(CustomItems, ALineGraphTakesItsFields) {
    const stCustomInit st = Init(Item("LineGraph", "l",
                                      "DataFullName='FPS' LineColorR='1' LineColorG='2' LineColorB='3' "
                                      "LineColorA='51' DataNum='20' LineType='1' MinValue='5' MaxValue='50' "
                                      "DataStartIdx='4' ContentSizeW='60' ContentSizeH='30' DataWidth='7'"));
    ASSERT_EQ(st.lineGraphs.size(), 1u);
    const stLineGraphInit& graph = st.lineGraphs[0];
    EXPECT_EQ(graph.u64LB_ID, Id("l"));
    EXPECT_EQ(graph.m_u8LineR, 1);
    EXPECT_EQ(graph.m_u8LineG, 2);
    EXPECT_EQ(graph.m_u8LineB, 3);
    EXPECT_EQ(graph.m_u8LineA, 51);
    EXPECT_EQ(graph.m_uDataNum, 20u);
    EXPECT_EQ(graph.m_uLineType, 1u);
    EXPECT_EQ(graph.m_fMinValue, 5);
    EXPECT_EQ(graph.m_fMaxValue, 50);
    EXPECT_EQ(graph.m_uDataStartIdx, 4u);
    EXPECT_EQ(graph.m_fDataWidth, 7);
    EXPECT_EQ(graph.iWidth, 60);
    EXPECT_EQ(graph.iHeight, 30);
    EXPECT_EQ(Assembly("l").listLineGraph, Ids{Id("l")});
    EXPECT_EQ(g_fnControlNames('L')->at("l"), Id("l"));
}

TEST_F(CustomItems, APieChartTakesItsFields) {
    const stCustomInit st = Init(Item("PieChart", "c",
                                      "DataFullName='FPS' ChartColorR='1' ChartColorG='2' ChartColorB='3' "
                                      "ChartColorA='51' ChartType='1' SlotNum='5' ShapeSegNum='6' "
                                      "SlotFillRatio='70' ChartFillRatio='40' MinValue='1' MaxValue='9' "
                                      "StartDegree='10' EndDegree='200' Clockwise='1' ContentSizeW='60'"));
    ASSERT_EQ(st.pieCharts.size(), 1u);
    const stPieChartInit& chart = st.pieCharts[0];
    EXPECT_EQ(chart.u64LB_ID, Id("c"));
    EXPECT_EQ(chart.m_u8ChartR, 1);
    EXPECT_EQ(chart.m_u8ChartG, 2);
    EXPECT_EQ(chart.m_u8ChartB, 3);
    EXPECT_EQ(chart.m_u8ChartA, 51);
    EXPECT_EQ(chart.m_uChartType, 1u);
    EXPECT_EQ(chart.m_uSlotNum, 5u);
    EXPECT_EQ(chart.m_uShapeSegNum, 6u);
    EXPECT_EQ(chart.m_fSlotFillRatio, 70);
    EXPECT_EQ(chart.m_fChartFillRatio, 40);
    EXPECT_EQ(chart.m_fMinValue, 1);
    EXPECT_EQ(chart.m_fMaxValue, 9);
    EXPECT_EQ(chart.m_fStartDeg, 10);
    EXPECT_EQ(chart.m_fEndDeg, 200);
    EXPECT_EQ(chart.m_bClockwise, 1u);
    EXPECT_EQ(chart.iWidth, 60);
    EXPECT_EQ(Assembly("c").listPieChart, Ids{Id("c")});
    EXPECT_EQ(g_fnControlNames('C')->at("c"), Id("c"));
}

TEST_F(CustomItems, AnImageBecomesOneImageInItsFrame) {
    const stCustomInit st =
        Init(Item("Image", "i",
                  "ImageFileName='a.png' ImageColorA='102' TiltDegree='-12.5' FrameSizeW='10' "
                  "ContentSizeW='90' ContentSizeH='20' ContentAnchor='5' ContentAnchorX='3' "
                  "ContentAnchorY='4'") +
             Item("Image", "upright", "ImageFileName='sub/b.png'") +
             Item("Image", "outside", "ImageFileName='..\\..\\b.png'"));
    EXPECT_EQ(IdsOf(st.panels), (Ids{Id("i_F"), Id("outside_F"), Id("upright_F")}));
    EXPECT_EQ(IdsOf(st.images), (Ids{Id("i"), Id("outside"), Id("upright")}));
    const stImageInit& image = st.images[0];
    const std::string strPath = m_folder.Path("Profiles/Mine/a.png");
    EXPECT_EQ(std::u16string(image.wzPath), std::u16string(strPath.begin(), strPath.end()));
    EXPECT_EQ(image.u8R, 255);
    EXPECT_EQ(image.u8G, 255);
    EXPECT_EQ(image.u8B, 255);
    EXPECT_EQ(image.u8A, 102);
    EXPECT_TRUE(image.bTilted);
    EXPECT_EQ(image.fTiltDegree, -12.5f);
    EXPECT_EQ(image.iAnchorCode, 5);
    EXPECT_EQ(image.iX, 3);
    EXPECT_EQ(image.iY, 4);
    EXPECT_EQ(image.iWidth, 90);
    EXPECT_EQ(image.iHeight, 20);
    EXPECT_EQ(Assembly("i").listImgBox, Ids{Id("i")});
    EXPECT_EQ(g_fnControlNames('I')->at("i"), Id("i"));
    EXPECT_EQ(st.images[1].wzPath[0], 0) << "no way out of the profile folder";
    EXPECT_FALSE(st.images[2].bTilted);
}

TEST_F(CustomItems, ItemsAreTakenInTheOrderOfTheirNames) {
    const stCustomInit st = Init(Item("Panel", "b") + Item("Panel", "B") + Item("Panel", "a") + Text("Z"));
    std::vector<std::string> names;
    for (const stAssembleInfo& info : st.infos) names.push_back(info.m_szItemName);
    EXPECT_EQ(names, (std::vector<std::string>{"B", "Z", "a", "b"}));
}

TEST_F(CustomItems, TwoItemsThatShareOneFontGiveOneFontEntry) {
    const stCustomInit st =
        Init(Text("a") + Text("b") + Number("c", "FPS") + Item("TextBox", "d", "FontName='Other' Text='x'"));
    ASSERT_EQ(st.fonts.size(), 2u);
    EXPECT_EQ(std::u16string(st.fonts[0].stRecord.m_wzFontName), u"Face");
    EXPECT_EQ(std::u16string(st.fonts[1].stRecord.m_wzFontName), u"Other");
    EXPECT_EQ(st.texts[0].uFont, 0u);
    EXPECT_EQ(st.texts[1].uFont, 0u);
    EXPECT_EQ(st.numbers[0].uFont, 0u);
    EXPECT_EQ(st.texts[2].uFont, 1u);
}

TEST_F(CustomItems, AFontThatStandsIsTakenBeforeANewOne) {
    auto* pFont = new CGivenFont;
    pFont->m_fnSetFontName(u"Face");
    g_ppFont[5] = pFont;
    const stCustomInit st = Init(Text("a"));
    EXPECT_TRUE(st.fonts.empty());
    EXPECT_EQ(st.texts[0].uFont, 5u);
}

TEST_F(CustomItems, AFaceBeyondTheSixtyFourthIsAFontErrorAndTakesFont0) {
    std::string szItems;
    for (int i = 100; i < 165; ++i)
        szItems +=
            Item("TextBox", std::to_string(i).c_str(), "Text='x' FontName='Face" + std::to_string(i) + "'");
    const stCustomInit st = Init(szItems);
    EXPECT_EQ(st.fonts.size(), 64u);
    EXPECT_EQ(st.texts.at(63).uFont, 63u);
    EXPECT_EQ(st.texts.at(64).uFont, 0u);
    EXPECT_EQ(Logged("Font error !\n"), 1);
}

TEST_F(CustomItems, EachTypeNeedsItsCharacters) {
    m_folder.Write("Profiles/Mine/m.txt", "\xC3\xA4\xC3\xB6");
    Init(Item("TextBox", "t", "FontName='T' Text='&#8364;'") +
         Item("Memo", "m", "FontName='M' FileName='m.txt'") +
         Item("NumBox", "n", "FontName='N' DataFullName='FPS'") +
         Item("NumBox", "x", "FontName='X' DataFullName='RESOLUTION'"));
    // In the order of the names: M, N, T, X.
    EXPECT_TRUE(Needs(0, u"\u00E4\u00F6AZ~"));
    EXPECT_TRUE(Needs(1, u"0123456789.-% "));
    EXPECT_TRUE(Needs(2, u"\u20AC"));
    EXPECT_TRUE(Needs(3, u"0123456789:x"));
    EXPECT_FALSE(Needs(3, u" "));
}

TEST_F(CustomItems, AMemosMissingFileAndEmptyFileAreReportedAndTheOthersGoOn) {
    m_folder.Write("Profiles/Mine/empty.txt", "");
    Init(Item("Memo", "a", "FontName='Face' FileName='none.txt'") +
         Item("Memo", "b", "FontName='Face' FileName='empty.txt'") + Text("c", "Text='&#8364;'"));
    EXPECT_EQ(Logged("error ! g_fnLoadTextFromFile() load file fail"), 1);
    EXPECT_EQ(Logged("error ! g_fnLoadTextFromFile() load text fail"), 1);
    EXPECT_TRUE(Needs(0, u"\u20AC"));
}

TEST_F(CustomItems, ATextWithoutCharactersIsReportedAndTheOthersGoOn) {
    const stCustomInit st = Init(Text("a", "Text=''") + Text("b", "Text='&#8364;'"));
    EXPECT_EQ(Logged("error ! g_fnInsertQueryTextByFontID() fail"), 1);
    EXPECT_TRUE(Needs(0, u"\u20AC"));
    EXPECT_EQ(st.texts.size(), 2u);
}

TEST_F(CustomItems, AnItemOfNoKnownTypeIsInvalid) {
    ReadItems(Text("a") + Item("Panel", "b"));
    g_mapItemByName.find("b")->second->m_fnSetType(ITEM_NONE);
    stCustomInit st;
    g_fnInitItemByCustomStyle(g_mapItemByName, st);
    EXPECT_EQ(Logged("item \"b\" is invalid"), 1);
    EXPECT_EQ(IdsOf(st.panels), Ids{Id("a_F")});
    EXPECT_EQ(g_mapAssembleInfo.count(Id("b")), 0u);
}

TEST_F(CustomItems, AMixOfAnUnknownDataNameIsInvalid) {
    ReadItems(Number("n", "FPS"));
    g_mapItemByName.find("n")->second->m_fnSetType(ITEM_MIXED);
    stCustomInit st;
    g_fnInitItemByCustomStyle(g_mapItemByName, st);
    EXPECT_EQ(Logged("item \"n\" is invalid"), 1);
    EXPECT_TRUE(st.panels.empty());
    EXPECT_TRUE(st.numbers.empty());
}

TEST_F(CustomItems, StartAndEndAreLogged) {
    Init(Text("a"));
    EXPECT_EQ(s_aLines.front(), "g_fnInitItemByCustomStyle() start\n");
    EXPECT_EQ(s_aLines.back(), "g_fnInitItemByCustomStyle() end\n");
}

TEST_F(CustomItems, AnItemNamedLikeAPartOfAnotherLosesItsControl) {
    ASSERT_TRUE(Create(Number("n", "SYSTEM_TIME") + Number("n[1]", "FPS") + Item("Panel", "n_F")));
    CNumBox_Base* pMinutes = NumBox("n[1]");
    ASSERT_NE(pMinutes, nullptr);
    EXPECT_EQ(ParentOf(pMinutes), Panel("n_F")) << "the part stays with the clock";
    EXPECT_EQ(ParentOf(Panel("n_F")), nullptr);
    EXPECT_TRUE(Assembly("n[1]").listNumBox.empty());
    EXPECT_TRUE(Assembly("n_F").listPanel.empty());
    EXPECT_EQ(Logged("g_fnRegisterXCtrl() error - repeated LB_ID: " + std::to_string(Id("n[1]")) + "\n"), 1);
    EXPECT_EQ(Logged("g_fnRegisterXCtrl() error - repeated LB_ID: " + std::to_string(Id("n_F")) + "\n"), 1);
}

} // namespace
