// What the check says of a document as a whole: structure, names and values of attributes.
#include "companion/result.h"
#include "tests/unit/companion/profile_check_fixture.h"
#include "tools/profile/check/attributes.h"

using namespace companion;

namespace {

using ProfileCheckDocument = ProfileCheckTest;

TEST_F(ProfileCheckDocument, ACleanProfilePasses) {
    CheckItems(Text("caption") + "\n" + Number("value", "DataFullName=\"GPU_CLK#0\" FrameAnchorX=\"200\""));
    EXPECT_TRUE(IsClean());
    EXPECT_TRUE(m_findings.Passes());
}

TEST_F(ProfileCheckDocument, NoSuchProfileIsNotFound) {
    m_stOptions.strProfile = "Nobody";
    std::string strReport;
    EXPECT_EQ(CheckProfile(m_stOptions, strReport), kNotFound);
    EXPECT_NE(strReport.find("Nobody"), std::string::npos);
    m_stOptions.strProfile = "..";
    EXPECT_EQ(CheckProfile(m_stOptions, strReport), kNotFound);
}

TEST_F(ProfileCheckDocument, AProfileGoesByNameFolderOrFile) {
    WriteItems(Text("caption"));
    std::string strReport;
    for (const auto& path : {m_root / "Profiles" / "Mine", m_root / "Profiles" / "Mine" / "OSD.xml"}) {
        m_stOptions.strProfile = path.generic_string();
        EXPECT_EQ(CheckProfile(m_stOptions, strReport), kOk) << strReport;
    }
}

TEST_F(ProfileCheckDocument, AParseErrorHasItsLine) {
    Write("<OSD LayoutStyle=\"2\">\n<CustomLayout>\n</Settings>\n</OSD>\n");
    Check();
    EXPECT_TRUE(
        SaidError(2, "not well formed: the element that begins here is not closed by its own end tag"));
    Write("");
    Check();
    EXPECT_TRUE(SaidError(0, "the file is empty"));
    Write("<OSD>\n<a b=c/></OSD>");
    Check();
    EXPECT_TRUE(SaidError(2, "an attribute lacks a quote"));
    Write("<osd/>\n");
    Check();
    EXPECT_TRUE(SaidError(1, "the root element is not <OSD>"));
}

TEST_F(ProfileCheckDocument, WideTextAndForeignBytesAreRefusedOrReported) {
    Write(std::string("\xFF\xFE<\0O\0S\0D\0/\0>\0", 14));
    Check();
    EXPECT_TRUE(SaidError(0, "the file is not UTF-8 text"));
    CheckItems(Text("caf\xE9"));
    EXPECT_TRUE(SaidError(5, "no UTF-8"));
}

TEST_F(ProfileCheckDocument, TheReferenceMustOpenToo) {
    WriteItems(Text("caption"));
    std::filesystem::remove(m_root / "OSD_Ref.xml");
    Check();
    EXPECT_TRUE(SaidError(0, "cannot be opened"));
    EXPECT_EQ(m_findings.All()[0].strFile, (m_root / "OSD_Ref.xml").make_preferred().string());
    WriteFile("OSD_Ref.xml", "<OSD>\n");
    Check();
    EXPECT_TRUE(SaidError(1, "not well formed"));
}

TEST_F(ProfileCheckDocument, WidthsOfFacesArePercentages) {
    WriteItems(Text("caption"));
    WriteFile("OSD_Ref.xml",
              "<OSD><Preset>\n<Variable Name=\"Arial\" Value=\"1.1\"/>\n<Variable Value=\"110\"/>\n"
              "<Variable Name=\"Arial\" Value=\"110\"/></Preset></OSD>");
    Check();
    EXPECT_TRUE(SaidWarning(2, "<Variable> of the face \"Arial\": Value is a percentage, held to 25 to 400"));
    EXPECT_TRUE(SaidWarning(3, "<Variable> without a Name is for no face"));
    EXPECT_EQ(m_findings.All().size(), 2u) << Report();
}

TEST_F(ProfileCheckDocument, AStyleThatIsNotWrittenIsClassic) {
    Write("\n<OSD>\n</OSD>\n");
    Check();
    EXPECT_TRUE(SaidWarning(2, "LayoutStyle is missing and counts as 0 (ClassicLayout)"));
    EXPECT_TRUE(SaidError(2, "<ClassicLayout> is missing in <OSD>"));
    Write("<OSD\nLayoutStyle=\"1\"/>\n");
    Check();
    EXPECT_TRUE(SaidError(1, "<ORVINLayout> is missing in <OSD>"));
    Write("<OSD LayoutStyle=\"7\"/>\n");
    Check();
    EXPECT_TRUE(SaidError(1, "LayoutStyle \"7\" is out of range, which is 0, 1, 2"));
}

TEST_F(ProfileCheckDocument, WhatTheLoadNeedsMustBeThere) {
    Write("<OSD LayoutStyle=\"2\">\n</OSD>\n");
    Check();
    EXPECT_TRUE(SaidError(1, "<CustomLayout> is missing"));
    Write("<OSD LayoutStyle=\"2\">\n<CustomLayout/></OSD>\n");
    Check();
    EXPECT_TRUE(SaidError(2, "<Settings> is missing"));
    Write("<OSD LayoutStyle=\"2\"><CustomLayout>\n<Settings/></CustomLayout></OSD>\n");
    Check();
    EXPECT_TRUE(SaidWarning(2, "<Info> is missing in <Settings>: nothing is shown"));
    EXPECT_TRUE(m_findings.Passes());
}

TEST_F(ProfileCheckDocument, ACanvasNeedsBothSides) {
    const std::string strEnd = "/>\n<Info>" + Text("a") + "</Info></Settings></CustomLayout></OSD>";
    const std::string strBegin = "<OSD LayoutStyle=\"2\"><CustomLayout><Settings>\n<Preview ";
    Write(strBegin + "Height=\"720\"" + strEnd);
    Check();
    EXPECT_TRUE(SaidWarning(2, "Width and Height have an effect only together"));
    for (const char* sz : {"Width=\"1280\" Height=\"720\"", "Height=\"720\" AspectRatio=\"16:9\"", ""}) {
        Write(strBegin + sz + strEnd);
        Check();
        EXPECT_TRUE(IsClean()) << sz;
    }
}

TEST_F(ProfileCheckDocument, AnEmptyProfileIsAWarning) {
    CheckItems("");
    EXPECT_TRUE(SaidWarning(4, "the profile has no item: nothing is shown"));
    EXPECT_TRUE(m_findings.Passes());
}

TEST_F(ProfileCheckDocument, UnknownElementsComeWithTheNearestKnownOne) {
    CheckItems(Text("caption") + "\n<TexBox/>\n<Whatever/>");
    EXPECT_TRUE(SaidError(6, "unknown element <TexBox> in <Info>; did you mean <TextBox>?"));
    EXPECT_TRUE(SaidError(7, "unknown element <Whatever> in <Info>"));
    Write("<OSD "
          "LayoutStyle=\"2\"><CustomLayout><Settings><Info/>\n<NumBox/>\n<Prewiew/></Settings></CustomLayout>"
          "</OSD>");
    Check();
    EXPECT_TRUE(SaidError(2, "unknown element <NumBox> in <Settings>; items belong into <Info>"));
    EXPECT_TRUE(SaidError(3, "did you mean <Preview>?"));
}

TEST_F(ProfileCheckDocument, ElementsInsideItemsAreUnknown) {
    CheckItems("<Panel IsShow=\"1\" Name=\"p\" ContentSizeW=\"1\" ContentSizeH=\"1\">\n<TextBox/></Panel>");
    EXPECT_TRUE(SaidError(6, "unknown element <TextBox> in <Panel>; items belong into <Info>"));
}

TEST_F(ProfileCheckDocument, UnknownAttributesComeWithTheNearestKnownOne) {
    CheckItems(Text("caption", "\nTextSzie=\"3\"\nLineTpe=\"2\" qqqqqq=\"1\"\nTextSpacingY=\"3\""));
    EXPECT_TRUE(SaidWarning(6, "unknown attribute \"TextSzie\" of <TextBox>; did you mean \"TextSize\"?"));
    EXPECT_TRUE(SaidWarning(7, "unknown attribute \"qqqqqq\" of <TextBox>"));
    EXPECT_TRUE(SaidWarning(8, "unknown attribute \"TextSpacingY\" of <TextBox>; it belongs to <Memo>"));
    EXPECT_TRUE(m_findings.Passes());
}

TEST_F(ProfileCheckDocument, OnlyTheFirstOfAnElementIsRead) {
    Write(
        "<OSD LayoutStyle=\"2\"><CustomLayout><Settings>\n<Info/>\n<Info/></Settings></CustomLayout></OSD>");
    Check();
    EXPECT_TRUE(SaidWarning(3, "<Info> stands in line 2 already; only the first is read"));
}

TEST_F(ProfileCheckDocument, WhatOtherLayoutsReadIsANote) {
    CheckItems(Text("caption") + "\n<FPS IsShow=\"1\"/>\n<Card Anything=\"1\"/>\n<Card/>");
    EXPECT_TRUE(SaidNote(6, "<FPS> belongs to the built-in layouts"));
    EXPECT_TRUE(SaidNote(8, "<Card>"));
    EXPECT_TRUE(IsClean(Severity::Warning));
}

TEST_F(ProfileCheckDocument, ValuesThatAreNoNumbers) {
    CheckItems(
        Text("a", "\nFrameAnchorX=\"left\"\nFrameAnchorY=\"12px\"\nFrameSizeW=\" 3\"\nFrameSizeH=\"2.5\""));
    EXPECT_TRUE(SaidError(6, "FrameAnchorX \"left\" is not a number and counts as 0"));
    EXPECT_TRUE(SaidWarning(7, "FrameAnchorY \"12px\" is read only as far as \"12\""));
    EXPECT_TRUE(SaidError(8, "FrameSizeW \" 3\" is not a number and counts as 0"));
    EXPECT_TRUE(SaidWarning(9, "FrameSizeH \"2.5\" is read only as far as \"2\""));
}

TEST_F(ProfileCheckDocument, NumbersMayHaveASignAFractionAndAPower) {
    CheckItems(Text("a", "TextSpacingX=\"-0.5\" FrameAnchorX=\"+3\"") + "\n" +
               Graph("g", "DataNum=\"20\" FrameAnchorX=\"200\" MinValue=\"-.5\" MaxValue=\"1e3\""));
    EXPECT_TRUE(IsClean());
    CheckItems(Graph("g", "DataNum=\"20\" MaxValue=\"1e\""));
    EXPECT_TRUE(SaidWarning(5, "MaxValue \"1e\" is read only as far as \"1\""));
    CheckItems(Graph("g", "DataNum=\"20\" MaxValue=\"0x10\""));
    EXPECT_TRUE(SaidWarning(5, "MaxValue \"0x10\" is read only as far as \"0\""));
}

TEST_F(ProfileCheckDocument, ValuesOutOfRange) {
    CheckItems(Text("a", "\nTextColorR=\"256\"\nTextColorA=\"300\"\nFrameAnchor=\"10\"\nFrameSizeW=\"-1\""));
    EXPECT_TRUE(SaidError(6, "TextColorR \"256\" is out of range, which is 0 to 255; it counts as 0"));
    EXPECT_TRUE(SaidError(7, "TextColorA \"300\" is out of range, which is 0 to 255; it counts as 44"));
    EXPECT_TRUE(SaidError(8, "FrameAnchor \"10\" is out of range, which is -9 to 9"));
    EXPECT_TRUE(SaidError(9, "FrameSizeW \"-1\" is out of range, which is 0 to 16384"));
}

TEST_F(ProfileCheckDocument, SwitchesOtherThanOneAreOnlyWarned) {
    CheckItems("<TextBox IsShow=\"2\" Name=\"a\" FontName=\"DejaVu Sans\" TextSize=\"24\" Text=\"Fan\"/>");
    EXPECT_TRUE(SaidWarning(5, "IsShow \"2\" is out of range, which is 0, 1"));
    EXPECT_TRUE(m_findings.Passes());
}

TEST_F(ProfileCheckDocument, TextsThatAreCut) {
    const std::string strLong(256, 'x');
    CheckItems("<TextBox IsShow=\"1\" Name=\"a\" FontName=\"DejaVu Sans\" TextSize=\"1\"\nText=\"" + strLong +
               "\"/>\n" + Text(std::string(128, 'n')) + "\n" +
               Number("v", "DataFullName=\"" + std::string(64, 'd') + "\"") + "\n" +
               "<TextBox IsShow=\"1\" Name=\"f\" TextSize=\"24\" Text=\"x\" FontName=\"" +
               std::string(128, 'f') + "\"/>");
    EXPECT_TRUE(SaidError(6, "Text has 256 bytes and is cut after 255"));
    EXPECT_TRUE(SaidError(7, "Name has 128 bytes and is cut after 127"));
    EXPECT_TRUE(SaidError(8, "DataFullName has 64 bytes and is cut after 63"));
    EXPECT_TRUE(SaidError(9, "FontName has 128 letters and is cut after 127"));
}

TEST_F(ProfileCheckDocument, HiddenItemsHaveTheirSpellingCheckedOnly) {
    CheckItems(Text("caption") + "\n<Panel IsShow=\"0\" Nme=\"x\" PanelType=\"7\"/>");
    EXPECT_TRUE(SaidWarning(6, "unknown attribute \"Nme\""));
    EXPECT_TRUE(SaidError(6, "PanelType \"7\" is out of range"));
    EXPECT_EQ(m_findings.All().size(), 2u) << Report();
}

TEST_F(ProfileCheckDocument, TheReportIsOneLineAFindingAndACount) {
    WriteItems("<Panl/>\n" + Text("a", "x1x1x1x1=\"2\" FrameAnchor=\"11\""));
    std::string strReport;
    EXPECT_EQ(CheckProfile(m_stOptions, strReport), kFailed);
    const std::string strFile = (m_root / "Profiles" / "Mine" / "OSD.xml").make_preferred().string();
    EXPECT_EQ(strReport, strFile + ":5: error: unknown element <Panl> in <Info>; did you mean <Panel>?\n" +
                             strFile + ":6: warning: unknown attribute \"x1x1x1x1\" of <TextBox>\n" +
                             strFile + ":6: error: FrameAnchor \"11\" is out of range, which is -9 to 9\n" +
                             "Mine: does not pass, 2 errors, 1 warning, 0 notes\n");
}

TEST_F(ProfileCheckDocument, QuietLeavesNotesAndCountOut) {
    WriteItems(Text("caption") + "\n<FPS/>");
    std::string strReport;
    m_stOptions.bQuiet = true;
    EXPECT_EQ(CheckProfile(m_stOptions, strReport), kOk);
    EXPECT_EQ(strReport, "");
}

TEST_F(ProfileCheckDocument, JsonSaysTheSame) {
    WriteItems(Text("caption") + "\n<FPS/>");
    std::string strReport;
    m_stOptions.bJson = true;
    EXPECT_EQ(CheckProfile(m_stOptions, strReport), kOk);
    EXPECT_NE(strReport.find("\"passes\": true"), std::string::npos) << strReport;
    EXPECT_NE(strReport.find("\"notes\": 1"), std::string::npos) << strReport;
    EXPECT_NE(strReport.find("\"line\": 6"), std::string::npos) << strReport;
    EXPECT_NE(strReport.find("\"severity\": \"note\""), std::string::npos) << strReport;
    WriteItems("<Wrong\xC3/>");
    EXPECT_EQ(CheckProfile(m_stOptions, strReport), kFailed) << "bytes that are no UTF-8 make no broken JSON";
}

TEST_F(ProfileCheckDocument, AMillionFaultsAreNotAllTold) {
    std::string strItems;
    for (int i = 0; i < 5000; ++i) strItems += "<X" + std::to_string(i) + "/>\n";
    CheckItems(strItems);
    EXPECT_EQ(m_findings.All().size(), 2001u);
    EXPECT_TRUE(SaidError(0, "too much is wrong"));
}

TEST(WordDistance, CountsStepsBetweenWords) {
    EXPECT_EQ(WordDistance("", ""), 0u);
    EXPECT_EQ(WordDistance("Panel", ""), 5u);
    EXPECT_EQ(WordDistance("Panel", "panel"), 0u) << "case does not count";
    EXPECT_EQ(WordDistance("Panl", "Panel"), 1u);
    EXPECT_EQ(WordDistance("Pamel", "Panel"), 1u);
    EXPECT_EQ(WordDistance("Apnel", "Panel"), 1u) << "neighbours that change places";
    EXPECT_EQ(WordDistance("kitten", "sitting"), 3u);
}

} // namespace
