// Whole frames of a program with more than one context: whose names are deleted, and where the overlay
// stands.
#include "base/host_care.h"
#include "draw/own_context.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/release.h"
#include "platform/contexts.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "tests/gl/frame_fixture.h"
#include "tests/support/gl_recorder.h"

#include <filesystem>
#include <fstream>

namespace headless = platform::headless;
namespace fs = std::filesystem;

class FrameContexts : public FrameFixture {
  protected:
    static constexpr GLsizei c_iObjects = 300;

    void SetUp() override {
        FrameFixture::SetUp();
        platform::WatchContexts(&g_fnNoteContextGone); // as the hook does
    }
    void TearDown() override {
        m_other.Destroy();
        g_stHostCare = {};
        FrameFixture::TearDown();
    }
    /// Another context with a surface of its own, current afterwards.
    bool MakeOther() {
        headless::EglOptions stOptions;
        const bool bMade = m_other.Create(stOptions);
        EXPECT_TRUE(bMade);
        return bMade;
    }
    i32 SwapOther() {
        headless::AdvanceClock(16'666'667);
        m_other.MakeCurrent();
        return GL_wglSwapBuffers(m_other.Surface());
    }
    i32 SwapFirst() {
        m_context.MakeCurrent();
        return Swap();
    }
    /// The program's own objects in the current context: more than the overlay has in its own.
    void MakeObjects() {
        glGenTextures(c_iObjects, m_auTextures);
        glGenBuffers(c_iObjects, m_auBuffers);
        for (GLsizei i = 0; i < c_iObjects; ++i) {
            glBindTexture(GL_TEXTURE_2D, m_auTextures[i]);
            glBindBuffer(GL_ARRAY_BUFFER, m_auBuffers[i]);
            m_auPrograms[i] = glCreateProgram();
        }
    }
    int CountObjects() const {
        int iLeft = 0;
        for (GLsizei i = 0; i < c_iObjects; ++i)
            iLeft += glIsTexture(m_auTextures[i]) + glIsBuffer(m_auBuffers[i]) + glIsProgram(m_auPrograms[i]);
        return iLeft;
    }
    /// All names of the current context, whoever made them.
    static int CountAll() {
        int iCount = 0;
        for (GLuint u = 1; u < 20000; ++u)
            iCount += glIsTexture(u) + glIsBuffer(u) + glIsProgram(u) + glIsVertexArray(u);
        return iCount;
    }
    int ObjectsOfBoth() {
        m_context.MakeCurrent();
        const int iFirst = CountAll();
        m_other.MakeCurrent();
        return iFirst + CountAll();
    }
    /// The settings file with the key alone.
    void StayWithSurface() const {
        std::ofstream(fs::path(m_strFolder) / "ZARN/Orvin Deck/ORVIN-OSD/Data/OSD.ini")
            << "[HostCare]\nStayWithSurface=1\n";
    }
    static std::size_t Deletes(const std::vector<std::string>& vecCalls) {
        return CountCalls(vecCalls, "glDelete") - CountCalls(vecCalls, "glDeleteVertexArrays");
    }

    headless::EglContext m_other;
    GLuint m_auTextures[c_iObjects] = {}, m_auBuffers[c_iObjects] = {}, m_auPrograms[c_iObjects] = {};
};

TEST_F(FrameContexts, ProgramsObjectsSurviveAChangeToItsOtherContext) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(MakeOther());
    MakeObjects();
    SwapOther();
    EXPECT_FALSE(g_bInitGL) << "released";
    EXPECT_EQ(CountObjects(), 3 * c_iObjects);
    SwapOther();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(g_hGLRC, m_other.Context());
    EXPECT_EQ(CountObjects(), 3 * c_iObjects);
}

TEST_F(FrameContexts, APairOfContextsInTurnKeepsTheNumberOfObjects) {
    for (const char* szKey : {"", "OuterGuard", "MergedDraw"}) {
        SetCare({szKey});
        ASSERT_TRUE(Begin(true, u"Frosted20")); // no fonts, whose making takes long
        ASSERT_TRUE(RunUntilBuilt());
        ASSERT_TRUE(MakeOther());
        MakeObjects();
        int iEarly = 0, iBuilds = 0;
        for (int i = 0; i < 100; ++i) {
            // Enough for a build in each, with the frames that are spent on it.
            for (int iFrame = 0; iFrame < 4; ++iFrame) SwapFirst();
            iBuilds += g_bInitGL && g_hGLRC == m_context.Context();
            for (int iFrame = 0; iFrame < 4; ++iFrame) SwapOther();
            iBuilds += g_bInitGL && g_hGLRC == m_other.Context();
            if (i == 9) iEarly = ObjectsOfBoth();
        }
        EXPECT_EQ(iBuilds, 200) << szKey;
        EXPECT_EQ(ObjectsOfBoth(), iEarly) << szKey;
        m_other.MakeCurrent();
        EXPECT_EQ(CountObjects(), 3 * c_iObjects);
        g_fnTavo_GL_Release();
        m_other.Destroy();
        m_context.Destroy();
    }
}

