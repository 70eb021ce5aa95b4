// Whole profiles through the library, drawn by the OpenGL flavour and by the merged one.
#include "draw/batcher_slots.h"
#include "frame/context_state.h"
#include "frame/release.h"
#include "frame/update/statistics.h"
#include "merged/draw_basic_merged.h"
#include "platform/gl_api.h"
#include "platform/glyph_rasterizer.h"
#include "platform/headless/test_controls.h"
#include "tests/gl/profile_fixture.h"

#include <algorithm>
#include <filesystem>

namespace headless = platform::headless;
namespace fs = std::filesystem;

namespace {

constexpr i64 g_iNanosecondsPerMinute = 60'000'000'000;
constexpr char c_szMerged[] = "MergedDraw = 1\n";

class MergedProfiles : public ProfileFixture {
  protected:
    /// The data folder keeps the shipped OSD_Ref.xml, which the two styles with fixed tables need.
    void SetUp() override { FrameFixture::SetUp(); }
    /// Every profile of the data folder: those of the tests and those that are shipped.
    std::vector<std::u16string> ProfileNames() const {
        std::vector<std::u16string> names;
        for (const auto& entry : fs::directory_iterator(Data("Profiles")))
            names.push_back(entry.path().filename().u16string());
        std::ranges::sort(names);
        return names;
    }
    void UseKeys(const std::string& strKeys) const { WriteData("OSD.ini", "[HostCare]\n" + strKeys); }
    /// Figures live as long as the process, so both runs begin with the same.
    static void ForgetFigures() {
        std::fill(std::begin(uFrameRing), std::end(uFrameRing), 0u);
        g_uFPS = g_uFPS_Avg = g_uFPS_Max = uFrameRingIndex = g_stFPSSamples.uMeanCount = 0;
        g_uFPS_Min = 0x7FFFFFFF;
        g_iFrameTime = 0;
        fFPSCarry = 0;
        g_stFPSSamples.listSorted.clear();
    }
    /// What the program's window shows after some frames, with the program's own picture below.
    std::vector<Picture> Show(const std::u16string& wzProfile, const std::string& strKeys) {
        const bool bMerged = strKeys.find("MergedDraw") != std::string::npos;
        UseKeys(strKeys);
        g_fnTavo_GL_Release();
        m_context.Destroy();
        headless::SetClock(m_iClock);
        ForgetFigures();
        std::vector<Picture> pictures;
        if (!Begin(true, wzProfile.c_str(), 640, 480)) return pictures;
        glClearColor(0.3f, 0.5f, 0.2f, 1);
        platform::HoldGlyphSystem(); // no frame of its own ahead of the build
        for (u32 uFrame = 0; uFrame < 100; ++uFrame) {
            glClear(GL_COLOR_BUFFER_BIT);
            Swap();
            if (uFrame % 33 == 0 || uFrame == 1) pictures.push_back(Look());
        }
        EXPECT_TRUE(g_bInitGL) << std::string(wzProfile.begin(), wzProfile.end());
        const bool bIsMerged = dynamic_cast<CDrawBasic_Merged*>(g_apDrawBasic[0]) != nullptr;
        EXPECT_EQ(bIsMerged, bMerged);
        while (glGetError() != GL_NO_ERROR) {
        }
        return pictures;
    }
    Picture Look() const { return {m_context.Width(), m_context.Height(), m_context.ReadPixels()}; }
    i64 m_iClock = 0;
};

TEST_F(MergedProfiles, EachHasTheSamePixelsInBothFlavours) {
    u32 uShown = 0;
    m_iClock = 1000 * g_iNanosecondsPerMinute;
    for (const std::u16string& wzProfile : ProfileNames()) {
        const std::string strName(wzProfile.begin(), wzProfile.end());
        const std::vector<Picture> expected = Show(wzProfile, "");
        m_iClock += g_iNanosecondsPerMinute;
        const std::vector<Picture> actual = Show(wzProfile, c_szMerged);
        m_iClock += g_iNanosecondsPerMinute;
        ASSERT_EQ(actual.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            if (actual[i].aBytes == expected[i].aBytes) continue;
            expected[i].Save("merged-profile-expected");
            actual[i].Save("merged-profile-actual");
            ADD_FAILURE() << strName << ", picture " << i;
            break;
        }
        ++uShown;
    }
    EXPECT_GE(uShown, 14u);
}

TEST_F(MergedProfiles, InsideTheOtherGuardThePixelsAreTheSameToo) {
    m_iClock = 2000 * g_iNanosecondsPerMinute;
    const std::vector<Picture> expected = Show(u"Bench", "");
    m_iClock += g_iNanosecondsPerMinute;
    const std::vector<Picture> actual = Show(u"Bench", std::string("OuterGuard = 1\n") + c_szMerged);
    ASSERT_EQ(actual.size(), expected.size());
    // The first two are of the frames over which the drawing is spread.
    for (std::size_t i = 2; i < expected.size(); ++i)
        EXPECT_TRUE(actual[i].aBytes == expected[i].aBytes) << i;
}

TEST_F(MergedProfiles, WithoutOneOfItsShadersTheOpenGLFlavourDraws) {
    WriteProfile("Own", "<Panel Name='P' IsShow='1' FrameSizeW='90' FrameSizeH='90' ContentSizeW='90' "
                        "ContentSizeH='90' PanelType='1' PanelColorA='255'/>");
    UseKeys(c_szMerged);
    fs::remove(Data("DrawMerged_GL_T.fs"));
    ASSERT_TRUE(Begin(true, u"Own"));
    ASSERT_TRUE(RunUntilBuilt());
    EXPECT_FALSE(dynamic_cast<CDrawBasic_Merged*>(g_apDrawBasic[0]));
    EXPECT_TRUE(g_apDrawBasic[0]);
}

} // namespace
