#include "config/settings/settings.h"
#include "draw/creation_table.h"
#include "platform/headless/test_controls.h"
#include "template_fixture.h"
#include "tests/support/test_data_folder.h"
#include "tests/unit/controls/manager_fixture.h"

#include <algorithm>
#include <string_view>

namespace {

/// A real font that may refuse.
class CStepFont : public CFontUniCode {
  public:
    CStepFont() { ++s_iLive; }
    ~CStepFont() override { --s_iLive; }
    bool m_fnInitialize(bool bFromFile) override {
        return !s_bRefuse && CFontUniCode::m_fnInitialize(bFromFile);
    }
    inline static i32 s_iLive = 0;
    inline static bool s_bRefuse = false;
};

constexpr stFontFilePlace g_stPlace{u"Profiles\\Mine", 0};

class TemplateFonts : public ManagerTest, public CTemplateText {
  protected:
    void SetUp() override {
        ManagerTest::SetUp();
        g_stCreationTable.m_fnCreateFont = []() -> CFontUniCode* { return new CStepFont; };
    }
    void TearDown() override {
        CStepFont::s_bRefuse = false;
        g_stCreationTable = {};
        ManagerTest::TearDown();
        EXPECT_EQ(CStepFont::s_iLive, 0);
        platform::headless::ResetAll();
    }
    const stFontRecord& Slot(const std::string& szAttributes, u32 uSlot = 4) {
        g_fnClearFontSlots();
        EXPECT_TRUE(g_fnReadFontSlots(Template("<Font " + szAttributes + "/>")));
        return g_stFontSlots.aRecord[uSlot];
    }
    bool Make(const std::string& szElements, FontOverride fnOverride = nullptr) {
        return g_fnMakeTemplateFonts(Template(szElements), fnOverride, g_stPlace);
    }
    static std::u16string_view Face(const stFontRecord& st) { return st.m_wzFontName; }
    /// A text item 1087 of style 2 with font 4.
    static void TextItem() {
        g_stTemplates.poolTextBox.m_fnUse(1087)->uStyleID = 2;
        g_stTemplates.poolTextBoxStyle.m_fnUse(2)->uFontID = 4;
    }
    static constexpr char s_szSmall[] = R"(FontTexW="96" FontTexH="96" FontLayoutX="12" )";
    CTestDataFolder m_folder{false};
};

TEST_F(TemplateFonts, EveryKeyOfAFontIsRead) {
    const stFontRecord& st = Slot(R"(Title="Font#4" FontName="Face" Dynamic="1" FontTexW="512" FontTexH="256"
                                     FontWeight="700" FontLayoutX="16")");
    EXPECT_EQ(Face(st), u"Face");
    EXPECT_TRUE(st.m_bDynamic);
    EXPECT_EQ(st.m_uFontTexW, 512u);
    EXPECT_EQ(st.m_uFontTexH, 256u);
    EXPECT_EQ(st.m_iFontWeight, 700);
    EXPECT_EQ(st.m_uFontLayoutX, 16u);
    EXPECT_TRUE(g_stFontSlots.bitsUsed.test(4));
    EXPECT_EQ(g_stFontSlots.bitsUsed.count(), 1u);
}

TEST_F(TemplateFonts, DefaultsOfAFont) {
    const stFontRecord& st = Slot(R"(Title="4" FontName="Face")");
    EXPECT_FALSE(st.m_bDynamic);
    EXPECT_EQ(st.m_uFontTexW, 0u);
    EXPECT_EQ(st.m_uFontTexH, 0u);
    EXPECT_EQ(st.m_iFontWeight, 400);
    EXPECT_EQ(st.m_uFontLayoutX, 8u);
    EXPECT_EQ(Face(Slot(R"(Title="4")")), u"");
    g_fnClearFontSlots();
    g_fnReadFontSlots(Template(R"(<Font FontName="Face"/>)")); // no title, no slot
    for (const stFontRecord& stNone : g_stFontSlots.aRecord) EXPECT_EQ(Face(stNone), u"");
}

TEST_F(TemplateFonts, ASlotWithoutAFaceStaysUnused) {
    Slot(R"(Title="4" FontTexW="96")");
    EXPECT_FALSE(g_stFontSlots.bitsUsed.test(4));
}

TEST_F(TemplateFonts, SlotsAreNumbered0To15) {
    g_fnReadFontSlots(Template(R"(<Font Title="0" FontName="A"/><Font Title="#15" FontName="B"/>
        <Font Title="16" FontName="C"/><Font Title="none" FontName="D"/>)"));
    EXPECT_EQ(g_stFontSlots.bitsUsed.to_ulong(), 0x8001u);
    EXPECT_EQ(Face(g_stFontSlots.aRecord[15]), u"B");
}

TEST_F(TemplateFonts, AFaceMayComeFromAVariable) {
    g_stFileVariables.mapProfile["TitleFont"] = "F\xC3\xA4"
                                                "ce";
    g_stFileVariables.mapProfile["Empty"] = "";
    EXPECT_EQ(Face(Slot(R"(Title="4" ReadFontNameFromVariable="TitleFont" FontName="Own")")), u"Fäce");
    EXPECT_EQ(Face(Slot(R"(Title="4" ReadFontNameFromVariable="Empty" FontName="Own")")), u"Own");
    EXPECT_EQ(Face(Slot(R"(Title="4" ReadFontNameFromVariable="missing" FontName="Own")")), u"Own");
    EXPECT_EQ(Face(Slot(R"(Title="4" ReadFontNameFromVariable="" FontName="Own")")), u"Own");
    EXPECT_EQ(Face(Slot(R"(Title="4" ReadFontNameFromVariable="TitleFont")")), u"Fäce");
}

TEST_F(TemplateFonts, SizesMayNameVariablesAndAreNotScaled) {
    SetFontScale(200);
    g_stFileVariables.mapProfile["atlas"] = "512";
    EXPECT_EQ(Slot(R"(Title="4" FontName="A" FontTexW="atlas")").m_uFontTexW, 512u);
}

TEST_F(TemplateFonts, AFaceIsCutAt127Units) {
    EXPECT_EQ(Face(Slot("Title=\"4\" FontName=\"" + std::string(200, 'f') + "\"")),
              std::u16string(127, u'f'));
    std::string szPairs = std::string(126, 'f') + "\xF0\x9F\x98\x80\"";
    EXPECT_EQ(Face(Slot("Title=\"4\" FontName=\"" + szPairs)),
              std::u16string(126, u'f')); // no half of a pair
}

TEST_F(TemplateFonts, TheStepMakesAFontPerUsedSlot) {
    ASSERT_TRUE(Make(std::string("<Font Title=\"2\" FontName=\"DejaVu Sans\" ") + s_szSmall +
                     "/><Font Title=\"5\" " + s_szSmall +
                     "/><Font Title=\"6\" FontName=\"DejaVu Sans\" Dynamic=\"1\" " + s_szSmall + "/>"));
    EXPECT_NE(g_ppFont[2], nullptr);
    EXPECT_EQ(g_ppFont[5], nullptr);
    EXPECT_EQ(g_ppFont[6], nullptr); // a text makes it later
    EXPECT_EQ(CStepFont::s_iLive, 1);
    EXPECT_EQ(g_ppFont[2]->m_uLayoutW, 12u);
}

TEST_F(TemplateFonts, SlotsOfAFormerLayoutAreForgotten) {
    Slot(R"(Title="4" FontName="Former" FontTexW="96" FontTexH="96")");
    ASSERT_TRUE(Make(""));
    EXPECT_TRUE(g_stFontSlots.bitsUsed.none());
    EXPECT_EQ(CStepFont::s_iLive, 0);
}

TEST_F(TemplateFonts, TheLanguageMayChangeSlotsBeforeFontsAreMade) {
    ASSERT_TRUE(Make(std::string("<Font Title=\"2\" FontName=\"Own\" ") + s_szSmall + "/>",
                     [](std::span<stFontRecord> slots) {
                         ASSERT_EQ(slots.size(), g_uFixedFonts);
                         EXPECT_EQ(Face(slots[2]), u"Own");
                         slots[2].m_uFontLayoutX = 6;
                         slots[9].m_wzFontName[0] = u'L';
                     }));
    ASSERT_NE(g_ppFont[2], nullptr);
    EXPECT_EQ(g_ppFont[2]->m_uLayoutW, 6u);
    EXPECT_EQ(g_stFontSlots.bitsUsed.to_ulong(), 1u << 2 | 1u << 9);
}

TEST_F(TemplateFonts, TheStepReadsTheLanguageFilesNameFirst) {
    g_fnProbeWowKeys();
    g_stSettings.wzLanguageFileName[0] = 0;
    platform::headless::SetSettingsText(u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option",
                                        u"LanguageXMLFileName", u"german.xml");
    static std::u16string wzSeen;
    ASSERT_TRUE(Make("", [](std::span<stFontRecord>) { wzSeen = g_stSettings.wzLanguageFileName; }));
    EXPECT_EQ(wzSeen, u"german.xml");
    platform::headless::ResetAll();
    g_fnReadLanguageFileName();
}

TEST_F(TemplateFonts, AFontThatCannotBeSetUpFailsTheStep) {
    CStepFont::s_bRefuse = true;
    EXPECT_FALSE(Make(std::string("<Font Title=\"2\" FontName=\"A\" ") + s_szSmall + "/>"));
    EXPECT_EQ(g_ppFont[2], nullptr);
    EXPECT_FALSE(g_fnMakeTemplateFonts(nullptr, nullptr, g_stPlace));
}

TEST_F(TemplateFonts, AProfilesVariableScalesTheFaceItNames) {
    g_stFileVariables.mapProfile["DejaVu Sans"] = "150";
    g_fnHandOverFontScales();
    ASSERT_TRUE(Make(std::string("<Font Title=\"2\" FontName=\"DejaVu Sans\" ") + s_szSmall + "/>"));
    EXPECT_EQ(g_ppFont[2]->m_fScale, 1.5f);
}

// --- fonts of a text ---------------------------------------------------------------------------------------

TEST_F(TemplateFonts, ATextItemsFontIsThatOfItsTemplatesStyle) {
    EXPECT_EQ(g_fnTextItemFont(1087), g_uNoFont);
    g_stTemplates.poolTextBox.m_fnUse(1087)->uStyleID = 2;
    EXPECT_EQ(g_fnTextItemFont(1087), g_uNoFont);
    TextItem();
    EXPECT_EQ(g_fnTextItemFont(1087), 4u);
}

TEST_F(TemplateFonts, ADynamicSlotGetsAFontThatHoldsTheText) {
    TextItem();
    Slot(std::string(R"(Title="4" FontName="DejaVu Sans" Dynamic="1" )") + s_szSmall);
    ASSERT_TRUE(g_fnMakeTemplateTextFont(1087, u"hello", nullptr, g_stPlace));
    ASSERT_NE(g_ppFont[4], nullptr);
    EXPECT_EQ(g_ppFont[4]->m_uLayoutW, 4u); // h e l o and one to spare: 2 * 2 is not above 4
    EXPECT_EQ(g_ppFont[4]->m_uTexW, 32u);   // cells of 8
    for (const u32 uCode : {u'h', u'e', u'l', u'o'}) EXPECT_GE(g_ppFont[4]->m_fnFindChar(uCode), 0);
    EXPECT_LT(g_ppFont[4]->m_fnFindChar(u'x'), 0);
}

TEST_F(TemplateFonts, AFaceOfTheSettingsTakesTheSlotsPlace) {
    TextItem();
    Slot(std::string(R"(Title="4" FontName="DejaVu Sans" Dynamic="1" )") + s_szSmall);
    ASSERT_TRUE(g_fnMakeTemplateTextFont(1087, u"a", u"DejaVu Sans Mono", g_stPlace));
    EXPECT_EQ(g_ppFont[4]->m_wzFontName, u"DejaVu Sans Mono");
    ASSERT_TRUE(g_fnMakeTemplateTextFont(1087, u"a", u"", g_stPlace));
    EXPECT_EQ(g_ppFont[4]->m_wzFontName, u"DejaVu Sans");
    EXPECT_EQ(CStepFont::s_iLive, 1);
}

TEST_F(TemplateFonts, OnlyADynamicSlotIsMadeForAText) {
    TextItem();
    Slot(std::string(R"(Title="4" FontName="DejaVu Sans" )") + s_szSmall);
    EXPECT_TRUE(g_fnMakeTemplateTextFont(1087, u"a", u"DejaVu Sans", g_stPlace));
    EXPECT_EQ(g_ppFont[4], nullptr);
}

TEST_F(TemplateFonts, WithoutTemplateSlotFaceOrGridATextGetsNoFontAndNothingFails) {
    EXPECT_TRUE(g_fnMakeTemplateTextFont(1087, u"a", u"DejaVu Sans", g_stPlace));
    TextItem();
    g_stTemplates.poolTextBoxStyle.m_fnFind(2)->uFontID = 16;
    EXPECT_TRUE(g_fnMakeTemplateTextFont(1087, u"a", u"DejaVu Sans", g_stPlace));
    TextItem();
    Slot(std::string(R"(Title="4" Dynamic="1" )") + s_szSmall);
    EXPECT_TRUE(g_fnMakeTemplateTextFont(1087, u"a", nullptr, g_stPlace));
    Slot(R"(Title="4" Dynamic="1" FontName="DejaVu Sans")"); // no texture
    EXPECT_TRUE(g_fnMakeTemplateTextFont(1087, u"a", nullptr, g_stPlace));
    Slot(R"(Title="4" Dynamic="1" FontName="DejaVu Sans" FontTexW="96" FontLayoutX="0")");
    EXPECT_TRUE(g_fnMakeTemplateTextFont(1087, u"a", nullptr, g_stPlace));
    EXPECT_EQ(CStepFont::s_iLive, 0);
}

TEST_F(TemplateFonts, ATextsFontThatCannotBeSetUpFails) {
    TextItem();
    Slot(std::string(R"(Title="4" FontName="DejaVu Sans" Dynamic="1" )") + s_szSmall);
    CStepFont::s_bRefuse = true;
    EXPECT_FALSE(g_fnMakeTemplateTextFont(1087, u"a", nullptr, g_stPlace));
    EXPECT_EQ(g_ppFont[4], nullptr);
}

TEST_F(TemplateFonts, ATextThatIsNullIsEmpty) {
    TextItem();
    Slot(std::string(R"(Title="4" FontName="DejaVu Sans" Dynamic="1" )") + s_szSmall);
    ASSERT_TRUE(g_fnMakeTemplateTextFont(1087, nullptr, nullptr, g_stPlace));
    EXPECT_EQ(g_ppFont[4]->m_uLayoutW, 2u);
}

} // namespace
