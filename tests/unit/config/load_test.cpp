// The configuration load from files, and when it is tried again.
#include "base/layout_style.h"
#include "base/watched_files.h"
#include "config/fixed/variables.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_panel_keys.h"
#include "config/settings/intervals.h"
#include "config/settings/settings.h"
#include "config/settings/settings_sensors.h"
#include "draw/backdrop.h"
#include "frame/layout.h"
#include "frame/update/update.h"
#include "frame/update/update_records.h"
#include "platform/clock.h"
#include "platform/headless/test_controls.h"
#include "platform/segment.h"
#include "platform/shared_block.h"
#include "tests/unit/config/custom_fixture.h"

#include <functional>

namespace headless = platform::headless;

namespace {

class Load : public CustomTest {
  protected:
    void SetUp() override {
        CustomTest::SetUp();
        Select(u"Mine");
        m_folder.Write("OSD_Ref.xml", "<OSD/>");
    }
    void TearDown() override {
        g_fnForgetFailedLoad();
        g_stLooks.bTextShadow = false;
        g_stSensors.mapByName.clear();
        CustomTest::TearDown();
        headless::ResetAll();
        g_stSettings.uWowKeys = 1;
        g_fnLoadGlobalSettings();
        g_fnReadFeatureSwitches();
        g_fnReadSettingsBatch(200, 200);
    }
    static void Select(const char16_t* wzName) {
        char16_t* wzOut = platform::SharedSegment()->wzGlobalProfile;
        do *wzOut++ = *wzName;
        while (*wzName++);
    }
    void Profile(const std::string& szItems, const std::string& szSettings = "",
                 const std::string& szName = "Mine") {
        std::filesystem::create_directories(m_folder.Path("Profiles/" + szName));
        m_folder.Write("Profiles/" + szName + "/OSD.xml", "<OSD LayoutStyle='2'><CustomLayout><Settings>" +
                                                              szSettings + "<Info>" + szItems +
                                                              "</Info></Settings></CustomLayout></OSD>");
    }
    static constexpr i64 c_iSecond = 1'000'000'000;
};

TEST_F(Load, AProfileFolderDecidesWhatThereIs) {
    Profile(Text("t") + Number("n", "FPS") + Item("Panel", "p"));
    ASSERT_TRUE(g_fnMakeLayout());
    EXPECT_EQ(std::u16string(g_wzProfileName), u"Mine");
    EXPECT_EQ(g_uLayoutStyle, 2u);
    ASSERT_NE(TextBox("t"), nullptr);
    EXPECT_EQ(std::u16string(TextBox("t")->m_wzText.get()), u"abc");
    EXPECT_EQ(g_fnUpdateFPS, &g_fnUpdateFPSCustom);
    EXPECT_EQ(g_listUpdateFPS_N.size(), 1u) << "the lists are built";
    EXPECT_TRUE(g_pOSDManager->m_fnIsAttached(TextBox("t"), g_uLayerFont)) << "the controls are linked";
    EXPECT_EQ(g_mapAssembleInfo.size(), 3u);
}

TEST_F(Load, AnEmptyProfileNameIsTheProfileDefault) {
    Select(u"");
    Profile(Text("t"), "", "Default");
    EXPECT_TRUE(g_fnLoadConfiguration());
    EXPECT_NE(TextBox("t"), nullptr);
}

TEST_F(Load, AListWithoutInfoIsALayoutWithoutItems) {
    m_folder.Write("Profiles/Mine/OSD.xml",
                   "<OSD LayoutStyle='2'><CustomLayout><Settings/></CustomLayout></OSD>");
    EXPECT_TRUE(g_fnLoadConfiguration());
    EXPECT_TRUE(g_mapItemByName.empty());
}

TEST_F(Load, AnotherLoadReplacesEverything) {
    Profile(Text("t") + Item("Panel", "p", "PanelType='2'") +
            Item("PieChart", "c", "DataFullName='FPS' ContentSizeW='9' ContentSizeH='9' EndDegree='9'"));
    ASSERT_TRUE(g_fnLoadConfiguration());
    ASSERT_TRUE(g_fnLoadConfiguration());
    EXPECT_EQ(CLiveTextBox::s_iLive, 1);
    EXPECT_EQ(CGivenFont::s_iLive, 1);
    EXPECT_EQ(g_mapBlurDiameters, (std::map<u32, u32>{{30, 1}}));
    EXPECT_EQ(g_listColorOrder, std::vector<CControl*>{PieChart("c")});
    Profile(Number("n", "FPS"));
    ASSERT_TRUE(g_fnLoadConfiguration());
    EXPECT_EQ(CLiveTextBox::s_iLive, 0);
    EXPECT_EQ(TextBox("t"), nullptr);
    EXPECT_NE(NumBox("n"), nullptr);
    EXPECT_EQ(g_mapItemByName.size(), 1u);
    EXPECT_EQ(g_mapItemById.size(), 1u);
    EXPECT_EQ(g_mapAssembleInfo.size(), 1u);
    EXPECT_TRUE(g_listColorOrder.empty());
    EXPECT_TRUE(g_mapBlurDiameters.empty());
    EXPECT_FALSE(g_bCaptureBackdrop);
}

TEST_F(Load, ClearingLeavesNothing) {
    Profile(Text("t") + Item("Panel", "p", "PanelType='2'"));
    ASSERT_TRUE(g_fnLoadConfiguration());
    g_fnClearUpdateLists();
    g_fnClearConfiguration();
    EXPECT_TRUE(g_mapItemByName.empty());
    EXPECT_TRUE(g_mapItemById.empty());
    EXPECT_TRUE(g_mapAssembleInfo.empty());
    EXPECT_EQ(g_stProfile.pRoot, nullptr);
    EXPECT_EQ(g_stProfile.pSettings, nullptr);
    EXPECT_TRUE(g_fnControlNames('T')->empty());
    EXPECT_FALSE(g_bCaptureBackdrop);
}

TEST_F(Load, SettingsOfTheProfileReachTheControls) {
    Profile(Text("t"), "<Camera TextShadow='1'/>");
    ASSERT_TRUE(g_fnLoadConfiguration());
    EXPECT_TRUE(TextBox("t")->m_bShadow);
    Profile(Text("t"));
    ASSERT_TRUE(g_fnLoadConfiguration());
    EXPECT_FALSE(TextBox("t")->m_bShadow);
}

TEST_F(Load, ReadsEveryOtherSource) {
    Profile(Text("t"), "<Preview Width='800' Height='600'/>");
    m_folder.Write("OSD.ini", "[Info]\nDebugTime=1\n");
    m_folder.Write("OSD_Ref.xml", "<OSD><Preset><Variable Name='Face' Value='150'/></Preset></OSD>");
    const std::u16string wzRoot = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option";
    headless::SetSettingsNumber(wzRoot.c_str(), u"UpdateStatisticInterval", 500);
    headless::SetSettingsNumber((wzRoot + u"\\Card").c_str(), u"Card Num", 3);
    ASSERT_TRUE(g_fnLoadConfiguration());
    EXPECT_EQ(g_stSettings.uWowKeys, 0u);
    EXPECT_EQ(g_stPreview.uWidth, 800u);
    EXPECT_EQ(g_stPreview.uHeight, 600u);
    EXPECT_FALSE(g_stPreview.bFixedAspect);
    EXPECT_TRUE(g_stSettings.bDebugTime);
    EXPECT_EQ(g_stFileVariables.mapPreset.at(u"Face"), u"150");
    EXPECT_EQ(g_stVariables.mapByName.count("CPUNum"), 1u);
    EXPECT_EQ(uDataIntervalMs, 500u);
    EXPECT_EQ(headless::OpenSettingsKeys(), 0u);
}

// --- failures ----------------------------------------------------------------------------------------------

TEST_F(Load, AMissingOrBrokenDocumentFailsIt) {
    EXPECT_FALSE(g_fnLoadConfiguration()) << "no OSD.xml";
    Profile(Text("t"));
    EXPECT_TRUE(g_fnLoadConfiguration());
    m_folder.Write("Profiles/Mine/OSD.xml", "<OSD");
    EXPECT_FALSE(g_fnLoadConfiguration());
    Profile(Text("t"));
    m_folder.Remove("OSD_Ref.xml");
    EXPECT_FALSE(g_fnLoadConfiguration());
    m_folder.Write("OSD_Ref.xml", "<OSD/>");
    EXPECT_TRUE(g_fnLoadConfiguration());
}

TEST_F(Load, AProfileNameThatLeavesTheFolderDoesNotExist) {
    Profile(Text("t"), "", "Default");
    for (const char16_t* wzName : {u"..", u"..\\Profiles\\Default", u"Default/../Default", u"C:Default"}) {
        Select(wzName);
        EXPECT_FALSE(g_fnLoadConfiguration());
    }
    Select(u"Default");
    EXPECT_TRUE(g_fnLoadConfiguration());
}

TEST_F(Load, FailedDocumentsAreToldWhereMessageBoxesAreAskedFor) {
    EXPECT_FALSE(g_fnLoadConfiguration());
    EXPECT_TRUE(headless::MessageBoxes().empty());
    m_folder.Write("OSD.ini", "[Info]\nDebugMessageBox=1\n");
    EXPECT_FALSE(g_fnLoadConfiguration());
    const auto boxes = headless::MessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].first, u"g_fnRead_OSD_Profile fail");
    EXPECT_EQ(boxes[0].second, "Error");
}

