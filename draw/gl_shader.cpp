#include "draw/gl_shader.h"

#include "base/log.h"
#include "base/watched_files.h"
#include "draw/own_context.h"
#include "platform/gl_api.h"
#include "platform/input_file.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <utility>

static constexpr std::string_view g_szVersionMark = "#version";

static void AppendLine(std::string& szOut, std::string_view szLine) {
    // KEEP(first version): fatal to the process. Only shipped files come here.
    if (szLine.size() > g_uShaderLineLimit) {
        g_fnLog("GLGraphics: shader line of %u bytes is too long", static_cast<unsigned>(szLine.size()));
        std::abort();
    }
    szOut += szLine;
    szOut += "\n\r";
}

static void AppendDefines(std::string& szOut, const ShaderDefines& defines) {
    for (const auto& [szName, szValue] : defines) AppendLine(szOut, "#define " + szName + " " + szValue);
}

/// Takes the next line that is not blank off the front; empty at the end.
static std::string_view TakeLine(std::string_view& szRest) {
    szRest.remove_prefix(std::min(szRest.find_first_not_of("\r\n"), szRest.size()));
    const std::string_view szLine = szRest.substr(0, szRest.find_first_of("\r\n"));
    szRest.remove_prefix(szLine.size());
    return szLine;
}

std::string g_fnInsertDefines(std::string_view szSource, const ShaderDefines& defines) {
    std::string szOut;
    bool bInserted = false;
    std::string_view szRest = szSource.substr(0, szSource.find('\0'));
    for (std::string_view szLine = TakeLine(szRest); !szLine.empty(); szLine = TakeLine(szRest)) {
        AppendLine(szOut, szLine);
        // KEEP(files): only at column 0; elsewhere the defines are lost.
        if (bInserted || !szLine.starts_with(g_szVersionMark)) continue;
        AppendDefines(szOut, defines);
        bInserted = true;
    }
    return szOut;
}

std::string g_fnReadShaderFile(const char* szPath) {
    g_fnWatchFile(szPath);
    std::string strText;
    if (!platform::ReadWholeFile(platform::OpenInput(szPath), g_uShaderBytesMax, strText))
        throw std::runtime_error(std::string("Failed to open file : ") + szPath);
    return strText;
}

static std::string InfoLog(u32 uShader) {
    GLint iLength = 0;
    glGetShaderiv(uShader, GL_INFO_LOG_LENGTH, &iLength);
    if (iLength <= 0) return {};
    std::string szLog(static_cast<std::size_t>(iLength), '\0');
    GLsizei iWritten = 0;
    glGetShaderInfoLog(uShader, iLength, &iWritten, szLog.data());
    szLog.resize(static_cast<std::size_t>(iWritten));
    return szLog;
}

GLShader::GLShader(const char* szPath, u32 uStage) { Compile(g_fnReadShaderFile(szPath), uStage, nullptr); }

GLShader::GLShader(const char* szPath, u32 uStage, const ShaderDefines& defines) {
    Compile(g_fnReadShaderFile(szPath), uStage, &defines);
}

GLShader::GLShader(const std::string& szSource, u32 uStage, const ShaderDefines* pDefines) {
    Compile(szSource, uStage, pDefines);
}

GLShader::GLShader(const GLShader& other) noexcept : m_uObject(other.m_uObject), m_puUses(other.m_puUses) {
    ++*m_puUses;
}

GLShader& GLShader::operator=(const GLShader& other) noexcept {
    ++*other.m_puUses;
    Drop();
    m_uObject = other.m_uObject;
    m_puUses = other.m_puUses;
    return *this;
}

GLShader::~GLShader() { Drop(); }

void GLShader::Drop() noexcept {
    if (--*m_puUses != 0) return;
    if (g_fnMayDeleteNames()) glDeleteShader(m_uObject);
    delete m_puUses;
}

static void CompileText(u32 uShader, const std::string& szSource) {
    const GLchar* szText = szSource.c_str();
    glShaderSource(uShader, 1, &szText, nullptr);
    glCompileShader(uShader);
    GLint iStatus = GL_FALSE;
    glGetShaderiv(uShader, GL_COMPILE_STATUS, &iStatus);
    if (iStatus == GL_FALSE) throw std::runtime_error("Compile failure in shader:\n" + InfoLog(uShader));
}

void GLShader::Compile(const std::string& szSource, u32 uStage, const ShaderDefines* pDefines) {
    auto puUses = std::make_unique<u32>(1u);
    m_uObject = glCreateShader(uStage);
    if (m_uObject == 0) throw std::runtime_error("glCreateShader failed");
    try {
        const bool bRewrite = !szSource.empty() && pDefines;
        CompileText(m_uObject, bRewrite ? g_fnInsertDefines(szSource, *pDefines) : szSource);
    } catch (...) {
        glDeleteShader(m_uObject);
        throw;
    }
    m_puUses = puUses.release();
}
