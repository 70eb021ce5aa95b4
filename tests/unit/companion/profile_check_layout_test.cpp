// What the check says of files, faces, and where things stand in the picture.
#include "base/log.h"
#include "controls/osd_manager.h"
#include "draw/creation_table.h"
#include "tests/unit/companion/profile_check_fixture.h"

using namespace companion;

namespace {

using ProfileCheckLayout = ProfileCheckTest;

std::string Memo(const std::string& strFile) {
    return "<Memo IsShow=\"1\" Name=\"m\" FontName=\"DejaVu Sans\" TextSize=\"24\" "
           "ContentSizeW=\"400\"\nFileName=\"" +
           strFile + "\"/>";
}

TEST_F(ProfileCheckLayout, AMemoNeedsItsFile) {
    CheckItems(Memo("words.txt"));
    EXPECT_TRUE(SaidError(6, "Memo \"m\": there is no file \"words.txt\" in the profile's folder"));
    WriteFile("Profiles/Mine/words.txt", "Hello\r\nworld");
    CheckItems(Memo("words.txt"));
    EXPECT_TRUE(IsClean());
}

TEST_F(ProfileCheckLayout, AMemoMustHoldTextOfBoundedSize) {
    WriteFile("Profiles/Mine/words.txt", "");
    CheckItems(Memo("words.txt"));
    EXPECT_TRUE(SaidError(6, "\"words.txt\" holds no text: the layout cannot be built"));
    WriteFile("Profiles/Mine/words.txt", std::string(256 * 1024 + 1, 'x'));
    CheckItems(Memo("words.txt"));
    EXPECT_TRUE(SaidWarning(6, "is larger than 256 KiB; the lines beyond are not shown"));
}

TEST_F(ProfileCheckLayout, AMemoOfAnotherEncodingIsAWarning) {
    WriteFile("Profiles/Mine/words.txt", "caf\xE9");
    CheckItems(Memo("words.txt"));
    EXPECT_TRUE(SaidWarning(6, "is neither UTF-8 nor UTF-16 with a mark"));
    WriteFile("Profiles/Mine/words.txt", std::string("\xFF\xFE"
                                                     "h\0i\0",
                                                     6));
    CheckItems(Memo("words.txt"));
    EXPECT_TRUE(IsClean());
}

TEST_F(ProfileCheckLayout, FilesStayInTheProfilesFolder) {
    WriteFile("secret.txt", "x");
    for (const char* sz :
         {"../../secret.txt", "..\\..\\secret.txt", "/etc/hostname", "C:\\secret.txt", "a/../../b"}) {
        CheckItems(Memo(sz));
        EXPECT_TRUE(SaidError(6, "leaves the profile's folder")) << sz;
    }
}

TEST_F(ProfileCheckLayout, AFaceThatIsNotInstalledIsToldOnce) {
    const std::string strItem =
        "<TextBox IsShow=\"1\" TextSize=\"24\" Text=\"x\" FontName=\"No Such Face At All\" ";
    CheckItems(strItem + "Name=\"a\"/>\n" + strItem + "Name=\"b\"/>");
    EXPECT_TRUE(SaidWarning(5, "the face \"No Such Face At All\" is not installed here; \""));
    EXPECT_EQ(m_findings.All().size(), 1u) << Report();
}

TEST_F(ProfileCheckLayout, AStandInOfTheSystemsOwnIsANote) {
    if (std::filesystem::path::preferred_separator != '/') GTEST_SKIP() << "fontconfig's names only";
    // The system knows a sans-serif face to take for this one.
    CheckItems("<TextBox IsShow=\"1\" TextSize=\"24\" Text=\"x\" FontName=\"sans-serif\" Name=\"a\"/>");
    EXPECT_TRUE(SaidNote(5, "the face \"sans-serif\" is not installed here; \""));
    EXPECT_TRUE(IsClean(Severity::Warning));
}

TEST_F(ProfileCheckLayout, AFontFileStandsInForAFace) {
    WriteFile("Profiles/Mine/2-No Such Face At All.fnt", "x");
    CheckItems(
        "<TextBox IsShow=\"1\" TextSize=\"24\" Text=\"x\" FontName=\"No Such Face At All\" Name=\"a\"/>");
    EXPECT_FALSE(SaidWarning(5, "not installed"));
}

TEST_F(ProfileCheckLayout, LettersThatAFaceLacks) {
    // The last letter of the private planes is in no face.
    CheckItems("<TextBox IsShow=\"1\" TextSize=\"24\" Text=\"a\xF4\x8F\xBF\xBD\" FontName=\"DejaVu Sans\" "
               "Name=\"a\"/>");
    EXPECT_TRUE(SaidWarning(5, "the face \"DejaVu Sans\" lacks U+10FFFD"));
    WriteFile("Profiles/Mine/words.txt", "fine \xF4\x8F\xBF\xBD");
    CheckItems(Memo("words.txt"));
    EXPECT_TRUE(SaidWarning(5, "lacks U+10FFFD"));
}

TEST_F(ProfileCheckLayout, WhatLiesOutsideThePictureAtEverySizeIsAnError) {
    CheckItems(Panel("far", "FrameAnchorX=\"3000\"") + "\n" + Text("up", "FrameAnchorY=\"-50\""));
    EXPECT_TRUE(SaidError(
        5, "Panel \"far\" lies outside the picture at 1280x720, 1920x1080, 3840x2160, 2560x1080, 3440x1440"));
    EXPECT_TRUE(SaidError(6, "TextBox \"up\" lies outside the picture at 1280x720"));
}

TEST_F(ProfileCheckLayout, WhatLiesOutsideAtSomeSizesIsAWarning) {
    // 1920 wide at 16:9, 2560 and 2580 at the wide ones.
    CheckItems(Panel("wide", "FrameAnchorX=\"2000\""));
    EXPECT_TRUE(SaidWarning(5, "Panel \"wide\" lies outside the picture at 1280x720, 1920x1080, 3840x2160"));
    EXPECT_FALSE(SaidWarning(5, "2560x1080"));
}

TEST_F(ProfileCheckLayout, AProfilesOwnCanvasCounts) {
    // 3000 by 500: the panel is inside there alone, and writing of 8 is large.
    Write("<OSD LayoutStyle=\"2\"><CustomLayout><Settings><Preview Width=\"3000\" Height=\"500\"/><Info>\n" +
          Panel("far", "FrameAnchorX=\"2800\"") +
          "\n<TextBox IsShow=\"1\" Name=\"t\" FontName=\"DejaVu Sans\" TextSize=\"8\" Text=\"x\"/>\n" +
          Panel("gone", "FrameAnchorY=\"501\"") + "</Info></Settings></CustomLayout></OSD>");
    Check();
    EXPECT_TRUE(SaidWarning(2, "Panel \"far\" lies outside the picture at 1280x720"));
    EXPECT_FALSE(SaidWarning(2, "3000x500"));
    EXPECT_TRUE(SaidError(4, "3440x1440, 3000x500")) << "outside at every size";
    EXPECT_EQ(m_findings.All().size(), 2u) << Report();
}

TEST_F(ProfileCheckLayout, WhatReachesOutIsAWarning) {
    CheckItems(Panel("edge", "FrameAnchorX=\"1900\"") + "\n" +
               Graph("low", "DataNum=\"9\" FrameAnchorY=\"1050\"") + "\n" +
               Chart("left", "ShapeSegNum=\"3\" FrameAnchorX=\"-20\""));
    EXPECT_TRUE(
        SaidWarning(5, "Panel \"edge\" reaches out of the picture at 1280x720, 1920x1080, 3840x2160"));
    EXPECT_TRUE(SaidWarning(6, "LineGraph \"low\" reaches out of the picture"));
    EXPECT_TRUE(SaidWarning(7, "PieChart \"left\" reaches out of the picture"));
}

TEST_F(ProfileCheckLayout, NumbersAreMeasuredWithAllTheirDigits) {
    // Four digits of 48 are wider than 60; two would not be.
    CheckItems(
        "<NumBox IsShow=\"1\" Name=\"v\" FontName=\"DejaVu Sans\" TextSize=\"48\" DataFullName=\"GPU_CLK#0\" "
        "FrameAnchor=\"3\" FrameAnchorX=\"60\"/>\n"
        "<NumBox IsShow=\"1\" Name=\"w\" FontName=\"DejaVu Sans\" TextSize=\"48\" DataFullName=\"GPU_CLK#0\" "
        "FrameAnchor=\"3\" ContentAnchor=\"3\" FrameAnchorX=\"60\" FrameAnchorY=\"60\"/>");
    EXPECT_TRUE(SaidWarning(5, "NumBox \"v\" reaches out of the picture"));
    EXPECT_FALSE(SaidWarning(6, "NumBox \"w\"")) << "it grows to the left";
}

TEST_F(ProfileCheckLayout, UnseenPanelsMayLieAnywhere) {
    CheckItems(Panel("a", "FrameAnchorX=\"3000\" PanelType=\"0\"") + "\n" +
               Panel("b", "FrameAnchorX=\"3000\" PanelColorA=\"0\"") + "\n" + Text("seen"));
    EXPECT_TRUE(IsClean());
}

TEST_F(ProfileCheckLayout, ItemsGoWithTheirOwners) {
    CheckItems(Panel("own", "FrameSizeW=\"100\" FrameSizeH=\"50\" FrameAnchor=\"3\" FrameAnchorX=\"10\"") +
               "\n" + Panel("in@own", "FrameAnchorX=\"5\"") + "\n" +
               Panel("out@own", "FrameAnchorX=\"120\""));
    EXPECT_TRUE(SaidWarning(7, "Panel \"out@own\" lies outside the picture") ||
                SaidError(7, "Panel \"out@own\" lies outside the picture"));
    EXPECT_FALSE(SaidWarning(6, "lies outside"));
}

TEST_F(ProfileCheckLayout, AWindowThatCutsItsText) {
    CheckItems(Text("a", "\nContentSizeW=\"10\" ContentSizeH=\"30\""));
    EXPECT_TRUE(SaidWarning(6, "wide and is cut at ContentSizeW 10"));
    CheckItems(Text("a", "\nContentSizeW=\"200\" ContentSizeH=\"30\""));
    EXPECT_FALSE(SaidWarning(6, "is cut"));
}

TEST_F(ProfileCheckLayout, MoreThanALayoutHolds) {
    std::string strItems;
    for (int i = 0; i < 513; ++i) strItems += Chart("c" + std::to_string(i), "ShapeSegNum=\"3\"");
    for (int i = 0; i < 682; ++i) strItems += Text("t" + std::to_string(i));
    CheckItems(strItems);
    EXPECT_TRUE(SaidError(4, "the layout has 513 charts of which 512 can be"));
    EXPECT_TRUE(SaidError(4, "the layout has 682 texts of which 681 can be"));
    EXPECT_TRUE(
        SaidError(4, "the layout has 1195 panels, a frame for each item counted in, of which 1126 can be"));
}

TEST_F(ProfileCheckLayout, TheShippedProfilesPass) {
    m_stOptions.strDataFolder = std::string(ORVIN_SOURCE_DIR) + "/data";
    for (const auto& entry : std::filesystem::directory_iterator(m_stOptions.strDataFolder + "/Profiles")) {
        m_stOptions.strProfile = entry.path().filename().generic_string();
        Check();
        EXPECT_TRUE(m_findings.Passes()) << Report();
    }
}

TEST_F(ProfileCheckLayout, NothingIsLeftBehindInTheLibrary) {
    CheckItems(Text("a"));
    EXPECT_EQ(g_pOSDManager, nullptr);
    EXPECT_EQ(g_stCreationTable.m_fnCreateFont, nullptr);
    EXPECT_EQ(g_fnLogSink, nullptr);
}

} // namespace
