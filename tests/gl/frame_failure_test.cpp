// A build that fails, with key RestoreAfterFailure: the program gets its state back, its picture stays, and
// after a repair the overlay stands within a second.
#include "frame/context_state.h"
#include "frame/release.h"
#include "platform/gl_api.h"
#include "tests/gl/frame_fixture.h"

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

constexpr int c_iSecondOfFrames = 61;

class RestoreAfterFailure : public FrameFixture {
  protected:
    fs::path Data() const { return fs::path(m_strFolder) / "ZARN" / "Orvin Deck" / "ORVIN-OSD" / "Data"; }
    void Start(bool bCore, const char16_t* wzProfile = u"Bench") {
        SetCare({"RestoreAfterFailure"});
        ASSERT_TRUE(Begin(bCore, wzProfile, 160, 120));
        glEnable(GL_DEPTH_TEST);
    }
    /// The program's frame, drawn with what it set once.
    void ExpectUntouchedFrames(bool bCore) {
        for (int i = 0; i < 5; ++i) {
            glClearColor(1, 0, 0, 1);
            glClear(GL_COLOR_BUFFER_BIT);
            Swap();
            EXPECT_FALSE(g_bInitGL);
            EXPECT_EQ(glIsEnabled(GL_DEPTH_TEST), GL_TRUE);
            EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
            GLint iDepth = 0;
            if (!bCore) glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &iDepth);
            EXPECT_EQ(iDepth, 0);
            EXPECT_EQ(m_context.ReadPixels()[0], 255);
        }
    }
    void ExpectBuiltWithinASecond() {
        int iFrames = 0;
        while (!g_bInitGL && iFrames < c_iSecondOfFrames) {
            Swap();
            ++iFrames;
        }
        EXPECT_TRUE(g_bInitGL) << iFrames << " frames";
    }
};

TEST_F(RestoreAfterFailure, WithoutShaders) {
    for (bool bCore : {false, true}) {
        UseShaders(false);
        Start(bCore);
        ExpectUntouchedFrames(bCore);
        UseShaders(true);
        SetCare({"RestoreAfterFailure"});
        ExpectBuiltWithinASecond();
        g_fnTavo_GL_Release();
        m_context.Destroy();
    }
}

TEST_F(RestoreAfterFailure, WithABrokenShader) {
    fs::copy_file(Data() / "DrawText_GL.fs", Data() / "kept.fs");
    std::ofstream(Data() / "DrawText_GL.fs") << "no shader";
    Start(false);
    ExpectUntouchedFrames(false);
    fs::rename(Data() / "kept.fs", Data() / "DrawText_GL.fs");
    ExpectBuiltWithinASecond();
}

TEST_F(RestoreAfterFailure, WithoutTheProfile) {
    Start(false, u"Absent");
    ExpectUntouchedFrames(false);
    fs::copy(Data() / "Profiles" / "Bench", Data() / "Profiles" / "Absent");
    ExpectBuiltWithinASecond();
}

TEST_F(RestoreAfterFailure, WithABrokenProfile) {
    fs::create_directories(Data() / "Profiles" / "Torn");
    std::ofstream(Data() / "Profiles" / "Torn" / "OSD.xml") << "<OSD";
    Start(true, u"Torn");
    ExpectUntouchedFrames(true);
    fs::copy_file(Data() / "Profiles" / "Bench" / "OSD.xml", Data() / "Profiles" / "Torn" / "OSD.xml",
                  fs::copy_options::overwrite_existing);
    ExpectBuiltWithinASecond();
}

/// The other guard ends whatever happens inside it, with this key or without.
TEST_F(RestoreAfterFailure, IsPartOfTheOuterGuard) {
    UseShaders(false);
    SetCare({"OuterGuard"});
    ASSERT_TRUE(Begin(false, u"Bench", 160, 120));
    glEnable(GL_DEPTH_TEST);
    ExpectUntouchedFrames(false);
    EXPECT_EQ(glIsVertexArray(1), GL_FALSE) << "no array of ours is left";
}

int g_iThrown = 0;

GLuint GLAPIENTRY Throw() {
    ++g_iThrown;
    throw g_iThrown;
}

/// Something throws while programs are built, after the layout and its fonts. With either guard the state
/// comes back, what was made goes, and a try is not made in each frame.
TEST_F(RestoreAfterFailure, WithAnExceptionInTheBuild) {
    for (const char* szKey : {"OuterGuard", "RestoreAfterFailure"}) {
        SCOPED_TRACE(szKey);
        SetCare({szKey});
        ASSERT_TRUE(Begin(false, u"Bench", 160, 120));
        ASSERT_TRUE(RunUntilBuilt());
        g_fnTavo_GL_Release();
        UseShaders(false); // fails, but leaves GLEW's pointers set
        SetCare({szKey});
        while (g_bInitGLEW == false) Swap();
        ASSERT_FALSE(g_bInitGL);
        UseShaders(true);
        SetCare({szKey});
        const auto fnReal = __glewCreateProgram;
        __glewCreateProgram = Throw;
        g_iThrown = 0;
        glEnable(GL_DEPTH_TEST);
        for (int i = 0; i < c_iSecondOfFrames / 5; ++i) ExpectUntouchedFrames(false);
        EXPECT_GE(g_iThrown, 1);
        EXPECT_LE(g_iThrown, 2) << "in a second";
        for (GLuint u = 1; u < 64; ++u) {
            EXPECT_EQ(glIsTexture(u), GL_FALSE) << u;
            EXPECT_EQ(glIsBuffer(u), GL_FALSE) << u;
        }
        __glewCreateProgram = fnReal;
        for (int i = 0; i < 10 && !g_bInitGL; ++i) ExpectBuiltWithinASecond();
        EXPECT_TRUE(g_bInitGL);
        g_fnTavo_GL_Release();
        m_context.Destroy();
    }
}

/// Without the keys the state stays as the failed build left it.
TEST_F(RestoreAfterFailure, WithoutTheKeyTheStateIsLost) {
    ASSERT_TRUE(Begin(false, u"Absent", 160, 120));
    glEnable(GL_DEPTH_TEST);
    Swap();
    EXPECT_EQ(glIsEnabled(GL_DEPTH_TEST), GL_FALSE);
    fs::copy(Data() / "Profiles" / "Bench", Data() / "Profiles" / "Absent");
    ExpectBuiltWithinASecond();
}

} // namespace
