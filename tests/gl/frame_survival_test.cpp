// Which of an application's states come back after a frame with the overlay, and which do not. The table is a
// document: the test writes it and compares it with the committed one.
#include "frame/release.h"
#include "platform/gl_api.h"
#include "tests/gl/frame_fixture.h"

#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>

enum class Profiles { Both, CompatibilityOnly };

/// Sets the state to an odd value, or back to its default; reads it as text.
struct stStateRow {
    const char* szName;
    Profiles eProfiles;
    std::function<void(bool bOdd)> fnSet;
    std::function<std::string()> fnGet;
};
using Rows = std::vector<stStateRow>;

static std::string Ints(GLenum eName, int iCount = 1) {
    GLint aiValues[16] = {};
    glGetIntegerv(eName, aiValues);
    std::string strText;
    for (int i = 0; i < iCount; ++i) strText += std::to_string(aiValues[i]) + " ";
    return strText;
}

static std::string Floats(GLenum eName, int iCount) {
    GLfloat afValues[16] = {};
    glGetFloatv(eName, afValues);
    std::ostringstream text;
    for (int i = 0; i < iCount; ++i) text << afValues[i] << " ";
    return text.str();
}

static std::function<std::string()> Get(GLenum eName, int iCount = 1) {
    return [=] { return Ints(eName, iCount); };
}

/// A switch of glEnable whose default is bDefault.
static stStateRow Switch(const char* szName, GLenum eCap, bool bDefault = false,
                         Profiles e = Profiles::Both) {
    return {szName, e,
            [=](bool bOdd) {
                if (bOdd != bDefault)
                    glEnable(eCap);
                else
                    glDisable(eCap);
            },
            [=] { return std::to_string(glIsEnabled(eCap)); }};
}

static stStateRow PixelStore(const char* szName, GLenum eName, int iOdd, int iDefault) {
    return {szName, Profiles::Both, [=](bool bOdd) { glPixelStorei(eName, bOdd ? iOdd : iDefault); },
            Get(eName)};
}

/// Objects of the application, made once a context.
struct stAppObjects {
    GLuint uTexture = 0, uBuffer = 0, uElements = 0, uArray = 0, uFramebuffer = 0, uTarget = 0, uProgram = 0,
           uSampler = 0, uPipeline = 0, uFeedback = 0;
};
static stAppObjects g_stApp;

static GLuint Shader(GLenum eType, const char* szText) {
    const GLuint uShader = glCreateShader(eType);
    glShaderSource(uShader, 1, &szText, nullptr);
    glCompileShader(uShader);
    return uShader;
}

static GLuint Program() {
    const GLuint uProgram = glCreateProgram();
    glAttachShader(uProgram,
                   Shader(GL_VERTEX_SHADER, "#version 150\nvoid main() { gl_Position = vec4(0.0); }\n"));
    glAttachShader(uProgram, Shader(GL_FRAGMENT_SHADER,
                                    "#version 150\nout vec4 colour;\nvoid main() { colour = vec4(1.0); }\n"));
    glLinkProgram(uProgram);
    return uProgram;
}

