// Data names that a profile shows, as the companion asks for them.
#include "base/layout_style.h"
#include "config/profile/profile_names.h"
#include "config/settings/settings.h"
#include "config/settings/settings_sensors.h"
#include "entry/exports.h"
#include "profile_fixture.h"

namespace {

using Names = std::set<std::string>;

struct ProfileNames : ProfileTest {
    void TearDown() override {
        headless::ClearSettings();
        g_fnReadSensorDefinitions();
        ProfileTest::TearDown();
    }
    /// Names of a profile; "failed" alone if it was refused.
    static Names Ask(const char16_t* wzProfile = u"Default") {
        Names names;
        if (GetDataFullNamesFromProfile_GL(wzProfile, &names) == 1) return names;
        EXPECT_TRUE(names.empty());
        return {"failed"};
    }
    Names Of(const std::string& strXml) const {
        Document(strXml);
        return Ask();
    }
    static std::string Cards() {
        return "<Card Title='Card#0' CardDisplayIndex='1'><GPUClock IsShow='1'/><Pin2 "
               "IsShow='1'/><GPUUsage/></Card>"
               "<Card Title='Card#3' CardDisplayIndex='0'><GPUUsage IsShow='1'/></Card>";
    }
    static void SupportAll() {
        CardNum(4);
        for (const char16_t* wzCard : {u"0", u"1", u"3"})
            for (const char16_t* wzRow : {u"GPU Clock", u"GPU Usage"})
                Support(u"Card\\" + std::u16string(wzCard) + u"\\" + wzRow);
        Support(u"Card\\3\\Pin 2");
        Support(u"CPU\\CPU Clock");
        Support(u"CPU\\CPU Temperature");
        Sensor(u"a", u"Pump", u"PUMP_SPEED");
        Support(u"Sensor\\2\\PUMP_SPEED");
    }
};

const Names c_failed = {"failed"};

} // namespace

TEST_F(ProfileNames, NullArgumentsGive0) {
    Document(Layout(2, ""));
    Names names;
    EXPECT_EQ(GetDataFullNamesFromProfile_GL(nullptr, &names), 0);
    EXPECT_EQ(GetDataFullNamesFromProfile_GL(u"Default", nullptr), 0);
    EXPECT_EQ(GetDataFullNamesFromProfile_GL(u"Default", &names), 1);
}

TEST_F(ProfileNames, CustomGivesTheNamesOfNumbersAndGraphs) {
    EXPECT_EQ(Of(Layout(2, "<Info><NumBox IsShow='1' DataFullName='GPU_CLK#0'/>"
                           "<LineGraph IsShow='1' DataFullName='GPU_USAGE#1'/>"
                           "<NumBox IsShow='5' DataFullName='Any thing \xC3\xA9'/>"
                           "<NumBox IsShow='1' DataFullName='GPU_CLK#0'/></Info>")),
              (Names{"GPU_CLK#0", "GPU_USAGE#1", "Any thing \xC3\xA9"}));
}

TEST_F(ProfileNames, CustomPassesOverWhatIsHiddenOrNameless) {
    EXPECT_EQ(Of(Layout(2, "<Info><NumBox DataFullName='A'/><NumBox IsShow='0' DataFullName='B'/>"
                           "<LineGraph IsShow='1'/><LineGraph IsShow='1' DataFullName=''/></Info>")),
              Names{});
}

TEST_F(ProfileNames, CustomKeepsTheClockAndTheResolutionAndDropsWhatTheOverlayMeasures) {
    std::string strItems =
        "<NumBox IsShow='1' DataFullName='SYSTEM_TIME'/><NumBox IsShow='1' DataFullName='RESOLUTION'/>";
    for (const char* szName : {"FPS", "FPS_AVG", "FPS_MAX", "FPS_MIN", "FPS_50P", "FPS_1P", "FPS_01P",
                               "FRAME_TIME", "FRAME_CNT", "PID", "TID"})
        strItems += std::string("<NumBox IsShow='1' DataFullName='") + szName + "'/>";
    EXPECT_EQ(Of(Layout(2, "<Info>" + strItems + "</Info>")), (Names{"SYSTEM_TIME", "RESOLUTION"}));
}

