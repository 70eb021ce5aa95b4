#include "config/items/interner.h"
#include "config/items/item_report.h"
#include "controls/control_kinds.h"
#include "tests/unit/config/item_fixture.h"

namespace {

class ItemBase : public ItemTest {
  protected:
    /// The record of the first element, whatever comes of it.
    bool Parse(const std::string& szItem, CItemProperty_Base& item) {
        return g_fnParseItemBase(Info(szItem)->FirstChildElement(), &item);
    }
};

TEST_F(ItemBase, ANewRecordHoldsItsOwnDefaults) {
    const CItemProperty_Base item;
    EXPECT_EQ(item.m_pComplete, &item);
    EXPECT_EQ(item.m_uReserved, 0u);
    EXPECT_EQ(item.m_uItemType, 0u);
    EXPECT_STREQ(item.m_szItemType, "NONE");
    EXPECT_EQ(item.m_u64ItemId, ~u64{0});
    EXPECT_STREQ(item.m_szItemName, "");
    EXPECT_STREQ(item.m_szItemOwner, "");
    EXPECT_EQ(item.m_bIsShow, 1u);
    EXPECT_EQ(item.m_uFrameSizeW, 1u);
    EXPECT_EQ(item.m_uFrameSizeH, 1u);
    EXPECT_EQ(item.m_iFrameAnchor, 1);
    EXPECT_EQ(item.m_iFrameAnchorX, 1);
    EXPECT_EQ(item.m_iFrameAnchorY, 1);
    EXPECT_EQ(item.m_uContentSizeW, 1u);
    EXPECT_EQ(item.m_uContentSizeH, 1u);
    EXPECT_EQ(item.m_iContentAnchor, 1);
    EXPECT_EQ(item.m_iContentAnchorX, 0);
    EXPECT_EQ(item.m_iContentAnchorY, 0);
}

TEST_F(ItemBase, MissingAttributesDifferFromANewRecord) {
    CItemProperty_Base item;
    EXPECT_TRUE(Parse("<TextBox Name='a' IsShow='1'/>", item));
    EXPECT_EQ(item.m_uContentSizeW, 0u);
    EXPECT_EQ(item.m_uContentSizeH, 0u);
    EXPECT_EQ(item.m_iContentAnchor, 1);
    EXPECT_EQ(item.m_iContentAnchorX, 0);
    EXPECT_EQ(item.m_iContentAnchorY, 0);
    EXPECT_EQ(item.m_uFrameSizeW, 0u);
    EXPECT_EQ(item.m_uFrameSizeH, 0u);
    EXPECT_EQ(item.m_iFrameAnchor, 1);
    EXPECT_EQ(item.m_iFrameAnchorX, 0);
    EXPECT_EQ(item.m_iFrameAnchorY, 0);
}

TEST_F(ItemBase, EachAttributeReachesItsField) {
    CItemProperty_Base item;
    EXPECT_TRUE(Parse("<TextBox Name='b' IsShow='2' ContentSizeW='3' ContentSizeH='4' ContentAnchor='-5' "
                      "ContentAnchorX='-6' ContentAnchorY='7' FrameSizeW='8' FrameSizeH='9' "
                      "FrameAnchor='-9' FrameAnchorX='11' FrameAnchorY='-12'/>",
                      item));
    EXPECT_EQ(item.m_bIsShow, 2u);
    EXPECT_EQ(item.m_uContentSizeW, 3u);
    EXPECT_EQ(item.m_uContentSizeH, 4u);
    EXPECT_EQ(item.m_iContentAnchor, -5);
    EXPECT_EQ(item.m_iContentAnchorX, -6);
    EXPECT_EQ(item.m_iContentAnchorY, 7);
    EXPECT_EQ(item.m_uFrameSizeW, 8u);
    EXPECT_EQ(item.m_uFrameSizeH, 9u);
    EXPECT_EQ(item.m_iFrameAnchor, -9);
    EXPECT_EQ(item.m_iFrameAnchorX, 11);
    EXPECT_EQ(item.m_iFrameAnchorY, -12);
    EXPECT_STREQ(item.m_szItemName, "b");
    EXPECT_EQ(item.m_u64ItemId, g_fnInternName("b"));
}

TEST_F(ItemBase, AKeyWhoseTextStartsWithANonDigitParsesTo0) {
    CItemProperty_Base item;
    EXPECT_TRUE(Parse("<TextBox Name='a' IsShow='1' FrameSizeW='w100' ContentAnchor='left'/>", item));
    EXPECT_EQ(item.m_uFrameSizeW, 0u);
    EXPECT_EQ(item.m_iContentAnchor, 0);
}

TEST_F(ItemBase, NullGivesFalseAtOnce) {
    CItemProperty_Base item;
    EXPECT_FALSE(g_fnParseItemBase(nullptr, &item));
    EXPECT_FALSE(g_fnParseItemBase(Info("<a Name='a' IsShow='1'/>")->FirstChildElement(), nullptr));
    EXPECT_EQ(item.m_uFrameSizeW, 1u);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemBase, AnEmptyNameIsAnError) {
    CItemProperty_Base item;
    EXPECT_FALSE(Parse("<TextBox Name='' IsShow='1'/>", item));
    EXPECT_EQ(s_aLines, Lines{"error ! Invalid Item Name: \"\""});
    EXPECT_EQ(item.m_u64ItemId, ~u64{0});
}

TEST_F(ItemBase, AMissingNameIsAnErrorAlsoOfAHiddenItem) {
    CItemProperty_Base item;
    EXPECT_FALSE(Parse("<TextBox IsShow='0'/>", item));
    EXPECT_EQ(s_aLines, Lines{"error ! Invalid Item Name: \"\""});
}

TEST_F(ItemBase, WithoutIsShowThereIsNoItemAndNoMessage) {
    CItemProperty_Base item;
    EXPECT_FALSE(Parse("<TextBox Name='a'/>", item));
    ReadTexts("<TextBox Name='a' FontName='Sans' Text='x'/>");
    EXPECT_TRUE(g_mapItemByName.empty());
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemBase, AHiddenItemTakesNoId) {
    CItemProperty_Base item;
    const u64 u64Before = g_fnInternName("item base before the hidden one");
    EXPECT_FALSE(Parse("<TextBox Name='item base hidden' IsShow='0'/>", item));
    EXPECT_EQ(g_fnInternName("item base after the hidden one"), u64Before + 1);
}

TEST_F(ItemBase, TheOwnerIsBehindTheLastAtAndTheNameStaysWhole) {
    CItemProperty_Base item;
    EXPECT_TRUE(Parse("<TextBox Name='a@b@c' IsShow='1'/>", item));
    EXPECT_STREQ(item.m_szItemName, "a@b@c");
    EXPECT_STREQ(item.m_szItemOwner, "c");
}

TEST_F(ItemBase, ANameThatEndsInAnAtHasNoOwner) {
    CItemProperty_Base item;
    EXPECT_TRUE(Parse("<TextBox Name='a@' IsShow='1'/>", item));
    EXPECT_STREQ(item.m_szItemName, "a@");
    EXPECT_STREQ(item.m_szItemOwner, "");
}

TEST_F(ItemBase, ALongNameIsCutAndTheIdIsThatOfTheCutName) {
    CItemProperty_Base item;
    const std::string szLong(200, 'n');
    EXPECT_TRUE(Parse("<TextBox Name='" + szLong + "' IsShow='1'/>", item));
    EXPECT_EQ(std::string(item.m_szItemName), szLong.substr(0, 127));
    EXPECT_EQ(item.m_u64ItemId, g_fnInternName(szLong.substr(0, 127).c_str()));
}

TEST_F(ItemBase, ATextAndANumberOfOneNameTheSecondIsRefused) {
    ReadTexts("<TextBox Name='a' IsShow='1' FontName='Sans' Text='x'/>");
    ReadNumbers("<NumBox Name='a' IsShow='1' FontName='Sans' DataFullName='FPS'/>");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"a\" already exists"});
    EXPECT_NE(Text("a"), nullptr);
    EXPECT_EQ(Number("a"), nullptr);
    EXPECT_EQ(g_mapItemByName.size(), 1u);
}