static void MakeObjects() {
    stAppObjects& st = g_stApp;
    glGenTextures(1, &st.uTexture);
    glBindTexture(GL_TEXTURE_2D, st.uTexture);
    glGenTextures(1, &st.uTarget);
    glBindTexture(GL_TEXTURE_2D, st.uTarget);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 16, 16, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindTexture(GL_TEXTURE_2D, 0);
    glGenBuffers(1, &st.uBuffer);
    glGenBuffers(1, &st.uElements);
    glGenVertexArrays(1, &st.uArray);
    glGenFramebuffers(1, &st.uFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, st.uFramebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, st.uTarget, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    st.uProgram = Program();
    glGenSamplers(1, &st.uSampler);
    glGenProgramPipelines(1, &st.uPipeline);
    glGenTransformFeedbacks(1, &st.uFeedback);
    glBindBuffer(GL_ARRAY_BUFFER, st.uBuffer);
    glBufferData(GL_ARRAY_BUFFER, 4096, nullptr, GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

static stStateRow Buffer(const char* szName, GLenum eTarget, GLenum eBinding) {
    return {szName, Profiles::Both, [=](bool bOdd) { glBindBuffer(eTarget, bOdd ? g_stApp.uBuffer : 0); },
            Get(eBinding)};
}

/// What the guard saves, in its own order.
static Rows SavedRows() {
    return {
        {"viewport", Profiles::Both,
         [](bool b) { b ? glViewport(3, 5, 77, 55) : glViewport(0, 0, 640, 480); }, Get(GL_VIEWPORT, 4)},
        {"scissor box", Profiles::Both,
         [](bool b) { b ? glScissor(3, 5, 77, 55) : glScissor(0, 0, 640, 480); }, Get(GL_SCISSOR_BOX, 4)},
        {"2D texture of unit 0", Profiles::Both,
         [](bool b) { glBindTexture(GL_TEXTURE_2D, b ? g_stApp.uTexture : 0); }, Get(GL_TEXTURE_BINDING_2D)},
        {"filters of the bound 2D texture", Profiles::Both,
         [](bool b) {
             glBindTexture(GL_TEXTURE_2D, g_stApp.uTexture);
             glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, b ? GL_NEAREST : GL_NEAREST_MIPMAP_LINEAR);
             glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, b ? GL_NEAREST : GL_LINEAR);
             if (!b) glBindTexture(GL_TEXTURE_2D, 0);
         },
         [] {
             GLint aiFilters[2] = {};
             glBindTexture(GL_TEXTURE_2D, g_stApp.uTexture);
             glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &aiFilters[0]);
             glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, &aiFilters[1]);
             return std::to_string(aiFilters[0]) + " " + std::to_string(aiFilters[1]);
         }},
        {"current colour", Profiles::CompatibilityOnly,
         [](bool b) { b ? glColor4f(0.1f, 0.2f, 0.3f, 0.4f) : glColor4f(1, 1, 1, 1); },
         [] { return Floats(GL_CURRENT_COLOR, 4); }},
        Switch("face culling", GL_CULL_FACE),
        Switch("depth test", GL_DEPTH_TEST),
        Switch("scissor test", GL_SCISSOR_TEST),
        Switch("alpha test", GL_ALPHA_TEST, false, Profiles::CompatibilityOnly),
        Switch("stencil test", GL_STENCIL_TEST),
        Switch("lighting", GL_LIGHTING, false, Profiles::CompatibilityOnly),
        Switch("blending", GL_BLEND),
        {"program", Profiles::Both, [](bool b) { glUseProgram(b ? g_stApp.uProgram : 0); },
         Get(GL_CURRENT_PROGRAM)},
        {"element array buffer", Profiles::Both,
         [](bool b) {
             glBindVertexArray(g_stApp.uArray);
             glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, b ? g_stApp.uElements : 0);
             if (!b) glBindVertexArray(0);
         },
         Get(GL_ELEMENT_ARRAY_BUFFER_BINDING)},
        {"blend factors", Profiles::Both,
         [](bool b) {
             b ? glBlendFuncSeparate(GL_DST_COLOR, GL_ONE, GL_ZERO, GL_DST_ALPHA)
               : glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_ONE, GL_ZERO);
         },
         [] {
             return Ints(GL_BLEND_SRC_RGB) + Ints(GL_BLEND_DST_RGB) + Ints(GL_BLEND_SRC_ALPHA) +
                    Ints(GL_BLEND_DST_ALPHA);
         }},
        {"blend colour", Profiles::Both,
         [](bool b) { b ? glBlendColor(0.25f, 0.5f, 0.75f, 0.125f) : glBlendColor(0, 0, 0, 0); },
         [] { return Floats(GL_BLEND_COLOR, 4); }},
        PixelStore("unpack swap bytes", GL_UNPACK_SWAP_BYTES, 1, 0),
        PixelStore("unpack LSB first", GL_UNPACK_LSB_FIRST, 1, 0),
        PixelStore("unpack row length", GL_UNPACK_ROW_LENGTH, 37, 0),
        PixelStore("unpack skip pixels", GL_UNPACK_SKIP_PIXELS, 3, 0),
        PixelStore("unpack skip rows", GL_UNPACK_SKIP_ROWS, 2, 0),
        PixelStore("unpack alignment", GL_UNPACK_ALIGNMENT, 8, 4),
        {"vertex attribute 0 of the application's array", Profiles::Both,
         [](bool b) {
             glBindVertexArray(g_stApp.uArray);
             glBindBuffer(GL_ARRAY_BUFFER, g_stApp.uBuffer);
             glVertexAttribPointer(0, b ? 3 : 4, GL_FLOAT, GL_FALSE, b ? 44 : 0, nullptr);
             b ? glEnableVertexAttribArray(0) : glDisableVertexAttribArray(0);
             glBindBuffer(GL_ARRAY_BUFFER, 0);
             if (!b) glBindVertexArray(0);
         },
         [] {
             std::string strText;
             for (GLenum e : {GL_VERTEX_ATTRIB_ARRAY_ENABLED, GL_VERTEX_ATTRIB_ARRAY_SIZE,
                              GL_VERTEX_ATTRIB_ARRAY_STRIDE, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING}) {
                 GLint iValue = 0;
                 glGetVertexAttribiv(0, e, &iValue);
                 strText += std::to_string(iValue) + " ";
             }
             return strText;
         }},
        {"vertex array", Profiles::Both, [](bool b) { glBindVertexArray(b ? g_stApp.uArray : 0); },
         Get(GL_VERTEX_ARRAY_BINDING)},
        {"colour mask", Profiles::Both, [](bool b) { glColorMask(!b, 1, !b, 1); },
         Get(GL_COLOR_WRITEMASK, 4)},
        {"sampler of unit 0", Profiles::Both, [](bool b) { glBindSampler(0, b ? g_stApp.uSampler : 0); },
         Get(GL_SAMPLER_BINDING)},
    };
}

