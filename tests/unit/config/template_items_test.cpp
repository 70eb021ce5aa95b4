#include "settings_fixture.h"
#include "template_fixture.h"

#include "base/log.h"

namespace {

u32 g_uLines = 0;

class TemplateItems : public SettingsTest, public CTemplateText {
  protected:
    void SetUp() override {
        SettingsTest::SetUp();
        for (NameMap* p : {&g_stNameMaps.mapTextBox, &g_stNameMaps.mapNumBox, &g_stNameMaps.mapFlipBox,
                           &g_stNameMaps.mapPanel})
            (*p)["X"] = 7;
        g_uLines = 0;
        g_fnLogSink = [](const char*) { ++g_uLines; };
    }
    void TearDown() override {
        g_fnLogSink = m_fnFormer;
        SettingsTest::TearDown();
    }
    const stTextTemplate* Text(const std::string& szAttributes) {
        EXPECT_TRUE(g_fnReadTextBoxTemplates(Template("<TextBox " + szAttributes + "/>")));
        return g_stTemplates.poolTextBox.m_fnFind(7);
    }
    const stNumTemplate* Number(const std::string& szAttributes) {
        EXPECT_TRUE(g_fnReadNumBoxTemplates(Template("<NumBox " + szAttributes + "/>")));
        return g_stTemplates.poolNumBox.m_fnFind(7);
    }
    const stFlipTemplate* Flip(const std::string& szAttributes) {
        EXPECT_TRUE(g_fnReadFlipBoxTemplates(Template("<FlipBox " + szAttributes + "/>")));
        return g_stTemplates.poolFlipBox.m_fnFind(7);
    }
    const stPanelTemplate* Panel(const std::string& szAttributes) {
        EXPECT_TRUE(g_fnReadPanelTemplates(Template("<Panel " + szAttributes + "/>")));
        return g_stTemplates.poolPanel.m_fnFind(7);
    }
    static void ExpectPlace(const stItemPlace* p, u32 uStyle, i32 iAnchor, i32 iX, i32 iY) {
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(p->uStyleID, uStyle);
        EXPECT_EQ(p->iAnchor, iAnchor);
        EXPECT_EQ(p->iAnchorX, iX);
        EXPECT_EQ(p->iAnchorY, iY);
    }

