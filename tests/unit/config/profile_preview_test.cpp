// Size of a profile's preview.
#include "base/layout_style.h"
#include "profile_fixture.h"

namespace {

struct ProfilePreview : ProfileTest {
    struct Size {
        u32 uWidth, uHeight;
        bool bFixed;
        bool operator==(const Size&) const = default;
    };
    static Size Read() {
        Size st{77, 77, true};
        g_fnReadPreviewSize(st.uWidth, st.uHeight, st.bFixed);
        return st;
    }
    Size Of(const std::string& strAttributes, u32 uStyle = 2) const {
        Document(Layout(uStyle, "<Preview " + strAttributes + "/>"));
        return Read();
    }
    Size OfRatio(const std::string& strRatio) const { return Of("AspectRatio='" + strRatio + "'"); }
};

} // namespace

TEST_F(ProfilePreview, WidthAndHeightStandAsTheyAre) {
    EXPECT_EQ(Of("Width='1280' Height='720'"), (Size{1280, 720, false}));
}

TEST_F(ProfilePreview, AnAspectRatioOf21To9Gives2520By1080) {
    EXPECT_EQ(OfRatio("21:9"), (Size{2520, 1080, true}));
}

TEST_F(ProfilePreview, OtherRatiosAreCutToWholePixels) {
    EXPECT_EQ(OfRatio("16:9"), (Size{1920, 1080, true}));
    EXPECT_EQ(OfRatio("4:3"), (Size{1440, 1080, true}));
    EXPECT_EQ(OfRatio("5:4"), (Size{1350, 1080, true}));
    EXPECT_EQ(OfRatio("2.35:1"), (Size{2538, 1080, true}));
    EXPECT_EQ(OfRatio("1:7"), (Size{154, 1080, true}));
}

TEST_F(ProfilePreview, ARatioWithoutASecondPartIsTheUsualOne) {
    EXPECT_EQ(OfRatio("21"), (Size{1920, 1080, true}));
    EXPECT_EQ(OfRatio("21:"), (Size{1920, 1080, true}));
    EXPECT_EQ(OfRatio("21:0"), (Size{1920, 1080, true}));
    EXPECT_EQ(OfRatio("21:-9"), (Size{1920, 1080, true}));
    EXPECT_EQ(OfRatio("wide"), (Size{1920, 1080, true}));
}

TEST_F(ProfilePreview, ARatioRulesOverWidthAndHeight) {
    EXPECT_EQ(Of("Width='100' Height='100' AspectRatio='21:9'"), (Size{2520, 1080, true}));
}

TEST_F(ProfilePreview, ASideOf0TakesTheDesktopsRatio) {
    headless::SetDesktopSize(2560, 1600);
    EXPECT_EQ(Of(""), (Size{1728, 1080, true}));
    EXPECT_EQ(Of("Width='1280'"), (Size{1728, 1080, true}));
    EXPECT_EQ(Of("Height='720'"), (Size{1728, 1080, true}));
    EXPECT_EQ(OfRatio("0:9"), (Size{1728, 1080, true}));
    EXPECT_EQ(OfRatio("-16:9"), (Size{1728, 1080, true}));
}

TEST_F(ProfilePreview, WithoutADesktopTheSizeIs1920By1080) {
    EXPECT_EQ(Of(""), (Size{1920, 1080, false}));
    EXPECT_EQ(OfRatio("0:9"), (Size{1920, 1080, false}));
    headless::SetDesktopSize(0, 1600);
    EXPECT_EQ(Of(""), (Size{1920, 1080, false}));
    headless::SetDesktopSize(2560, 0);
    EXPECT_EQ(Of(""), (Size{1920, 1080, false}));
}

TEST_F(ProfilePreview, AnythingThatIsMissingCountsAsNoSize) {
    EXPECT_EQ(Read(), (Size{1920, 1080, false}));
    for (const char* szXml : {"<OSD", "<a/>", "<OSD/>", "<OSD><ClassicLayout/></OSD>",
                              "<OSD><ClassicLayout><Settings/></ClassicLayout></OSD>",
                              "<OSD><CustomLayout><Settings><Preview Width='9' Height='9'/></Settings>"
                              "</CustomLayout></OSD>"}) {
        Document(szXml);
        EXPECT_EQ(Read(), (Size{1920, 1080, false})) << szXml;
    }
}

TEST_F(ProfilePreview, TheActiveStyleDecidesWhichPreviewIsRead) {
    for (u32 uStyle = 0; uStyle < 3; ++uStyle)
        EXPECT_EQ(Of("Width='8' Height='9'", uStyle), (Size{8, 9, false}));
    Document("<OSD LayoutStyle='7'><ClassicLayout><Settings><Preview Width='5' Height='6'/></Settings>"
             "</ClassicLayout></OSD>");
    EXPECT_EQ(Read(), (Size{5, 6, false}));
    Document("<OSD><CustomLayout><Settings><Preview Width='3' Height='4'/></Settings></CustomLayout></OSD>");
    g_iLayoutStyleOverride = 2;
    EXPECT_EQ(Read(), (Size{3, 4, false}));
}

TEST_F(ProfilePreview, TheProfileInUseIsReadWithoutHoldingIt) {
    Document(Layout(2, "<Preview Width='8' Height='9'/>"), "Mine");
    g_fnSetProfileName(u"Mine");
    EXPECT_EQ(Read(), (Size{8, 9, false}));
    EXPECT_EQ(g_stProfile.pRoot, nullptr);
    g_fnSetProfileName(u"../Profiles/Mine");
    EXPECT_EQ(Read(), (Size{1920, 1080, false}));
}

TEST_F(ProfilePreview, AHugeRatioIsHeld) {
    EXPECT_EQ(OfRatio("99999999999999999999999999999999999999999:0.000001"), (Size{1000000, 1080, true}));
}