/// What engines rely on beyond that.
static Rows EngineRows() {
    return {
        {"draw framebuffer", Profiles::Both,
         [](bool b) { glBindFramebuffer(GL_DRAW_FRAMEBUFFER, b ? g_stApp.uFramebuffer : 0); },
         Get(GL_DRAW_FRAMEBUFFER_BINDING)},
        {"read framebuffer", Profiles::Both,
         [](bool b) { glBindFramebuffer(GL_READ_FRAMEBUFFER, b ? g_stApp.uFramebuffer : 0); },
         Get(GL_READ_FRAMEBUFFER_BINDING)},
        Buffer("array buffer", GL_ARRAY_BUFFER, GL_ARRAY_BUFFER_BINDING),
        Buffer("uniform buffer", GL_UNIFORM_BUFFER, GL_UNIFORM_BUFFER_BINDING),
        Buffer("pixel unpack buffer", GL_PIXEL_UNPACK_BUFFER, GL_PIXEL_UNPACK_BUFFER_BINDING),
        Buffer("pixel pack buffer", GL_PIXEL_PACK_BUFFER, GL_PIXEL_PACK_BUFFER_BINDING),
        {"active texture unit", Profiles::Both,
         [](bool b) { glActiveTexture(b ? GL_TEXTURE3 : GL_TEXTURE0); }, Get(GL_ACTIVE_TEXTURE)},
        {"2D texture of unit 0 while unit 3 is active", Profiles::Both,
         [](bool b) {
             glActiveTexture(GL_TEXTURE0);
             glBindTexture(GL_TEXTURE_2D, b ? g_stApp.uTexture : 0);
             glActiveTexture(b ? GL_TEXTURE3 : GL_TEXTURE0);
         },
         [] {
             glActiveTexture(GL_TEXTURE0);
             return Ints(GL_TEXTURE_BINDING_2D);
         }},
        {"2D texture of unit 3 while unit 3 is active", Profiles::Both,
         [](bool b) {
             glActiveTexture(GL_TEXTURE3);
             glBindTexture(GL_TEXTURE_2D, b ? g_stApp.uTexture : 0);
             if (!b) glActiveTexture(GL_TEXTURE0);
         },
         [] {
             glActiveTexture(GL_TEXTURE3);
             return Ints(GL_TEXTURE_BINDING_2D);
         }},
        {"sampler of unit 3", Profiles::Both, [](bool b) { glBindSampler(3, b ? g_stApp.uSampler : 0); },
         [] {
             glActiveTexture(GL_TEXTURE3);
             const std::string strText = Ints(GL_SAMPLER_BINDING);
             glActiveTexture(GL_TEXTURE0);
             return strText;
         }},
        {"program pipeline", Profiles::Both, [](bool b) { glBindProgramPipeline(b ? g_stApp.uPipeline : 0); },
         Get(GL_PROGRAM_PIPELINE_BINDING)},
        {"blend equations", Profiles::Both,
         [](bool b) {
             b ? glBlendEquationSeparate(GL_FUNC_SUBTRACT, GL_MAX)
               : glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD);
         },
         [] { return Ints(GL_BLEND_EQUATION_RGB) + Ints(GL_BLEND_EQUATION_ALPHA); }},
        {"clip control", Profiles::Both,
         [](bool b) {
             b ? glClipControl(GL_UPPER_LEFT, GL_ZERO_TO_ONE)
               : glClipControl(GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
         },
         [] { return Ints(GL_CLIP_ORIGIN) + Ints(GL_CLIP_DEPTH_MODE); }},
        Switch("sRGB writes", GL_FRAMEBUFFER_SRGB),
        PixelStore("pack alignment", GL_PACK_ALIGNMENT, 8, 4),
        PixelStore("pack row length", GL_PACK_ROW_LENGTH, 37, 0),
        PixelStore("unpack image height", GL_UNPACK_IMAGE_HEIGHT, 9, 0),
        {"polygon mode", Profiles::Both,
         [](bool b) { glPolygonMode(GL_FRONT_AND_BACK, b ? GL_LINE : GL_FILL); }, Get(GL_POLYGON_MODE)},
        Switch("dithering", GL_DITHER),
        Switch("colour logic operation", GL_COLOR_LOGIC_OP),
        Switch("fog", GL_FOG, false, Profiles::CompatibilityOnly),
        Switch("point sprites", GL_POINT_SPRITE, false, Profiles::CompatibilityOnly),
        Switch("2D texturing", GL_TEXTURE_2D, false, Profiles::CompatibilityOnly),
        Switch("clip distance 0", GL_CLIP_DISTANCE0),
        Switch("depth clamp", GL_DEPTH_CLAMP),
        Switch("rasteriser discard", GL_RASTERIZER_DISCARD),
        Switch("primitive restart", GL_PRIMITIVE_RESTART),
        Switch("multisampling", GL_MULTISAMPLE, true),
        Switch("sample alpha to coverage", GL_SAMPLE_ALPHA_TO_COVERAGE),
        {"depth mask", Profiles::Both, [](bool b) { glDepthMask(!b); }, Get(GL_DEPTH_WRITEMASK)},
        {"depth function", Profiles::Both, [](bool b) { glDepthFunc(b ? GL_GEQUAL : GL_LESS); },
         Get(GL_DEPTH_FUNC)},
        {"front face", Profiles::Both, [](bool b) { glFrontFace(b ? GL_CW : GL_CCW); }, Get(GL_FRONT_FACE)},
        {"culled face", Profiles::Both, [](bool b) { glCullFace(b ? GL_FRONT : GL_BACK); },
         Get(GL_CULL_FACE_MODE)},
        {"stencil mask", Profiles::Both, [](bool b) { glStencilMask(b ? 0x0F : 0xFF); },
         Get(GL_STENCIL_WRITEMASK)},
        {"read buffer of the default framebuffer", Profiles::Both,
         [](bool b) { glReadBuffer(b ? GL_FRONT : GL_BACK); }, Get(GL_READ_BUFFER)},
        {"matrix mode", Profiles::CompatibilityOnly,
         [](bool b) { glMatrixMode(b ? GL_PROJECTION : GL_MODELVIEW); }, Get(GL_MATRIX_MODE)},
        {"shade model", Profiles::CompatibilityOnly, [](bool b) { glShadeModel(b ? GL_FLAT : GL_SMOOTH); },
         Get(GL_SHADE_MODEL)},
    };
}

