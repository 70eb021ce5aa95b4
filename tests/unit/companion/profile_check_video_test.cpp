// What the check says of the machine's video sources.
#include "config/settings/settings.h"
#include "platform/headless/test_controls.h"
#include "tests/unit/companion/profile_check_fixture.h"

namespace headless = platform::headless;
using companion::Severity;

namespace {

class ProfileCheckVideo : public ProfileCheckTest {
  protected:
    void SetUp() override {
        ProfileCheckTest::SetUp();
        headless::ClearSettings();
        g_fnProbeWowKeys();
        headless::SetSettingsNumber(c_wzVideo, u"Enable", 1);
        Set(u"Enable", 1);
        Set(u"Alpha", 0);
        headless::SetSettingsText(c_wzSource, u"FileMappingName", u"Frames");
    }
    void TearDown() override {
        headless::ClearSettings();
        ProfileCheckTest::TearDown();
    }
    void Set(const char16_t* wzName, u32 uValue) { headless::SetSettingsNumber(c_wzSource, wzName, uValue); }
    const companion::Findings& Look() { return CheckItems(Text("a")); }

    static constexpr const char16_t* c_wzVideo = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Video";
    static constexpr const char16_t* c_wzSource = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Video\\3";
};

TEST_F(ProfileCheckVideo, ASourceThatIsSetUpIsFine) {
    Look();
    EXPECT_TRUE(IsClean());
}

TEST_F(ProfileCheckVideo, WhatLeavesABoxEmptyIsAWarning) {
    headless::SetSettingsText(c_wzSource, u"FileMappingName", u"");
    Set(u"Update: F", 0);
    Look();
    EXPECT_TRUE(SaidWarning(0, "video source 3: no FileMappingName"));
    EXPECT_TRUE(SaidWarning(0, "video source 3: \"Update: F\" is 0"));
    EXPECT_TRUE(m_findings.Passes()) << "the profile itself is sound";
}

TEST_F(ProfileCheckVideo, FramesThatAreNotTakenAreAWarning) {
    Set(u"BufferSize: W", 3840);
    Set(u"BufferSize: H", 1080);
    Look();
    EXPECT_TRUE(SaidWarning(0, "frames of 3840 by 1080 are not taken"));
    Set(u"BufferSize: W", 0);
    Look();
    EXPECT_TRUE(SaidWarning(0, "frames of 0 by 1080 are not taken"));
    Set(u"BufferSize: W", 3839);
    Look();
    EXPECT_TRUE(IsClean(Severity::Warning));
}

TEST_F(ProfileCheckVideo, BarsAndHalfClearBoxesAreNoted) {
    Set(u"FrameSize: W", 800);
    Set(u"FrameSize: H", 720);
    Look();
    EXPECT_TRUE(
        SaidNote(0, "frames of 640 by 360 leave bars in the box of 800 by 720: 270 units of its height"));
    Set(u"FrameSize: W", 1480);
    Set(u"Alpha", 255);
    Look();
    EXPECT_TRUE(SaidNote(0, "200 units of its width"));
    EXPECT_TRUE(SaidNote(0, "comes out half clear"));
    Set(u"FrameSize: H", 0);
    Look();
    EXPECT_TRUE(SaidWarning(0, "its box has no size"));
}

TEST_F(ProfileCheckVideo, SourcesThatAreOffAreNobodysConcern) {
    headless::SetSettingsText(c_wzSource, u"FileMappingName", u"");
    headless::SetSettingsNumber(c_wzVideo, u"Enable", 0);
    Look();
    EXPECT_TRUE(IsClean());
    headless::SetSettingsNumber(c_wzVideo, u"Enable", 1);
    Set(u"Enable", 0);
    Look();
    EXPECT_TRUE(IsClean());
}

} // namespace