TEST_F(ProfileNames, CustomNeverGivesThoseOfChartsAndOtherItems) {
    EXPECT_EQ(Of(Layout(2, "<NumBox IsShow='1' DataFullName='OUT'/><Info>"
                           "<PieChart IsShow='1' DataFullName='P'/><TextBox IsShow='1' DataFullName='T'/>"
                           "<Panel><NumBox IsShow='1' DataFullName='DEEP'/></Panel></Info>")),
              Names{});
}

TEST_F(ProfileNames, CustomWithoutInfoHasNoNames) { EXPECT_EQ(Of(Layout(2, "")), Names{}); }

TEST_F(ProfileNames, LongNamesAreCutAsTheItemsAre) {
    EXPECT_EQ(Of(Layout(2, "<Info><NumBox IsShow='1' DataFullName='" + std::string(300, 'x') + "'/></Info>")),
              Names{std::string(255, 'x')});
}

TEST_F(ProfileNames, FixedStylesGiveVisibleRowsOfCardsCpusAndSensors) {
    SupportAll();
    for (u32 uStyle = 0; uStyle < 2; ++uStyle)
        EXPECT_EQ(
            Of(Layout(uStyle, "<Info CardDisplayNum='2'>" + Cards() +
                                  "<CPU Title='CPU#0'><CPUClock IsShow='1'/><CPUUsage IsShow='1'/></CPU>"
                                  "<CPU Title='CPU#1'><CPUTemperature IsShow='1'/></CPU>"
                                  "<Sensor Title='S#2' IsShow='1'><Pump IsShow='1'/></Sensor></Info>")),
            (Names{"GPU_CLK#3", "POWER_PIN_2#3", "GPU_CLK#0", "CPU_CLK#0", "CPU_CLK#1", "PUMP_SPEED#2"}));
}

TEST_F(ProfileNames, CardsBeyondTheDisplayCountGiveNothing) {
    SupportAll();
    EXPECT_EQ(Of(Layout(0, "<Info>" + Cards() + "</Info>")), (Names{"GPU_CLK#3", "POWER_PIN_2#3"}));
}

TEST_F(ProfileNames, FixedStylesWithoutInfoHaveNoNames) {
    SupportAll();
    EXPECT_EQ(Of(Layout(0, "")), Names{});
    EXPECT_EQ(Of(Layout(1, "<Info/>")), Names{});
}

TEST_F(ProfileNames, AWrongCardOrCpuGives0) {
    EXPECT_EQ(Of(Layout(0, "<Info><Card Title='card#0'><GPUClock/></Card></Info>")), c_failed);
    EXPECT_EQ(Of(Layout(1, "<Info><Card Title='Card#0'/></Info>")), c_failed);
    EXPECT_EQ(Of(Layout(1, "<Info><CPU Title='Card#0'><CPUClock/></CPU></Info>")), c_failed);
    // Custom reads none of them.
    EXPECT_EQ(Of(Layout(2, "<Info><Card Title='card#0'/></Info>")), Names{});
}

TEST_F(ProfileNames, RowsOfTheProgramNeedNotExistHere) { EXPECT_EQ(Of(Layout(0, "<Info/>")), Names{}); }

TEST_F(ProfileNames, ALayoutStyleOf7IsRefused) {
    for (const char* szStyle : {"7", "3", "-1"})
        EXPECT_EQ(Of(std::string("<OSD LayoutStyle='") + szStyle +
                     "'><ClassicLayout><Settings/></ClassicLayout></OSD>"),
                  c_failed);
    EXPECT_EQ(Of("<OSD><ClassicLayout><Settings/></ClassicLayout></OSD>"), Names{});
}