/// One of a row of switches.
static stStateRow SwitchOf(const char* szName, GLenum eCap, GLuint uIndex) {
    return {szName, Profiles::Both,
            [=](bool b) {
                if (b)
                    glEnablei(eCap, uIndex);
                else
                    glDisablei(eCap, uIndex);
            },
            [=] { return std::to_string(glIsEnabledi(eCap, uIndex)); }};
}

static std::string IntsOf(GLenum eName, GLuint uIndex, int iCount = 1) {
    GLint aiValues[4] = {};
    glGetIntegeri_v(eName, uIndex, aiValues);
    std::string strText;
    for (int i = 0; i < iCount; ++i) strText += std::to_string(aiValues[i]) + " ";
    return strText;
}

static void BindDraw(GLuint uFramebuffer) { glBindFramebuffer(GL_DRAW_FRAMEBUFFER, uFramebuffer); }
static void BindRead(GLuint uFramebuffer) { glBindFramebuffer(GL_READ_FRAMEBUFFER, uFramebuffer); }

/// What has several of a kind, of which the drawing needs one.
static Rows ArrayRows() {
    return {
        {"viewport 0 in fractions", Profiles::Both,
         [](bool b) { b ? glViewportIndexedf(0, 1.5f, 2.5f, 33.5f, 22.5f) : glViewport(0, 0, 64, 48); },
         [] { return Floats(GL_VIEWPORT, 4); }},
        {"viewport 1", Profiles::Both,
         [](bool b) { b ? glViewportIndexedf(1, 3, 5, 17, 15) : glViewport(0, 0, 64, 48); },
         [] { return IntsOf(GL_VIEWPORT, 1, 4); }},
        {"viewport 15", Profiles::Both,
         [](bool b) { b ? glViewportIndexedf(15, 3, 5, 17, 15) : glViewport(0, 0, 64, 48); },
         [] { return IntsOf(GL_VIEWPORT, 15, 4); }},
        {"scissor box 1", Profiles::Both,
         [](bool b) { b ? glScissorIndexed(1, 3, 5, 17, 15) : glScissor(0, 0, 64, 48); },
         [] { return IntsOf(GL_SCISSOR_BOX, 1, 4); }},
        SwitchOf("scissor test 1", GL_SCISSOR_TEST, 1),
        SwitchOf("scissor test 15", GL_SCISSOR_TEST, 15),
        SwitchOf("blending of buffer 1", GL_BLEND, 1),
        {"blend factors of buffer 1", Profiles::Both,
         [](bool b) {
             b ? glBlendFuncSeparatei(1, GL_DST_COLOR, GL_ONE, GL_ZERO, GL_DST_ALPHA)
               : glBlendFunc(GL_ONE, GL_ZERO);
         },
         [] { return IntsOf(GL_BLEND_SRC_RGB, 1) + IntsOf(GL_BLEND_DST_ALPHA, 1); }},
        {"blend equations of buffer 1", Profiles::Both,
         [](bool b) {
             b ? glBlendEquationSeparatei(1, GL_FUNC_SUBTRACT, GL_MAX) : glBlendEquation(GL_FUNC_ADD);
         },
         [] { return IntsOf(GL_BLEND_EQUATION_RGB, 1) + IntsOf(GL_BLEND_EQUATION_ALPHA, 1); }},
        {"colour mask of buffer 1", Profiles::Both,
         [](bool b) { b ? glColorMaski(1, 0, 1, 0, 1) : glColorMask(1, 1, 1, 1); },
         [] { return IntsOf(GL_COLOR_WRITEMASK, 1, 4); }},
        {"depth range 1", Profiles::Both,
         [](bool b) { b ? glDepthRangeIndexed(1, 0.25, 0.5) : glDepthRange(0, 1); },
         [] {
             GLdouble af[2] = {};
             glGetDoublei_v(GL_DEPTH_RANGE, 1, af);
             return std::to_string(af[0]) + " " + std::to_string(af[1]);
         }},
        {"draw buffer of the default framebuffer", Profiles::Both,
         [](bool b) {
             BindDraw(0);
             glDrawBuffer(b ? GL_FRONT : GL_BACK);
         },
         Get(GL_DRAW_BUFFER)},
        {"draw buffer of a framebuffer of the application", Profiles::Both,
         [](bool b) {
             BindDraw(g_stApp.uFramebuffer);
             glDrawBuffer(b ? GL_NONE : GL_COLOR_ATTACHMENT0);
             if (!b) BindDraw(0);
         },
         [] { return Ints(GL_DRAW_FRAMEBUFFER_BINDING) + Ints(GL_DRAW_BUFFER); }},
        {"read buffer of a framebuffer of the application", Profiles::Both,
         [](bool b) {
             BindRead(g_stApp.uFramebuffer);
             glReadBuffer(b ? GL_NONE : GL_COLOR_ATTACHMENT0);
             if (!b) BindRead(0);
         },
         [] { return Ints(GL_READ_FRAMEBUFFER_BINDING) + Ints(GL_READ_BUFFER); }},
        {"attribute levels of a full stack", Profiles::CompatibilityOnly,
         [](bool b) {
             GLint iDepth = 0, iMost = 0;
             glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &iDepth);
             glGetIntegerv(GL_MAX_ATTRIB_STACK_DEPTH, &iMost);
             for (; b && iDepth < iMost; ++iDepth) glPushAttrib(GL_LINE_BIT);
             for (; !b && iDepth > 0; --iDepth) glPopAttrib();
         },
         Get(GL_ATTRIB_STACK_DEPTH)},
        {"client attribute levels of a full stack", Profiles::CompatibilityOnly,
         [](bool b) {
             GLint iDepth = 0, iMost = 0;
             glGetIntegerv(GL_CLIENT_ATTRIB_STACK_DEPTH, &iDepth);
             glGetIntegerv(GL_MAX_CLIENT_ATTRIB_STACK_DEPTH, &iMost);
             for (; b && iDepth < iMost; ++iDepth) glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
             for (; !b && iDepth > 0; --iDepth) glPopClientAttrib();
         },
         Get(GL_CLIENT_ATTRIB_STACK_DEPTH)},
    };
}

