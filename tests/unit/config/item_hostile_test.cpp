// Items as a broken or hostile profile may hold them.
#include "tests/unit/config/item_fixture.h"

#include <random>

namespace {

class ItemHostile : public ItemTest {
  protected:
    void ReadAll(const tinyxml2::XMLElement* pInfo) {
        EXPECT_TRUE(g_fnReadTextBoxItems(pInfo, false));
        EXPECT_TRUE(g_fnReadTextBoxItems(pInfo, true));
        EXPECT_TRUE(g_fnReadNumBoxItems(pInfo));
        EXPECT_TRUE(g_fnReadPanelItems(pInfo));
    }
};

TEST_F(ItemHostile, HugeNumbers) {
    const std::string szHuge(5000, '9');
    ReadAll(Info("<TextBox Name='t' IsShow='" + szHuge + "' FontName='Sans' Text='x' TextSize='" + szHuge +
                 "' TextSpacingX='-1e99999' TextColorR='" + szHuge + "' FrameSizeW='-" + szHuge +
                 "' FrameAnchor='-" + szHuge + "'/><Panel Name='p' IsShow='1' PanelScattering='" + szHuge +
                 "' PanelType='" + szHuge + "'/>"));
    ASSERT_NE(Text("t"), nullptr);
    EXPECT_EQ(Text("t")->m_bIsShow, 0xFFFFFFFF);
    EXPECT_EQ(Text("t")->m_fTextSize, std::numeric_limits<f32>::max());
    EXPECT_EQ(Text("t")->m_fTextSpacingX, -std::numeric_limits<f32>::max());
    EXPECT_EQ(Text("t")->m_u8TextR, 255);
    EXPECT_EQ(Text("t")->m_uFrameSizeW, 0u);
    EXPECT_EQ(Text("t")->m_iFrameAnchor, 0);
    ASSERT_NE(Panel("p"), nullptr);
    EXPECT_EQ(Panel("p")->m_uPanelScatter, 0xFFFFFFFF);
}

TEST_F(ItemHostile, OverlongTextInEveryAttribute) {
    const std::string szLong(100000, 'L');
    ReadAll(Info("<TextBox Name='" + szLong + "@" + szLong + "' IsShow='1' FontName='" + szLong + "' Text='" +
                 szLong + "' StringFullName='" + szLong + "' " + szLong + "='1'/>" +
                 "<NumBox Name='n' IsShow='1' FontName='" + szLong + "' DataFullName='" + szLong + "'/>"));
    ASSERT_EQ(g_mapItemByName.size(), 2u);
    EXPECT_STREQ(Number("n")->m_szDataFullName, std::string(63, 'L').c_str());
    EXPECT_NE(Text(std::string(127, 'L').c_str()), nullptr);
}

TEST_F(ItemHostile, AnOwnerThatTheCutTakesAway) {
    const std::string szName = std::string(126, 'n') + "@owner";
    ReadAll(Info("<Panel Name='" + szName + "' IsShow='1'/>"));
    const auto* p = Panel((std::string(126, 'n') + "@").c_str());
    ASSERT_NE(p, nullptr);
    EXPECT_STREQ(p->m_szItemOwner, "");
}

TEST_F(ItemHostile, BytesThatAreNoUtf8) {
    ReadAll(Info("<TextBox Name='\xFF\xFE\x80' IsShow='1' FontName='\xC3\x28' Text='a\xED\xA0\x80\xF8z'/>"));
    const auto* p = Text("\xFF\xFE\x80");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(std::u16string(p->m_wzFontName), u"\uFFFD(");
    EXPECT_EQ(std::u16string(p->m_wzText), u"a\uFFFD\uFFFDz");
    p->m_fnPrintData();
}

TEST_F(ItemHostile, FormatDirectivesAreOnlyText) {
    ReadAll(Info("<TextBox Name='%s%n%x' IsShow='1' Text='%s%s%s%n'/>"));
    EXPECT_EQ(s_aLines, Lines{"error ! item \"%s%n%x\" m_wzFontName is invalid"});
}

TEST_F(ItemHostile, ALongNameInAMessageIsWhole) {
    ReadAll(Info("<NumBox Name='" + std::string(255, 'n') + "' IsShow='1' FontName='Sans'/>"));
    EXPECT_EQ(s_aLines, Lines{"error ! item \"" + std::string(127, 'n') + "\" m_szDataFullName is invalid"});
}

TEST_F(ItemHostile, ManyElements) {
    std::string szItems;
    for (int i = 0; i < 6000; ++i)
        szItems += "<Panel Name='panel " + std::to_string(i % 4000) + "' IsShow='1'/>";
    ReadPanels(szItems);
    EXPECT_EQ(g_mapItemByName.size(), 4000u);
    EXPECT_EQ(s_aLines.size(), 2000u);
}

TEST_F(ItemHostile, ItemsThatNoLayoutHasRoomForAreLeftOut) {
    std::string szItems;
    for (int i = 0; i < 5000; ++i) szItems += "<Panel Name='panel " + std::to_string(i) + "' IsShow='1'/>";
    ReadPanels(szItems);
    EXPECT_EQ(g_mapItemByName.size(), 4096u);
    EXPECT_EQ(s_aLines, Lines{"error ! too many items, from \"Panel\" number 4097 on"});
    s_aLines.clear();
    ReadTexts("<TextBox Name='t' IsShow='1' FontName='Sans' Text='x'/>");
    EXPECT_EQ(s_aLines, Lines{"error ! too many items, from \"TextBox\" number 1 on"});
}

TEST_F(ItemHostile, ElementsOfOneKindAreReadUpToABound) {
    std::string szItems;
    for (int i = 0; i < 65536; ++i) szItems += "<Panel/>";
    ReadPanels(szItems + "<Panel Name='p' IsShow='1'/>");
    EXPECT_TRUE(g_mapItemByName.empty());
    EXPECT_EQ(s_aLines.back(), "error ! too many items, from \"Panel\" number 65537 on");
}

TEST_F(ItemHostile, ManyAttributes) {
    std::string szItem = "<TextBox Name='t' IsShow='1' FontName='Sans' Text='x'";
    for (int i = 0; i < 5000; ++i) szItem += " a" + std::to_string(i) + "='1'";
    ReadTexts(szItem + " TextSize='9'/>");
    EXPECT_EQ(Text("t")->m_fTextSize, 9.0f);
}

TEST_F(ItemHostile, DeepElementsAreRefusedByTheParserAndLeaveNoItem) {
    std::string szDeep = "<Info><Panel Name='p' IsShow='1'/>";
    for (int i = 0; i < 100000; ++i) szDeep += "<Panel>";
    tinyxml2::XMLDocument document;
    EXPECT_EQ(document.Parse(szDeep.c_str(), szDeep.size()), tinyxml2::XML_ELEMENT_DEPTH_EXCEEDED);
    ReadAll(document.RootElement());
    EXPECT_TRUE(g_mapItemByName.empty());
}

TEST_F(ItemHostile, ElementsWithinTheParsersDepthAreIgnored) {
    std::string szDeep;
    for (int i = 0; i < 90; ++i) szDeep += "<Panel Name='p" + std::to_string(i) + "' IsShow='1'>";
    for (int i = 0; i < 90; ++i) szDeep += "</Panel>";
    ReadPanels(szDeep);
    EXPECT_EQ(g_mapItemByName.size(), 1u);
}

TEST_F(ItemHostile, TruncatedDocumentsLeaveNoItem) {
    const std::string szWhole = "<Info><TextBox Name='t' IsShow='1' FontName='Sans' Text='x'/></Info>";
    for (std::size_t u = 0; u < szWhole.size(); ++u) {
        tinyxml2::XMLDocument document;
        EXPECT_NE(document.Parse(szWhole.c_str(), u), tinyxml2::XML_SUCCESS) << u;
        ReadAll(document.RootElement());
    }
    EXPECT_TRUE(g_mapItemByName.empty());
}

TEST_F(ItemHostile, RandomlyChangedDocuments) {
    const std::string szSeed =
        "<Info><TextBox Name='t@o' IsShow='1' FontName='Sans' Text='a&amp;&#x4E2D;' "
        "StringFullName='GL' TextSize='12.5'/><Memo Name='m' IsShow='1' FontName='S' "
        "FileName='f'/><NumBox Name='n' IsShow='1' FontName='S' DataFullName='RESOLUTION' "
        "TextColorA='128'/><Panel Name='p' IsShow='1' PanelScattering='7'/></Info>";
    std::mt19937 random(20);
    std::size_t uItems = 0;
    for (int iRound = 0; iRound < 3000; ++iRound) {
        std::string sz = szSeed;
        for (u32 u = random() % 4 + 1; u > 0; --u) sz[random() % sz.size()] = static_cast<char>(random());
        tinyxml2::XMLDocument document;
        document.Parse(sz.c_str(), sz.size());
        g_fnClearItems();
        ReadAll(document.RootElement());
        for (const auto& [szName, pItem] : g_mapItemByName) {
            EXPECT_EQ(szName, pItem->m_szItemName);
            pItem->m_fnPrintData();
            ++uItems;
        }
        s_aLines.clear();
    }
    EXPECT_GT(uItems, 3000u);
}

} // namespace
