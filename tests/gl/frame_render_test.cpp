// Whole frames in a real context: build, draw, resize, release, and every way of not drawing.
#include "base/host_care.h"
#include "batch/draw_basic.h"
#include "capture/shot_request.h"
#include "config/settings/settings.h"
#include "controls/osd_manager.h"
#include "draw/backdrop.h"
#include "draw/batcher_slots.h"
#include "draw/canvas.h"
#include "draw/creation_table.h"
#include "draw/first_draws.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/parts.h"
#include "frame/release.h"
#include "frame/update/statistics.h"
#include "frame/update/status_items.h"
#include "platform/gl_api.h"
#include "platform/glyph_rasterizer.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/api_code.h"
#include "tests/gl/frame_fixture.h"
#include "tests/support/gl_recorder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

using gl_recorder::Call;
namespace headless = platform::headless;

class FrameRender : public FrameFixture {
  protected:
    static void Command(u8 stSharedCommand::*pbFlag) {
        stProcessRecord& stRecord = platform::SharedSegment()->CommandTable[0];
        stRecord.Command.*pbFlag = 1;
        stRecord.bChanged = 1;
    }
    std::vector<u8> Pixels() const { return m_context.ReadPixels(); }
    static void Clear() {
        glClearColor(0.2f, 0.4f, 0.6f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
};

TEST_F(FrameRender, BuildsAndDrawsInTheFirstFrame) {
    for (bool bCore : {false, true}) {
        ASSERT_TRUE(Begin(bCore));
        Clear();
        const std::vector<u8> vecBare = Pixels();
        EXPECT_EQ(Swap(), 1);
        EXPECT_TRUE(g_bInitGL);
        EXPECT_EQ(g_uApiCode, 1024u);
        EXPECT_EQ(platform::SharedSegment()->StatusTable[0].Command.uApiCode, 1024u);
        EXPECT_NE(Pixels(), vecBare) << "panels stand on the picture";
        g_fnTavo_GL_Release();
    }
}

TEST_F(FrameRender, WithTheOuterGuardTheFontsAreOpenedOnAFrameAheadOfTheBuild) {
    ASSERT_TRUE(Begin(true));
    std::filesystem::path file =
        std::filesystem::path(m_strFolder) / "ZARN/Orvin Deck/ORVIN-OSD/Data/OSD.ini";
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << "[HostCare]\nOuterGuard = 1\n";
    Clear();
    const std::vector<u8> vecBare = Pixels();
    Swap();
    EXPECT_FALSE(g_bInitGL);
    EXPECT_EQ(Pixels(), vecBare);
    EXPECT_FALSE(platform::HoldGlyphSystem()) << "open already";
    Swap();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(Pixels(), vecBare) << "drawing begins behind the build";
    ASSERT_TRUE(RunUntilBuilt());
    EXPECT_NE(Pixels(), vecBare);
    g_fnTavo_GL_Release();
    g_stHostCare = stHostCare();
}

TEST_F(FrameRender, AProgramThatDrawsRarelyDoesNotWaitForThePicture) {
    SetCare({"OuterGuard"});
    ASSERT_TRUE(Begin(true));
    for (int i = 0; i < 3; ++i) {
        headless::AdvanceClock(200'000'000);
        Swap();
    }
    EXPECT_TRUE(g_fnAreDrawsSpread())
        << "files, build, and the first frame that shows how far they lie apart";
    Clear();
    Swap();
    EXPECT_FALSE(g_fnAreDrawsSpread());
    const std::vector<u8> vecFourth = Pixels();
    for (int i = 0; i < 5; ++i) {
        Clear();
        g_fnTavo_GL_PrewglSwapBuffers(m_context.Surface());
    }
    EXPECT_EQ(Pixels(), vecFourth);
    g_fnTavo_GL_Release();
    g_stHostCare = stHostCare();
}

TEST_F(FrameRender, AProfileWithFontFilesOpensNoFontsAheadOfTheBuild) {
    SetCare({"OuterGuard"});
    ASSERT_TRUE(Begin(true));
    std::ofstream(std::filesystem::path(m_strFolder) /
                  "ZARN/Orvin Deck/ORVIN-OSD/Data/Profiles/Bench/Some face.fnt")
        << "no font file";
    Swap();
    EXPECT_FALSE(g_bInitGL);
    EXPECT_TRUE(platform::HoldGlyphSystem()) << "nobody has opened it";
    Swap();
    EXPECT_TRUE(g_bInitGL);
    g_fnTavo_GL_Release();
    g_stHostCare = stHostCare();
}

TEST_F(FrameRender, BehindABuildWithTheOuterGuardEachFrameDrawsOneKindMoreUntilThePictureStands) {
    for (const std::initializer_list<const char*> listKeys :
         {std::initializer_list<const char*>{"OuterGuard"}, {"OuterGuard", "MergedDraw"}}) {
        UseShaders(true);
        SetCare(listKeys);
        ASSERT_TRUE(Begin(true, u"Bench"));
        // Files, build, copy of the frame: nothing to be seen. Then frosted panels, flat ones, and text.
        const std::size_t uHidden = 3, uFrames = 10;
        std::vector<std::vector<u8>> listPictures;
        for (std::size_t i = 0; i < uFrames; ++i) {
            Clear();
            Swap();
            listPictures.push_back(Pixels());
        }
        EXPECT_FALSE(g_fnAreDrawsSpread());
        for (std::size_t i = 1; i < uHidden; ++i) EXPECT_EQ(listPictures[i], listPictures[0]);
        for (std::size_t i = uHidden; i < uHidden + 3; ++i)
            EXPECT_NE(listPictures[i], listPictures[i - 1]) << i;
        EXPECT_EQ(listPictures.back(), listPictures[uFrames - 2]);
        g_fnTavo_GL_Release();
        g_stHostCare = stHostCare();
    }
}

TEST_F(FrameRender, DisabledMakesExactlyOneGLCallAndReadsNoClock) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    platform::SharedSegment()->bGlobalEnable = 0;
    const u64 uReads = headless::ClockReads();
    const std::vector<std::string> vecCalls = RecordSwap();
    ASSERT_EQ(vecCalls.size(), 1u);
    EXPECT_EQ(vecCalls[0], Call("glGetError"));
    EXPECT_EQ(headless::ClockReads(), uReads);
}

TEST_F(FrameRender, BuiltFrameReadsTheClockOnce) {
    ASSERT_TRUE(Begin(false));
    ASSERT_TRUE(RunUntilBuilt());
    Swap();
    for (int i = 0; i < 3; ++i) {
        const u64 uBefore = platform::headless::ClockReads();
        Swap();
        EXPECT_EQ(platform::headless::ClockReads(), uBefore + 1);
    }
}

TEST_F(FrameRender, FiguresOfAHostAtAKnownPaceFollowFromItsOwnStamps) {
    platform::SharedSegment()->bEnableQueryFrameTime = 1;
    ASSERT_TRUE(Begin(false, u"Boxes8", 320, 240));
    ASSERT_TRUE(RunUntilBuilt());
    for (const i64 iStep : {16'666'667ll, 33'333'334ll, 8'333'334ll}) {
        i64 iNow = 0;
        std::vector<i64> aStamps;
        while (iNow < 4'000'000'000ll) {
            platform::headless::AdvanceClock(iStep - 16'666'667ll); // Swap adds the rest
            Swap();
            aStamps.push_back(iNow += iStep);
        }
        const auto uLastSecond =
            std::count_if(aStamps.begin(), aStamps.end(), [&](i64 i) { return i > iNow - 1'000'000'000ll; });
        EXPECT_NEAR(g_uFPS, static_cast<f64>(uLastSecond), 1.0) << iStep;
        EXPECT_NEAR(g_iFrameTime, static_cast<f64>(iStep) / 10'000, 1.0) << iStep;
        EXPECT_GE(g_uFPS_Max, g_uFPS);
        EXPECT_LE(g_uFPS_Min, g_uFPS);
    }
    EXPECT_GE(g_uFPS_Max, 119u); // of the process, so of all tests before this one
}

TEST_F(FrameRender, TurningItOnAgainResumesWithoutARebuild) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    const CDrawBasic_Base* pBatcher = g_pDrawBasic;
    platform::SharedSegment()->bGlobalEnable = 0;
    Swap();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(g_pDrawBasic, pBatcher);
    platform::SharedSegment()->bGlobalEnable = 1;
    const std::vector<std::string> vecCalls = RecordSwap();
    EXPECT_EQ(g_pDrawBasic, pBatcher);
    EXPECT_EQ(CountCalls(vecCalls, "glCreateProgram"), 0u);
    EXPECT_GT(CountCalls(vecCalls, "glDraw"), 0u);
}

TEST_F(FrameRender, ProcessOwnedByD3DMakesNoOverlayCall) {
    char aBlock[256] = "D3D";
    headless::SeedMapping("[RV5-OSD][PID:4242]", aBlock, sizeof aBlock);
    ASSERT_TRUE(Begin(true));
    const std::vector<std::string> vecCalls = RecordSwap();
    ASSERT_EQ(vecCalls.size(), 1u);
    EXPECT_EQ(vecCalls[0], Call("glGetError")) << "the drain after the swap";
}

TEST_F(FrameRender, ReleaseCommandRebuildsAndDrawsInTheSameSwap) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    Command(&stSharedCommand::bRelease);
    const std::vector<std::string> vecCalls = RecordSwap();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(g_uApiCode, 1024u);
    EXPECT_GT(CountCalls(vecCalls, "glDeleteProgram"), 0u);
    Clear();
    const std::vector<u8> vecBare = Pixels();
    Swap();
    EXPECT_NE(Pixels(), vecBare);
}

TEST_F(FrameRender, ReleaseLeavesNoObjectAndNothingPublished) {
    ASSERT_TRUE(Begin(true, u"Frosted20"));
    ASSERT_TRUE(RunUntilBuilt());
    Swap();
    ASSERT_NE(g_uCopyTexture, 0u);
    const GLuint uTexture = g_uCopyTexture;
    g_fnTavo_GL_Release();
    EXPECT_EQ(glIsTexture(uTexture), GL_FALSE);
    for (GLuint u = 1; u < 2000; ++u) {
        EXPECT_EQ(glIsBuffer(u), GL_FALSE) << u;
        EXPECT_EQ(glIsProgram(u), GL_FALSE) << u;
        EXPECT_EQ(glIsShader(u), GL_FALSE) << u;
    }
    EXPECT_EQ(g_uCopyTexture, 0u);
    EXPECT_EQ(g_pDrawBasic, nullptr);
    EXPECT_EQ(g_pOSDManager, nullptr);
    EXPECT_EQ(g_ppStylePanel, nullptr);
    EXPECT_EQ(g_pFrameSamples, nullptr);
    EXPECT_FALSE(g_bInitGLEW);
    EXPECT_EQ(g_hDC, nullptr);
}

TEST_F(FrameRender, ReleaseWithoutACurrentContextMakesNoDeletion) {
    ASSERT_TRUE(Begin(true, u"Frosted20"));
    ASSERT_TRUE(RunUntilBuilt());
    Swap();
    gl_recorder::Install();
    m_context.MakeNoneCurrent();
    headless::SetCurrentContext(nullptr);
    gl_recorder::Start();
    g_fnTavo_GL_Release();
    const std::vector<std::string> vecCalls = gl_recorder::Stop();
    EXPECT_EQ(CountCalls(vecCalls, "glDelete"), 0u);
    EXPECT_FALSE(g_bInitGL);
    headless::UseRealSurface();
}

TEST_F(FrameRender, ChangedDeviceContextCostsOneUndrawnFrameThenAFullRebuild) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(m_context.ReplaceSurface(320, 200));
    const std::vector<std::string> vecCalls = RecordSwap();
    EXPECT_EQ(CountCalls(vecCalls, "glDraw"), 0u);
    EXPECT_GT(CountCalls(vecCalls, "glDeleteProgram"), 0u)
        << "released while the new device context is current";
    EXPECT_FALSE(g_bInitGL);
    Swap();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(g_hDC, m_context.Surface());
    EXPECT_EQ(g_uWidth, 320u);
    EXPECT_EQ(g_uHeight, 200u);
}

TEST_F(FrameRender, ResizedWindowIsTakenWithinAFifthOfASecondAheadOfTheUpdate) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    Swap();
    EXPECT_FALSE(g_bNeedOnResize);
    headless::SetClientSize(500, 250);
    int iFrames = 0;
    while (g_uWidth != 500 && iFrames < 100) {
        Swap();
        ++iFrames;
    }
    EXPECT_LE(iFrames, 13) << "frames of a sixtieth of a second";
    EXPECT_EQ(g_uHeight, 250u);
    EXPECT_EQ(g_uCanvasW, 2160u);
    EXPECT_FALSE(g_bNeedOnResize) << "the same frame ran the resize step";
}

