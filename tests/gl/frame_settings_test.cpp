// Settings in force from the first frame that is drawn, and read again with each build.
#include "config/settings/intervals.h"
#include "config/settings/settings.h"
#include "frame/limiter.h"
#include "frame/release.h"
#include "frame/update/statistics.h"
#include "platform/headless/test_controls.h"
#include "tests/gl/frame_fixture.h"

#include <filesystem>
#include <fstream>

namespace headless = platform::headless;

namespace {

struct FrameSettings : FrameFixture {
    void TearDown() override {
        g_stSettings.bDebugTime = false;
        FrameFixture::TearDown();
    }
    void Ini(const char* szText) {
        std::ofstream(std::filesystem::path(m_strFolder) / "ZARN/Orvin Deck/ORVIN-OSD/Data/OSD.ini")
            << szText;
    }
    static void Set(const char16_t* wzSubkey, const char16_t* wzName, u32 uValue) {
        const std::u16string wstrRoot = u"SOFTWARE\\Zarn\\ORVIN-OSD\\";
        headless::SetSettingsNumber((wstrRoot + wzSubkey).c_str(), wzName, uValue);
    }
};

} // namespace

TEST_F(FrameSettings, RuleFromTheFirstFrame) {
    Ini("[Info]\nDebugTime=1\n");
    Set(u"Information Option", u"UpdateFrameDataInterval", 250);
    Set(u"Information Option", u"UpdateStatisticInterval", 5);
    Set(u"FPSLimiter", u"FPSTarget", 50);
    Set(u"Camera", u"CapMode", 1);
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    EXPECT_TRUE(g_stSettings.bDebugTime);
    EXPECT_EQ(fFPSInterval, 0.25f);
    EXPECT_EQ(uFPSRingSize, 5u);
    EXPECT_EQ(fDataInterval, 0.01f);
    EXPECT_EQ(Frametime_Target_Sec, 1.0f / 50.0f);
    EXPECT_EQ(g_uCapMode, 1u);
    EXPECT_EQ(headless::OpenSettingsKeys(), 0u);
}

TEST_F(FrameSettings, AreReadAgainWithEachBuild) {
    Ini("[Info]\nDebugTime=1\n");
    Set(u"Information Option", u"UpdateFrameDataInterval", 250);
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    headless::ClearSettings();
    Ini("");
    g_fnTavo_GL_Release();
    EXPECT_EQ(fFPSInterval, 0.25f);
    ASSERT_TRUE(RunUntilBuilt());
    EXPECT_FALSE(g_stSettings.bDebugTime);
    EXPECT_EQ(uFPSIntervalMs, 1000u);
    EXPECT_EQ(uDataIntervalMs, 1000u);
    EXPECT_EQ(fFPSInterval, 1.0f);
    EXPECT_EQ(uFPSRingSize, 2u);
    EXPECT_EQ(FPS_Target, 60u);
    EXPECT_EQ(EnableFPSLimiter, 0u);
}
