#pragma once
// A linked program.
#include "draw/gl_shader.h"
#include "platform/types.h"

#include <vector>

using ShaderList = std::vector<GLShader>;

/// Throws std::runtime_error with the linker's words on failure. Needs a current context, also to be
/// destroyed; without one the name is left to die with its context.
class GLProgram {
  public:
    explicit GLProgram(const ShaderList& listShaders);
    ~GLProgram();
    GLProgram(const GLProgram&) = delete;
    GLProgram& operator=(const GLProgram&) = delete;

    /// Location, -1 for a name that the program does not use. A null name throws.
    i32 m_fnAttrib(const char* szName) const;
    i32 m_fnUniform(const char* szName) const;
    void m_fnSetUniform4fv(const char* szName, const f32* pValues) const;
    void m_fnSetUniform4fv(i32 iLocation, const f32* pValues) const;
    /// 16 floats, column-major unless bTranspose.
    void m_fnSetUniformMatrix4fv(const char* szName, const f32* pValues, bool bTranspose) const;
    void m_fnSetUniformMatrix4fv(i32 iLocation, const f32* pValues, bool bTranspose) const;
    void m_fnUse() const;
    /// No program at all, whichever this one is.
    void m_fnStopUsing() const;

    u32 m_uObject = 0;

  private:
    void m_fnLink(const ShaderList& listShaders);
};
