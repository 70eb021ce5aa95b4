// What the check says of items: names, owners, data, graphs and gauges, and what the readers report.
#include "config/items/item_map.h"
#include "tests/unit/companion/profile_check_fixture.h"

using namespace companion;

namespace {

using ProfileCheckItems = ProfileCheckTest;

TEST_F(ProfileCheckItems, AnItemWithoutIsShowDoesNotExist) {
    CheckItems(Text("a") + "\n<Panel Name=\"b\"/>\n<Panel IsShow=\"0\" Name=\"c\"/>");
    EXPECT_TRUE(SaidWarning(6, "Panel \"b\" has no IsShow=\"1\" and so does not exist"));
    EXPECT_EQ(m_findings.All().size(), 1u) << Report();
}

TEST_F(ProfileCheckItems, AnItemWithoutANameIsRefused) {
    CheckItems("<Panel IsShow=\"1\"/>\n<Panel IsShow=\"1\" Name=\"\"/>");
    EXPECT_TRUE(SaidError(5, "Panel without a Name: the item is refused"));
    EXPECT_TRUE(SaidError(6, "Panel without a Name: the item is refused"));
}

TEST_F(ProfileCheckItems, ANameServesOnce) {
    // Numbers are read behind texts, wherever they stand.
    CheckItems(Number("same") + "\n" + Text("same") + "\n" + Panel("other") + "\n" + Panel("other"));
    EXPECT_TRUE(
        SaidError(5, "NumBox \"same\": the name is taken by the TextBox in line 6; this item is refused"));
    EXPECT_TRUE(SaidError(8, "Panel \"other\": the name is taken by the Panel in line 7"));
}

TEST_F(ProfileCheckItems, AHiddenItemTakesNoName) {
    CheckItems("<Panel IsShow=\"0\" Name=\"a\"/>\n" + Panel("a"));
    EXPECT_TRUE(IsClean());
}

TEST_F(ProfileCheckItems, ABadItemTakesTheLaterOnesOfItsKindAlong) {
    CheckItems(Text("first") + "\n<TextBox IsShow=\"1\" Name=\"bad\" TextSize=\"20\" Text=\"x\"/>\n" +
               Text("later") + "\n" + Number("number", "DataFullName=\"FPS\" FrameAnchorX=\"90\""));
    EXPECT_TRUE(SaidError(6, "TextBox \"bad\": FontName is missing: the item is refused"));
    EXPECT_TRUE(SaidError(7, "TextBox \"later\" is dropped as well, since the TextBox in line 6 is refused"));
    EXPECT_EQ(m_findings.Count(Severity::Error), 2u) << Report();
}

TEST_F(ProfileCheckItems, LaterBadItemsHaveTheirOwnReasonOnly) {
    CheckItems(
        "<NumBox IsShow=\"1\" Name=\"a\" TextSize=\"20\" DataFullName=\"FPS\"/>\n"
        "<NumBox IsShow=\"1\" Name=\"b\" TextSize=\"20\"\nFontName=\"DejaVu Sans\" DataFullName=\"\"/>");
    EXPECT_TRUE(SaidError(5, "NumBox \"a\": FontName is missing"));
    EXPECT_TRUE(SaidError(7, "NumBox \"b\": DataFullName is missing"));
    EXPECT_FALSE(SaidError(6, "dropped"));
}

TEST_F(ProfileCheckItems, GraphsAndChartsNeedData) {
    CheckItems("<LineGraph IsShow=\"1\" Name=\"a\" DataNum=\"9\" ContentSizeW=\"9\" ContentSizeH=\"9\"/>\n"
               "<PieChart IsShow=\"1\" Name=\"b\" SlotNum=\"9\" ContentSizeW=\"9\" ContentSizeH=\"9\" "
               "ShapeSegNum=\"1\"/>");
    EXPECT_TRUE(SaidError(5, "LineGraph \"a\": DataFullName is missing"));
    EXPECT_TRUE(SaidError(6, "PieChart \"b\": DataFullName is missing"));
}

TEST_F(ProfileCheckItems, AnImageWithAnEmptyNameIsRefused) {
    CheckItems("<Image IsShow=\"1\" Name=\"a\" ImageFileName=\"\"/>");
    EXPECT_TRUE(SaidError(5, "Image \"a\": ImageFileName is empty"));
}

TEST_F(ProfileCheckItems, OwnersMustExist) {
    CheckItems(Panel("frame", "FrameSizeW=\"300\" FrameSizeH=\"90\"") + "\n" + Text("a@frame") + "\n" +
               Text("b@frme") + "\n" + Text("c@") + "\n<Panel IsShow=\"0\" Name=\"off\"/>\n" + Text("d@off"));
    EXPECT_TRUE(SaidError(7, "TextBox \"b@frme\": the owner is missing: there is no item \"frme\""));
    EXPECT_TRUE(SaidError(7, "the item stands in the upper left corner")); // "c@" has no owner
    EXPECT_TRUE(SaidError(10, "the item \"off\" in line 9 is not shown"));
    EXPECT_EQ(m_findings.Count(Severity::Error), 2u) << Report();
}

TEST_F(ProfileCheckItems, AnOwnerHasNoOwner) {
    CheckItems(Panel("top", "FrameSizeW=\"300\" FrameSizeH=\"90\"") + "\n" + Panel("inner@top") + "\n" +
               Text("text@inner"));
    EXPECT_TRUE(SaidError(7, "the item \"inner@top\" has an owner itself, and so can own nothing"));
}

TEST_F(ProfileCheckItems, ARefusedOwnerIsNamed) {
    CheckItems("<TextBox IsShow=\"1\" Name=\"own\" TextSize=\"20\" Text=\"x\"/>\n" + Panel("p@own"));
    EXPECT_TRUE(SaidError(6, "the item \"own\" in line 5 is refused"));
}

TEST_F(ProfileCheckItems, DataThatNobodyPublishes) {
    m_stOptions.sensorNames = {"PUMP_RPM"};
    const char* const aszNames[] = {"FPS",         "FRAME_TIME", "GPU_CLK#3", "POWER_PIN_1#0",
                                    "CPU_USAGE#0", "PUMP_RPM#2", "FPS_AVRG",  "GPU_CLK",
                                    "GPU_CLOK#0",  "Fps",        "PUMP_RPM",  "WHAT_IS_IT#0"};
    std::string strItems;
    for (const char* sz : aszNames)
        strItems += Number(std::string("n") + sz, "DataFullName=\"" + std::string(sz) + "\"") + "\n";
    CheckItems(strItems);
    EXPECT_TRUE(SaidWarning(11, "nobody publishes \"FPS_AVRG\"; did you mean \"FPS_AVG\"?"));
    EXPECT_TRUE(SaidWarning(12, "nobody publishes \"GPU_CLK\"; did you mean \"GPU_CLK#0\"?"))
        << "an index is missing";
    EXPECT_TRUE(SaidWarning(13, "nobody publishes \"GPU_CLOK#0\"; did you mean \"GPU_CLK#0\"?"));
    EXPECT_TRUE(SaidWarning(14, "nobody publishes \"Fps\"; did you mean \"FPS\"?")) << "case counts";
    EXPECT_TRUE(SaidWarning(15, "nobody publishes \"PUMP_RPM\"; did you mean \"PUMP_RPM#0\"?"));
    EXPECT_TRUE(SaidWarning(16, "nobody publishes \"WHAT_IS_IT#0\""));
    EXPECT_EQ(m_findings.All().size(), 6u) << Report();
}

TEST_F(ProfileCheckItems, PublishedDataNeedsADefinition) {
    m_stOptions.publishedNames = {"GPU_CLK#0", "RAM_USAGE_P#0", "MINE#0"};
    CheckItems(Number("a", "DataFullName=\"MINE#0\"") + "\n" + Number("b", "DataFullName=\"RAM_USAGE_P#0\"") +
               "\n" + Number("c", "DataFullName=\"GPU_CLK#0\"") + "\n" +
               Number("d", "DataFullName=\"GPU_CLK#1\"") + "\n" + Number("e", "DataFullName=\"FPS\""));
    EXPECT_TRUE(SaidWarning(5, "without a sensor definition in the settings the item stays empty"));
    EXPECT_TRUE(SaidWarning(6, "without a sensor definition in the settings the item stays empty"));
    EXPECT_TRUE(SaidNote(8, "\"GPU_CLK#1\" is not published at the moment"));
    EXPECT_EQ(m_findings.All().size(), 3u) << Report();
}

TEST_F(ProfileCheckItems, ClockAndResolutionAreForNumbers) {
    CheckItems(Number("a", "DataFullName=\"SYSTEM_TIME\" FrameSizeH=\"30\"") + "\n" +
               Number("b", "DataFullName=\"RESOLUTION\" FrameSizeH=\"30\"") +
               "\n<LineGraph IsShow=\"1\" Name=\"c\" DataNum=\"9\" ContentSizeW=\"9\" ContentSizeH=\"9\"\n"
               "DataFullName=\"SYSTEM_TIME\"/>");
    EXPECT_TRUE(SaidError(8, "LineGraph \"c\": SYSTEM_TIME can only be shown by a NumBox"));
    EXPECT_EQ(m_findings.All().size(), 1u) << Report();
}

TEST_F(ProfileCheckItems, RangesUpsideDown) {
    CheckItems(Graph("a", "DataNum=\"9\"\nMinValue=\"100\" MaxValue=\"0\"") + "\n" +
               Chart("b", "\nMinValue=\"50\" MaxValue=\"50\""));
    EXPECT_TRUE(SaidWarning(6, "MinValue is above MaxValue; the two change places"));
    EXPECT_TRUE(SaidError(8, "MinValue equals MaxValue"));
}

TEST_F(ProfileCheckItems, ColumnsOfLinesAndAreas) {
    CheckItems(Graph("a", "\nDataNum=\"32767\"") + "\n" + Graph("b", "\nDataNum=\"32768\"") + "\n" +
               Graph("c", "LineType=\"1\"") + "\n" + Graph("d", "\nDataNum=\"1\"") + "\n" +
               Graph("e", "DataNum=\"9\"\nDataWidth=\"3\"\nDataStartIdx=\"10\""));
    EXPECT_TRUE(SaidError(8, "DataNum is out of range, which is 2 to 32767; the layout cannot be built"));
    EXPECT_TRUE(SaidError(9, "DataNum is 0 and counts as 2"));
    EXPECT_TRUE(SaidWarning(11, "DataNum 1 counts as 2"));
    EXPECT_TRUE(SaidNote(13, "DataWidth has no effect"));
    EXPECT_TRUE(SaidWarning(14, "DataStartIdx is behind the last column"));
    EXPECT_EQ(m_findings.All().size(), 5u) << Report();
}

TEST_F(ProfileCheckItems, ColumnsOfStairsAndBars) {
    // 16384 columns of 0.5 with their gaps take 12288.
    const std::string strWide =
        "<LineGraph IsShow=\"1\" DataFullName=\"FPS\" ContentSizeH=\"10\" LineType=\"3\" ";
    CheckItems(strWide + "Name=\"a\" ContentSizeW=\"16384\" DataWidth=\"0.5\"/>\n" +
               Graph("b", "LineType=\"2\" DataWidth=\"4\"\nDataNum=\"9\"") + "\n" +
               Graph("c", "LineType=\"2\"\nDataWidth=\"0\""));
    EXPECT_TRUE(SaidError(5, "DataWidth makes 21845 columns of a width of 16384; at most 16384 can be"));
    EXPECT_TRUE(SaidNote(7, "DataNum has no effect"));
    EXPECT_TRUE(SaidError(9, "DataWidth is not above 0: there are two columns only"));
    EXPECT_EQ(m_findings.Count(Severity::Error), 2u) << Report();
}

TEST_F(ProfileCheckItems, TheLimitOfBarsIsItself) {
    EXPECT_EQ(16384u, 12288u * 4 / 3);
    CheckItems("<LineGraph IsShow=\"1\" Name=\"a\" DataFullName=\"FPS\" ContentSizeH=\"10\" LineType=\"3\" "
               "ContentSizeW=\"12288\" DataWidth=\"0.5\"/>");
    EXPECT_FALSE(SaidError(5, "columns"));
}

TEST_F(ProfileCheckItems, MeshesOfCharts) {
    CheckItems(Chart("ring", "\nSlotNum=\"16384\" ShapeSegNum=\"1\"") + "\n" +
               Chart("ring2", "\nSlotNum=\"16385\" ShapeSegNum=\"1\""));
    EXPECT_TRUE(SaidError(8, "(ShapeSegNum + 1) * SlotNum is 32770; at most 32768 can be"));
    EXPECT_EQ(m_findings.Count(Severity::Error), 1u) << Report();
    CheckItems("<PieChart IsShow=\"1\" Name=\"a\" DataFullName=\"FPS\" ContentSizeW=\"9\" ContentSizeH=\"9\" "
               "SlotNum=\"21845\" ShapeSegNum=\"2\"/>\n"
               "<PieChart IsShow=\"1\" Name=\"b\" DataFullName=\"FPS\" ContentSizeW=\"9\" ContentSizeH=\"9\" "
               "SlotNum=\"32768\" ShapeSegNum=\"1\"/>");
    EXPECT_FALSE(SaidError(5, "can be"));
    EXPECT_TRUE(SaidError(6, "is 65536; at most 65535 can be"));
}

TEST_F(ProfileCheckItems, ChartsThatShowLessThanMeant) {
    CheckItems(
        "<PieChart IsShow=\"1\" Name=\"fan\" DataFullName=\"FPS\" ContentSizeW=\"9\" ContentSizeH=\"9\"\n"
        "ShapeSegNum=\"3\"\nSlotNum=\"1\"/>\n" +
        Chart("full", "\nChartFillRatio=\"100\"") + "\n" +
        Chart("none", "\nSlotNum=\"0\" ShapeSegNum=\"0\"") + "\n" +
        Chart("turn", "StartDegree=\"90\"\nEndDegree=\"360\"") + "\n" +
        Chart("whole", "StartDegree=\"0\" EndDegree=\"360\""));
    EXPECT_TRUE(SaidWarning(6, "a fan draws only one piece of each slot"));
    EXPECT_TRUE(SaidWarning(7, "SlotNum 1: the gauge is either empty or full"));
    EXPECT_TRUE(SaidWarning(9, "ChartFillRatio 100 leaves a ring without width"));
    EXPECT_TRUE(SaidError(11, "SlotNum is 0 and counts as 1"));
    EXPECT_TRUE(SaidError(11, "ShapeSegNum is 0 and counts as 3"));
    EXPECT_TRUE(SaidWarning(13, "EndDegree 360 counts as 0: the gauge ends on the right"));
}

TEST_F(ProfileCheckItems, RatiosAndAnglesOutOfRange) {
    CheckItems(
        Chart("a", "\nSlotFillRatio=\"0\"\nChartFillRatio=\"101\"\nStartDegree=\"-1\"\nEndDegree=\"400\""));
    EXPECT_TRUE(SaidError(6, "SlotFillRatio \"0\" is out of range, which is 1 to 100"));
    EXPECT_TRUE(SaidError(7, "ChartFillRatio \"101\" is out of range"));
    EXPECT_TRUE(SaidWarning(8, "StartDegree \"-1\" is out of range, which is 0 to below 360"));
    EXPECT_TRUE(SaidWarning(9, "EndDegree \"400\" is out of range"));
}

TEST_F(ProfileCheckItems, SizesOfNothing) {
    CheckItems("<LineGraph IsShow=\"1\" Name=\"a\" DataFullName=\"FPS\" DataNum=\"9\"\nContentSizeH=\"0\"/>\n"
               "<Panel IsShow=\"1\" Name=\"b\"/>\n"
               "<PieChart IsShow=\"1\" Name=\"c\" DataFullName=\"FPS\" SlotNum=\"9\" ShapeSegNum=\"1\"/>");
    EXPECT_TRUE(SaidError(5, "LineGraph \"a\": ContentSizeW is 0: nothing can be seen"));
    EXPECT_TRUE(SaidError(6, "LineGraph \"a\": ContentSizeH is 0: nothing can be seen"));
    EXPECT_TRUE(SaidWarning(7, "Panel \"b\": ContentSizeW or ContentSizeH is 0"));
    EXPECT_TRUE(SaidError(8, "PieChart \"c\": ContentSizeW is 0"));
}

TEST_F(ProfileCheckItems, PanelsOutOfRange) {
    CheckItems(Panel("a", "PanelType=\"2\"\nPanelScattering=\"101\"") + "\n" +
               Panel("b", "\nPanelScattering=\"9\""));
    EXPECT_TRUE(SaidError(6, "PanelScattering \"101\" is out of range, which is 0 to 100"));
    EXPECT_TRUE(SaidNote(8, "PanelScattering has an effect on frosted glass (PanelType 2) only"));
    EXPECT_EQ(m_findings.All().size(), 2u) << Report();
}

TEST_F(ProfileCheckItems, WritingWithoutSizeOrWords) {
    CheckItems(
        "<TextBox IsShow=\"1\" Name=\"a\" FontName=\"DejaVu Sans\" Text=\"x\"/>\n"
        "<TextBox IsShow=\"1\" Name=\"b\" FontName=\"DejaVu Sans\" TextSize=\"24\"/>\n"
        "<TextBox IsShow=\"1\" Name=\"c\" FontName=\"DejaVu Sans\" TextSize=\"24\" StringFullName=\"GL\"/>\n"
        "<TextBox IsShow=\"1\" Name=\"d\" FontName=\"DejaVu Sans\" TextSize=\"24\" Text=\"x\"\n"
        "StringFullName=\"Gl\"/>\n"
        "<TextBox IsShow=\"1\" Name=\"e\" FontName=\"DejaVu Sans\" TextSize=\"14\" Text=\"x\"/>\n"
        "<Memo IsShow=\"1\" Name=\"f\" FontName=\"DejaVu Sans\" TextSize=\"24\"/>");
    EXPECT_TRUE(SaidError(5, "TextBox \"a\": TextSize is missing and counts as 0"));
    EXPECT_TRUE(SaidWarning(6, "TextBox \"b\": Text is empty"));
    EXPECT_TRUE(
        SaidWarning(9, "StringFullName \"Gl\" is none of GL, ARCH, PROFILE_NAME, PID, TID; the text stays"));
    EXPECT_TRUE(SaidNote(10, "TextBox \"e\": TextSize 14 makes 9 pixels on a screen of 720 rows"));
    EXPECT_TRUE(SaidError(11, "Memo \"f\": FileName is missing"));
    EXPECT_EQ(m_findings.All().size(), 5u) << Report();
}

TEST_F(ProfileCheckItems, NothingIsLeftBehindInTheLibrary) {
    CheckItems(Text("a"));
    EXPECT_TRUE(g_mapItemByName.empty());
    EXPECT_TRUE(g_mapItemById.empty());
}

} // namespace
