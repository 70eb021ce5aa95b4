#include "config/profile/profile_panel_keys.h"
#include "template_fixture.h"

namespace {

class TemplateStyles : public testing::Test, public CTemplateText {
  protected:
    const stTextStyle* Text(const std::string& szAttributes) {
        EXPECT_TRUE(g_fnReadTextBoxStyles(Template("<TextBoxStyle " + szAttributes + "/>")));
        return g_stTemplates.poolTextBoxStyle.m_fnFind(3);
    }
    const stPanelStyle* Panel(const std::string& szAttributes) {
        EXPECT_TRUE(g_fnReadPanelStyles(Template("<PanelStyle " + szAttributes + "/>")));
        return g_stTemplates.poolPanelStyle.m_fnFind(3);
    }
};

TEST_F(TemplateStyles, TheFirstDigitsOfATitleAreItsNumber) {
    EXPECT_EQ(g_fnTitleNumber("TextBoxStyle#12"), 12u);
    EXPECT_EQ(g_fnTitleNumber("12"), 12u);
    EXPECT_EQ(g_fnTitleNumber("Style 7 of 12"), 7u);
    EXPECT_EQ(g_fnTitleNumber("a1b2"), 1u);
    EXPECT_EQ(g_fnTitleNumber("#-0005x"), 5u);
    EXPECT_EQ(g_fnTitleNumber(""), g_uNoTemplate);
    EXPECT_EQ(g_fnTitleNumber("Title"), g_uNoTemplate);
    EXPECT_EQ(g_fnTitleNumber("#4294967294"), 4294967294u);
    EXPECT_EQ(g_fnTitleNumber("#4294967295"), g_uNoTemplate);
    EXPECT_EQ(g_fnTitleNumber("#99999999999999999999999999999"), g_uNoTemplate);
}

TEST_F(TemplateStyles, EveryKeyOfATextStyleIsRead) {
    const stTextStyle* p = Text(R"(Enable="1" Title="Style#3" FontID="5" TextSize="16" TextScale="1.5"
                                   TextSpacingX="-0.5" TextSpacingY="2")");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->uFontID, 5u);
    EXPECT_EQ(p->fTextSize, 24);
    EXPECT_EQ(p->fTextSpacingX, -0.5f);
    EXPECT_EQ(p->fTextSpacingY, 2);
}

TEST_F(TemplateStyles, DefaultsOfATextStyle) {
    const stTextStyle* p = Text(R"(Enable="1" Title="#3")");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->uFontID, 0u);
    EXPECT_EQ(p->fTextSize, 0);
    EXPECT_EQ(p->fTextSpacingX, 0);
    EXPECT_EQ(p->fTextSpacingY, 0);
    p = Text(R"(Enable="1" Title="#3" TextSize="10")");
    EXPECT_EQ(p->fTextSize, 10); // the scale left out counts as 1
}

TEST_F(TemplateStyles, AStyleIsNotEnabledWithoutItsKey) {
    EXPECT_EQ(Text(R"(Title="#3")"), nullptr);
    EXPECT_EQ(Text(R"(Title="#3" Enable="0")"), nullptr);
    EXPECT_EQ(Text(R"(Title="#3" Enable="")"), nullptr);
    EXPECT_NE(Text(R"(Title="#3" Enable="2")"), nullptr);
}

TEST_F(TemplateStyles, AStyleWithoutANumberIsPassedOver) {
    g_fnReadTextBoxStyles(Template(R"(<TextBoxStyle Enable="1"/><TextBoxStyle Enable="1" Title="none"/>)"));
    EXPECT_EQ(g_stTemplates.poolTextBoxStyle.m_fnCount(), 0u);
}

TEST_F(TemplateStyles, StylesAreNumbered0To63) {
    g_fnReadTextBoxStyles(
        Template(R"(<TextBoxStyle Enable="1" Title="#0"/><TextBoxStyle Enable="1" Title="#63"/>
        <TextBoxStyle Enable="1" Title="#64"/><TextBoxStyle Enable="1" Title="#4294967295"/>)"));
    EXPECT_TRUE(g_stTemplates.poolTextBoxStyle.m_fnIsUsed(0));
    EXPECT_TRUE(g_stTemplates.poolTextBoxStyle.m_fnIsUsed(63));
    EXPECT_EQ(g_stTemplates.poolTextBoxStyle.m_fnCount(), 2u);
    EXPECT_FALSE(g_stTemplates.poolTextBoxStyle.m_fnIsUsed(64));
    EXPECT_FALSE(g_stTemplates.poolTextBoxStyle.m_fnIsUsed(0xFFFFFFFF));
}

TEST_F(TemplateStyles, TheLaterOfTwoUnderOneNumberHoldsWhole) {
    g_fnReadTextBoxStyles(Template(R"(<TextBoxStyle Enable="1" Title="#3" FontID="5" TextSize="9"/>
        <TextBoxStyle Enable="1" Title="again 3" FontID="6"/>)"));
    EXPECT_EQ(g_stTemplates.poolTextBoxStyle.m_fnFind(3)->uFontID, 6u);
    EXPECT_EQ(g_stTemplates.poolTextBoxStyle.m_fnFind(3)->fTextSize, 0);
    EXPECT_EQ(g_stTemplates.poolTextBoxStyle.m_fnCount(), 1u);
}

TEST_F(TemplateStyles, ATextSizeIsScaledAndNotCut) {
    SetFontScale(150);
    EXPECT_EQ(Text(R"(Enable="1" Title="#3" TextSize="11")")->fTextSize, 16.5f);
    EXPECT_EQ(Text(R"(Enable="1" Title="#3" TextSize="11" TextScale="0")")->fTextSize, 16.5f);
    EXPECT_EQ(Text(R"(Enable="1" Title="#3" TextSize="10" TextScale="0.5")")->fTextSize, 7.5f);
    EXPECT_EQ(Text(R"(Enable="1" Title="#3" TextSpacingX="4" TextSpacingY="6")")->fTextSpacingX, 4); // never
    EXPECT_EQ(g_stTemplates.poolTextBoxStyle.m_fnFind(3)->fTextSpacingY, 6);
}

TEST_F(TemplateStyles, SizesMayNameVariables) {
    g_stFileVariables.mapProfile["size"] = "12.5";
    g_stFileVariables.mapProfile["scale"] = "2";
    EXPECT_EQ(Text(R"(Enable="1" Title="#3" TextSize="size" TextScale="scale")")->fTextSize, 25);
    EXPECT_EQ(Text(R"(Enable="1" Title="#3" TextSize="missing")")->fTextSize, 0);
    EXPECT_EQ(
        Panel(R"(Enable="1" Title="#3" ConsoleSizeX="size" ConsoleSizeY="8" ConsoleScaleY="scale")")->iWidth,
        12);
    EXPECT_EQ(g_stTemplates.poolPanelStyle.m_fnFind(3)->iHeight, 16);
}

TEST_F(TemplateStyles, ANumberStyleHasNoSpacing) {
    ASSERT_TRUE(g_fnReadNumBoxStyles(Template(
        R"(<NumBoxStyle Enable="1" Title="#3" FontID="2" TextSize="20" TextScale="0.5" TextSpacingX="9"/>)")));
    const stTextStyle* p = g_stTemplates.poolNumBoxStyle.m_fnFind(3);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->uFontID, 2u);
    EXPECT_EQ(p->fTextSize, 10);
    EXPECT_EQ(p->fTextSpacingX, 0);
}

TEST_F(TemplateStyles, DefaultsOfANumberStyle) {
    g_fnReadNumBoxStyles(Template(R"(<NumBoxStyle Title="#2"/><NumBoxStyle Enable="1" Title="#3"/>)"));
    EXPECT_EQ(g_stTemplates.poolNumBoxStyle.m_fnFind(2), nullptr);
    ASSERT_NE(g_stTemplates.poolNumBoxStyle.m_fnFind(3), nullptr);
    EXPECT_EQ(g_stTemplates.poolNumBoxStyle.m_fnFind(3)->uFontID, 0u);
    EXPECT_EQ(g_stTemplates.poolNumBoxStyle.m_fnFind(3)->fTextSize, 0);
}

TEST_F(TemplateStyles, AFlipStyleIsReadLikeATextStyle) {
    g_fnReadFlipBoxStyles(Template(R"(<FlipBoxStyle Title="#1"/><FlipBoxStyle Enable="1" Title="#2"/>
        <FlipBoxStyle Enable="1" Title="#3" FontID="4" TextSize="8" TextScale="2" TextSpacingX="1" TextSpacingY="3"/>)"));
    EXPECT_EQ(g_stTemplates.poolFlipBoxStyle.m_fnFind(1), nullptr);
    ASSERT_NE(g_stTemplates.poolFlipBoxStyle.m_fnFind(2), nullptr);
    EXPECT_EQ(g_stTemplates.poolFlipBoxStyle.m_fnFind(2)->uFontID, 0u);
    EXPECT_EQ(g_stTemplates.poolFlipBoxStyle.m_fnFind(2)->fTextSize, 0);
    EXPECT_EQ(g_stTemplates.poolFlipBoxStyle.m_fnFind(2)->fTextSpacingX, 0);
    EXPECT_EQ(g_stTemplates.poolFlipBoxStyle.m_fnFind(2)->fTextSpacingY, 0);
    const stTextStyle* p = g_stTemplates.poolFlipBoxStyle.m_fnFind(3);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->uFontID, 4u);
    EXPECT_EQ(p->fTextSize, 16);
    EXPECT_EQ(p->fTextSpacingX, 1);
    EXPECT_EQ(p->fTextSpacingY, 3);
    EXPECT_EQ(g_stTemplates.poolTextBoxStyle.m_fnCount(), 0u);
}

TEST_F(TemplateStyles, APanelStylesSizeIsScaledAndCut) {
    SetFontScale(150);
    const stPanelStyle* p = Panel(
        R"(Enable="1" Title="#3" ConsoleSizeX="11" ConsoleSizeY="5" ConsoleScaleX="0" ConsoleScaleY="1.5")");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->iWidth, 16);  // 16.5
    EXPECT_EQ(p->iHeight, 11); // 7.5 * 1.5 = 11.25
}

TEST_F(TemplateStyles, DefaultsOfAPanelStyle) {
    EXPECT_EQ(Panel(R"(Title="#3" ConsoleSizeX="5")"), nullptr);
    const stPanelStyle* p = Panel(R"(Enable="1" Title="#3")");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->iWidth, 0);
    EXPECT_EQ(p->iHeight, 0);
    EXPECT_EQ(Panel(R"(Enable="1" Title="#3" ConsoleSizeX="5")")->iWidth, 5);
    EXPECT_EQ(Panel(R"(Enable="1" Title="#3" ConsoleSizeY="5")")->iHeight, 5);
}

TEST_F(TemplateStyles, AllFourKindsAreReadTogether) {
    ASSERT_TRUE(g_fnReadTemplateStyles(Template(R"(<PanelStyle Enable="1" Title="#4"/>
        <FlipBoxStyle Enable="1" Title="#3"/><NumBoxStyle Enable="1" Title="#2"/>
        <TextBoxStyle Enable="1" Title="#1"/>)")));
    EXPECT_TRUE(g_stTemplates.poolTextBoxStyle.m_fnIsUsed(1));
    EXPECT_TRUE(g_stTemplates.poolNumBoxStyle.m_fnIsUsed(2));
    EXPECT_TRUE(g_stTemplates.poolFlipBoxStyle.m_fnIsUsed(3));
    EXPECT_TRUE(g_stTemplates.poolPanelStyle.m_fnIsUsed(4));
    g_fnClearTemplates();
    EXPECT_FALSE(g_stTemplates.poolTextBoxStyle.m_fnIsUsed(1));
    EXPECT_FALSE(g_stTemplates.poolNumBoxStyle.m_fnIsUsed(2));
    EXPECT_FALSE(g_stTemplates.poolFlipBoxStyle.m_fnIsUsed(3));
    EXPECT_FALSE(g_stTemplates.poolPanelStyle.m_fnIsUsed(4));
}

TEST_F(TemplateStyles, WithoutATemplateElementTheStepFails) {
    EXPECT_FALSE(g_fnReadTemplateStyles(nullptr));
    EXPECT_TRUE(g_fnReadTemplateStyles(Template("")));
}

TEST_F(TemplateStyles, HostileNumbersStayFinite) {
    const stTextStyle* p = Text(R"(Enable="1" Title="#3" FontID="-1" TextSize="1)" + std::string(200, '0') +
                                R"(" TextScale="1)" + std::string(200, '0') + "\" TextSpacingX=\"-1" +
                                std::string(200, '0') + "\"");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->uFontID, 0xFFFFFFFF);
    EXPECT_EQ(p->fTextSize, std::numeric_limits<f32>::max());
    EXPECT_EQ(p->fTextSpacingX, -std::numeric_limits<f32>::max());
    EXPECT_EQ(Panel(R"(Enable="1" Title="#3" ConsoleSizeX="-99999999999")")->iWidth,
              std::numeric_limits<i32>::min());
}

} // namespace
