// The guard of key OuterGuard: under each odd state of a program the overlay looks as it does under the
// default one, it draws nothing where the drawing would reach the program, and it raises no errors and no
// messages.
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/first_draws.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/outer_guard.h"
#include "frame/release.h"
#include "platform/gl_api.h"
#include "platform/glyph_rasterizer.h"
#include "platform/headless/test_controls.h"
#include "tests/gl/frame_fixture.h"
#include "tests/support/gl_recorder.h"

#include <cstring>
#include <functional>
#include <vector>

namespace {

using platform::headless::EglOptions;

struct stOddState {
    const char* szName;
    bool bCompatibilityOnly;
    std::function<void(bool bOdd)> fnSet;
};

stOddState Switch(const char* szName, GLenum eCap, bool bCompatibilityOnly = false) {
    return {szName, bCompatibilityOnly, [=](bool b) { b ? glEnable(eCap) : glDisable(eCap); }};
}

GLuint g_uFramebuffer = 0, g_uBuffer = 0, g_uSampler = 0, g_uArray = 0;

/// A framebuffer with one small picture, a buffer and a sampler that shows only borders.
void MakeObjects() {
    GLuint uTexture = 0;
    glGenTextures(1, &uTexture);
    glBindTexture(GL_TEXTURE_2D, uTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 16, 16, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindTexture(GL_TEXTURE_2D, 0);
    glGenFramebuffers(1, &g_uFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, g_uFramebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, uTexture, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glGenBuffers(1, &g_uBuffer);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, g_uBuffer);
    glBufferData(GL_PIXEL_UNPACK_BUFFER, 64, nullptr, GL_STATIC_DRAW);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    glGenSamplers(1, &g_uSampler);
    glSamplerParameteri(g_uSampler, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glSamplerParameterf(g_uSampler, GL_TEXTURE_MIN_LOD, 5.0f);
    glGenVertexArrays(1, &g_uArray);
}

stOddState PixelStore(const char* szName, GLenum eName, GLint iOdd, GLint iDefault) {
    return {szName, false, [=](bool b) { glPixelStorei(eName, b ? iOdd : iDefault); }};
}

stOddState Transfer(const char* szName, GLenum eName, GLfloat fOdd, GLfloat fDefault) {
    return {szName, true, [=](bool b) { glPixelTransferf(eName, b ? fOdd : fDefault); }};
}

/// What changes drawing.
std::vector<stOddState> DrawingStates() {
    return {
        {"upper-left clip control", false,
         [](bool b) { glClipControl(b ? GL_UPPER_LEFT : GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE); }},
        {"depth from zero to one", false,
         [](bool b) { glClipControl(GL_LOWER_LEFT, b ? GL_ZERO_TO_ONE : GL_NEGATIVE_ONE_TO_ONE); }},
        {"primitive restart at index 2", false,
         [](bool b) {
             glPrimitiveRestartIndex(2);
             b ? glEnable(GL_PRIMITIVE_RESTART) : glDisable(GL_PRIMITIVE_RESTART);
         }},
        {"colour logic operation", false,
         [](bool b) {
             glLogicOp(GL_INVERT);
             b ? glEnable(GL_COLOR_LOGIC_OP) : glDisable(GL_COLOR_LOGIC_OP);
         }},
        Switch("sRGB writes", GL_FRAMEBUFFER_SRGB),
        Switch("rasteriser discard", GL_RASTERIZER_DISCARD),
        Switch("depth clamp", GL_DEPTH_CLAMP),
        Switch("polygon smoothing", GL_POLYGON_SMOOTH),
        {"polygon mode", false, [](bool b) { glPolygonMode(GL_FRONT_AND_BACK, b ? GL_LINE : GL_FILL); }},
        Switch("sample alpha to coverage", GL_SAMPLE_ALPHA_TO_COVERAGE),
        Switch("sample alpha to one", GL_SAMPLE_ALPHA_TO_ONE),
        {"sample coverage 0", false,
         [](bool b) {
             glSampleCoverage(0.0f, GL_FALSE);
             b ? glEnable(GL_SAMPLE_COVERAGE) : glDisable(GL_SAMPLE_COVERAGE);
         }},
        {"sample mask 0", false,
         [](bool b) {
             glSampleMaski(0, 0);
             b ? glEnable(GL_SAMPLE_MASK) : glDisable(GL_SAMPLE_MASK);
         }},
        {"scissor test", false,
         [](bool b) {
             glScissor(0, 0, 1, 1);
             b ? glEnable(GL_SCISSOR_TEST) : glDisable(GL_SCISSOR_TEST);
         }},
        {"viewport", false, [](bool b) { b ? glViewport(10, 10, 20, 20) : glViewport(0, 0, 160, 120); }},
        {"colour mask", false, [](bool b) { glColorMask(!b, 1, !b, 1); }},
        {"blend equations", false,
         [](bool b) { b ? glBlendEquationSeparate(GL_MIN, GL_MAX) : glBlendEquation(GL_FUNC_ADD); }},
        {"depth test", false,
         [](bool b) {
             glDepthFunc(b ? GL_NEVER : GL_LESS);
             b ? glEnable(GL_DEPTH_TEST) : glDisable(GL_DEPTH_TEST);
         }},
        {"stencil test", false,
         [](bool b) {
             glStencilFunc(b ? GL_NEVER : GL_ALWAYS, 0, ~0u);
             b ? glEnable(GL_STENCIL_TEST) : glDisable(GL_STENCIL_TEST);
         }},
        {"culling of both faces", false,
         [](bool b) {
             glCullFace(b ? GL_FRONT_AND_BACK : GL_BACK);
             b ? glEnable(GL_CULL_FACE) : glDisable(GL_CULL_FACE);
         }},
        {"all clip distances", false,
         [](bool b) {
             for (GLenum e = 0; e < 8; ++e)
                 b ? glEnable(GL_CLIP_DISTANCE0 + e) : glDisable(GL_CLIP_DISTANCE0 + e);
         }},
        {"framebuffer", false, [](bool b) { glBindFramebuffer(GL_FRAMEBUFFER, b ? g_uFramebuffer : 0); }},
        {"texture unit 5", false, [](bool b) { glActiveTexture(b ? GL_TEXTURE5 : GL_TEXTURE0); }},
        {"sampler", false, [](bool b) { glBindSampler(0, b ? g_uSampler : 0); }},
        {"read buffer of framebuffer 0", false, [](bool b) { glReadBuffer(b ? GL_FRONT : GL_BACK); }},
        {"no draw buffer", false, [](bool b) { glDrawBuffer(b ? GL_NONE : GL_BACK); }},
        {"front draw buffer", false, [](bool b) { glDrawBuffer(b ? GL_FRONT : GL_BACK); }},
        {"no draw buffer, and another framebuffer", false,
         [](bool b) {
             if (b) glDrawBuffer(GL_NONE);
             glBindFramebuffer(GL_FRAMEBUFFER, b ? g_uFramebuffer : 0);
             if (!b) glDrawBuffer(GL_BACK);
         }},
        {"back draw buffer in second place", false,
         [](bool b) {
             const GLenum ae[] = {GL_NONE, GL_BACK_LEFT};
             b ? glDrawBuffers(2, ae) : glDrawBuffer(GL_BACK);
         }},
        {"user clip plane", true,
         [](bool b) {
             const GLdouble af[] = {0, 0, 0, -1};
             glClipPlane(GL_CLIP_PLANE0, af);
             b ? glEnable(GL_CLIP_PLANE0) : glDisable(GL_CLIP_PLANE0);
         }},
        {"alpha test", true,
         [](bool b) {
             glAlphaFunc(b ? GL_NEVER : GL_ALWAYS, 0.0f);
             b ? glEnable(GL_ALPHA_TEST) : glDisable(GL_ALPHA_TEST);
         }},
        {"polygon stipple", true,
         [](bool b) {
             const GLubyte au8[128] = {};
             glPolygonStipple(au8);
             b ? glEnable(GL_POLYGON_STIPPLE) : glDisable(GL_POLYGON_STIPPLE);
         }},
        Switch("fog", GL_FOG, true),
        Switch("lighting", GL_LIGHTING, true),
    };
}

/// The first call of a frame that draws.
std::string FirstDraw(const std::vector<std::string>& vecCalls) {
    for (const std::string& str : vecCalls)
        if (str.compare(0, 6, "glDraw") == 0 && str.compare(0, 12, "glDrawBuffer") != 0) return str;
    return "none";
}

/// What changes pixels on their way into textures and out of the frame: set while fonts are made, and while
/// the frame is copied.
std::vector<stOddState> PixelStates() {
    return {
        {"pixel pack buffer", false, [](bool b) { glBindBuffer(GL_PIXEL_PACK_BUFFER, b ? g_uBuffer : 0); }},
        PixelStore("row length of reads", GL_PACK_ROW_LENGTH, 3, 0),
        PixelStore("skipped pixels of reads", GL_PACK_SKIP_PIXELS, 2, 0),
        PixelStore("skipped rows of reads", GL_PACK_SKIP_ROWS, 2, 0),
        PixelStore("alignment of reads", GL_PACK_ALIGNMENT, 8, 4),
        {"pixel unpack buffer", false,
         [](bool b) { glBindBuffer(GL_PIXEL_UNPACK_BUFFER, b ? g_uBuffer : 0); }},
        PixelStore("swapped bytes", GL_UNPACK_SWAP_BYTES, 1, 0),
        PixelStore("LSB first", GL_UNPACK_LSB_FIRST, 1, 0),
        PixelStore("row length", GL_UNPACK_ROW_LENGTH, 3, 0),
        PixelStore("skipped pixels", GL_UNPACK_SKIP_PIXELS, 2, 0),
        PixelStore("skipped rows", GL_UNPACK_SKIP_ROWS, 2, 0),
        PixelStore("alignment", GL_UNPACK_ALIGNMENT, 8, 4),
        Transfer("colour scale", GL_RED_SCALE, 0.25f, 1.0f),
        Transfer("colour bias", GL_RED_BIAS, 0.5f, 0.0f),
        Transfer("colour maps", GL_MAP_COLOR, 1.0f, 0.0f),
    };
}

/// A program whose one output is caught by transform feedback.
GLuint MakeCatcher() {
    const char* const szText = "#version 150\nout float caught;\n"
                               "void main() { caught = 1.0; gl_Position = vec4(0.0); }\n";
    const GLuint uShader = glCreateShader(GL_VERTEX_SHADER), uProgram = glCreateProgram();
    glShaderSource(uShader, 1, &szText, nullptr);
    glCompileShader(uShader);
    glAttachShader(uProgram, uShader);
    const char* const aszNames[] = {"caught"};
    glTransformFeedbackVaryings(uProgram, 1, aszNames, GL_INTERLEAVED_ATTRIBS);
    glLinkProgram(uProgram);
    glBindBufferBase(GL_TRANSFORM_FEEDBACK_BUFFER, 0, g_uBuffer);
    return uProgram;
}

EglOptions Options(bool bCore, u32 uSamples = 0) {
    EglOptions st;
    st.m_bCore = bCore;
    st.m_uWidth = 160;
    st.m_uHeight = 120;
    st.m_uSamples = uSamples;
    return st;
}

using Pixels = std::vector<u8>;

class OuterGuard : public FrameFixture {
  protected:
    bool Build(const EglOptions& stOptions, const char16_t* wzProfile) {
        SetCare({"OuterGuard"});
        if (!Begin(stOptions, wzProfile) || !RunUntilBuilt()) return false;
        MakeObjects();
        return true;
    }
    static void Clear() {
        glClearColor(0.2f, 0.4f, 0.1f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    static bool IsWhole() { return g_bInitGL && !g_fnAreDrawsSpread(); }
    std::vector<std::string> m_vecCalls; ///< of the frame that was recorded last
    void OneFrame(const std::function<void(bool)>& fnSet) {
        Clear();
        fnSet(true);
        Swap();
        fnSet(false);
    }
    /// One frame of the program, with the state set after its own drawing; looked at under the default one.
    /// Those of a build are all alike.
    Pixels Frame(const std::function<void(bool)>& fnSet = [](bool) {}) {
        for (int i = 0; i < 12 && !IsWhole(); ++i) OneFrame(fnSet);
        OneFrame(fnSet);
        return m_context.ReadPixels();
    }
    Pixels Bare() {
        Clear();
        return m_context.ReadPixels();
    }
    void CompareDrawing(const EglOptions& stOptions, const char16_t* wzProfile) {
        ASSERT_TRUE(Build(stOptions, wzProfile));
        const Pixels vecExpected = Frame();
        ASSERT_EQ(Frame(), vecExpected) << "the picture must stand still to be compared";
        ASSERT_NE(Bare(), vecExpected);
        for (const stOddState& st : DrawingStates()) {
            if (stOptions.m_bCore && st.bCompatibilityOnly) continue;
            EXPECT_TRUE(Frame(st.fnSet) == vecExpected) << st.szName;
        }
    }
    /// Each state stands while the overlay is built.
    void CompareBuilding(const EglOptions& stOptions, const char16_t* wzProfile) {
        ASSERT_TRUE(Build(stOptions, wzProfile));
        const Pixels vecExpected = Frame();
        for (const stOddState& st : PixelStates()) {
            if (stOptions.m_bCore && st.bCompatibilityOnly) continue;
            g_fnTavo_GL_Release();
            EXPECT_TRUE(Frame(st.fnSet) == vecExpected) << st.szName;
            EXPECT_TRUE(g_bInitGL);
        }
    }
    /// The picture and the count of whoever looks on stay as if there were no overlay.
    void ExpectNothingDrawn(const std::function<void(bool)>& fnSet, const char* szWhat) {
        const Pixels vecBare = Bare();
        EXPECT_TRUE(Frame(fnSet) == vecBare) << szWhat;
        EXPECT_FALSE(Frame() == vecBare) << "and the next frame has it again: " << szWhat;
    }
};

TEST_F(OuterGuard, TextLooksTheSameUnderEachOddStateInCore) { CompareDrawing(Options(true), u"TextSheet"); }

TEST_F(OuterGuard, TextLooksTheSameUnderEachOddStateInCompatibility) {
    CompareDrawing(Options(false), u"TextSheet");
}

TEST_F(OuterGuard, ShapesLookTheSameUnderEachOddStateWithSeveralSamples) {
    CompareDrawing(Options(true, 4), u"Panels20");
    GLint iSamples = 0;
    glGetIntegerv(GL_SAMPLES, &iSamples);
    EXPECT_EQ(iSamples, 4);
}

TEST_F(OuterGuard, FrostedPanelsLookTheSameUnderEachOddState) {
    CompareDrawing(Options(false), u"Frosted20");
}

TEST_F(OuterGuard, FontsAreMadeTheSameUnderEachOddStateInCore) {
    CompareBuilding(Options(true), u"TextSheet");
}

TEST_F(OuterGuard, FontsAreMadeTheSameUnderEachOddStateInCompatibility) {
    CompareBuilding(Options(false), u"TextSheet");
}

TEST_F(OuterGuard, CopiesOfTheFrameAreTheSameUnderOddTransfers) {
    CompareBuilding(Options(false), u"Frosted20");
}

TEST_F(OuterGuard, CopiesOfTheFrameAreTheSameUnderOddReads) { CompareBuilding(Options(true), u"Frosted20"); }

/// The texture behind frosted panels, of a frame of many colours.
class BackdropCopies : public OuterGuard {
  protected:
    static void PaintStairs() {
        glEnable(GL_SCISSOR_TEST);
        for (GLint i = 0; i < 40; ++i) {
            glScissor(3 * i, 2 * i, 160, 120);
            glClearColor(0.02f * static_cast<float>(i), 0.1f, 0.01f * static_cast<float>(i * i % 90), 0.5f);
            glClear(GL_COLOR_BUFFER_BIT);
        }
        glDisable(GL_SCISSOR_TEST);
    }
    Pixels Copy() {
        PaintStairs();
        m_vecCalls = RecordSwap();
        Pixels vec(std::size_t{4} * g_uWidth * g_uHeight);
        glBindTexture(GL_TEXTURE_2D, g_uCopyTexture);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, vec.data());
        glBindTexture(GL_TEXTURE_2D, 0);
        return vec;
    }
    void Resize(u32 uWidth, u32 uHeight) {
        platform::headless::SetClientSize(uWidth, uHeight);
        for (int i = 0; i < 60 && g_uWidth != uWidth; ++i) Swap();
        ASSERT_EQ(g_uWidth, uWidth);
    }
    /// Of two sizes.
    std::vector<Pixels> Copies(std::size_t uReads, std::size_t uCopies) {
        std::vector<Pixels> list;
        Frame();
        for (const u32 uWidth : {97u, 80u}) {
            Resize(uWidth, uWidth / 2);
            list.push_back(Copy());
            EXPECT_EQ(CountCalls(m_vecCalls, "glReadPixels"), uReads);
            EXPECT_EQ(CountCalls(m_vecCalls, "glCopyTexImage2D"), uCopies);
        }
        return list;
    }
};

/// On a driver that draws on the processor; the others copy in both cases.
TEST_F(BackdropCopies, GoThroughMemoryOnTheProcessorAndAreWhatTheDriverCopies) {
    ASSERT_TRUE(Build(Options(true), u"Frosted20"));
    const char* const szDriver = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    const bool bProcessor = std::strstr(szDriver, "llvmpipe") != nullptr;
    const std::vector<Pixels> listThrough = Copies(bProcessor, !bProcessor);
    SetCare({});
    g_fnTavo_GL_Release();
    EXPECT_TRUE(Copies(0, 1) == listThrough);
}

TEST_F(OuterGuard, DrawsNothingIntoActiveTransformFeedback) {
    ASSERT_TRUE(Build(Options(true), u"Panels20"));
    const GLuint uProgram = MakeCatcher();
    GLuint uQuery = 0, uCaught = 77;
    glGenQueries(1, &uQuery);
    const auto fnSet = [&](bool b) {
        if (!b) glEndTransformFeedback();
        if (!b) return glUseProgram(0);
        glUseProgram(uProgram);
        glBeginTransformFeedback(GL_TRIANGLES);
    };
    ExpectNothingDrawn(fnSet, "transform feedback");
    glBeginQuery(GL_TRANSFORM_FEEDBACK_PRIMITIVES_WRITTEN, uQuery);
    Frame(fnSet);
    glEndQuery(GL_TRANSFORM_FEEDBACK_PRIMITIVES_WRITTEN);
    glGetQueryObjectuiv(uQuery, GL_QUERY_RESULT, &uCaught);
    EXPECT_EQ(uCaught, 0u);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(OuterGuard, DrawsIntoPausedTransformFeedbackWithoutReachingIt) {
    ASSERT_TRUE(Build(Options(true), u"Panels20"));
    const Pixels vecExpected = Frame();
    const GLuint uProgram = MakeCatcher();
    EXPECT_TRUE(Frame([&](bool b) {
                    if (b) {
                        glUseProgram(uProgram);
                        glBeginTransformFeedback(GL_TRIANGLES);
                        glPauseTransformFeedback();
                    } else {
                        glResumeTransformFeedback();
                        glEndTransformFeedback();
                        glUseProgram(0);
                    }
                }) == vecExpected);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

/// The draw buffers of framebuffer 0 as the program set them, after a frame that needed another.
TEST_F(OuterGuard, GivesTheDrawBuffersBack) {
    ASSERT_TRUE(Build(Options(true), u"Panels20"));
    const std::vector<std::vector<GLenum>> vecLists = {
        {GL_NONE}, {GL_FRONT}, {GL_FRONT_AND_BACK}, {GL_BACK_LEFT}, {GL_NONE, GL_BACK_LEFT}};
    for (const std::vector<GLenum>& vecList : vecLists) {
        const GLsizei iCount = static_cast<GLsizei>(vecList.size());
        iCount == 1 ? glDrawBuffer(vecList[0]) : glDrawBuffers(iCount, vecList.data());
        Swap();
        for (GLsizei i = 0; i < 4; ++i) {
            GLint iSeen = -1;
            glGetIntegerv(GL_DRAW_BUFFER0 + static_cast<GLenum>(i), &iSeen);
            const GLenum eSet = i < iCount ? vecList[static_cast<std::size_t>(i)] : GLenum{GL_NONE};
            EXPECT_EQ(static_cast<GLenum>(iSeen), eSet) << i << " of list that begins with " << vecList[0];
        }
        EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    }
}

/// Switches that only drivers of certain makers have: as if this one had them, on in the program.
TEST_F(OuterGuard, DrawsWithoutConservativeRasterization) {
    struct stKind {
        const char* szExtension;
        GLenum eCap;
    };
    for (const stKind st :
         {stKind{"GL_NV_conservative_raster", GL_CONSERVATIVE_RASTERIZATION_NV},
          stKind{"GL_INTEL_conservative_rasterization", GL_CONSERVATIVE_RASTERIZATION_INTEL}}) {
        const gl_recorder::CPretendedSwitch pretended(st.eCap);
        SetCare({"OuterGuard"});
        ASSERT_TRUE(Begin(Options(true), u"Panels20"));
        ASSERT_TRUE(platform::InitGlew());
        ASSERT_TRUE(RunUntilBuilt());
        glEnable(st.eCap);
        EXPECT_EQ(CountCalls(RecordSwap(), gl_recorder::Call("glDisable", st.eCap)), 0u) << "not offered";
        pretended.Offer(st.szExtension);
        g_fnForgetOuterGuard();
        const std::vector<std::string> vecCalls = RecordSwap();
        const std::size_t uOff = FindCall(vecCalls, gl_recorder::Call("glDisable", st.eCap));
        const std::size_t uDraw = FindCall(vecCalls, FirstDraw(vecCalls), uOff);
        const std::size_t uOn = FindCall(vecCalls, gl_recorder::Call("glEnable", st.eCap), uDraw);
        EXPECT_NE(uOff, std::string::npos) << st.szExtension;
        EXPECT_NE(uDraw, std::string::npos) << st.szExtension;
        EXPECT_NE(uOn, std::string::npos) << st.szExtension;
        EXPECT_EQ(glIsEnabled(st.eCap), GL_TRUE);
        g_fnTavo_GL_Release();
        m_context.Destroy();
    }
}

TEST_F(OuterGuard, DrawsNothingWhileAQueryCounts) {
    ASSERT_TRUE(Build(Options(true), u"Panels20"));
    ASSERT_TRUE(glewIsSupported("GL_ARB_pipeline_statistics_query"));
    for (GLenum e : {GL_SAMPLES_PASSED, GL_ANY_SAMPLES_PASSED, GL_ANY_SAMPLES_PASSED_CONSERVATIVE,
                     GL_PRIMITIVES_GENERATED, GL_VERTICES_SUBMITTED, GL_PRIMITIVES_SUBMITTED,
                     GL_VERTEX_SHADER_INVOCATIONS, GL_FRAGMENT_SHADER_INVOCATIONS,
                     GL_CLIPPING_INPUT_PRIMITIVES, GL_CLIPPING_OUTPUT_PRIMITIVES}) {
        GLuint uQuery = 0, uCounted = 77;
        glGenQueries(1, &uQuery);
        ExpectNothingDrawn([&](bool b) { b ? glBeginQuery(e, uQuery) : glEndQuery(e); }, "query");
        glGetQueryObjectuiv(uQuery, GL_QUERY_RESULT, &uCounted);
        EXPECT_EQ(uCounted, 0u) << e;
    }
}

/// The statistics that are not asked for: the drawing adds nothing to them.
TEST_F(OuterGuard, DrawingAddsNothingToTheOtherStatistics) {
    for (const char16_t* wzProfile : {u"Panels20", u"Frosted20", u"TextSheet"}) {
        ASSERT_TRUE(Build(Options(true), wzProfile));
        const Pixels vecExpected = Frame();
        for (GLenum e : {GL_TESS_CONTROL_SHADER_PATCHES, GL_TESS_EVALUATION_SHADER_INVOCATIONS,
                         GL_GEOMETRY_SHADER_INVOCATIONS, GL_GEOMETRY_SHADER_PRIMITIVES_EMITTED,
                         GL_COMPUTE_SHADER_INVOCATIONS}) {
            GLuint uQuery = 0, uCounted = 77;
            glGenQueries(1, &uQuery);
            EXPECT_TRUE(Frame([&](bool b) { b ? glBeginQuery(e, uQuery) : glEndQuery(e); }) == vecExpected);
            glGetQueryObjectuiv(uQuery, GL_QUERY_RESULT, &uCounted);
            EXPECT_EQ(uCounted, 0u) << e;
        }
        g_fnTavo_GL_Release();
        m_context.Destroy();
    }
}

TEST_F(OuterGuard, DrawsNothingWhereFeedbackOrSelectionTakeThePlaceOfPixels) {
    ASSERT_TRUE(Build(Options(false), u"Panels20"));
    GLfloat afFeedback[64] = {};
    GLuint auSelected[64] = {};
    glFeedbackBuffer(64, GL_2D, afFeedback);
    glSelectBuffer(64, auSelected);
    for (GLenum e : {GL_FEEDBACK, GL_SELECT}) {
        GLint iResult = 77;
        ExpectNothingDrawn([&](bool b) { iResult = glRenderMode(b ? e : GL_RENDER); }, "render mode");
        EXPECT_EQ(iResult, 0) << "values or hits";
    }
}

TEST_F(OuterGuard, DrawsNothingIntoADisplayList) {
    ASSERT_TRUE(Build(Options(false), u"TextSheet"));
    const GLuint uList = glGenLists(1);
    for (GLenum eMode : {GL_COMPILE, GL_COMPILE_AND_EXECUTE}) {
        ExpectNothingDrawn([&](bool b) { b ? glNewList(uList, eMode) : glEndList(); }, "display list");
        const Pixels vecBare = Bare();
        glCallList(uList);
        EXPECT_TRUE(m_context.ReadPixels() == vecBare) << "the list holds nothing of the overlay";
    }
}

TEST_F(OuterGuard, IsBuiltAfterAFrameThatHadToBeLeftAlone) {
    SetCare({"OuterGuard"});
    ASSERT_TRUE(Begin(Options(false), u"TextSheet"));
    ASSERT_TRUE(platform::InitGlew());
    GLuint uQuery = 0;
    glGenQueries(1, &uQuery);
    glBeginQuery(GL_SAMPLES_PASSED, uQuery);
    Swap();
    EXPECT_FALSE(g_bInitGL);
    glEndQuery(GL_SAMPLES_PASSED);
    Swap();
    EXPECT_TRUE(g_bInitGL);
}

TEST_F(OuterGuard, ConditionalRenderingLosesNoMoreThanTheOverlay) {
    ASSERT_TRUE(Build(Options(true), u"TextSheet"));
    const Pixels vecExpected = Frame();
    GLuint uQuery = 0;
    glGenQueries(1, &uQuery);
    glBeginQuery(GL_SAMPLES_PASSED, uQuery);
    glEndQuery(GL_SAMPLES_PASSED);
    const Pixels vecBare = Bare();
    EXPECT_TRUE(Frame([&](bool b) {
                    b ? glBeginConditionalRender(uQuery, GL_QUERY_WAIT) : glEndConditionalRender();
                }) == vecBare);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << "it was still on";
    EXPECT_TRUE(Frame() == vecExpected);
}

TEST_F(OuterGuard, LeavesTheLastUseOfADeletedProgramAlone) {
    ASSERT_TRUE(Build(Options(true), u"Panels20"));
    ExpectNothingDrawn(
        [](bool b) {
            const GLuint uProgram = b ? glCreateProgram() : 0;
            const char* const szText = "#version 150\nvoid main() { gl_Position = vec4(0.0); }\n";
            const GLuint uShader = b ? glCreateShader(GL_VERTEX_SHADER) : 0;
            if (!b) return glUseProgram(0);
            glShaderSource(uShader, 1, &szText, nullptr);
            glCompileShader(uShader);
            glAttachShader(uProgram, uShader);
            glLinkProgram(uProgram);
            glUseProgram(uProgram);
            glDeleteProgram(uProgram);
        },
        "program");
}

unsigned g_uMessages = 0;

void GLAPIENTRY CountMessage(GLenum, GLenum, GLuint, GLenum, GLsizei, const GLchar*, const void*) {
    ++g_uMessages;
}

/// From the first frame on: the program has its callback before the overlay is built.
class OuterGuardMessages : public OuterGuard {
  protected:
    unsigned MessagesOf(bool bCore) {
        EglOptions stOptions = Options(bCore);
        stOptions.m_bDebug = true;
        if (!Begin(stOptions, u"TextSheet") || !platform::InitGlew()) return ~0u;
        glEnable(GL_DEBUG_OUTPUT);
        glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
        glDebugMessageControl(GL_DONT_CARE, GL_DONT_CARE, GL_DONT_CARE, 0, nullptr, GL_TRUE);
        glDebugMessageCallback(CountMessage, nullptr);
        g_uMessages = 0;
        for (int i = 0; i < 5; ++i) Swap();
        EXPECT_TRUE(g_bInitGL);
        return g_uMessages;
    }
};

TEST_F(OuterGuardMessages, NoneReachTheProgramInCore) {
    SetCare({"OuterGuard"});
    EXPECT_EQ(MessagesOf(true), 0u);
}

TEST_F(OuterGuardMessages, NoneReachTheProgramInCompatibility) {
    SetCare({"OuterGuard"});
    EXPECT_EQ(MessagesOf(false), 0u);
}

TEST_F(OuterGuardMessages, RejectedCallsReachItWithoutTheKey) { EXPECT_GT(MessagesOf(true), 0u); }

/// The drawing of a frame alone, without the swap's own drain.
TEST_F(OuterGuard, NoCallIsInvalidAndAnErrorOfTheProgramStays) {
    for (bool bCore : {true, false}) {
        SetCare({"OuterGuard"});
        ASSERT_TRUE(Begin(Options(bCore), u"TextSheet"));
        ASSERT_TRUE(RunUntilBuilt()); // takes the keys
        ASSERT_TRUE(g_bInitGL);
        g_fnTavo_GL_Release();
        for (int i = 0; i < 12; ++i) {
            g_fnTavo_GL_PrewglSwapBuffers(m_context.Surface());
            EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << "frame " << i << ", core " << bCore;
        }
        EXPECT_TRUE(g_bInitGL);
        glEnable(0xDEAD);
        g_fnTavo_GL_PrewglSwapBuffers(m_context.Surface());
        EXPECT_EQ(glGetError(), GLenum{GL_INVALID_ENUM});
        g_fnTavo_GL_Release();
        m_context.Destroy();
    }
}

/// Nothing stays behind: one array of ours, and none after a release.
TEST_F(OuterGuard, KeepsOneVertexArray) {
    ASSERT_TRUE(Build(Options(true), u"Panels20"));
    std::vector<GLuint> vecBefore, vecAfter;
    for (GLuint u = 1; u < 64; ++u)
        if (glIsVertexArray(u)) vecBefore.push_back(u);
    for (int i = 0; i < 5; ++i) Swap();
    for (GLuint u = 1; u < 64; ++u)
        if (glIsVertexArray(u)) vecAfter.push_back(u);
    EXPECT_EQ(vecAfter, vecBefore);
    EXPECT_EQ(vecAfter.size(), 1u) << "the program made names only, and bound none of them";
    g_fnTavo_GL_Release();
    EXPECT_EQ(glIsVertexArray(vecAfter.front()), GL_FALSE);
}

} // namespace
