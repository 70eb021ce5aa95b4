#include "tests/support/gl_recorder.h"

#include <dlfcn.h>
#include <utility>

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

#define ABOVE_GL11(X)                                                                                        \
    X(ActiveTexture)                                                                                         \
    X(AttachShader) X(BindAttribLocation) X(BindBuffer) X(BindBufferARB) X(BindBufferBase)                   \
        X(BindBufferRange) X(BindFragDataLocation) X(BindFramebuffer) X(BindProgramPipeline)                 \
            X(BindRenderbuffer) X(BindSampler) X(BindVertexArray) X(BlendColor) X(BlendEquation) X(          \
                BlendEquationSeparate) X(BlendFuncSeparate) X(BufferData) X(BufferSubData)                   \
                X(CheckFramebufferStatus) X(ClipControl) X(ColorMaski) X(CompileShader) X(CreateProgram) X(  \
                    CreateShader) X(DeleteBuffers) X(DeleteFramebuffers) X(DeleteProgram) X(DeleteSamplers)  \
                    X(DeleteShader) X(DeleteVertexArrays) X(DetachShader) X(DisableVertexAttribArray)        \
                        X(DrawElementsBaseVertex) X(EnableVertexAttribArray) X(FramebufferTexture2D)         \
                            X(GenBuffers) X(GenFramebuffers) X(GenSamplers) X(GenVertexArrays)               \
                                X(GenerateMipmap) X(GetAttribLocation) X(GetIntegeri_v) X(GetProgramInfoLog) \
                                    X(GetProgramiv) X(GetShaderInfoLog) X(GetShaderiv) X(GetUniformLocation) \
                                        X(GetVertexAttribIuiv) X(GetVertexAttribPointerv) X(LinkProgram)     \
                                            X(MapBuffer) X(MapBufferRange) X(ProgramParameteri)              \
                                                X(SamplerParameteri) X(ShaderSource) X(Uniform1f)            \
                                                    X(Uniform1i) X(Uniform2f) X(Uniform3f) X(Uniform4f)      \
                                                        X(Uniform4fv) X(UniformMatrix4fv) X(UnmapBuffer)     \
                                                            X(UseProgram) X(ValidateProgram)                 \
                                                                X(VertexAttribDivisor)                       \
                                                                    X(VertexAttribPointer)

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
#define PLAIN(...) __VA_ARGS__
#define GL11(R, name, parameters, arguments)                                                                 \
    extern "C" R GLAPIENTRY name parameters {                                                                \
        using Function = R(GLAPIENTRY*) parameters;                                                          \
        static const Function fnReal = reinterpret_cast<Function>(gl_recorder::Resolve(#name));              \
        gl_recorder::Record(#name PLAIN arguments);                                                          \
        return fnReal ? fnReal FORWARD arguments : R();                                                      \
    }
