// The two documents of a profile and what is kept of them.
#include "base/layout_style.h"
#include "config/settings/settings.h"
#include "profile_fixture.h"

namespace {

struct ProfileDocument : ProfileTest {
    void TearDown() override {
        std::fill(std::begin(g_apLayoutRoutine), std::end(g_apLayoutRoutine), nullptr);
        ProfileTest::TearDown();
    }
    static bool AllNull() {
        return !g_stProfile.pRoot && !g_stProfile.pLayout && !g_stProfile.pSettings && !g_stProfile.pGroup &&
               !g_stProfile.pTemplate && !g_stProfile.pExtension && !g_stProfile.pPreset &&
               !g_stProfile.pRoutine;
    }
    static void ExpectFailure(i32 iCode) {
        EXPECT_FALSE(g_fnRead_OSD_Profile());
        EXPECT_EQ(g_stProfile.iError, iCode);
        EXPECT_TRUE(AllNull());
        EXPECT_EQ(g_fnProfileInfo(), nullptr);
    }
    static std::string Name(const tinyxml2::XMLElement* p) { return p ? p->Name() : "null"; }
};

bool Classic() { return true; }
bool Second() { return true; }
bool Custom() { return true; }

} // namespace

TEST_F(ProfileDocument, ClassicTakesItsHandlesFromBothDocuments) {
    Document("<OSD LayoutStyle='0'><ORVINLayout/><ClassicLayout><Settings Mine='1'/></ClassicLayout></OSD>");
    Reference("<OSD><Extension Mine='2'/><Preset Mine='3'/>"
              "<ClassicLayout><Group Mine='4'/><Template Mine='5'/></ClassicLayout></OSD>");
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(g_stProfile.iError, PROFILE_OK);
    EXPECT_EQ(g_uLayoutStyle, 0u);
    EXPECT_EQ(Name(g_stProfile.pRoot), "OSD");
    EXPECT_EQ(Name(g_stProfile.pLayout), "ClassicLayout");
    EXPECT_TRUE(g_stProfile.pSettings->Attribute("Mine", "1"));
    EXPECT_TRUE(g_stProfile.pExtension->Attribute("Mine", "2"));
    EXPECT_TRUE(g_stProfile.pPreset->Attribute("Mine", "3"));
    EXPECT_TRUE(g_stProfile.pGroup->Attribute("Mine", "4"));
    EXPECT_TRUE(g_stProfile.pTemplate->Attribute("Mine", "5"));
}

TEST_F(ProfileDocument, EachStyleHasItsElementAndItsRoutine) {
    g_apLayoutRoutine[0] = Classic;
    g_apLayoutRoutine[1] = Second;
    g_apLayoutRoutine[2] = Custom;
    Reference();
    const char* const aszElements[] = {"ClassicLayout", "ORVINLayout", "CustomLayout"};
    for (u32 uStyle = 0; uStyle < 3; ++uStyle) {
        Document(Layout(uStyle, ""));
        ASSERT_TRUE(g_fnRead_OSD_Profile()) << uStyle;
        EXPECT_EQ(g_uLayoutStyle, uStyle);
        EXPECT_EQ(Name(g_stProfile.pLayout), aszElements[uStyle]);
        EXPECT_EQ(g_stProfile.pRoutine, g_apLayoutRoutine[uStyle]);
    }
}

TEST_F(ProfileDocument, AStyleThatIsNotBuiltInHasNoRoutine) {
    Document(Layout(1, ""));
    Reference();
    g_apLayoutRoutine[2] = Custom;
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(g_stProfile.pRoutine, nullptr);
}

TEST_F(ProfileDocument, AMissingStyleMeansClassic) {
    Document("<OSD><ClassicLayout><Settings/></ClassicLayout></OSD>");
    Reference();
    g_uLayoutStyle = 2;
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(g_uLayoutStyle, 0u);
}