/// What else the drawing could touch or depend on.
static Rows OtherRows() {
    return {
        Switch("polygon smoothing", GL_POLYGON_SMOOTH),
        Switch("polygon stipple", GL_POLYGON_STIPPLE, false, Profiles::CompatibilityOnly),
        Switch("clip distance 7", GL_CLIP_DISTANCE0 + 7),
        Switch("sample mask", GL_SAMPLE_MASK),
        Switch("sample coverage", GL_SAMPLE_COVERAGE),
        Switch("sample alpha to one", GL_SAMPLE_ALPHA_TO_ONE),
        Switch("debug output", GL_DEBUG_OUTPUT),
        Switch("seamless cube maps", GL_TEXTURE_CUBE_MAP_SEAMLESS),
        Switch("size of points by program", GL_PROGRAM_POINT_SIZE),
        {"sample mask bits", Profiles::Both, [](bool b) { glSampleMaski(0, b ? 0x5u : ~0u); },
         [] { return IntsOf(GL_SAMPLE_MASK_VALUE, 0); }},
        {"primitive restart index", Profiles::Both, [](bool b) { glPrimitiveRestartIndex(b ? 7 : 0); },
         Get(GL_PRIMITIVE_RESTART_INDEX)},
        {"provoking vertex", Profiles::Both,
         [](bool b) { glProvokingVertex(b ? GL_FIRST_VERTEX_CONVENTION : GL_LAST_VERTEX_CONVENTION); },
         Get(GL_PROVOKING_VERTEX)},
        {"transform feedback object", Profiles::Both,
         [](bool b) { glBindTransformFeedback(GL_TRANSFORM_FEEDBACK, b ? g_stApp.uFeedback : 0); },
         Get(GL_TRANSFORM_FEEDBACK_BINDING)},
        {"uniform buffer 0", Profiles::Both,
         [](bool b) { glBindBufferBase(GL_UNIFORM_BUFFER, 0, b ? g_stApp.uBuffer : 0); },
         [] { return IntsOf(GL_UNIFORM_BUFFER_BINDING, 0); }},
        PixelStore("unpack skip images", GL_UNPACK_SKIP_IMAGES, 2, 0),
        {"renderbuffer", Profiles::Both,
         [](bool b) {
             static GLuint uRenderbuffer = 0;
             glGenRenderbuffers(1, &uRenderbuffer);
             glBindRenderbuffer(GL_RENDERBUFFER, b ? uRenderbuffer : 0);
         },
         [] { return std::to_string(Ints(GL_RENDERBUFFER_BINDING) != "0 "); }},
        {"generic vertex attribute 1", Profiles::Both,
         [](bool b) { b ? glVertexAttrib4f(1, 0.1f, 0.2f, 0.3f, 0.4f) : glVertexAttrib4f(1, 0, 0, 0, 1); },
         [] {
             GLfloat af[4] = {};
             glGetVertexAttribfv(1, GL_CURRENT_VERTEX_ATTRIB, af);
             return std::to_string(af[0]) + " " + std::to_string(af[3]);
         }},
        {"vertex attribute 1 of the nameless array", Profiles::CompatibilityOnly,
         [](bool b) {
             glBindVertexArray(0);
             glBindBuffer(GL_ARRAY_BUFFER, b ? g_stApp.uBuffer : 0);
             glVertexAttribPointer(1, b ? 3 : 4, GL_FLOAT, GL_FALSE, b ? 44 : 0,
                                   reinterpret_cast<void*>(b ? std::uintptr_t{12} : 0));
             glBindBuffer(GL_ARRAY_BUFFER, 0);
         },
         [] {
             GLint aiValues[3] = {};
             glGetVertexAttribiv(1, GL_VERTEX_ATTRIB_ARRAY_SIZE, &aiValues[0]);
             glGetVertexAttribiv(1, GL_VERTEX_ATTRIB_ARRAY_STRIDE, &aiValues[1]);
             glGetVertexAttribiv(1, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &aiValues[2]);
             return std::to_string(aiValues[0]) + " " + std::to_string(aiValues[1]) + " " +
                    std::to_string(aiValues[2]);
         }},
        {"program that was deleted while in use", Profiles::Both,
         [](bool b) {
             glUseProgram(0);
             if (!b) return;
             const GLuint uProgram = Program();
             glUseProgram(uProgram);
             glDeleteProgram(uProgram);
         },
         [] { return std::to_string(Ints(GL_CURRENT_PROGRAM) != "0 "); }},
        {"texture matrix", Profiles::CompatibilityOnly,
         [](bool b) {
             glMatrixMode(GL_TEXTURE);
             glLoadIdentity();
             if (b) glScalef(2, 2, 2);
             glMatrixMode(GL_MODELVIEW);
         },
         [] { return Floats(GL_TEXTURE_MATRIX, 4); }},
        {"client texture unit", Profiles::CompatibilityOnly,
         [](bool b) { glClientActiveTexture(b ? GL_TEXTURE2 : GL_TEXTURE0); }, Get(GL_CLIENT_ACTIVE_TEXTURE)},
        {"normal", Profiles::CompatibilityOnly, [](bool b) { b ? glNormal3f(1, 0, 0) : glNormal3f(0, 0, 1); },
         [] { return Floats(GL_CURRENT_NORMAL, 3); }},
    };
}

