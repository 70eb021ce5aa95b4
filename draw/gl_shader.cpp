#include "draw/gl_shader.h"

#include "frame/log.h"
#include "platform/gl_api.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

constexpr char g_szLineEnd[] = "\n\r";
constexpr char g_szVersion[] = "#version";

/// Adds one line with its end. A line too long for the work buffer is a fault of the shipped files, and
/// fatal.
void AppendLine(std::string& szOut, const std::string& szLine) {
    if (szLine.size() > g_uShaderLineBytes) {
        g_fnLog("GLGraphics: shader line of %u bytes", static_cast<unsigned>(szLine.size()));
        std::abort();
    }
    szOut += szLine;
    szOut += g_szLineEnd;
}

void AppendDefines(std::string& szOut, const ShaderDefines& mapDefines) {
    for (const auto& [szKey, szValue] : mapDefines) AppendLine(szOut, "#define " + szKey + " " + szValue);
}

/// Log of a shader or program object.
template <class Query, class Fetch> std::string InfoLog(u32 uObject, Query fnQuery, Fetch fnFetch) {
    GLint iLength = 0;
    fnQuery(uObject, GL_INFO_LOG_LENGTH, &iLength);
    std::string szLog(iLength > 0 ? static_cast<std::size_t>(iLength) : 0, '\0');
    if (iLength > 0) fnFetch(uObject, iLength, nullptr, szLog.data());
    return szLog.c_str();
}

} // namespace

std::string g_fnInsertDefines(const std::string& szSource, const ShaderDefines& mapDefines) {
    std::string szOut;
    bool bInserted = false;
    const std::string szText = szSource.c_str(); // a line ends at NUL too, and so does the text
    for (std::size_t uStart = 0; (uStart = szText.find_first_not_of("\r\n", uStart)) != std::string::npos;) {
        const std::size_t uEnd = std::min(szText.find_first_of("\r\n", uStart), szText.size());
        const std::string szLine = szText.substr(uStart, uEnd - uStart);
        AppendLine(szOut, szLine);
        if (!bInserted && szLine.starts_with(g_szVersion)) {
            AppendDefines(szOut, mapDefines);
            bInserted = true;
        }
        uStart = uEnd;
    }
    return szOut;
}

std::string g_fnReadShaderFile(const char* szPath) {
    std::ifstream file(szPath, std::ios::in | std::ios::binary);
    if (!file.is_open()) throw std::runtime_error(std::string("Failed to open file : ") + szPath);
    return {std::istreambuf_iterator<char>(file), {}};
}

GLShader::GLShader(const std::string& szSource, u32 uStage, const ShaderDefines* pDefines) {
    m_fnCompile(szSource, uStage, pDefines);
}
GLShader::GLShader(const char* szPath, u32 uStage) {
    m_fnCompile(g_fnReadShaderFile(szPath), uStage, nullptr);
}
GLShader::GLShader(const char* szPath, u32 uStage, const ShaderDefines& mapDefines) {
    m_fnCompile(g_fnReadShaderFile(szPath), uStage, &mapDefines);
}

GLShader::GLShader(const GLShader& other) noexcept
    : m_uObject(other.m_uObject), m_puUseCount(other.m_puUseCount) {
    ++*m_puUseCount;
}

GLShader& GLShader::operator=(const GLShader& other) noexcept {
    ++*other.m_puUseCount;
    m_fnDrop();
    m_uObject = other.m_uObject;
    m_puUseCount = other.m_puUseCount;
    return *this;
}

GLShader::~GLShader() { m_fnDrop(); }

void GLShader::m_fnDrop() noexcept {
    if (!m_puUseCount || --*m_puUseCount) return;
    glDeleteShader(m_uObject);
    delete m_puUseCount;
    m_puUseCount = nullptr;
}

void GLShader::m_fnCompile(const std::string& szSource, u32 uStage, const ShaderDefines* pDefines) {
    m_uObject = glCreateShader(uStage);
    if (!m_uObject) throw std::runtime_error("glCreateShader failed");
    const std::string szText =
        pDefines && !szSource.empty() ? g_fnInsertDefines(szSource, *pDefines) : szSource;
    const char* pText = szText.c_str();
    glShaderSource(m_uObject, 1, &pText, nullptr);
    glCompileShader(m_uObject);
    GLint iStatus = GL_FALSE;
    glGetShaderiv(m_uObject, GL_COMPILE_STATUS, &iStatus);
    if (iStatus != GL_FALSE) {
        m_puUseCount = new u32(1);
        return;
    }
    const std::string szMessage =
        "Compile failure in shader:\n" + InfoLog(m_uObject, glGetShaderiv, glGetShaderInfoLog);
    glDeleteShader(m_uObject);
    m_uObject = 0;
    throw std::runtime_error(szMessage);
}