  private:
    void (*m_fnFormer)(const char*) = g_fnLogSink;
};

constexpr char g_szPlace[] = R"(Enable="1" Title="X" StyleID="5" Anchor="-9" AnchorX="12" AnchorY="-3" )";
constexpr char g_szBare[] = R"(Enable="1" Title="X" )";

TEST_F(TemplateItems, EveryKeyOfATextIsRead) {
    const stTextTemplate* p = Text(std::string(g_szPlace) + "Text=\"70 \xC2\xB0"
                                                            "C\"");
    ExpectPlace(p, 5, -9, 12, -3);
    EXPECT_EQ(p->wzText, u"70 °C");
}

TEST_F(TemplateItems, DefaultsOfAText) {
    const stTextTemplate* p = Text(g_szBare);
    ExpectPlace(p, 0, 1, 0, 0);
    EXPECT_EQ(p->wzText, u"");
    g_fnClearTemplates();
    EXPECT_EQ(Text(R"(Title="X")"), nullptr);  // not enabled
    EXPECT_EQ(Text(R"(Enable="1")"), nullptr); // no title
}

TEST_F(TemplateItems, EveryKeyOfANumberIsRead) {
    const stNumTemplate* p =
        Number(std::string(g_szPlace) + R"(ConsoleSizeX="40" ConsoleSizeY="20" DigitSpacing="0.25"
        DigitPadding="4" HideDigitPad="0")");
    ExpectPlace(p, 5, -9, 12, -3);
    EXPECT_EQ(p->iWidth, 40);
    EXPECT_EQ(p->iHeight, 20);
    EXPECT_EQ(p->fDigitSpacing, 0.25f);
    EXPECT_EQ(p->uDigitPadding, 4u);
    EXPECT_EQ(p->uHideDigitPad, 0u);
}

TEST_F(TemplateItems, DefaultsOfANumber) {
    const stNumTemplate* p = Number(g_szBare);
    ExpectPlace(p, 0, 1, 0, 0);
    EXPECT_EQ(p->iWidth, 0);
    EXPECT_EQ(p->iHeight, 0);
    EXPECT_EQ(p->fDigitSpacing, 0);
    EXPECT_EQ(p->uDigitPadding, 0u);
    EXPECT_EQ(p->uHideDigitPad, 1u);
    g_fnClearTemplates();
    EXPECT_EQ(Number(R"(Title="X")"), nullptr);
}

TEST_F(TemplateItems, EveryKeyOfAFlipIsRead) {
    const stFlipTemplate* p = Flip(std::string(g_szPlace) + R"(Text0="off" Text1="on" Text2="storm")");
    ExpectPlace(p, 5, -9, 12, -3);
    EXPECT_EQ(p->awzText[0], u"off");
    EXPECT_EQ(p->awzText[1], u"on");
    EXPECT_EQ(p->awzText[2], u"storm");
}

TEST_F(TemplateItems, DefaultsOfAFlip) {
    const stFlipTemplate* p = Flip(g_szBare);
    ExpectPlace(p, 0, 1, 0, 0);
    for (const std::u16string& wz : p->awzText) EXPECT_EQ(wz, u"");
    g_fnClearTemplates();
    EXPECT_EQ(Flip(R"(Title="X")"), nullptr);
}

TEST_F(TemplateItems, EveryKeyOfAPanelIsRead) {
    const stPanelTemplate* p =
        Panel(std::string(g_szPlace) + R"(Hidden="1" ConsoleSizeX="40" ConsoleSizeY="20")");
    ExpectPlace(p, 5, -9, 12, -3);
    EXPECT_TRUE(p->bHidden);
    EXPECT_EQ(p->iWidth, 40);
    EXPECT_EQ(p->iHeight, 20);
}

TEST_F(TemplateItems, DefaultsOfAPanel) {
    const stPanelTemplate* p = Panel(g_szBare);
    ExpectPlace(p, 0, 1, 0, 0);
    EXPECT_FALSE(p->bHidden);
    EXPECT_EQ(p->iWidth, 0);
    EXPECT_EQ(p->iHeight, 0);
    g_fnClearTemplates();
    EXPECT_EQ(Panel(R"(Title="X")"), nullptr);
}

TEST_F(TemplateItems, AnAnchorXOf10WithAFontScaleOf150Gives15) {
    SetFontScale(150);
    ExpectPlace(Text(R"(Enable="1" Title="X" AnchorX="10" AnchorY="11")"), 0, 1, 15, 16);
    ExpectPlace(Number(R"(Enable="1" Title="X" AnchorX="10" AnchorY="11")"), 0, 1, 15, 16);
    ExpectPlace(Flip(R"(Enable="1" Title="X" AnchorX="10" AnchorY="11")"), 0, 1, 15, 16);
    ExpectPlace(Panel(R"(Enable="1" Title="X" AnchorX="10" AnchorY="11")"), 0, 1, 15, 16);
}

TEST_F(TemplateItems, TheFontScaleLeavesItemSizesAndSpacingAlone) {
    SetFontScale(150);
    const stNumTemplate* p =
        Number(R"(Enable="1" Title="X" ConsoleSizeX="10" ConsoleSizeY="20" DigitSpacing="2")");
    EXPECT_EQ(p->iWidth, 10);
    EXPECT_EQ(p->iHeight, 20);
    EXPECT_EQ(p->fDigitSpacing, 2);
    EXPECT_EQ(Panel(R"(Enable="1" Title="X" ConsoleSizeX="10")")->iWidth, 10);
}

TEST_F(TemplateItems, PlacesMayNameVariablesAndAlignIsNotScaledAgain) {
    SetFontScale(200);
    g_stFileVariables.mapProfile["indent"] = "6";
    g_stVariables.iAlign2Y = 76;
    ExpectPlace(Text(R"(Enable="1" Title="X" AnchorX="indent" AnchorY="Align#2.y")"), 0, 1, 12, 76);
}

TEST_F(TemplateItems, ATextWithATitleThatIsNotInTheMapLeavesNothingAndNoMessage) {
    EXPECT_TRUE(g_fnReadTextBoxTemplates(Template(R"(<TextBox Enable="1" Title="Y" Text="lost"/>
        <TextBox Enable="1" Title="x"/><TextBox Enable="1" Title="X "/>)")));
    EXPECT_EQ(g_stTemplates.poolTextBox.m_fnCount(), 0u);
    EXPECT_EQ(g_uLines, 0u);
}

TEST_F(TemplateItems, AKindOnlyKnowsTheNamesOfItsOwnMap) {
    g_fnClearNameMaps();
    g_stNameMaps.mapNumBox["X"] = 7;
    EXPECT_EQ(Text(g_szBare), nullptr);
    EXPECT_EQ(Panel(g_szBare), nullptr);
    EXPECT_EQ(Flip(g_szBare), nullptr);
    EXPECT_NE(Number(g_szBare), nullptr);
}

TEST_F(TemplateItems, ANumberBeyondThePoolIsPassedOver) {
    g_stNameMaps.mapTextBox["X"] = g_uTemplateItems;
    g_stNameMaps.mapTextBox["last"] = g_uTemplateItems - 1;
    EXPECT_TRUE(g_fnReadTextBoxTemplates(
        Template(R"(<TextBox Enable="1" Title="X"/><TextBox Enable="1" Title="last"/>)")));
    EXPECT_EQ(g_stTemplates.poolTextBox.m_fnCount(), 1u);
    EXPECT_TRUE(g_stTemplates.poolTextBox.m_fnIsUsed(g_uTemplateItems - 1));
}

TEST_F(TemplateItems, ATextComesFromTheSettingsFile) {
    Ini("[Greeting]\nText=from the file\n");
    EXPECT_EQ(Text(R"(Enable="1" Title="X" ReadTextFromINI="Greeting" Text="own")")->wzText,
              u"from the file");
}

TEST_F(TemplateItems, ATextThatTheSettingsFileLacksIsEmpty) {
    Ini("[Other]\nText=from the file\n");
    EXPECT_EQ(Text(R"(Enable="1" Title="X" ReadTextFromINI="Greeting" Text="own")")->wzText, u"");
    m_folder.Remove("OSD.ini");
    EXPECT_EQ(Text(R"(Enable="1" Title="X" ReadTextFromINI="Greeting" Text="own")")->wzText, u"");
}

TEST_F(TemplateItems, AnEmptySectionNameLeavesTheTemplatesOwnText) {
    Ini("[]\nText=from the file\n");
    EXPECT_EQ(Text(R"(Enable="1" Title="X" ReadTextFromINI="" Text="own")")->wzText, u"own");
}

TEST_F(TemplateItems, AllFourKindsAreReadTogether) {
    ASSERT_TRUE(g_fnReadTemplates(Template(R"(<Panel Enable="1" Title="X"/><FlipBox Enable="1" Title="X"/>
        <NumBox Enable="1" Title="X"/><TextBox Enable="1" Title="X"/>)")));
    EXPECT_TRUE(g_stTemplates.poolTextBox.m_fnIsUsed(7) && g_stTemplates.poolNumBox.m_fnIsUsed(7) &&
                g_stTemplates.poolFlipBox.m_fnIsUsed(7) && g_stTemplates.poolPanel.m_fnIsUsed(7));
    g_fnClearTemplates();
    EXPECT_FALSE(g_stTemplates.poolTextBox.m_fnIsUsed(7) || g_stTemplates.poolNumBox.m_fnIsUsed(7) ||
                 g_stTemplates.poolFlipBox.m_fnIsUsed(7) || g_stTemplates.poolPanel.m_fnIsUsed(7));
}

TEST_F(TemplateItems, WithoutATemplateElementTheStepFails) { EXPECT_FALSE(g_fnReadTemplates(nullptr)); }

TEST_F(TemplateItems, TextsAreCutAt255Bytes) {
    const std::string szText(254, 'a');
    const stTextTemplate* p = Text(std::string(g_szBare) + "Text=\"" + szText + "\xC2\xB0\"");
    EXPECT_EQ(p->wzText, std::u16string(254, u'a')); // no half of a character
}

} // namespace
