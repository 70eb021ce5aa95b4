#include "tests/support/gl_recorder.h"

#include <dlfcn.h>

namespace gl_recorder {

static std::vector<std::string> g_vecCalls;
static bool g_bKept = false;
static u64 g_uTotal = 0;

void Start() {
    g_vecCalls.clear();
    g_bKept = true;
}

std::vector<std::string> Stop() {
    g_bKept = false;
    return std::move(g_vecCalls);
}

u64 TotalCalls() { return g_uTotal; }
void Count() { ++g_uTotal; }
bool IsKept() { return g_bKept; }
void Keep(std::string strCall) { g_vecCalls.push_back(std::move(strCall)); }

static void* Resolve(const char* szName) {
    static void* const hLibrary = dlopen("libEGL.so.1", RTLD_NOW);
    using GetProc = void* (*)(const char*);
    static const GetProc fnGetProc =
        hLibrary ? reinterpret_cast<GetProc>(dlsym(hLibrary, "eglGetProcAddress")) : nullptr;
    return fnGetProc ? fnGetProc(szName) : nullptr;
}

static u32 g_ePretended = 0;
static bool g_bPretendedOn = false;
static const char* g_szPretended = nullptr;
static PFNGLGETSTRINGIPROC g_fnRealGetStringi = nullptr;

static const GLubyte* GLAPIENTRY PretendingGetStringi(GLenum eName, GLuint uIndex) {
    if (eName == GL_EXTENSIONS && uIndex == 0) return reinterpret_cast<const GLubyte*>(g_szPretended);
    return g_fnRealGetStringi(eName, uIndex);
}

CPretendedSwitch::CPretendedSwitch(u32 eCap) {
    g_ePretended = eCap;
    g_bPretendedOn = false;
}

CPretendedSwitch::~CPretendedSwitch() {
    g_ePretended = 0;
    if (g_szPretended) __glewGetStringi = g_fnRealGetStringi;
    g_szPretended = nullptr;
}

void CPretendedSwitch::Offer(const char* szExtension) const {
    g_szPretended = szExtension;
    g_fnRealGetStringi = __glewGetStringi;
    __glewGetStringi = PretendingGetStringi;
}

static bool IsPretended(GLenum eCap) { return g_ePretended != 0 && eCap == g_ePretended; }

/// One GLEW pointer. The tag keeps functions of the same type apart.
template <auto& Pointer, class Tag, class Function> struct Hook;
template <auto& Pointer, class Tag, class R, class... A> struct Hook<Pointer, Tag, R(GLAPIENTRY*)(A...)> {
    static inline R(GLAPIENTRY* m_fnReal)(A...) = nullptr;
    static R GLAPIENTRY Recording(A... args) {
        Record(Tag::m_szName, args...);
        return m_fnReal(args...);
    }
    static void Install() {
        if (!Pointer || Pointer == Recording) return;
        m_fnReal = Pointer;
        Pointer = Recording;
    }
};

} // namespace gl_recorder

// clang-format off
#define ABOVE_GL11(X)                                                                                        \
    X(ActiveTexture)                                                                                         \
    X(AttachShader)                                                                                          \
    X(BindAttribLocation)                                                                                    \
    X(BindBuffer)                                                                                            \
    X(BindBufferARB) X(BindBufferBase) X(BindBufferRange) X(BindFragDataLocation) X(BindFramebuffer)         \
        X(BindProgramPipeline) X(BindRenderbuffer) X(BindSampler) X(BindVertexArray) X(BlendColor)           \
            X(BlendEquation) X(BlendEquationSeparate) X(BlendFuncSeparate) X(BufferData) X(BufferSubData)    \
                X(CheckFramebufferStatus) X(ClipControl) X(ColorMaski) X(CompileShader) X(CreateProgram) X(  \
                    CreateShader) X(DeleteBuffers) X(DeleteFramebuffers) X(DeleteProgram) X(DeleteSamplers)  \
                    X(DeleteShader) X(DeleteVertexArrays) X(DetachShader) X(DisableVertexAttribArray)        \
                        X(DrawElementsBaseVertex) X(DrawRangeElements) X(EnableVertexAttribArray)            \
                            X(FramebufferTexture2D) X(GenBuffers) X(GenFramebuffers) X(GenSamplers)          \
                                X(GenVertexArrays) X(GenerateMipmap) X(GetAttribLocation) X(GetIntegeri_v)   \
                                    X(GetProgramInfoLog) X(GetProgramiv) X(GetShaderInfoLog) X(GetShaderiv)  \
                                        X(GetUniformLocation) X(GetVertexAttribIuiv)                         \
                                            X(GetVertexAttribPointerv) X(LinkProgram) X(MapBuffer)           \
                                                X(MapBufferRange) X(ProgramParameteri) X(SamplerParameteri)  \
                                                    X(ShaderSource) X(Uniform1f) X(Uniform1i) X(Uniform2f)   \
                                                        X(Uniform3f) X(Uniform4f) X(Uniform4fv)              \
                                                            X(UniformMatrix4fv) X(UnmapBuffer) X(UseProgram) \
                                                                X(ValidateProgram) X(VertexAttribDivisor)    \
                                                                    X(VertexAttribPointer)