/// A kind of context, and whether the guard of key OuterGuard stands.
struct stColumn {
    const char* szTitle;
    platform::headless::EglOptions stOptions;
    bool bGuarded;
};

static std::vector<stColumn> Columns() {
    platform::headless::EglOptions stPlain, stCore, stDebug, stNoError;
    stPlain.m_bCore = false;
    stDebug.m_bDebug = true;
    stNoError.m_bNoError = true;
    std::vector<stColumn> vecColumns;
    for (bool bGuarded : {false, true}) {
        vecColumns.push_back({"compatibility", stPlain, bGuarded});
        vecColumns.push_back({"core", stCore, bGuarded});
        vecColumns.push_back({"core, debug", stDebug, bGuarded});
        vecColumns.push_back({"core, no error", stNoError, bGuarded});
    }
    for (stColumn& st : vecColumns) {
        st.stOptions.m_uWidth = 64;
        st.stOptions.m_uHeight = 48;
    }
    return vecColumns;
}

class FrameSurvival : public FrameFixture {
  protected:
    /// Row name to what happened, of one profile.
    std::map<std::string, std::string> Survey(bool bCore, const Rows& rows) {
        std::map<std::string, std::string> mapResults;
        for (const stStateRow& row : rows) {
            if (bCore && row.eProfiles == Profiles::CompatibilityOnly) {
                mapResults[row.szName] = "not in this profile";
                continue;
            }
            row.fnSet(true);
            const std::string strOdd = row.fnGet();
            row.fnSet(true);
            Swap();
            mapResults[row.szName] = row.fnGet() == strOdd ? "comes back" : "**lost**";
            row.fnSet(false);
            EXPECT_NE(row.fnGet(), strOdd) << row.szName << ": the odd value must differ from the default";
            row.fnSet(false);
            while (glGetError() != GL_NO_ERROR) {
            }
        }
        return mapResults;
    }