TEST_F(ItemBase, NamesThatDifferBeyondTheCutAreOneName) {
    const std::string szLong(127, 'n');
    ReadPanels("<Panel Name='" + szLong + "1' IsShow='1'/><Panel Name='" + szLong + "2' IsShow='1'/>");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"" + szLong + "\" already exists"});
    EXPECT_EQ(g_mapItemByName.size(), 1u);
}

TEST_F(ItemBase, AHiddenFirstItemLeavesItsNameToTheSecond) {
    ReadTexts("<TextBox Name='a' IsShow='0' FontName='Sans' Text='first'/>"
              "<TextBox Name='a' IsShow='1' FontName='Sans' Text='second'/>");
    ASSERT_NE(Text("a"), nullptr);
    EXPECT_EQ(std::u16string(Text("a")->m_wzText), u"second");
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemBase, TypeCodesHaveTextElementAndLetter) {
    struct Row {
        u32 uType;
        const char *szText, *szElement;
        char c;
    };
    for (const auto& [uType, szText, szElement, c] :
         {Row{0, "NONE", "", 0}, Row{1, "TEXTBOX", "TextBox", 'T'}, Row{2, "NUMBOX", "NumBox", 'N'},
          Row{3, "LINEGRAPH", "LineGraph", 'L'}, Row{4, "PANEL", "Panel", 'P'}, Row{5, "IMAGE", "Image", 'I'},
          Row{6, "MEMO", "Memo", 'T'}, Row{7, "MIXED", "NumBox", 'N'}, Row{9, "PIECHART", "PieChart", 'C'}}) {
        EXPECT_EQ(g_fnItemType(uType).uType, uType);
        EXPECT_STREQ(g_fnItemType(uType).szText, szText);
        EXPECT_STREQ(g_fnItemType(uType).szElement, szElement);
        char cLetter = 0;
        g_fnForEachKind([&](const auto& kind) {
            if (kind.uIdType && kind.uIdType == g_fnItemType(uType).uControl) cLetter = kind.cLetter;
        });
        EXPECT_EQ(cLetter, c);
    }
}