TEST_F(ProfileNames, TheOverrideRulesHereToo) {
    const std::string strXml = "<OSD LayoutStyle='7'><CustomLayout><Settings><Info>"
                               "<NumBox IsShow='1' DataFullName='A'/></Info></Settings></CustomLayout></OSD>";
    g_iLayoutStyleOverride = 2;
    EXPECT_EQ(Of(strXml), Names{"A"});
    g_iLayoutStyleOverride = 7;
    EXPECT_EQ(Of(strXml), c_failed);
}

TEST_F(ProfileNames, WhatCannotBeReadGives0) {
    EXPECT_EQ(Ask(), c_failed);
    for (const char* szXml : {"", "<OSD", "<a/>", "<OSD/>", "<OSD LayoutStyle='2'><CustomLayout/></OSD>"})
        EXPECT_EQ(Of(szXml), c_failed) << szXml;
}

TEST_F(ProfileNames, ANameThatWouldLeaveTheProfilesFolderGives0) {
    File("OSD.xml", Layout(2, ""));
    File("Profiles/OSD.xml", Layout(2, ""));
    File("Profiles/a/OSD.xml", Layout(2, ""));
    for (const char16_t* wzName : {u"..", u".", u"", u"a/", u"a/../a", u"../Profiles/a", u"C:a", u"\\", u" "})
        EXPECT_EQ(Ask(wzName), c_failed);
    EXPECT_EQ(Ask(u"a"), Names{});
    const std::u16string wstrUnending(g_uProfileNameUnits, u'x');
    EXPECT_EQ(Ask(wstrUnending.c_str()), c_failed);
}

TEST_F(ProfileNames, NamesAreAddedToThoseThatAreThere) {
    Document(Layout(2, "<Info><NumBox IsShow='1' DataFullName='B'/></Info>"));
    Names names = {"A"};
    EXPECT_EQ(GetDataFullNamesFromProfile_GL(u"Default", &names), 1);
    EXPECT_EQ(names, (Names{"A", "B"}));
    EXPECT_EQ(GetDataFullNamesFromProfile_GL(u"Gone", &names), 0);
    EXPECT_EQ(names, (Names{"A", "B"}));
}

TEST_F(ProfileNames, TheActiveLayoutStaysAsItIs) {
    SupportAll();
    ReadCustom("<Info Mine='1'/>");
    g_stDisplay.uCards = 7;
    g_stDisplay.uCpus = 8;
    g_iCardOfDisplay[0] = 9;
    g_stDisplay.listSensorRows = {{"X", 0, 0}};
    g_wzProfileFolder[0] = u'!';
    Document(Layout(0, "<Info CardDisplayNum='2'>" + Cards() + "</Info>"), "Other");
    EXPECT_EQ(Ask(u"Other").size(), 3u);
    EXPECT_TRUE(g_fnProfileInfo()->Attribute("Mine", "1"));
    EXPECT_EQ(g_uLayoutStyle, 2u);
    EXPECT_EQ(g_stProfile.iError, PROFILE_OK);
    EXPECT_EQ(g_stDisplay.uCards, 7u);
    EXPECT_EQ(g_stDisplay.uCpus, 8u);
    EXPECT_EQ(g_iCardOfDisplay[0], 9);
    EXPECT_EQ(g_stDisplay.listSensorRows.size(), 1u);
    EXPECT_EQ(std::u16string(g_wzProfileName), u"Default");
    EXPECT_EQ(g_wzProfileFolder[0], u'!');
}

TEST_F(ProfileNames, TheViewOfTheSettingsThatExistsIsTheOneRead) {
    SupportAll();
    g_stSettings.uWowKeys = 1;
    EXPECT_EQ(Of(Layout(0, "<Info>" + Cards() + "</Info>")), (Names{"GPU_CLK#3", "POWER_PIN_2#3"}));
    EXPECT_EQ(g_stSettings.uWowKeys, 0u);
}