// clang-format on

#define TAG(name)                                                                                            \
    struct Tag##name {                                                                                       \
        static constexpr const char* m_szName = "gl" #name;                                                  \
    };
#define INSTALL(name) gl_recorder::Hook<__glew##name, Tag##name, decltype(__glew##name)>::Install();

namespace {
ABOVE_GL11(TAG)
} // namespace

void gl_recorder::Install() { ABOVE_GL11(INSTALL) }

// GL 1.1: result, name, parameters, arguments.
#define GL11(R, name, parameters, ...)                                                                       \
    extern "C" R GLAPIENTRY name parameters {                                                                \
        using Function = R(GLAPIENTRY*) parameters;                                                          \
        static const Function fnReal = reinterpret_cast<Function>(gl_recorder::Resolve(#name));              \
        gl_recorder::Record(#name __VA_OPT__(, ) __VA_ARGS__);                                               \
        return fnReal ? fnReal(__VA_ARGS__) : R();                                                           \
    }

using TextPointer = const GLubyte*;
GL11(void, glAlphaFunc, (GLenum func, GLclampf ref), func, ref)
GL11(void, glBegin, (GLenum mode), mode)
GL11(void, glBindTexture, (GLenum target, GLuint texture), target, texture)
GL11(void, glBlendFunc, (GLenum sfactor, GLenum dfactor), sfactor, dfactor)
GL11(void, glClear, (GLbitfield mask), mask)
GL11(void, glClearColor, (GLclampf r, GLclampf g, GLclampf b, GLclampf a), r, g, b, a)
GL11(void, glClearDepth, (GLclampd depth), depth)
GL11(void, glClearStencil, (GLint s), s)
GL11(void, glColor3f, (GLfloat r, GLfloat g, GLfloat b), r, g, b)
GL11(void, glColor4f, (GLfloat r, GLfloat g, GLfloat b, GLfloat a), r, g, b, a)
GL11(void, glColorMask, (GLboolean r, GLboolean g, GLboolean b, GLboolean a), r, g, b, a)
GL11(void, glCopyTexImage2D,
     (GLenum target, GLint level, GLenum format, GLint x, GLint y, GLsizei width, GLsizei height,
      GLint border),
     target, level, format, x, y, width, height, border)
GL11(void, glCullFace, (GLenum mode), mode)
GL11(void, glDeleteTextures, (GLsizei n, const GLuint* textures), n, textures)
GL11(void, glDepthFunc, (GLenum func), func)
GL11(void, glDepthMask, (GLboolean flag), flag)
GL11(void, glDepthRange, (GLclampd zNear, GLclampd zFar), zNear, zFar)
GL11(void, glDrawArrays, (GLenum mode, GLint first, GLsizei count), mode, first, count)
GL11(void, glDrawBuffer, (GLenum mode), mode)
GL11(void, glDrawElements, (GLenum mode, GLsizei count, GLenum type, const void* indices), mode, count, type,
     indices)
GL11(void, glEnd, ())
GL11(void, glFinish, ())
GL11(void, glFlush, ())
GL11(void, glFrontFace, (GLenum mode), mode)
GL11(void, glGenTextures, (GLsizei n, GLuint* textures), n, textures)
GL11(void, glGetBooleanv, (GLenum pname, GLboolean* params), pname, params)
GL11(void, glGetDoublev, (GLenum pname, GLdouble* params), pname, params)
GL11(GLenum, glGetError, ())
GL11(void, glGetFloatv, (GLenum pname, GLfloat* params), pname, params)
GL11(void, glGetIntegerv, (GLenum pname, GLint* params), pname, params)
GL11(TextPointer, glGetString, (GLenum name), name)
GL11(void, glGetTexImage, (GLenum target, GLint level, GLenum format, GLenum type, void* pixels), target,
     level, format, type, pixels)
GL11(void, glGetTexLevelParameteriv, (GLenum target, GLint level, GLenum pname, GLint* params), target, level,
     pname, params)
GL11(void, glGetTexParameterfv, (GLenum target, GLenum pname, GLfloat* params), target, pname, params)
GL11(void, glGetTexParameteriv, (GLenum target, GLenum pname, GLint* params), target, pname, params)
GL11(void, glHint, (GLenum target, GLenum mode), target, mode)
GL11(GLboolean, glIsTexture, (GLuint texture), texture)
GL11(void, glLineWidth, (GLfloat width), width)
GL11(void, glLoadIdentity, ())
GL11(void, glLogicOp, (GLenum opcode), opcode)
GL11(void, glMatrixMode, (GLenum mode), mode)
GL11(void, glPixelStorei, (GLenum pname, GLint param), pname, param)
GL11(void, glPixelStoref, (GLenum pname, GLfloat param), pname, param)
GL11(void, glPointSize, (GLfloat size), size)
GL11(void, glPolygonMode, (GLenum face, GLenum mode), face, mode)
GL11(void, glPolygonOffset, (GLfloat factor, GLfloat units), factor, units)
GL11(void, glPopAttrib, ())
GL11(void, glPopClientAttrib, ())
GL11(void, glPopMatrix, ())
GL11(void, glPushAttrib, (GLbitfield mask), mask)
GL11(void, glPushClientAttrib, (GLbitfield mask), mask)
GL11(void, glPushMatrix, ())
GL11(void, glReadBuffer, (GLenum mode), mode)
GL11(void, glReadPixels,
     (GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type, void* pixels), x, y, width,
     height, format, type, pixels)
GL11(void, glScissor, (GLint x, GLint y, GLsizei width, GLsizei height), x, y, width, height)
GL11(void, glShadeModel, (GLenum mode), mode)
GL11(void, glStencilFunc, (GLenum func, GLint ref, GLuint mask), func, ref, mask)
GL11(void, glStencilMask, (GLuint mask), mask)
GL11(void, glStencilOp, (GLenum fail, GLenum zfail, GLenum zpass), fail, zfail, zpass)
GL11(void, glTexEnvi, (GLenum target, GLenum pname, GLint param), target, pname, param)
GL11(void, glTexImage2D,
     (GLenum target, GLint level, GLint internal, GLsizei width, GLsizei height, GLint border, GLenum format,
      GLenum type, const void* pixels),
     target, level, internal, width, height, border, format, type, pixels)
GL11(void, glTexParameterf, (GLenum target, GLenum pname, GLfloat param), target, pname, param)
GL11(void, glTexParameterfv, (GLenum target, GLenum pname, const GLfloat* params), target, pname, params)
GL11(void, glTexParameteri, (GLenum target, GLenum pname, GLint param), target, pname, param)
GL11(void, glTexParameteriv, (GLenum target, GLenum pname, const GLint* params), target, pname, params)
GL11(void, glTexSubImage2D,
     (GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type,
      const void* pixels),
     target, level, x, y, width, height, format, type, pixels)
GL11(void, glVertex2f, (GLfloat x, GLfloat y), x, y)
GL11(void, glVertex3f, (GLfloat x, GLfloat y, GLfloat z), x, y, z)
GL11(void, glViewport, (GLint x, GLint y, GLsizei width, GLsizei height), x, y, width, height)

// The same, but a pretended switch does not get to the driver.
#define GL11_SWITCH(R, name, pretended)                                                                      \
    extern "C" R GLAPIENTRY name(GLenum cap) {                                                               \
        using Function = R(GLAPIENTRY*)(GLenum);                                                             \
        static const Function fnReal = reinterpret_cast<Function>(gl_recorder::Resolve(#name));              \
        gl_recorder::Record(#name, cap);                                                                     \
        if (gl_recorder::IsPretended(cap)) return pretended;                                                 \
        return fnReal ? fnReal(cap) : R();                                                                   \
    }

GL11_SWITCH(void, glDisable, void(gl_recorder::g_bPretendedOn = false))
GL11_SWITCH(void, glEnable, void(gl_recorder::g_bPretendedOn = true))
GL11_SWITCH(GLboolean, glIsEnabled, gl_recorder::g_bPretendedOn)