    std::map<std::string, std::string> SurveyColumn(const stColumn& st, const Rows& rows) {
        SetCare({});
        if (st.bGuarded) SetCare({"OuterGuard"});
        if (!Begin(st.stOptions, u"Frosted20") || !RunUntilBuilt()) return {};
        g_stApp = stAppObjects();
        MakeObjects();
        auto mapResults = Survey(st.stOptions.m_bCore, rows);
        g_fnTavo_GL_Release();
        m_context.Destroy();
        return mapResults;
    }
};

using Results = std::vector<std::map<std::string, std::string>>;

static void WriteRows(std::ostream& out, const char* szTitle, const Rows& rows, Results& results) {
    out << "\n## " << szTitle << "\n\n| State |";
    for (const stColumn& st : Columns())
        out << " " << st.szTitle << (st.bGuarded ? ", `OuterGuard`" : "") << " |";
    out << "\n|---|---|---|---|---|---|---|---|---|\n";
    for (const stStateRow& row : rows) {
        out << "| " << row.szName << " |";
        for (auto& mapResults : results) out << " " << mapResults[row.szName] << " |";
        out << "\n";
    }
}

static constexpr const char* c_szHead =
    "# What comes back after a frame\n\nEach state is set to an odd value before a swap with the overlay on "
    "(flat and frosted panels) and read after it.\nThe GL tests write this table on Mesa's software "
    "rasteriser and compare it with this file. The first four columns of\nresults are those of the "
    "prescribed guard, the others those of key `OuterGuard` of `[HostCare]`, each in four kinds of\ncontext. "
    "In a context without errors the calls that a core profile rejects have no defined result.\n";

