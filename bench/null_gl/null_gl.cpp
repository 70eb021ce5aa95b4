// A libGL.so.1 that does nothing but count: answers, window-system side, and the report at the end. With it
// in front on the library path, what is left of a frame's cost is the host program's and the overlay's own.
//
// Environment: NULL_GL_COUNTS=FILE     where the counts go (one "name=count" line each) at exit
//              NULL_GL_FROM, NULL_GL_TO  count only between the ends of these swaps (default: all)
//              NULL_GL_SIZE=WxH        answer of the drawable's size (640x480)
//              NULL_GL_CORE=1          the context says that it is a core profile
//              NULL_GL_MINOR=N         the context says that it is version 4.N (5)
#include "null_answers.h"
#include <GL/glx.h>
#include <GL/glxext.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr unsigned g_uMostEntries = 8192;
unsigned long long g_uAtFrom[g_uMostEntries], g_uAtTo[g_uMostEntries];
unsigned long long g_uSwaps = 0, g_uFrom = 0, g_uTo = ~0ull;
unsigned long long g_uWindowCalls = 0, g_uWindowAtFrom = 0, g_uWindowAtTo = 0; // GLX calls, the swap left out
unsigned g_uNextName = 0;
int g_iWidth = 640, g_iHeight = 480;
bool g_bCore = false;
unsigned long long g_uMinor = 5;
alignas(64) unsigned char g_u8Mapped[8 << 20];

void GiveNames(GLsizei iCount, GLuint* puOut) {
    for (GLsizei i = 0; i < iCount; ++i) puOut[i] = ++g_uNextName;
}

GLsizei AnswerLength(GLenum eName) {
    switch (eName) {
    case GL_VIEWPORT:
    case GL_SCISSOR_BOX:
    case GL_COLOR_WRITEMASK:
    case GL_COLOR_CLEAR_VALUE:
    case GL_CURRENT_COLOR:
    case GL_BLEND_COLOR:
        return 4;
    case GL_POLYGON_MODE:
    case GL_DEPTH_RANGE:
    case GL_MAX_VIEWPORT_DIMS:
        return 2;
    default:
        return 1;
    }
}

GLint IntegerAnswer(GLenum eName) {
    switch (eName) {
    case GL_MAJOR_VERSION:
        return 4;
    case GL_MINOR_VERSION:
        return static_cast<GLint>(g_uMinor);
    case GL_CONTEXT_PROFILE_MASK:
        return g_bCore ? GL_CONTEXT_CORE_PROFILE_BIT : GL_CONTEXT_COMPATIBILITY_PROFILE_BIT;
    case GL_NUM_EXTENSIONS:
        return 1;
    case GL_MAX_TEXTURE_SIZE:
        return 16384;
    case GL_MAX_TEXTURE_IMAGE_UNITS:
        return 32;
    case GL_UNPACK_ALIGNMENT:
    case GL_PACK_ALIGNMENT:
        return 4;
    case GL_RENDER_MODE:
        return GL_RENDER;
    case GL_POLYGON_MODE:
        return GL_FILL;
    case GL_BLEND_EQUATION_RGB:
    case GL_BLEND_EQUATION_ALPHA:
        return GL_FUNC_ADD;
    case GL_ACTIVE_TEXTURE:
        return GL_TEXTURE0;
    case GL_CLIP_ORIGIN:
        return GL_LOWER_LEFT;
    case GL_READ_BUFFER:
    case GL_DRAW_BUFFER:
        return GL_BACK;
    case GL_BLEND_SRC_RGB:
    case GL_BLEND_SRC_ALPHA:
        return GL_ONE;
    default:
        return 0;
    }
}

void ReadEnvironment() {
    const auto fnNumber = [](const char* szName, unsigned long long& uOut) {
        if (const char* szText = std::getenv(szName)) uOut = std::strtoull(szText, nullptr, 10);
    };
    fnNumber("NULL_GL_FROM", g_uFrom);
    fnNumber("NULL_GL_TO", g_uTo);
    fnNumber("NULL_GL_MINOR", g_uMinor);
    if (const char* szSize = std::getenv("NULL_GL_SIZE")) std::sscanf(szSize, "%dx%d", &g_iWidth, &g_iHeight);
    g_bCore = std::getenv("NULL_GL_CORE") != nullptr;
}

void Snapshot(unsigned long long* puOut, unsigned long long& uWindow) {
    std::memcpy(puOut, g_uNullCalls, g_uNullEntries * sizeof *puOut);
    uWindow = g_uWindowCalls;
}

struct CNullReport {
    CNullReport() { ReadEnvironment(); }
    ~CNullReport();
} g_clReport;

CNullReport::~CNullReport() {
    const char* szPath = std::getenv("NULL_GL_COUNTS");
    std::FILE* pFile = szPath ? std::fopen(szPath, "w") : nullptr;
    if (!pFile) return;
    if (g_uSwaps < g_uTo) Snapshot(g_uAtTo, g_uWindowAtTo);
    unsigned long long uAll = 0;
    for (unsigned i = 0; i < g_uNullEntries; ++i) {
        const unsigned long long uCalls = g_uAtTo[i] - g_uAtFrom[i];
        if (uCalls) std::fprintf(pFile, "%s=%llu\n", g_stNullEntries[i].szName, uCalls);
        uAll += uCalls;
    }
    std::fprintf(pFile, "swaps=%llu\nwindow_system=%llu\ntotal=%llu\n", g_uSwaps,
                 g_uWindowAtTo - g_uWindowAtFrom, uAll);
    std::fclose(pFile);
}

} // namespace

