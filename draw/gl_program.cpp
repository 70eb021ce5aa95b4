#include "draw/gl_program.h"

#include "platform/gl_api.h"
#include "platform/surface.h"

#include <stdexcept>
#include <string>

GLProgram::GLProgram(const ShaderList& listShaders) {
    if (listShaders.empty()) throw std::runtime_error("No shaders were provided to create the program");
    m_uObject = glCreateProgram();
    if (!m_uObject) throw std::runtime_error("glCreateProgram failed");
    m_fnLink(listShaders);
}

static std::string ProgramLog(u32 uObject) {
    GLint iLength = 0;
    glGetProgramiv(uObject, GL_INFO_LOG_LENGTH, &iLength);
    std::string szLog(iLength > 0 ? static_cast<std::size_t>(iLength) : 0, '\0');
    if (iLength > 0) glGetProgramInfoLog(uObject, iLength, nullptr, szLog.data());
    return szLog.c_str();
}

void GLProgram::m_fnLink(const ShaderList& listShaders) {
    if (glProgramParameteri) glProgramParameteri(m_uObject, GL_PROGRAM_SEPARABLE, 0); // absent below 4.1
    for (const GLShader& shader : listShaders) glAttachShader(m_uObject, shader.m_fnObject());
    glLinkProgram(m_uObject);
    for (const GLShader& shader : listShaders) glDetachShader(m_uObject, shader.m_fnObject());
    GLint iStatus = GL_FALSE;
    glGetProgramiv(m_uObject, GL_LINK_STATUS, &iStatus);
    if (iStatus != GL_FALSE) return;
    const std::string szMessage = "Program linking failure: " + ProgramLog(m_uObject);
    glDeleteProgram(m_uObject);
    m_uObject = 0;
    throw std::runtime_error(szMessage);
}

GLProgram::~GLProgram() {
    if (m_uObject && platform::CurrentContext()) glDeleteProgram(m_uObject);
}

i32 GLProgram::m_fnAttrib(const char* szName) const {
    if (!szName) throw std::runtime_error("attribName was NULL");
    return glGetAttribLocation(m_uObject, szName);
}

i32 GLProgram::m_fnUniform(const char* szName) const {
    if (!szName) throw std::runtime_error("uniformName was NULL");
    return glGetUniformLocation(m_uObject, szName);
}

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
