// What the check says of names: those that the overlay makes up, those that a machine defines, and those
// whose values never move.
#include "companion/own_names.h"
#include "companion/sensors/publisher.h"
#include "companion/values.h"
#include "platform/headless/test_controls.h"
#include "tests/unit/companion/profile_check_fixture.h"
#include "tools/profile/settings.h"

using namespace companion;

namespace {

class ProfileNames : public ProfileCheckTest {
  protected:
    void TearDown() override {
        platform::headless::ClearSettings();
        DefinedSensors();
        ProfileCheckTest::TearDown();
    }
    static std::string Panel(const std::string& strName) {
        return "<Panel IsShow=\"1\" Name=\"" + strName +
               "\" FrameSizeW=\"9\" FrameSizeH=\"9\" ContentSizeW=\"9\" ContentSizeH=\"9\"/>";
    }
    static std::string Value(const std::string& strName, const std::string& strData) {
        return Number(strName, "FrameSizeW=\"90\" FrameSizeH=\"30\" DataFullName=\"" + strData + "\"");
    }
};

TEST_F(ProfileNames, APanelNamedAsTheFrameOfAnotherItemIsAnError) {
    CheckItems(Text("a") + "\n" + Panel("a_F"));
    EXPECT_TRUE(SaidError(6, "the name \"a_F\" belongs to a part of one of two items"));
    CheckItems(Text("a@box") + "\n" + Panel("a_F@box") + "\n" + Panel("box"));
    EXPECT_TRUE(SaidError(6, "\"a_F@box\""));
    CheckItems(Text("a") + "\n" + Text("a_F") + "\n" + Panel("b_F"));
    EXPECT_TRUE(IsClean());
}

TEST_F(ProfileNames, APartOfAClockOrAResolutionHasAName) {
    CheckItems(Value("C", "SYSTEM_TIME") + "\n" + Value("C[0]", "FPS"));
    EXPECT_TRUE(SaidError(6, "\"C[0]\""));
    CheckItems(Value("C", "SYSTEM_TIME") + "\n" + Text("C[1]"));
    EXPECT_TRUE(SaidError(5, "\"C[1]\""));
    CheckItems(Value("R", "RESOLUTION") + "\n" + Value("R[1]", "FPS"));
    EXPECT_TRUE(SaidError(6, "\"R[1]\""));
    CheckItems(Value("R", "RESOLUTION") + "\n" + Value("R[2]", "FPS") + "\n" + Text("R[0]"));
    EXPECT_TRUE(IsClean());
}

TEST_F(ProfileNames, ANameThatEndsInAnAtHasNoOwner) {
    CheckItems(Text("a@"));
    EXPECT_TRUE(IsClean());
    CheckItems(Text("a@") + "\n" + Text("a"));
    EXPECT_TRUE(SaidError(6, "\"a_F\"")); // both are made of the same parts
}

TEST_F(ProfileNames, ValuesThatNeverMoveInACustomLayoutAreTold) {
    for (const char* sz : {"FPS_AVG", "FPS_50P", "FPS_1P", "FPS_01P", "FRAME_CNT"}) {
        CheckItems(Value("n", sz));
        EXPECT_TRUE(SaidWarning(5, std::string(sz) + " stays 0")) << sz;
    }
    CheckItems(Value("n", "FPS_MIN"));
    EXPECT_TRUE(SaidWarning(5, "FPS_MIN keeps its first sample"));
    for (const char* sz : {"FPS", "FPS_MAX", "FRAME_TIME", "PID", "TID"}) {
        CheckItems(Value("n", sz));
        EXPECT_TRUE(IsClean()) << sz;
    }
}

TEST_F(ProfileNames, TheListOfNamesTellsOfThemToo) {
    const std::string strTable = NameTable({});
    EXPECT_NE(strTable.find("each program; stays 0 in a custom layout"), std::string::npos) << strTable;
    EXPECT_NE(strTable.find("each program; keeps its first sample"), std::string::npos) << strTable;
    EXPECT_NE(NameJson({}).find("\"remark\": \"stays 0 in a custom layout\""), std::string::npos);
    for (const std::string& strName : sensors::OwnNames()) EXPECT_TRUE(FindProgramName(strName)) << strName;
    EXPECT_EQ(ProgramNames().size(), sensors::OwnNames().size());
}

TEST_F(ProfileNames, ASensorThatTheMachineDefinesIsNoUnknownName) {
    const std::string strItems = Value("power", "GPU_POWER#0") + "\n" + Value("pump", "PUMP#3");
    m_stOptions.publishedNames = {"GPU_POWER#0", "PUMP#3"};
    CheckItems(strItems);
    EXPECT_TRUE(SaidWarning(5, "without a sensor definition"));
    std::filesystem::create_directories(m_root / "Settings");
    WriteFile("Settings/settings.ini",
              "[SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option\\Config\\Sensor\\GPU_POWER]\n"
              "Title = Power\nUnit = W\n"
              "[SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option\\Config\\Sensor\\Water]\n"
              "DataName = PUMP\nDivisor = 10\n");
    TakeMachineSettings(m_root / "Data", true); // the file stands beside that folder
    m_stOptions.sensorNames = DefinedSensors();
    EXPECT_EQ(m_stOptions.sensorNames, (std::vector<std::string>{"GPU_POWER", "PUMP"}));
    CheckItems(strItems);
    EXPECT_TRUE(IsClean());
    TakeMachineSettings(m_root / "Elsewhere" / "Data", true);
    EXPECT_TRUE(DefinedSensors().empty());
}

TEST_F(ProfileNames, AProfileOfWhichNothingCanBeSeenIsTold) {
    CheckItems("<Panel IsShow=\"1\" Name=\"p\" FrameSizeW=\"9\" FrameSizeH=\"9\" ContentSizeW=\"9\" "
               "ContentSizeH=\"9\" "
               "PanelColorA=\"0\"/>\n" +
               Text("t", "TextColorA=\"0\""));
    EXPECT_TRUE(SaidWarning(4, "no item of the profile can be seen"));
    CheckItems("<Panel IsShow=\"1\" Name=\"p\" ContentSizeW=\"9\" ContentSizeH=\"9\" PanelType=\"0\"/>");
    EXPECT_TRUE(SaidWarning(4, "no item of the profile can be seen"));
    CheckItems(Text("t"));
    EXPECT_TRUE(IsClean());
}

TEST_F(ProfileNames, ASecondRootIsTold) {
    WriteItems(Text("t"));
    const std::string strOne =
        "<OSD LayoutStyle=\"2\">\n<CustomLayout><Settings>\n<Preview AspectRatio=\"16:9\"/>\n<Info>\n" +
        Text("t") + "\n</Info></Settings></CustomLayout></OSD>\n";
    Write(strOne);
    Check();
    EXPECT_TRUE(IsClean());
    Write(strOne + strOne);
    Check();
    EXPECT_TRUE(SaidWarning(7, "a second root element, <OSD>"));
}

TEST_F(ProfileNames, AnAspectRatioIsTwoNumbers) {
    for (const char* sz : {"16:9", "21:9", "2.39:1", ""}) {
        Write("<OSD LayoutStyle=\"2\"><CustomLayout><Settings><Preview AspectRatio=\"" + std::string(sz) +
              "\"/><Info>" + Text("t") + "</Info></Settings></CustomLayout></OSD>\n");
        Check();
        EXPECT_TRUE(IsClean()) << sz;
    }
    for (const char* sz : {"wide", "16", "16:", ":9", "16:0", "16:9 ", "16x9", "-16:9"}) {
        Write("<OSD LayoutStyle=\"2\"><CustomLayout><Settings><Preview AspectRatio=\"" + std::string(sz) +
              "\"/><Info>" + Text("t") + "</Info></Settings></CustomLayout></OSD>\n");
        Check();
        EXPECT_TRUE(SaidWarning(1, "is not two numbers with a colon")) << sz;
    }
}

TEST_F(ProfileNames, AFontFileThatIsNoGoodIsToldTheSharedOneToo) {
    const std::string strFile = "2-DejaVu Sans.fnt";
    CheckItems(Text("t"));
    EXPECT_TRUE(IsClean());
    std::filesystem::create_directories(m_root / "Profiles" / "Default");
    WriteFile("Profiles/Default/" + strFile, "nothing of a font");
    CheckItems(Text("t"));
    EXPECT_TRUE(SaidWarning(0, "the font file is too short for a header"));
    EXPECT_TRUE(SaidWarning(0, "in every profile that shares it"));
    WriteFile("Profiles/Mine/" + strFile, "");
    CheckItems(Text("t"));
    EXPECT_TRUE(SaidWarning(0, "the font file is empty; it is passed over"));
    EXPECT_FALSE(SaidWarning(0, "in every profile")); // one of its own goes first
}

} // namespace