TEST_F(FrameRender, SizeIsAskedAtMostFiveTimesASecond) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    const u32 uBefore = headless::ClientSizeCalls();
    for (int i = 0; i < 600; ++i) Swap();
    EXPECT_LE(headless::ClientSizeCalls() - uBefore, 50u) << "in ten seconds";
    EXPECT_GE(headless::ClientSizeCalls() - uBefore, 40u);
}

TEST_F(FrameRender, FiveFailuresOfTheEntryPointsEndTheTries) {
    ASSERT_TRUE(Begin(true));
    headless::SetGlewInitFails(true);
    const u32 uBefore = headless::GlewInitCalls();
    for (u32 u = 1; u <= 8; ++u) {
        EXPECT_EQ(Swap(), 1);
        EXPECT_EQ(g_iInitFailCount, std::min(u, 5u));
    }
    EXPECT_EQ(headless::GlewInitCalls() - uBefore, 5u);
    headless::SetGlewInitFails(false);
    Swap();
    EXPECT_FALSE(g_bInitGL) << "given up for the life of the process";
}

static std::vector<std::pair<GLuint, const GLfloat*>> s_vecVectors;

TEST_F(FrameRender, AMissingEntryPointForSeveralVectorsIsServedByTheOneForASingleVector) {
    headless::SetAfterGlewInit([] {
        glProgramLocalParameters4fvEXT = nullptr;
        glProgramLocalParameter4fvARB = [](GLenum, GLuint uIndex, const GLfloat* pValues) {
            s_vecVectors.emplace_back(uIndex, pValues);
        };
    });
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(glProgramLocalParameters4fvEXT);
    const GLfloat afValues[12] = {};
    s_vecVectors.clear();
    glProgramLocalParameters4fvEXT(GL_VERTEX_PROGRAM_ARB, 7, 3, afValues);
    const std::vector<std::pair<GLuint, const GLfloat*>> vecExpected = {
        {7, afValues}, {8, afValues + 4}, {9, afValues + 8}};
    EXPECT_EQ(s_vecVectors, vecExpected);
}