TEST_F(FrameSurvival, TableIsTheCommittedDocument) {
    const std::pair<const char*, Rows> aParts[] = {{"Saved by the state guard", SavedRows()},
                                                   {"Relied on by engines", EngineRows()},
                                                   {"One of several", ArrayRows()},
                                                   {"Others", OtherRows()}};
    Rows all;
    for (const auto& [szTitle, rows] : aParts) all.insert(all.end(), rows.begin(), rows.end());
    Results results;
    for (const stColumn& st : Columns()) {
        results.push_back(SurveyColumn(st, all));
        for (const auto& [strState, strResult] : results.back()) {
            const bool bLost = strResult == "**lost**";
            EXPECT_FALSE(bLost && st.bGuarded) << strState << ", " << st.szTitle;
        }
    }
    std::ostringstream text;
    text << c_szHead;
    for (const auto& [szTitle, rows] : aParts) WriteRows(text, szTitle, rows, results);
    std::ofstream(std::string(ORVIN_BINARY_DIR) + "/state-survival.md") << text.str();
    std::ifstream committed(std::string(ORVIN_SOURCE_DIR) + "/docs/state-survival.md");
    const std::string strCommitted((std::istreambuf_iterator<char>(committed)), {});
    EXPECT_EQ(text.str(), strCommitted) << "the new table is state-survival.md in the build folder";
}