TEST_F(ProfileDocument, ALayoutStyleOf7OpensClassicLayout) {
    g_apLayoutRoutine[0] = Classic;
    for (const char* szStyle : {"7", "3", "-1", "4294967295"}) {
        Document(std::string("<OSD LayoutStyle='") + szStyle +
                 "'><ClassicLayout><Settings/></ClassicLayout></OSD>");
        Reference();
        ASSERT_TRUE(g_fnRead_OSD_Profile()) << szStyle;
        EXPECT_EQ(Name(g_stProfile.pLayout), "ClassicLayout");
        EXPECT_NE(g_stProfile.pGroup, nullptr);
        EXPECT_EQ(g_stProfile.pRoutine, Classic);
        EXPECT_GT(g_uLayoutStyle, 2u) << szStyle;
    }
}

TEST_F(ProfileDocument, TheOverrideForcesAStyle) {
    Document("<OSD LayoutStyle='0'><ClassicLayout><Settings/></ClassicLayout>"
             "<CustomLayout><Settings/></CustomLayout></OSD>");
    Reference();
    g_iLayoutStyleOverride = 2;
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(g_uLayoutStyle, 2u);
    EXPECT_EQ(Name(g_stProfile.pLayout), "CustomLayout");
}

TEST_F(ProfileDocument, CustomNeedsTheReferenceToOpenAndNothingInIt) {
    Document(Layout(2, "<Info/>"));
    Reference("<OSD/>");
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(Name(g_stProfile.pLayout), "CustomLayout");
    EXPECT_EQ(Name(g_fnProfileInfo()), "Info");
    EXPECT_EQ(g_stProfile.pGroup, nullptr);
    EXPECT_EQ(g_stProfile.pTemplate, nullptr);
    EXPECT_EQ(g_stProfile.pExtension, nullptr);
    EXPECT_EQ(g_stProfile.pPreset, nullptr);
    m_folder.Remove("OSD_Ref.xml");
    ExpectFailure(PROFILE_NOT_OPENED);
}

TEST_F(ProfileDocument, AReferenceReadAheadIsTakenByTheNextReadAlone) {
    Document(Layout(0, ""));
    Reference("<OSD><ClassicLayout><Group/><Template/></ClassicLayout><Preset Mine='1'/></OSD>");
    g_fnReadReferenceAhead();
    Reference("<OSD><ClassicLayout><Group/><Template/></ClassicLayout></OSD>");
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_NE(g_stProfile.pPreset, nullptr);
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(g_stProfile.pPreset, nullptr);
    g_fnReadReferenceAhead();
    g_fnDropReferenceAhead();
    m_folder.Remove("OSD_Ref.xml");
    ExpectFailure(PROFILE_NOT_OPENED);
}

TEST_F(ProfileDocument, AReferenceReadAheadOfAFailureIsNotTakenBehindIt) {
    Document("<OSD>");
    Reference("<OSD><ClassicLayout><Group/><Template/></ClassicLayout><Preset Mine='1'/></OSD>");
    g_fnReadReferenceAhead();
    ExpectFailure(PROFILE_NOT_PARSED);
    Document(Layout(0, ""));
    Reference("<OSD><ClassicLayout><Group/><Template/></ClassicLayout></OSD>");
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(g_stProfile.pPreset, nullptr);
}

TEST_F(ProfileDocument, AReferenceReadAheadInVainIsReadOnceMore) {
    Document(Layout(0, ""));
    Reference("<OSD>");
    g_fnReadReferenceAhead();
    ExpectFailure(PROFILE_NOT_PARSED);
    Reference("<OSD>");
    g_fnReadReferenceAhead();
    Reference();
    EXPECT_TRUE(g_fnRead_OSD_Profile());
}

