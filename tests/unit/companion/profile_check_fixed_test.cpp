// What the checker says of profiles of the two styles with fixed tables.
#include "profile_check_fixture.h"

namespace {

class ProfileCheckFixed : public ProfileCheckTest {
  protected:
    static constexpr const char* c_szReference =
        "<OSD><ClassicLayout><Group/><Template/></ClassicLayout>\n<ORVINLayout><Group/></ORVINLayout></OSD>";
    static constexpr const char* c_szRows = "<FPS IsShow='1'/><SystemTime/><Resolution/>";

    void Classic(const std::string& strInfo, const char* szReference = c_szReference) {
        WriteFile("OSD_Ref.xml", szReference);
        Write("<OSD LayoutStyle=\"0\"><ClassicLayout><Settings>\n<Info IsShow='1'>\n" + strInfo +
              "</Info></Settings></ClassicLayout></OSD>");
        Check();
    }
};

TEST_F(ProfileCheckFixed, AWholeProfileHasNothingToSay) {
    Classic(std::string(c_szRows) +
            "<Card Title='Card#0'><GPUClock IsShow='1' DisplayText='Core'/><FanDuty/></Card>"
            "<CPU Title='CPU#0'><CPUClock/></CPU><PID/>"
            "<DisplayIndex><GPUTemp DisplayIndex='1'/><AnchorY/></DisplayIndex>"
            "<CustomSettings><TextColor Title='TextColor#1'/><TextAlign/><Variable/></CustomSettings>");
    EXPECT_TRUE(m_findings.All().empty()) << Report();
}

TEST_F(ProfileCheckFixed, TheReferenceMustHaveTheStyle) {
    WriteFile("OSD_Ref.xml", c_szReference);
    const std::string strBody = std::string("<Settings><Info IsShow='1'>") + c_szRows + "</Info></Settings>";
    Write("<OSD LayoutStyle=\"1\"><ORVINLayout>" + strBody + "</ORVINLayout></OSD>");
    Check();
    EXPECT_TRUE(SaidError(2, "<Template> is missing in <ORVINLayout>"));
    EXPECT_EQ(m_findings.All().size(), 1u) << Report();
    Classic(c_szRows, "<OSD/>");
    EXPECT_TRUE(SaidError(1, "<ClassicLayout> is missing: profiles of this style are not loaded"));
}

TEST_F(ProfileCheckFixed, WhatKeepsTheProfileFromLoadingIsAnError) {
    Classic("<FPS/>");
    EXPECT_TRUE(SaidError(2, "<SystemTime> is missing in <Info>"));
    EXPECT_TRUE(SaidError(2, "<Resolution> is missing in <Info>"));
    Classic(std::string(c_szRows) + "\n<Card Title='card#0'><GPUClock/></Card>");
    EXPECT_TRUE(SaidError(4, "the Title of a <Card> is not \"Card#\" and a number below 20"));
    Classic(std::string(c_szRows) + "<Card Title='Card#0'/>");
    EXPECT_TRUE(SaidError(3, "a <Card> without rows"));
    Classic(std::string(c_szRows) +
            "<Card Title='Card#0'><GPUClock/></Card><Card Title='Card#1'><GPUClock/></Card>");
    EXPECT_TRUE(SaidError(3, "two cards have the same CardDisplayIndex"));
    Classic(std::string(c_szRows) + "<Card Title='Card#0' CardDisplayIndex='20'><GPUClock/></Card>");
    EXPECT_TRUE(SaidError(3, "CardDisplayIndex is above 19"));
    Classic(std::string(c_szRows) + "<CPU Title='CPU'><CPUClock/></CPU>");
    EXPECT_TRUE(SaidError(3, "the Title of a <CPU> is not"));
}

TEST_F(ProfileCheckFixed, UnknownNamesAreWarnings) {
    Classic(std::string(c_szRows) +
            "<Colour/>\n<Card Title='Card#0'><GPUClok/></Card>\n<CPU Title='CPU#0'><CPUTemp/></CPU>\n"
            "<DisplayIndex><GPUTmp/></DisplayIndex>\n<CustomSettings><Style/></CustomSettings>\n"
            "<Sensor Title='Sensor#0'><NONE_SUCH/></Sensor>");
    EXPECT_TRUE(SaidWarning(3, "<Colour> is no part of <Info>"));
    EXPECT_TRUE(SaidWarning(4, "<GPUClok> is no row of <Card>"));
    EXPECT_TRUE(SaidWarning(5, "<CPUTemp> is no row of <CPU>"));
    EXPECT_TRUE(SaidWarning(6, "<GPUTmp> is no row of <DisplayIndex>"));
    EXPECT_TRUE(SaidWarning(7, "<Style> is no part of <CustomSettings>"));
    EXPECT_TRUE(SaidNote(8, "<NONE_SUCH> is no sensor of this machine"));
    EXPECT_TRUE(m_findings.Passes());
}

TEST_F(ProfileCheckFixed, ABlockWithoutRowsIsAWarning) {
    Classic("<FPS/><SystemTime/><Resolution/><PoweredByOrvinDeck/>");
    EXPECT_TRUE(SaidWarning(2, "no row of <Info> is shown"));
    Classic("<FPS/><SystemTime/><Resolution/>");
    EXPECT_TRUE(m_findings.All().empty()) << "the foot is shown unless it is switched off: " << Report();
}

} // namespace
