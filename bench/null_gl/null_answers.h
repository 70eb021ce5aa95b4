#pragma once
// The few entry points of the null GL library that answer something. NAME of NullAnswer_NAME decides which.
#include <GL/gl.h>
#include <GL/glext.h>

struct NullEntry {
    const char* szName;
    void* pAddress;
};

// Generated: entry points sorted by name, and how often each was called.
extern const NullEntry g_stNullEntries[];
extern unsigned g_uNullEntries;
extern unsigned long long g_uNullCalls[];

// Shared by the two hand-written files.
void NullSwapDone();
void NullWindowCall();
void NullDrawableSize(int& iWidth, int& iHeight);

const GLubyte* NullAnswer_glGetString(GLenum eName);
const GLubyte* NullAnswer_glGetStringi(GLenum eName, GLuint uIndex);
void NullAnswer_glGetIntegerv(GLenum eName, GLint* piOut);
void NullAnswer_glGetFloatv(GLenum eName, GLfloat* pfOut);
void NullAnswer_glGetBooleanv(GLenum eName, GLboolean* pbOut);
void NullAnswer_glGetShaderiv(GLuint uShader, GLenum eName, GLint* piOut);
void NullAnswer_glGetProgramiv(GLuint uProgram, GLenum eName, GLint* piOut);
void NullAnswer_glGetShaderInfoLog(GLuint uShader, GLsizei iSize, GLsizei* piLength, GLchar* szOut);
void NullAnswer_glGetProgramInfoLog(GLuint uProgram, GLsizei iSize, GLsizei* piLength, GLchar* szOut);
GLuint NullAnswer_glCreateShader(GLenum eKind);
GLuint NullAnswer_glCreateProgram();
void NullAnswer_glGenBuffers(GLsizei iCount, GLuint* puOut);
void NullAnswer_glGenTextures(GLsizei iCount, GLuint* puOut);
void NullAnswer_glGenVertexArrays(GLsizei iCount, GLuint* puOut);
void NullAnswer_glGenFramebuffers(GLsizei iCount, GLuint* puOut);
void NullAnswer_glGenRenderbuffers(GLsizei iCount, GLuint* puOut);
void NullAnswer_glGenSamplers(GLsizei iCount, GLuint* puOut);
void NullAnswer_glGenQueries(GLsizei iCount, GLuint* puOut);
GLuint NullAnswer_glGenLists(GLsizei iCount);
GLenum NullAnswer_glCheckFramebufferStatus(GLenum eTarget);
GLint NullAnswer_glGetUniformLocation(GLuint uProgram, const GLchar* szName);
GLint NullAnswer_glGetAttribLocation(GLuint uProgram, const GLchar* szName);
void* NullAnswer_glMapBuffer(GLenum eTarget, GLenum eAccess);
void* NullAnswer_glMapBufferRange(GLenum eTarget, GLintptr iOffset, GLsizeiptr iLength, GLbitfield uAccess);
GLboolean NullAnswer_glUnmapBuffer(GLenum eTarget);