TEST_F(ProfileDocument, CodesOfTheProfilesDocument) {
    Reference();
    ExpectFailure(0);
    Document("<OSD LayoutStyle='2'>");
    ExpectFailure(1);
    Document("<Osd LayoutStyle='2'><CustomLayout><Settings/></CustomLayout></Osd>");
    ExpectFailure(2);
    Document("<OSD LayoutStyle='2'><ClassicLayout><Settings/></ClassicLayout></OSD>");
    ExpectFailure(4);
    Document("<OSD LayoutStyle='2'><CustomLayout/></OSD>");
    ExpectFailure(5);
}

TEST_F(ProfileDocument, CodesOfTheReference) {
    Document(Layout(1, ""));
    ExpectFailure(0);
    Reference("<OSD");
    ExpectFailure(1);
    Reference("<Ref/>");
    ExpectFailure(2);
    Reference("<OSD><ClassicLayout><Group/><Template/></ClassicLayout></OSD>");
    ExpectFailure(4);
    Reference("<OSD><ORVINLayout><Template/></ORVINLayout></OSD>");
    ExpectFailure(6);
    Reference("<OSD><ORVINLayout><Group/></ORVINLayout></OSD>");
    ExpectFailure(7);
    Reference("<OSD><ORVINLayout><Group/><Template/></ORVINLayout></OSD>");
    EXPECT_TRUE(g_fnRead_OSD_Profile());
}

TEST_F(ProfileDocument, AFailureLeavesTheStyle) {
    ReadCustom("");
    Document("<OSD LayoutStyle='1'><ORVINLayout/></OSD>");
    ExpectFailure(5);
    EXPECT_EQ(g_uLayoutStyle, 2u);
}

TEST_F(ProfileDocument, TheProfilesOwnFolderIsRead) {
    Reference();
    Document(Layout(0, ""));
    Document(Layout(2, ""), "Mine");
    g_fnSetProfileName(u"Mine");
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(g_uLayoutStyle, 2u);
}

TEST_F(ProfileDocument, ANamedProfileThatIsMissingDoesNotFallBackToDefault) {
    Reference();
    Document(Layout(2, ""));
    g_fnSetProfileName(u"Gone");
    ExpectFailure(0);
    Document("<OSD", "Broken");
    g_fnSetProfileName(u"Broken");
    ExpectFailure(1);
}

TEST_F(ProfileDocument, AnEmptyNameSelectsDefault) {
    Reference();
    Document(Layout(2, ""));
    for (const char16_t* wzName : {u"Other", u""}) {
        g_fnSetProfileName(wzName);
        EXPECT_EQ(g_fnRead_OSD_Profile(), *wzName == 0);
    }
    g_wzProfileName[0] = 0;
    ASSERT_TRUE(g_fnRead_OSD_Profile());
    EXPECT_EQ(std::u16string(g_wzProfileName), u"Default");
    EXPECT_EQ(std::u16string(g_wzProfileFolder), u"Profiles\\Default");
}

TEST_F(ProfileDocument, ANullNameChangesNothing) {
    g_fnSetProfileName(u"Mine");
    g_fnSetProfileName(nullptr);
    EXPECT_EQ(std::u16string(g_wzProfileName), u"Mine");
    EXPECT_EQ(std::u16string(g_wzProfileFolder), u"Profiles\\Mine");
}

TEST_F(ProfileDocument, ANameThatWouldLeaveTheProfilesFolderIsNotFound) {
    Reference();
    const std::string strXml = Layout(2, "");
    for (const char* szPlace : {"OSD.xml", "Profiles/OSD.xml", "Profiles/a/OSD.xml", "Profiles/a/b/OSD.xml"})
        File(szPlace, strXml);
    for (const char16_t* wzName : {u"..", u".", u"a/b", u"a\\b", u"../Profiles/a", u"..\\Profiles\\a", u"C:",
                                   u"C:\\a", u"/", u"\\", u"a/", u"a/..", u" ", u". ", u"a\n", u"/a"}) {
        char16_t wzPath[g_uDataPathCapacity] = u"x";
        EXPECT_FALSE(g_fnResolveProfileDocument(wzName, wzPath));
        EXPECT_EQ(wzPath[0], 0);
        g_fnSetProfileName(wzName);
        ExpectFailure(0);
    }
    g_fnSetProfileName(u"a");
    EXPECT_TRUE(g_fnRead_OSD_Profile());
}