TEST_F(FrameRender, MissingShadersAreRetriedEachFrameAndLeaveTheStateAsItStands) {
    UseShaders(false);
    ASSERT_TRUE(Begin(false));
    glEnable(GL_DEPTH_TEST);
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(Swap(), 1);
        EXPECT_FALSE(g_bInitGL);
        EXPECT_EQ(g_iInitFailCount, 0u);
        GLint iDepth = 0;
        glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &iDepth);
        EXPECT_EQ(iDepth, i) << "each retry stacks one more level";
        EXPECT_EQ(glIsEnabled(GL_DEPTH_TEST), GL_FALSE);
    }
    EXPECT_TRUE(g_bPipelineIdle);
}

TEST_F(FrameRender, FailedBuildsKeepNothing) {
    UseShaders(false);
    ASSERT_TRUE(Begin(true));
    for (int i = 0; i < 50; ++i) Swap();
    EXPECT_EQ(g_apOSDManager[0], nullptr);
    EXPECT_EQ(g_apDrawBasic[0], nullptr);
    UseShaders(true);
    Swap();
    EXPECT_TRUE(g_bInitGL) << "the next frame succeeds once the files are there";
}

TEST_F(FrameRender, RetriesWithoutShadersMakeNoFontsAgain) {
    UseShaders(false);
    ASSERT_TRUE(Begin(true));
    Swap();
    gl_recorder::Start();
    for (int i = 0; i < 3; ++i) Swap();
    for (const std::string& strCall : gl_recorder::Stop())
        EXPECT_FALSE(strCall.starts_with("glGenTextures")) << strCall;
    UseShaders(true);
    gl_recorder::Start();
    Swap();
    const std::vector<std::string> vecCalls = gl_recorder::Stop();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_TRUE(std::any_of(vecCalls.begin(), vecCalls.end(),
                            [](const std::string& str) { return str.starts_with("glGenTextures"); }));
}

