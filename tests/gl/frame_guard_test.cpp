// The state guard's calls, one by one, in order.
#include "draw/canvas.h"
#include "draw/saved_state.h"
#include "frame/context_state.h"
#include "frame/state_guard.h"
#include "tests/gl/frame_fixture.h"
#include "tests/support/gl_recorder.h"

using gl_recorder::Call;
using Calls = std::vector<std::string>;

class FrameGuard : public FrameFixture {
  protected:
    bool Prepare(bool bCore) {
        if (!Begin(bCore) || !platform::InitGlew()) return false;
        gl_recorder::Install();
        glGetIntegerv(GL_MAJOR_VERSION, &g_iGL_Major);
        glGetIntegerv(GL_MINOR_VERSION, &g_iGL_Minor);
        g_fnStoreSize(640, 480);
        return true;
    }
    static Calls Capture() {
        gl_recorder::Start();
        g_fnTavo_GL_CaptureState();
        return gl_recorder::Stop();
    }
    static Calls Set() {
        gl_recorder::Start();
        g_fnTavo_GL_SetupState();
        return gl_recorder::Stop();
    }
    static Calls Restore() {
        gl_recorder::Start();
        g_fnTavo_GL_RestoreState();
        return gl_recorder::Stop();
    }
};

static Calls ExpectedCapture() {
    Calls vec = {Call("glPushAttrib", 0xFFFFF), Call("glPushClientAttrib", 0xFFFFFFFF)};
    for (GLenum e : {GL_VIEWPORT, GL_SCISSOR_BOX, GL_TEXTURE_BINDING_2D})
        vec.push_back(Call("glGetIntegerv", e, &vec));
    for (GLenum e : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        vec.push_back(Call("glGetTexParameteriv", GL_TEXTURE_2D, e, &vec));
    vec.push_back(Call("glGetFloatv", GL_CURRENT_COLOR, &vec));
    for (GLenum e : {GL_CULL_FACE, GL_DEPTH_TEST, GL_SCISSOR_TEST, GL_ALPHA_TEST, GL_STENCIL_TEST,
                     GL_LIGHTING, GL_BLEND})
        vec.push_back(Call("glIsEnabled", e));
    for (GLenum e : {GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA, GL_BLEND_DST_ALPHA})
        vec.push_back(Call("glGetIntegerv", e, &vec));
    vec.push_back(Call("glGetFloatv", GL_BLEND_COLOR, &vec));
    for (GLenum e :
         {GL_CURRENT_PROGRAM, GL_ELEMENT_ARRAY_BUFFER_BINDING, GL_UNPACK_SWAP_BYTES, GL_UNPACK_LSB_FIRST,
          GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_PIXELS, GL_UNPACK_SKIP_ROWS, GL_UNPACK_ALIGNMENT})
        vec.push_back(Call("glGetIntegerv", e, &vec));
    return vec;
}

static Calls ExpectedSetup(bool bPixelStore) {
    Calls vec = {Call("glViewport", 0, 0, 640, 480), Call("glScissor", 0, 0, 640, 480)};
    for (GLenum e : {GL_DEPTH_TEST, GL_ALPHA_TEST, GL_CULL_FACE, GL_DITHER, GL_FOG, GL_LOGIC_OP, GL_FOG,
                     GL_STENCIL_TEST, GL_SCISSOR_TEST, GL_LIGHTING})
        vec.push_back(Call("glDisable", e));
    vec.push_back(Call("glEnable", GL_BLEND));
    vec.push_back(Call("glPolygonMode", GL_FRONT_AND_BACK, GL_FILL));
    vec.push_back(Call("glBlendFunc", GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA));
    vec.push_back(Call("glColorMaski", 0, 1, 1, 1, 1));
    vec.push_back(Call("glDisable", GL_POINT_SPRITE));
    vec.push_back(Call("glDisable", GL_CLIP_DISTANCE0));
    for (int i : {0, 1}) {
        for (GLenum e :
             {GL_VERTEX_ATTRIB_ARRAY_ENABLED, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING,
              GL_VERTEX_ATTRIB_ARRAY_SIZE, GL_VERTEX_ATTRIB_ARRAY_STRIDE, GL_VERTEX_ATTRIB_ARRAY_TYPE,
              GL_VERTEX_ATTRIB_ARRAY_NORMALIZED, GL_VERTEX_ATTRIB_ARRAY_DIVISOR})
            vec.push_back(Call("glGetVertexAttribIuiv", i, e, &vec));
        vec.push_back(Call("glGetVertexAttribPointerv", i, GL_VERTEX_ATTRIB_ARRAY_POINTER, &vec));
    }
    vec.push_back(Call("glBindFramebuffer", GL_FRAMEBUFFER, 0));
    vec.push_back(Call("glGetIntegerv", GL_VERTEX_ARRAY_BINDING, &vec));
    vec.push_back(Call("glGenVertexArrays", 1, &vec));
    vec.push_back(Call("glBindVertexArray", GLSavedState.TemporaryVertexArray));
    vec.push_back(Call("glGetIntegerv", GL_COLOR_WRITEMASK, &vec));
    vec.push_back(Call("glGetIntegeri_v", GL_SAMPLER_BINDING, 0, &vec));
    vec.push_back(Call("glBindSampler", 0, 0));
    vec.push_back(Call("glEnable", GL_TEXTURE_2D));
    if (!bPixelStore) return vec;
    for (GLenum e : {GL_UNPACK_SWAP_BYTES, GL_UNPACK_LSB_FIRST, GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_PIXELS,
                     GL_UNPACK_SKIP_ROWS})
        vec.push_back(Call("glPixelStorei", e, 0));
    vec.push_back(Call("glPixelStorei", GL_UNPACK_ALIGNMENT, 1));
    return vec;
}

/// Of a fresh context: everything off, no program, no texture, attributes at their defaults.
static Calls ExpectedRestore() {
    Calls vec = {Call("glPopAttrib"),
                 Call("glPopClientAttrib"),
                 Call("glViewport", 0, 0, 640, 480),
                 Call("glScissor", 0, 0, 640, 480),
                 Call("glBindTexture", GL_TEXTURE_2D, 0),
                 Call("glTexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST_MIPMAP_LINEAR),
                 Call("glTexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR),
                 Call("glColor4f", GLSavedState.CurrentColor[0], GLSavedState.CurrentColor[1],
                      GLSavedState.CurrentColor[2], GLSavedState.CurrentColor[3])};
    for (GLenum e : {GL_CULL_FACE, GL_DEPTH_TEST, GL_SCISSOR_TEST, GL_ALPHA_TEST, GL_STENCIL_TEST,
                     GL_LIGHTING, GL_BLEND})
        vec.push_back(Call("glDisable", e));
    vec.push_back(Call("glUseProgram", 0));
    vec.push_back(Call("glBindBuffer", GL_ELEMENT_ARRAY_BUFFER, 0));
    vec.push_back(Call("glBlendFuncSeparate", GL_ONE, GL_ZERO, GL_ONE, GL_ZERO));
    vec.push_back(Call("glBlendColor", 0.0f, 0.0f, 0.0f, 0.0f));
    vec.push_back(Call("glBindVertexArray", GLSavedState.TemporaryVertexArray));
    for (int i : {0, 1}) {
        vec.push_back(Call("glDisableVertexAttribArray", i));
        vec.push_back(Call("glVertexAttribPointer", i, 2, GL_FLOAT, 0, 0, nullptr));
        vec.push_back(Call("glVertexAttribDivisor", i, 0));
    }
    vec.push_back(Call("glBindVertexArray", 0));
    vec.push_back(Call("glDeleteVertexArrays", 1, &vec));
    vec.push_back(Call("glColorMask", 1, 1, 1, 1));
    vec.push_back(Call("glBindSampler", 0, 0));
    return vec;
}

TEST_F(FrameGuard, CompatibilityContextGetsExactlyTheseCalls) {
    ASSERT_TRUE(Prepare(false));
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    EXPECT_EQ(Capture(), ExpectedCapture());
    const Calls vecSetup = Set();
    EXPECT_EQ(vecSetup, ExpectedSetup(false));
    EXPECT_EQ(Restore(), ExpectedRestore());
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(FrameGuard, CoreContextGetsTheSameCallsWithoutABranchOnTheProfile) {
    ASSERT_TRUE(Prepare(true));
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    EXPECT_EQ(Capture(), ExpectedCapture());
    const Calls vecSetup = Set();
    EXPECT_EQ(vecSetup, ExpectedSetup(false));
    EXPECT_EQ(Restore(), ExpectedRestore());
}

TEST_F(FrameGuard, DefaultAlignmentIsTheOnlyPixelStoreCall) {
    ASSERT_TRUE(Prepare(false));
    Capture();
    const Calls vecSetup = Set();
    EXPECT_EQ(CountCalls(vecSetup, "glPixelStorei"), 1u);
    EXPECT_EQ(vecSetup.back(), Call("glPixelStorei", GL_UNPACK_ALIGNMENT, 1));
    const Calls vecRestore = Restore();
    EXPECT_EQ(CountCalls(vecRestore, "glPixelStorei"), 1u);
    EXPECT_EQ(vecRestore.back(), Call("glPixelStorei", GL_UNPACK_ALIGNMENT, 4));
}

TEST_F(FrameGuard, AlignmentOneAndZerosMakeNoPixelStoreCall) {
    ASSERT_TRUE(Prepare(false));
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    Capture();
    EXPECT_EQ(CountCalls(Set(), "glPixelStorei"), 0u);
    EXPECT_EQ(CountCalls(Restore(), "glPixelStorei"), 0u);
}

TEST_F(FrameGuard, OddUnpackStateIsQuietedAndGivenBackInOrder) {
    ASSERT_TRUE(Prepare(true));
    const std::pair<GLenum, int> aOdd[] = {{GL_UNPACK_SWAP_BYTES, 1},  {GL_UNPACK_LSB_FIRST, 1},
                                           {GL_UNPACK_ROW_LENGTH, 37}, {GL_UNPACK_SKIP_PIXELS, 3},
                                           {GL_UNPACK_SKIP_ROWS, 2},   {GL_UNPACK_ALIGNMENT, 8}};
    for (auto [e, i] : aOdd) glPixelStorei(e, i);
    Capture();
    const Calls vecSetup = Set();
    EXPECT_EQ(vecSetup, ExpectedSetup(true));
    const Calls vecRestore = Restore();
    ASSERT_GE(vecRestore.size(), 6u);
    for (std::size_t u = 0; u < 6; ++u)
        EXPECT_EQ(vecRestore[vecRestore.size() - 6 + u],
                  Call("glPixelStorei", aOdd[u].first, aOdd[u].second));
    for (auto [e, i] : aOdd) {
        GLint iNow = 0;
        glGetIntegerv(e, &iNow);
        EXPECT_EQ(iNow, i);
    }
}

TEST_F(FrameGuard, SizeOfAnAttributeIsAlwaysGivenBackAsTwoAndReachesOnlyTheTemporaryArray) {
    ASSERT_TRUE(Prepare(true));
    GLuint uArray = 0, uBuffer = 0;
    glGenVertexArrays(1, &uArray);
    glBindVertexArray(uArray);
    glGenBuffers(1, &uBuffer);
    glBindBuffer(GL_ARRAY_BUFFER, uBuffer);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 4, GL_FLOAT, GL_FALSE, 64, reinterpret_cast<void*>(16));
    Capture();
    Set();
    const Calls vecRestore = Restore();
    EXPECT_NE(FindCall(vecRestore, Call("glVertexAttribPointer", 0, 2, GL_FLOAT, 0, 64, &uArray)),
              std::string::npos);
    GLint iSize = 0, iBound = 0;
    glGetVertexAttribiv(0, GL_VERTEX_ATTRIB_ARRAY_SIZE, &iSize);
    EXPECT_EQ(iSize, 4);
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &iBound);
    EXPECT_EQ(static_cast<GLuint>(iBound), uArray);
}

TEST_F(FrameGuard, EnabledStatesComeBackEnabled) {
    ASSERT_TRUE(Prepare(true));
    for (GLenum e : {GL_CULL_FACE, GL_DEPTH_TEST, GL_SCISSOR_TEST, GL_STENCIL_TEST, GL_BLEND}) glEnable(e);
    Capture();
    Set();
    const Calls vecRestore = Restore();
    for (GLenum e : {GL_CULL_FACE, GL_DEPTH_TEST, GL_SCISSOR_TEST, GL_STENCIL_TEST, GL_BLEND})
        EXPECT_EQ(glIsEnabled(e), GL_TRUE) << e;
    EXPECT_NE(FindCall(vecRestore, Call("glEnable", GL_STENCIL_TEST)), std::string::npos);
}

TEST_F(FrameGuard, MakesAndDeletesOneVertexArrayAFrame) {
    ASSERT_TRUE(Prepare(true));
    Capture();
    Set();
    const GLuint uTemporary = GLSavedState.TemporaryVertexArray;
    EXPECT_EQ(glIsVertexArray(uTemporary), GL_TRUE);
    Restore();
    EXPECT_EQ(glIsVertexArray(uTemporary), GL_FALSE);
}

TEST_F(FrameGuard, BelowVersionThreeTheOldCallsAreTaken) {
    ASSERT_TRUE(Prepare(false));
    Capture();
    g_iGL_Major = 2;
    g_iGL_Minor = 1;
    const Calls vecSetup = Set();
    EXPECT_NE(FindCall(vecSetup, Call("glColorMask", 1, 1, 1, 1)), std::string::npos);
    EXPECT_EQ(CountCalls(vecSetup, "glGetVertexAttribIuiv"), 0u);
    EXPECT_EQ(CountCalls(vecSetup, "glGetVertexAttribPointerv"), 2u);
    EXPECT_EQ(CountCalls(vecSetup, "glBindFramebuffer"), 0u);
    EXPECT_EQ(CountCalls(vecSetup, "glGetIntegeri_v"), 0u);
    EXPECT_EQ(CountCalls(vecSetup, "glBindSampler"), 0u);
    EXPECT_EQ(CountCalls(Restore(), "glBindSampler"), 0u);
}