TEST_F(ProfileDocument, PathsAreBelowTheProfilesFolder) {
    char16_t wzPath[g_uDataPathCapacity];
    ASSERT_TRUE(g_fnResolveProfileDocument(u"My \u00e9", wzPath));
    std::u16string wstrExpected;
    for (const char c : m_folder.Path("Profiles/My ")) wstrExpected += static_cast<char16_t>(c);
    EXPECT_EQ(std::u16string(wzPath), wstrExpected + u"\u00e9/OSD.xml");
    EXPECT_FALSE(g_fnResolveProfileDocument(u"", wzPath));
    // Too long for a path, and too long for a name.
    EXPECT_FALSE(g_fnResolveProfileDocument(std::u16string(300, u'x').c_str(), wzPath));
    EXPECT_FALSE(g_fnResolveProfileDocument(std::u16string(600, u'x').c_str(), wzPath));
    EXPECT_EQ(wzPath[0], 0);
}

TEST_F(ProfileDocument, DocumentsStayUntilTheNextReadOrUntilTheyAreCleared) {
    ReadCustom("<Info Mine='1'/>");
    std::filesystem::remove_all(m_folder.Path("Profiles"));
    EXPECT_TRUE(g_fnProfileInfo()->Attribute("Mine", "1"));
    ReadCustom("<Info Mine='2'/>");
    EXPECT_TRUE(g_fnProfileInfo()->Attribute("Mine", "2"));
    g_fnClearProfileDocuments();
    EXPECT_TRUE(AllNull());
}

TEST_F(ProfileDocument, IsShowOfAPartOfTheSettings) {
    EXPECT_EQ(g_fnReadIsShow("Info"), 0u);
    ReadCustom("<Info IsShow='1'/><Memo IsShow='7'/><Photo/><StopWatch IsShow='x'/>");
    EXPECT_EQ(g_fnReadIsShow("Info"), 1u);
    EXPECT_EQ(g_fnReadIsShow("Memo"), 7u);
    EXPECT_EQ(g_fnReadIsShow("Photo"), 0u);
    EXPECT_EQ(g_fnReadIsShow("StopWatch"), 0u);
    EXPECT_EQ(g_fnReadIsShow("Watermark"), 0u);
}

TEST_F(ProfileDocument, AMissingInfoIsNull) {
    ReadCustom("<Memo/>");
    EXPECT_EQ(g_fnProfileInfo(), nullptr);
    EXPECT_EQ(Name(g_fnProfileSetting("Memo")), "Memo");
}

TEST_F(ProfileDocument, FailuresAreShownOnlyWhereMessageBoxesAreAskedFor) {
    g_fnSetProfileName(u"Mine \u00e9");
    g_fnReportProfileFailure();
    g_fnReportLoadFailure();
    EXPECT_TRUE(headless::MessageBoxes().empty());
    g_stSettings.bDebugMessageBox = true;
    g_fnReportProfileFailure();
    g_fnReportLoadFailure();
    const auto boxes = headless::MessageBoxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].first, u"g_fnRead_OSD_Profile fail");
    EXPECT_EQ(boxes[0].second, "Error");
    EXPECT_EQ(boxes[1].first, u"Mine \u00e9");
    EXPECT_EQ(boxes[1].second, "g_wzProfileName");
}

TEST_F(ProfileDocument, AReadByItselfShowsNothing) {
    g_stSettings.bDebugMessageBox = true;
    ExpectFailure(0);
    EXPECT_TRUE(headless::MessageBoxes().empty());
}
