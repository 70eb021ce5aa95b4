#include "tests/unit/config/item_fixture.h"

namespace {

class ItemPanel : public ItemTest {
  protected:
    const CItemProperty_Panel* Read(const std::string& szAttributes) {
        g_fnClearItems();
        s_aLines.clear();
        ReadPanels("<Panel Name='p' IsShow='1' " + szAttributes + "/>");
        return Panel("p");
    }
};

TEST_F(ItemPanel, ANewRecordHasAScatterOf30) {
    const CItemProperty_Panel item;
    EXPECT_EQ(item.m_pComplete, &item);
    EXPECT_EQ(item.m_uItemType, 4u);
    EXPECT_STREQ(item.m_szItemType, "PANEL");
    EXPECT_EQ(item.m_uPanelScatter, 30u);
}

TEST_F(ItemPanel, EveryMissingKeyGivesItsDefault) {
    const auto* p = Read("");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_u8PanelR, 0);
    EXPECT_EQ(p->m_u8PanelG, 0);
    EXPECT_EQ(p->m_u8PanelB, 0);
    EXPECT_EQ(p->m_u8PanelA, 255);
    EXPECT_EQ(p->m_u8PanelOpacity, 100);
    EXPECT_EQ(p->m_uPanelType, 1u);
    EXPECT_EQ(p->m_uPanelScatter, 30u);
    EXPECT_EQ(p->m_fPanelBorder, 0);
    EXPECT_EQ(s_aLines, Lines{});
}

TEST_F(ItemPanel, EachAttributeReachesItsField) {
    const auto* p = Read("PanelColorR='1' PanelColorG='2' PanelColorB='3' PanelColorA='102' PanelType='2' "
                         "PanelScattering='12' PanelBorder='2.5' FrameAnchor='9'");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_u8PanelR, 1);
    EXPECT_EQ(p->m_u8PanelG, 2);
    EXPECT_EQ(p->m_u8PanelB, 3);
    EXPECT_EQ(p->m_u8PanelOpacity, 40);
    EXPECT_EQ(p->m_u8PanelA, 102);
    EXPECT_EQ(p->m_uPanelType, 2u);
    EXPECT_EQ(p->m_uPanelScatter, 12u);
    EXPECT_EQ(p->m_fPanelBorder, 2.5f);
    EXPECT_EQ(p->m_iFrameAnchor, 9);
}

TEST_F(ItemPanel, AnAlphaOf255StaysAndAnAlphaOf3Becomes2) {
    EXPECT_EQ(Read("PanelColorA='255'")->m_u8PanelA, 255);
    const auto* p = Read("PanelColorA='3'");
    EXPECT_EQ(p->m_u8PanelOpacity, 1);
    EXPECT_EQ(p->m_u8PanelA, 2);
}

TEST_F(ItemPanel, AScatterAbove100IsReportedAndKept) {
    EXPECT_EQ(Read("PanelScattering='100'")->m_uPanelScatter, 100u);
    EXPECT_EQ(s_aLines, Lines{});
    const auto* p = Read("PanelScattering='101'");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"p\" m_uPanelScatter"});
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->m_uPanelScatter, 101u);
}

TEST_F(ItemPanel, AReportedPanelLeavesLaterOnesAlone) {
    ReadPanels("<Panel Name='a' IsShow='1' PanelScattering='-1'/><Panel Name='b' IsShow='1'/>");
    EXPECT_EQ(s_aLines, Lines{"error ! item \"a\" m_uPanelScatter"});
    EXPECT_NE(Panel("a"), nullptr);
    EXPECT_NE(Panel("b"), nullptr);
}

// A byte alpha never makes more than 100 percent, so the check is asked directly.
TEST_F(ItemPanel, APercentageAbove100IsReported) {
    const auto* p = Read("");
    g_fnCheckPanelOpacity(*p, 100);
    EXPECT_EQ(s_aLines, Lines{});
    g_fnCheckPanelOpacity(*p, 101);
    EXPECT_EQ(s_aLines, Lines{"error ! item \"p\" m_u8PanelOpacity"});
}

TEST_F(ItemPanel, QueriesAnswerNothing) {
    std::u16string wz = u"old";
    EXPECT_FALSE(Read("")->m_fnQueryString("TEXT_FONT", wz));
    EXPECT_EQ(wz, u"old");
}

TEST_F(ItemPanel, TheDumpSpellsThePanelTypes) {
    const struct {
        const char* szType;
        Lines aWords;
    } aCases[] = {{"0", {"PANEL_TYPE: ", "PANEL_TYPE_INVISIBLE\n"}},
                  {"1", {"PANEL_TYPE: ", "PANEL_TYPE_GELLOPHANE\n"}},
                  {"2", {"PANEL_TYPE: ", "PANEL_TYPE_FROSTED\n"}},
                  {"3", {"PANEL_TYPE: "}}};
    for (const auto& st : aCases) {
        const auto* p = Read("PanelColorG='9' PanelType='" + std::string(st.szType) + "'");
        p->m_fnPrintData();
        Lines aExpected = {"--------------------------------\n", "PANEL_COLOR:", "RGBA 0 9 0 255", "\n"};
        aExpected.insert(aExpected.end(), st.aWords.begin(), st.aWords.end());
        aExpected.push_back("PANEL_SCATTER: 30\n");
        ASSERT_GE(s_aLines.size(), 9u);
        EXPECT_EQ(s_aLines[2], "ITEM_TYPE: PANEL\n");
        EXPECT_EQ(Lines(s_aLines.begin() + 8, s_aLines.end()), aExpected);
    }
}

} // namespace