const GLubyte* NullAnswer_glGetString(GLenum eName) {
    switch (eName) {
    case GL_VERSION:
        return reinterpret_cast<const GLubyte*>("4.5 null");
    case GL_SHADING_LANGUAGE_VERSION:
        return reinterpret_cast<const GLubyte*>("4.50");
    case GL_EXTENSIONS:
        return reinterpret_cast<const GLubyte*>("GL_NULL_counting");
    default:
        return reinterpret_cast<const GLubyte*>("null");
    }
}
const GLubyte* NullAnswer_glGetStringi(GLenum, GLuint) {
    return reinterpret_cast<const GLubyte*>("GL_NULL_counting");
}
void NullAnswer_glGetIntegerv(GLenum eName, GLint* piOut) {
    for (GLsizei i = 0; i < AnswerLength(eName); ++i) piOut[i] = IntegerAnswer(eName);
}
void NullAnswer_glGetFloatv(GLenum eName, GLfloat* pfOut) {
    const float afWindow[] = {0.0f, 0.0f, static_cast<float>(g_iWidth), static_cast<float>(g_iHeight)};
    for (GLsizei i = 0; i < AnswerLength(eName); ++i) pfOut[i] = eName == GL_VIEWPORT ? afWindow[i] : 0.0f;
}
void NullAnswer_glGetBooleanv(GLenum eName, GLboolean* pbOut) {
    for (GLsizei i = 0; i < AnswerLength(eName); ++i) pbOut[i] = eName == GL_COLOR_WRITEMASK;
}
void NullAnswer_glGetShaderiv(GLuint, GLenum eName, GLint* piOut) { *piOut = eName == GL_COMPILE_STATUS; }
void NullAnswer_glGetProgramiv(GLuint, GLenum eName, GLint* piOut) {
    *piOut = eName == GL_LINK_STATUS || eName == GL_VALIDATE_STATUS;
}
void NullAnswer_glGetShaderInfoLog(GLuint, GLsizei iSize, GLsizei* piLength, GLchar* szOut) {
    if (iSize > 0 && szOut) *szOut = '\0';
    if (piLength) *piLength = 0;
}
void NullAnswer_glGetProgramInfoLog(GLuint, GLsizei iSize, GLsizei* piLength, GLchar* szOut) {
    NullAnswer_glGetShaderInfoLog(0, iSize, piLength, szOut);
}
GLuint NullAnswer_glCreateShader(GLenum) { return ++g_uNextName; }
GLuint NullAnswer_glCreateProgram() { return ++g_uNextName; }
void NullAnswer_glGenBuffers(GLsizei iCount, GLuint* puOut) { GiveNames(iCount, puOut); }
void NullAnswer_glGenTextures(GLsizei iCount, GLuint* puOut) { GiveNames(iCount, puOut); }
void NullAnswer_glGenVertexArrays(GLsizei iCount, GLuint* puOut) { GiveNames(iCount, puOut); }
void NullAnswer_glGenFramebuffers(GLsizei iCount, GLuint* puOut) { GiveNames(iCount, puOut); }
void NullAnswer_glGenRenderbuffers(GLsizei iCount, GLuint* puOut) { GiveNames(iCount, puOut); }
void NullAnswer_glGenSamplers(GLsizei iCount, GLuint* puOut) { GiveNames(iCount, puOut); }
void NullAnswer_glGenQueries(GLsizei iCount, GLuint* puOut) { GiveNames(iCount, puOut); }
GLuint NullAnswer_glGenLists(GLsizei iCount) { return (g_uNextName += GLuint(iCount)) - GLuint(iCount) + 1; }
GLenum NullAnswer_glCheckFramebufferStatus(GLenum) { return GL_FRAMEBUFFER_COMPLETE; }
GLint NullAnswer_glGetUniformLocation(GLuint, const GLchar*) { return 1; }
GLint NullAnswer_glGetAttribLocation(GLuint, const GLchar*) { return 0; }
void* NullAnswer_glMapBuffer(GLenum, GLenum) { return g_u8Mapped; }
void* NullAnswer_glMapBufferRange(GLenum, GLintptr, GLsizeiptr iLength, GLbitfield) {
    return iLength <= GLsizeiptr(sizeof g_u8Mapped) ? g_u8Mapped : nullptr;
}
GLboolean NullAnswer_glUnmapBuffer(GLenum) { return GL_TRUE; }

void NullSwapDone() {
    ++g_uSwaps;
    if (g_uSwaps == g_uFrom) Snapshot(g_uAtFrom, g_uWindowAtFrom);
    if (g_uSwaps == g_uTo) Snapshot(g_uAtTo, g_uWindowAtTo);
}
void NullWindowCall() { ++g_uWindowCalls; }
void NullDrawableSize(int& iWidth, int& iHeight) { iWidth = g_iWidth, iHeight = g_iHeight; }
