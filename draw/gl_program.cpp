#include "draw/gl_program.h"

#include "draw/left_names.h"
#include "platform/gl_api.h"

#include <stdexcept>
#include <string>

static std::string InfoLog(u32 uProgram) {
    GLint iLength = 0;
    glGetProgramiv(uProgram, GL_INFO_LOG_LENGTH, &iLength);
    if (iLength <= 0) return {};
    std::string szLog(static_cast<std::size_t>(iLength), '\0');
    GLsizei iWritten = 0;
    glGetProgramInfoLog(uProgram, iLength, &iWritten, szLog.data());
    szLog.resize(static_cast<std::size_t>(iWritten));
    return szLog;
}

GLProgram::GLProgram(const std::vector<GLShader>& shaders) {
    if (shaders.empty()) throw std::runtime_error("No shaders were provided to create the program");
    m_uObject = glCreateProgram();
    if (m_uObject == 0) throw std::runtime_error("glCreateProgram failed");
    Link(shaders);
    GLint iStatus = GL_FALSE;
    glGetProgramiv(m_uObject, GL_LINK_STATUS, &iStatus);
    if (iStatus != GL_FALSE) return;
    const std::string szMessage = "Program linking failure: " + InfoLog(m_uObject);
    glDeleteProgram(m_uObject);
    m_uObject = 0;
    throw std::runtime_error(szMessage);
}

void GLProgram::Link(const std::vector<GLShader>& shaders) {
    // The entry point is of version 4.1, contexts may be of 3.2.
    if (glProgramParameteri) glProgramParameteri(m_uObject, GL_PROGRAM_SEPARABLE, 0);
    for (const GLShader& shader : shaders) glAttachShader(m_uObject, shader.m_fnGetObject());
    glLinkProgram(m_uObject);
    for (const GLShader& shader : shaders) glDetachShader(m_uObject, shader.m_fnGetObject());
}

GLProgram::~GLProgram() {
    if (m_uObject != 0) g_fnDeleteName(NAMES_PROGRAMS, m_uObject);
}

i32 GLProgram::m_fnAttrib(const char* szName) const {
    if (!szName) throw std::runtime_error("attribName was NULL");
    return glGetAttribLocation(m_uObject, szName);
}

i32 GLProgram::m_fnUniform(const char* szName) const {
    if (!szName) throw std::runtime_error("uniformName was NULL");
    return glGetUniformLocation(m_uObject, szName);
}

void GLProgram::m_fnSetUniform1i(const char* szName, i32 iValue) const {
    m_fnSetUniform1i(m_fnUniform(szName), iValue);
}

void GLProgram::m_fnSetUniform1i(i32 iLocation, i32 iValue) const { glUniform1i(iLocation, iValue); }

void GLProgram::m_fnSetUniform4fv(const char* szName, const f32* pValues) const {
    m_fnSetUniform4fv(m_fnUniform(szName), pValues);
}

void GLProgram::m_fnSetUniform4fv(i32 iLocation, const f32* pValues) const {
    glUniform4fv(iLocation, 1, pValues);
}

void GLProgram::m_fnSetUniformMatrix4fv(const char* szName, const f32* pValues, bool bTranspose) const {
    m_fnSetUniformMatrix4fv(m_fnUniform(szName), pValues, bTranspose);
}

void GLProgram::m_fnSetUniformMatrix4fv(i32 iLocation, const f32* pValues, bool bTranspose) const {
    glUniformMatrix4fv(iLocation, 1, bTranspose ? GL_TRUE : GL_FALSE, pValues);
}

void GLProgram::m_fnUse() const { glUseProgram(m_uObject); }

void GLProgram::m_fnStopUsing() const { glUseProgram(0); }
