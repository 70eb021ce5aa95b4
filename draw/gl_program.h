#pragma once
// One linked GL program.
#include "draw/gl_shader.h"
#include "platform/types.h"

#include <vector>

/// Held through an owning pointer by a batcher. The context of its making must be current for every
/// operation. Setters act on the program in use.
class GLProgram {
  public:
    /// Links the shaders and lets go of them. Throws std::runtime_error.
    explicit GLProgram(const std::vector<GLShader>& shaders);
    GLProgram(const GLProgram&) = delete;
    GLProgram& operator=(const GLProgram&) = delete;
    ~GLProgram();

    /// Location, -1 for a name that the program does not use. A null name throws std::runtime_error.
    i32 m_fnAttrib(const char* szName) const;
    i32 m_fnUniform(const char* szName) const;

    void m_fnSetUniform1i(const char* szName, i32 iValue) const;
    void m_fnSetUniform1i(i32 iLocation, i32 iValue) const;
    /// Four floats.
    void m_fnSetUniform4fv(const char* szName, const f32* pValues) const;
    void m_fnSetUniform4fv(i32 iLocation, const f32* pValues) const;
    /// 16 floats, column-major unless transposed.
    void m_fnSetUniformMatrix4fv(const char* szName, const f32* pValues, bool bTranspose) const;
    void m_fnSetUniformMatrix4fv(i32 iLocation, const f32* pValues, bool bTranspose) const;

    void m_fnUse() const;
    /// Leaves no program in use, whichever was.
    void m_fnStopUsing() const;

    u32 m_fnGetObject() const noexcept { return m_uObject; }
    /// Leaves the object to its context, whose end takes it along.
    void m_fnForget() noexcept { m_uObject = 0; }

  private:
    void Link(const std::vector<GLShader>& shaders);

    u32 m_uObject = 0;
};
