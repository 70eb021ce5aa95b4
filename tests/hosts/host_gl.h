#pragma once
// The GL side of the host programs: entry points looked up by name (as most programs do), the fixed picture,
// the table of states. No loader library, so that nothing is shared with what is being tested.
#include "tests/hosts/host_common.h"
#if defined(_WIN32)
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#define HOST_GL_CALL __stdcall
#else
#define HOST_GL_CALL
#endif
#include <GL/gl.h>
#include <GL/glext.h>

// Result, name, parameters. Entries above version 1.1 may be null in an old context.
#define HOST_GL_FUNCTIONS(X)                                                                                 \
    X(void, Viewport, (GLint, GLint, GLsizei, GLsizei))                                                      \
    X(void, Scissor, (GLint, GLint, GLsizei, GLsizei))                                                       \
    X(void, ClearColor, (GLfloat, GLfloat, GLfloat, GLfloat))                                                \
    X(void, Clear, (GLbitfield))                                                                             \
    X(void, Begin, (GLenum))                                                                                 \
    X(void, End, ())                                                                                         \
    X(void, Color3f, (GLfloat, GLfloat, GLfloat))                                                            \
    X(void, Color4f, (GLfloat, GLfloat, GLfloat, GLfloat))                                                   \
    X(void, Vertex2f, (GLfloat, GLfloat))                                                                    \
    X(void, Enable, (GLenum))                                                                                \
    X(void, Disable, (GLenum))                                                                               \
    X(GLboolean, IsEnabled, (GLenum))                                                                        \
    X(GLenum, GetError, ())                                                                                  \
    X(const GLubyte*, GetString, (GLenum))                                                                   \
    X(void, GetIntegerv, (GLenum, GLint*))                                                                   \
    X(void, GetFloatv, (GLenum, GLfloat*))                                                                   \
    X(void, PixelStorei, (GLenum, GLint))                                                                    \
    X(void, DrawBuffer, (GLenum))                                                                            \
    X(void, ReadBuffer, (GLenum))                                                                            \
    X(void, ReadPixels, (GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, void*))                             \
    X(void, Finish, ())                                                                                      \
    X(void, ColorMask, (GLboolean, GLboolean, GLboolean, GLboolean))                                         \
    X(void, BlendFunc, (GLenum, GLenum))                                                                     \
    X(void, DepthFunc, (GLenum))                                                                             \
    X(void, CullFace, (GLenum))                                                                              \
    X(void, LineWidth, (GLfloat))                                                                            \
    X(void, PolygonMode, (GLenum, GLenum))                                                                   \
    X(void, DrawArrays, (GLenum, GLint, GLsizei))                                                            \
    X(void, GenTextures, (GLsizei, GLuint*))                                                                 \
    X(void, BindTexture, (GLenum, GLuint))                                                                   \
    X(void, ActiveTexture, (GLenum))                                                                         \
    X(void, BlendEquation, (GLenum))                                                                         \
    X(void, BlendColor, (GLfloat, GLfloat, GLfloat, GLfloat))                                                \
    X(GLuint, CreateShader, (GLenum))                                                                        \
    X(void, ShaderSource, (GLuint, GLsizei, const GLchar* const*, const GLint*))                             \
    X(void, CompileShader, (GLuint))                                                                         \
    X(void, GetShaderiv, (GLuint, GLenum, GLint*))                                                           \
    X(GLuint, CreateProgram, ())                                                                             \
    X(void, AttachShader, (GLuint, GLuint))                                                                  \
    X(void, BindAttribLocation, (GLuint, GLuint, const GLchar*))                                             \
    X(void, LinkProgram, (GLuint))                                                                           \
    X(void, UseProgram, (GLuint))                                                                            \
    X(void, GenBuffers, (GLsizei, GLuint*))                                                                  \
    X(void, BindBuffer, (GLenum, GLuint))                                                                    \
    X(void, BufferData, (GLenum, GLsizeiptr, const void*, GLenum))                                           \
    X(void, GenVertexArrays, (GLsizei, GLuint*))                                                             \
    X(void, BindVertexArray, (GLuint))                                                                       \
    X(void, VertexAttribPointer, (GLuint, GLint, GLenum, GLboolean, GLsizei, const void*))                   \
    X(void, EnableVertexAttribArray, (GLuint))                                                               \
    X(void, GenSamplers, (GLsizei, GLuint*))                                                                 \
    X(void, BindSampler, (GLuint, GLuint))                                                                   \
    X(void, ClipControl, (GLenum, GLenum))                                                                   \
    X(GLboolean, IsBuffer, (GLuint))                                                                         \
    X(GLboolean, IsTexture, (GLuint))                                                                        \
    X(GLboolean, IsProgram, (GLuint))

/// Entry points of one context. Loaded anew for each context, since they may differ on Windows.
struct stHostGl {
#define HOST_GL_MEMBER(result, name, parameters) result(HOST_GL_CALL* name) parameters = nullptr;
    HOST_GL_FUNCTIONS(HOST_GL_MEMBER)
#undef HOST_GL_MEMBER
    bool bCore = false; ///< what the context says it is
    i32 iMajor = 0, iMinor = 0;
    GLuint uPackBuffer = 0;
};

/// Looks all entry points up and reads the context's version and profile.
bool LoadHostGl(CWindowSystem& clSystem, stHostGl& stGl);

/// The fixed picture: a background that runs from dark blue to light, with one triangle of three colours in
/// the middle. Same pixels in both profiles on one driver. Objects are made on the first draw in each
/// context.
class CHostScene {
  public:
    explicit CHostScene(stHostGl& stGl) : m_stGl(stGl) {}
    void m_fnDraw(u32 uWidth, u32 uHeight);

  private:
    bool m_fnMakeObjects();
    GLuint m_fnMakeShader(GLenum eKind, const char* szSource);
    stHostGl& m_stGl;
    GLuint m_uProgram = 0, m_uVertexArray = 0, m_uBuffer = 0;
};

/// Objects that a program makes early and looks after until its end: so many buffers, textures and programs.
class CHostObjects {
  public:
    void m_fnMake(stHostGl& stGl, u32 uOfEach);
    /// How many are still there, in the context that made them or in one that shares with it.
    u32 m_fnCountLeft(stHostGl& stGl) const;
    u32 m_fnCountMade() const;

  private:
    std::vector<GLuint> m_uBuffers, m_uTextures, m_uPrograms;
};

/// Sets the states of the "odd" table to values that no careful program leaves behind; the second undoes it.
void SetOddStates(stHostGl& stGl);
void ClearOddStates(stHostGl& stGl);
/// How the program would read pixels; the buffer object is made at the first call.
void SetOddReading(stHostGl& stGl);
/// none or front; the back one for any other word.
void SetDrawBuffer(stHostGl& stGl, const std::string& strName);

/// One "name=value" entry per state that can be asked in this context.
std::vector<std::pair<std::string, std::string>> ReadStates(stHostGl& stGl);

/// Back or front buffer as a picture. The read buffer and pixel packing are put back afterwards.
stPicture ReadBufferPicture(stHostGl& stGl, GLenum eBuffer, u32 uWidth, u32 uHeight);