TEST_F(ItemBase, AnyOtherTypeCodeTurnsIntoNone) {
    for (const u32 uType : {8u, 10u, 255u, 0xFFFFFFFFu}) {
        CItemProperty_TextBox item;
        item.m_fnSetType(uType);
        EXPECT_EQ(item.m_uItemType, 0u);
        EXPECT_STREQ(item.m_szItemType, "NONE");
    }
}

TEST_F(ItemBase, TheBaseAnswersNoTextQuery) {
    const CItemProperty_Base item;
    std::u16string wz = u"old";
    EXPECT_FALSE(item.m_fnQueryString("TEXT_FONT", wz));
    EXPECT_EQ(wz, u"old");
}

TEST_F(ItemBase, TheDumpShowsTheContentOnlyForTypes1To3) {
    const Lines aFrame = {"--------------------------------\n",
                          "m_fnPrintData()\n",
                          "ITEM_TYPE: NONE\n",
                          "FRAME_SIZE_W: 1\n",
                          "FRAME_SIZE_H: 1\n",
                          "FRAME_ANCHOR: 1\n",
                          "FRAME_ANCHOR_X: 1\n",
                          "FRAME_ANCHOR_Y: 1\n"};
    CItemProperty_Base item;
    for (const u32 uType : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 9u}) {
        item.m_fnSetType(uType);
        Lines aExpected = aFrame;
        aExpected[2] = "ITEM_TYPE: " + std::string(g_fnItemType(uType).szText) + "\n";
        if (uType >= 1 && uType <= 3)
            aExpected.insert(aExpected.end(),
                             {"CONTENT_ANCHOR: 1\n", "CONTENT_ANCHOR_X: 0\n", "CONTENT_ANCHOR_Y: 0\n"});
        aExpected.push_back(aFrame[0]);
        s_aLines.clear();
        item.m_fnPrintData();
        EXPECT_EQ(s_aLines, aExpected);
    }
}

TEST_F(ItemBase, ReportsHaveAPrefixAndAtMost259CharactersOfText) {
    g_fnReportError("%s", std::string(500, 'e').c_str());
    g_fnReportInfo("%i of %s", 3, "three");
    g_fnReportWarning("%s", std::string(259, 'w').c_str());
    EXPECT_EQ(s_aLines, (Lines{"error ! " + std::string(259, 'e'), "Info 3 of three",
                               "warning ! " + std::string(259, 'w')}));
}

} // namespace