TEST_F(Load, AFailedStepOfTheCreationFailsItWithoutABox) {
    Profile(Item("Memo", "m", "FontName='Face' FileName='m.txt'"));
    m_folder.Write("Profiles/Mine/m.txt", "");
    m_folder.Write("OSD.ini", "[Info]\nDebugMessageBox=1\n");
    EXPECT_FALSE(g_fnLoadConfiguration());
    EXPECT_TRUE(headless::MessageBoxes().empty());
}

TEST_F(Load, AStepOfABuiltInStyleThatFailsIsToldByItsNumber) {
    m_folder.Write("OSD.ini", "[Info]\nDebugMessageBox = 1\n");
    m_folder.Write("Profiles/Mine/OSD.xml", "<OSD><ClassicLayout><Settings/></ClassicLayout></OSD>");
    m_folder.Write("OSD_Ref.xml", "<OSD><ClassicLayout><Group/><Template/></ClassicLayout></OSD>");
    EXPECT_FALSE(g_fnLoadConfiguration());
    ASSERT_EQ(headless::MessageBoxes().size(), 1u);
    EXPECT_EQ(headless::MessageBoxes()[0].first, u"Error code : 2");
    EXPECT_EQ(headless::MessageBoxes()[0].second, "g_fnCreate_Tavo_ResourceByClassicStyle");
}

