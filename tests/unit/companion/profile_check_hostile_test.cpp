// Profiles that mean harm: the check ends, and says something.
#include "tests/unit/companion/profile_check_fixture.h"

using namespace companion;

namespace {

using ProfileCheckHostile = ProfileCheckTest;

TEST_F(ProfileCheckHostile, ControlBytesOfNamesAreShownAndNotSent) {
    Findings findings;
    findings.Add(Severity::Error, 3, "the file \x1B[31mred.png\nis missing");
    const std::string strText = FindingsAsText("Mi\x1Bne", findings, false);
    EXPECT_EQ(strText.find('\x1B'), std::string::npos);
    EXPECT_NE(strText.find("error: the file \\x1B[31mred.png\\x0Ais missing\n"), std::string::npos);
    EXPECT_NE(strText.find("\nMi\\x1Bne: does not pass"), std::string::npos);
}

TEST_F(ProfileCheckHostile, DeepDocuments) {
    std::string strBegin, strEnd;
    for (int i = 0; i < 100000; ++i) strBegin += "<a>", strEnd += "</a>";
    Write("<OSD LayoutStyle=\"2\">" + strBegin + strEnd + "</OSD>");
    Check();
    EXPECT_FALSE(m_findings.Passes());
}

TEST_F(ProfileCheckHostile, TruncatedDocuments) {
    WriteItems(Panel("a") + Text("b") + Graph("c"));
    std::ifstream file(m_root / "Profiles" / "Mine" / "OSD.xml", std::ios::binary);
    const std::string strWhole{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    file.close();
    for (std::size_t u = 0; u + 2 < strWhole.size(); u += 7) {
        Write(strWhole.substr(0, u));
        Check();
        EXPECT_FALSE(m_findings.Passes()) << u;
    }
}

TEST_F(ProfileCheckHostile, LongNamesAndNumbers) {
    const std::string strLong(100000, '9');
    CheckItems("<Panel IsShow=\"" + strLong + "\" Name=\"" + strLong + "\" PanelColorR=\"" + strLong + "\" " +
               strLong + "=\"1\"/><" + std::string(100000, 'x') + "/>");
    EXPECT_FALSE(m_findings.Passes());
    CheckItems("<Panel IsShow=\"1\" Name=\"a\" a" + strLong + "=\"1\" ContentSizeW=\"" + strLong + "\"/>");
    EXPECT_TRUE(SaidError(5, "ContentSizeW"));
}

TEST_F(ProfileCheckHostile, ManyItemsWithoutOwners) {
    std::string strItems;
    for (int i = 0; i < 6000; ++i) strItems += Panel("p" + std::to_string(i) + "@nobody") + "\n";
    CheckItems(strItems);
    EXPECT_EQ(m_findings.All().size(), 2001u);
}

TEST_F(ProfileCheckHostile, ManyItemsOfOneName) {
    std::string strItems;
    for (int i = 0; i < 6000; ++i) strItems += Text("same");
    CheckItems(strItems);
    EXPECT_TRUE(SaidError(5, "the name is taken by the TextBox in line 5"));
}

TEST_F(ProfileCheckHostile, ExtremeGeometry) {
    CheckItems(
        Graph("a",
              "DataNum=\"4294967295\" DataStartIdx=\"4294967295\" MinValue=\"-1e300\" MaxValue=\"1e300\"") +
        Chart("b", "SlotNum=\"4294967295\" ShapeSegNum=\"4294967295\"") +
        Panel("c", "FrameSizeW=\"4294967295\" FrameAnchorX=\"-2147483648\" FrameAnchor=\"-2147483648\"") +
        Text("d", "TextSpacingX=\"1e38\""));
    EXPECT_FALSE(m_findings.Passes());
}

TEST_F(ProfileCheckHostile, NamesOfProfilesThatLeaveTheFolder) {
    WriteItems(Text("a"));
    std::string strReport;
    for (const char* sz : {"", ".", "..", "Mine/..", "../Mine", "C:", "a\nb", "Mine\\.."}) {
        m_stOptions.strProfile = sz;
        EXPECT_NE(CheckProfile(m_stOptions, strReport), 0) << sz;
    }
}

} // namespace
