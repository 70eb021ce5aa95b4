// What a profile shows at all.
#include "config/settings/settings.h"
#include "profile_fixture.h"

namespace {

struct ProfileSwitches : ProfileTest {};

} // namespace

TEST_F(ProfileSwitches, EachPartHasItsSwitch) {
    const struct {
        const char* szPart;
        u32 stProfileSwitches::*pSwitch;
    } aParts[] = {
        {"Info", &stProfileSwitches::uInfo},           {"Memo", &stProfileSwitches::uMemo},
        {"Watermark", &stProfileSwitches::uWatermark}, {"SystemInfo", &stProfileSwitches::uSystemInfo},
        {"Photo", &stProfileSwitches::uPhoto},         {"StopWatch", &stProfileSwitches::uStopWatch},
    };
    for (const auto& part : aParts) {
        ReadCustom(std::string("<") + part.szPart + " IsShow='3'/>");
        g_fnReadProfileSwitches();
        for (const auto& other : aParts)
            EXPECT_EQ(g_stProfileSwitches.*other.pSwitch, &other == &part ? 3u : 0u) << part.szPart;
    }
}

TEST_F(ProfileSwitches, EverythingIsOffWhereNothingIsSaid) {
    ReadCustom("<Info/><Memo/><Watermark/><SystemInfo/><Photo/><StopWatch/>");
    g_stSettings.bVideoEnable = g_stSettings.bGraphEnable = true;
    g_uCardNum = 9;
    g_fnReadProfileSwitches();
    const stProfileSwitches& st = g_stProfileSwitches;
    EXPECT_EQ(st.uInfo | st.uMemo | st.uWatermark | st.uSystemInfo | st.uPhoto | st.uStopWatch, 0u);
    EXPECT_FALSE(g_stSettings.bVideoEnable);
    EXPECT_FALSE(g_stSettings.bGraphEnable);
    EXPECT_EQ(g_uCardNum, 1u);
}

TEST_F(ProfileSwitches, VideoGraphsAndCardsComeFromTheSettingsStore) {
    Number(u"Video", u"Enable", 1);
    CardNum(4);
    g_fnReadProfileSwitches();
    EXPECT_TRUE(g_stSettings.bVideoEnable);
    EXPECT_FALSE(g_stSettings.bGraphEnable);
    EXPECT_EQ(g_uCardNum, 4u);
    Number(u"Graph", u"Enable", 2);
    g_fnReadProfileSwitches();
    EXPECT_TRUE(g_stSettings.bGraphEnable);
}