TEST_F(Load, WhatACreationThrowsEndsInAFailure) {
    Profile(Item("Panel", "p"));
    g_stCreationTable.m_fnCreatePanel = []() -> CPanel_Base* { throw std::bad_alloc(); };
    EXPECT_FALSE(g_fnLoadConfiguration());
    EXPECT_EQ(Logged("g_fnLoadConfiguration() - std::bad_alloc"), 1);
    g_stCreationTable.m_fnCreatePanel = []() -> CPanel_Base* { throw -1; };
    EXPECT_FALSE(g_fnLoadConfiguration());
    EXPECT_EQ(Logged("g_fnLoadConfiguration() - exception"), 1);
}

// --- another try -------------------------------------------------------------------------------------------

class LoadAgain : public Load {
  protected:
    void SetUp() override {
        Load::SetUp();
        headless::SetClock(100 * c_iSecond);
        g_fnSetProfileName(u"Mine");
        g_fnForgetWatchedFiles(); // a test before this one may have opened some, gone by now
    }
    static void Fail(i64 iTook) {
        const i64 iStart = platform::CounterNow();
        headless::AdvanceClock(iTook);
        g_fnNoteFailedLoad(iStart);
    }
};

TEST_F(LoadAgain, IsDueAtOnceUntilOneHasFailed) {
    const u64 uReads = headless::ClockReads();
    EXPECT_TRUE(g_fnIsLoadDue());
    EXPECT_EQ(headless::ClockReads(), uReads);
}

TEST_F(LoadAgain, WaitsASecond) {
    Fail(0);
    EXPECT_FALSE(g_fnIsLoadDue());
    headless::AdvanceClock(c_iSecond - 1);
    EXPECT_FALSE(g_fnIsLoadDue());
    headless::AdvanceClock(1);
    EXPECT_TRUE(g_fnIsLoadDue());
}

TEST_F(LoadAgain, WaitsTwentyTimesWhatTheTryTookAndTenSecondsAtMost) {
    Fail(c_iSecond / 10);
    headless::AdvanceClock(2 * c_iSecond - 1000);
    EXPECT_FALSE(g_fnIsLoadDue());
    headless::AdvanceClock(1000);
    EXPECT_TRUE(g_fnIsLoadDue());
    Fail(60 * c_iSecond);
    headless::AdvanceClock(10 * c_iSecond - 1);
    EXPECT_FALSE(g_fnIsLoadDue());
    headless::AdvanceClock(1);
    EXPECT_TRUE(g_fnIsLoadDue());
}

TEST_F(LoadAgain, IsDueAtOnceForAnotherProfile) {
    Fail(c_iSecond);
    Select(u"Other");
    EXPECT_TRUE(g_fnIsLoadDue());
    Select(u"Mine");
    EXPECT_FALSE(g_fnIsLoadDue());
}

/// Whatever the pause: a repair is seen within a second.
TEST_F(LoadAgain, IsDueWithinASecondOfAChangeInTheFilesOfTheTry) {
    const std::pair<const char*, std::function<void()>> aChanges[] = {
        {"the profile appears", [this] { Profile(""); }},
        {"it changes", [this] { Profile("<Panel/>"); }},
        {"the shared document goes", [this] { std::filesystem::remove(m_folder.Path("OSD_Ref.xml")); }},
    };
    Select(u"Mine");
    for (const auto& [szWhat, fnChange] : aChanges) {
        const i64 iStart = platform::CounterNow();
        g_fnLoadConfiguration();
        headless::AdvanceClock(60 * c_iSecond);
        g_fnNoteFailedLoad(iStart); // a pause of ten seconds
        headless::AdvanceClock(2 * c_iSecond);
        EXPECT_FALSE(g_fnIsLoadDue()) << "nothing has changed: " << szWhat;
        fnChange();
        EXPECT_FALSE(g_fnIsLoadDue()) << "it looks once a second: " << szWhat;
        headless::AdvanceClock(c_iSecond);
        EXPECT_TRUE(g_fnIsLoadDue()) << szWhat;
    }
}

TEST_F(LoadAgain, IsDueAtOnceAfterARelease) {
    Fail(c_iSecond);
    g_fnForgetFailedLoad();
    EXPECT_TRUE(g_fnIsLoadDue());
}

} // namespace