/// The end of a context that nobody saw, and a new one with its handle.
TEST_F(FrameContexts, LeftNamesThatNoLongerAreTheOverlaysStay) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(MakeOther());
    SwapOther();
    ASSERT_FALSE(g_bInitGL);
    m_context.MakeCurrent();
    for (GLuint u = 1; u < 1000; ++u)
        if (glIsProgram(u)) glDeleteProgram(u);
    MakeObjects();
    const int iBefore = CountAll();
    Swap();
    Swap();
    ASSERT_TRUE(g_bInitGL);
    EXPECT_EQ(CountObjects(), 3 * c_iObjects);
    EXPECT_GE(CountAll(), iBefore);
}

TEST_F(FrameContexts, AnotherContextOnTheSameSurfaceCountsAsAnotherSurface) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    void* const hSurface = m_context.Surface();
    ASSERT_TRUE(MakeOther());
    MakeObjects();
    headless::SetCurrentSurface(hSurface);
    gl_recorder::Install();
    gl_recorder::Start();
    GL_wglSwapBuffers(hSurface);
    const std::vector<std::string> vecCalls = gl_recorder::Stop();
    EXPECT_EQ(Deletes(vecCalls), 0u);
    EXPECT_EQ(CountCalls(vecCalls, "glDraw"), 0u) << "this frame is left";
    GL_wglSwapBuffers(hSurface);
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(g_hGLRC, m_other.Context());
    EXPECT_EQ(CountObjects(), 3 * c_iObjects);
    headless::UseRealSurface();
}

TEST_F(FrameContexts, AContextThatIsGoneIsForgottenAlsoUnderTheSameHandle) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    headless::DestroyContext(m_context.Context());
    const std::vector<std::string> vecCalls = RecordSwap();
    EXPECT_EQ(Deletes(vecCalls), 0u);
    EXPECT_FALSE(g_bInitGL);
    Swap();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_GT(CountCalls(RecordSwap(), "glDraw"), 0u);
}

TEST_F(FrameContexts, TheEndOfAnotherContextChangesNothing) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    headless::DestroyContext(m_context.Surface());
    EXPECT_GT(CountCalls(RecordSwap(), "glDraw"), 0u);
    headless::DestroyContext(nullptr);
    EXPECT_EQ(CountCalls(RecordSwap(), "glDraw"), 0u) << "null stands for all";
}

TEST_F(FrameContexts, InItsOwnContextTheOverlayLeavesNothingBehind) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    gl_recorder::Install();
    gl_recorder::Start();
    g_fnTavo_GL_Release();
    EXPECT_GT(Deletes(gl_recorder::Stop()), 0u);
}

TEST_F(FrameContexts, WithoutTheKeyEachOtherSurfaceTakesTheOverlay) {
    ASSERT_TRUE(Begin(true));
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(MakeOther());
    SwapOther();
    SwapOther();
    EXPECT_EQ(g_hDC, m_other.Surface());
}

TEST_F(FrameContexts, StaysWithItsSurfaceUntilThatHasNotSwappedForASecond) {
    ASSERT_TRUE(Begin(true));
    StayWithSurface();
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(MakeOther());
    const u32 uCalls = g_uCallCount;
    for (int i = 0; i < 120; ++i) {
        SwapOther();
        SwapFirst();
    }
    EXPECT_EQ(g_hDC, m_context.Surface());
    EXPECT_EQ(g_uCallCount - uCalls, 120u) << "the owner's swaps alone come into the pipeline";
    int iPassed = 0;
    while (g_hDC != m_other.Surface() && iPassed < 200) {
        SwapOther();
        ++iPassed;
    }
    EXPECT_NEAR(iPassed, 61, 2) << "a second of swaps, and the one that releases";
    EXPECT_TRUE(g_bInitGL);
}

TEST_F(FrameContexts, AForeignSwapTakesNoCommandAndReportsNothing) {
    ASSERT_TRUE(Begin(true));
    StayWithSurface();
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(MakeOther());
    stProcessRecord& stRecord = platform::SharedSegment()->CommandTable[0];
    stRecord.Command.bRelease = stRecord.bChanged = 1;
    gl_recorder::Start();
    SwapOther();
    EXPECT_EQ(gl_recorder::Stop(), std::vector<std::string>{gl_recorder::Call("glGetError")});
    EXPECT_EQ(stRecord.bChanged, 1);
    SwapFirst();
    EXPECT_EQ(stRecord.bChanged, 0) << "its owner takes it";
}

TEST_F(FrameContexts, TheOwnersContextGoneTheNextSurfaceTakesTheOverlayAtOnce) {
    ASSERT_TRUE(Begin(true));
    StayWithSurface();
    ASSERT_TRUE(RunUntilBuilt());
    ASSERT_TRUE(MakeOther());
    headless::DestroyContext(m_context.Context());
    SwapOther();
    SwapOther();
    EXPECT_EQ(g_hDC, m_other.Surface());
    EXPECT_TRUE(g_bInitGL);
}

/// A program that asks for its window's device context each frame may get another handle each time.
TEST_F(FrameContexts, AnotherHandleOfTheOwnersWindowIsTheOwner) {
    ASSERT_TRUE(Begin(true));
    StayWithSurface();
    headless::SetWindow(m_context.Surface());
    ASSERT_TRUE(RunUntilBuilt());
    int iOther = 0;
    gl_recorder::Install();
    gl_recorder::Start();
    headless::AdvanceClock(16'666'667);
    GL_wglSwapBuffers(&iOther);
    EXPECT_GT(CountCalls(gl_recorder::Stop(), "glDraw"), 0u);
    EXPECT_EQ(g_hDC, &iOther);
    Swap();
    headless::UseRealSurface();
}