namespace {
class ThrowingBatcher : public CDrawBasic_Base {
  public:
    void m_fnRender() override { throw 7; }
};
} // namespace

TEST_F(FrameRender, ExceptionInTheDrawingNeitherUnwindsNorKeepsTheState) {
    ASSERT_TRUE(Begin(false));
    ASSERT_TRUE(RunUntilBuilt());
    CDrawBasic_Base* pBatcher = g_apDrawBasic[0];
    ThrowingBatcher throwing;
    g_apDrawBasic[0] = &throwing;
    glEnable(GL_DEPTH_TEST);
    EXPECT_EQ(Swap(), 1);
    EXPECT_EQ(glIsEnabled(GL_DEPTH_TEST), GL_TRUE);
    EXPECT_TRUE(g_bPipelineIdle);
    GLint iDepth = -1;
    glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &iDepth);
    EXPECT_EQ(iDepth, 0);
    g_apDrawBasic[0] = pBatcher;
    Swap();
}

TEST_F(FrameRender, BackdropIsCopiedOnceAFrameInThisOrder) {
    ASSERT_TRUE(Begin(true, u"Frosted20"));
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(g_bCaptureBackdrop);
    const std::vector<std::string> vecCalls = RecordSwap();
    const std::size_t uCopy =
        FindCall(vecCalls, Call("glCopyTexImage2D", GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, 640, 480, 0));
    ASSERT_NE(uCopy, std::string::npos);
    ASSERT_GE(uCopy, 1u);
    ASSERT_LT(uCopy + 6, vecCalls.size());
    EXPECT_EQ(vecCalls[uCopy - 1], Call("glBindTexture", GL_TEXTURE_2D, g_uCopyTexture));
    EXPECT_EQ(vecCalls[uCopy + 1], Call("glTexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR));
    const GLenum aeWraps[] = {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T, GL_TEXTURE_WRAP_R};
    for (std::size_t u = 0; u < 3; ++u)
        EXPECT_EQ(vecCalls[uCopy + 2 + u],
                  Call("glTexParameteri", GL_TEXTURE_2D, aeWraps[u], GL_CLAMP_TO_BORDER));
    EXPECT_EQ(vecCalls[uCopy + 5],
              Call("glTexParameterfv", GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, vecCalls.data()));
    EXPECT_EQ(vecCalls[uCopy + 6], Call("glBindTexture", GL_TEXTURE_2D, 0));
    EXPECT_EQ(CountCalls(vecCalls, "glCopyTexImage2D"), 1u);
}

TEST_F(FrameRender, UnbindsAheadOfTheRestore) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    const std::vector<std::string> vecCalls = RecordSwap();
    const std::size_t uPop = FindCall(vecCalls, Call("glPopAttrib"));
    ASSERT_NE(uPop, std::string::npos);
    ASSERT_GE(uPop, 6u);
    EXPECT_EQ(vecCalls[uPop - 6], Call("glActiveTexture", GL_TEXTURE0));
    EXPECT_EQ(vecCalls[uPop - 5], Call("glBindTexture", GL_TEXTURE_2D, 0));
    EXPECT_EQ(vecCalls[uPop - 4], Call("glBindBuffer", GL_ARRAY_BUFFER, 0));
    EXPECT_EQ(vecCalls[uPop - 3], Call("glBindBuffer", GL_ELEMENT_ARRAY_BUFFER, 0));
    EXPECT_EQ(vecCalls[uPop - 2], Call("glBindBufferARB", GL_ARRAY_BUFFER, 0));
    EXPECT_EQ(vecCalls[uPop - 1], Call("glBindBufferARB", GL_ELEMENT_ARRAY_BUFFER, 0));
    EXPECT_EQ(vecCalls.back(), Call("glGetError"));
}

static std::vector<u8> g_vecShot;
static platform::headless::EglContext* g_pShotContext = nullptr;
static void TakeShot() { g_vecShot = g_pShotContext->ReadPixels(); }

TEST_F(FrameRender, ScreenshotOfModeOneShowsNoOverlayAndOfModeTwoShowsIt) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    g_pShotContext = &m_context;
    g_stParts.m_fnSaveScreenshot = TakeShot;
    Clear();
    const std::vector<u8> vecBare = Pixels();
    g_uCapMode = 1;
    g_bShotPending = 1;
    Swap();
    EXPECT_EQ(g_vecShot, vecBare);
    EXPECT_EQ(g_bShotPending, 0);
    Clear();
    g_uCapMode = 2;
    g_bShotPending = 1;
    Swap();
    EXPECT_NE(g_vecShot, vecBare);
    EXPECT_EQ(g_bShotPending, 0);
}

TEST_F(FrameRender, AnyOtherModeStaysPendingForever) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    g_vecShot.clear();
    g_pShotContext = &m_context;
    g_stParts.m_fnSaveScreenshot = TakeShot;
    g_uCapMode = 3;
    g_bShotPending = 1;
    for (int i = 0; i < 3; ++i) Swap();
    EXPECT_EQ(g_bShotPending, 1);
    EXPECT_TRUE(g_vecShot.empty());
}

/// The driver reads its version override once a process, so each gate runs in a process of its own.
class FrameVersionGate : public FrameFixture {
  protected:
    void SetUp() override {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        FrameFixture::SetUp();
    }
    [[noreturn]] void RunWith(const char* szOverride, bool bExpected) {
        setenv("MESA_GL_VERSION_OVERRIDE", szOverride, 1);
        headless::EglOptions stOptions;
        stOptions.m_bCore = false;
        stOptions.m_iMajor = 1;
        stOptions.m_iMinor = 0;
        if (!m_context.Create(stOptions)) std::_Exit(10);
        Swap();
        Swap();
        if (bExpected) std::_Exit(g_bInitGL && g_iInitFailCount == 0 ? 0 : 11);
        const bool bRefused = !g_bInitGLEW && g_iInitFailCount == g_uInitFailForGood && g_uCallCount == 1;
        std::_Exit(bRefused ? 0 : 12);
    }
};

TEST_F(FrameVersionGate, Version21IsRefusedForGood) {
    EXPECT_EXIT(RunWith("2.1", false), ::testing::ExitedWithCode(0), "");
}
TEST_F(FrameVersionGate, Version31IsRefusedForGoodWithoutARetry) {
    EXPECT_EXIT(RunWith("3.1COMPAT", false), ::testing::ExitedWithCode(0), "");
}
TEST_F(FrameVersionGate, Version32IsTaken) {
    EXPECT_EXIT(RunWith("3.2COMPAT", true), ::testing::ExitedWithCode(0), "");
}
TEST_F(FrameVersionGate, Version33IsTaken) {
    EXPECT_EXIT(RunWith("3.3COMPAT", true), ::testing::ExitedWithCode(0), "");
}
