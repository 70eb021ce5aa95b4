#pragma once
// A compiled shader with shared ownership.
#include "platform/types.h"

#include <map>
#include <string>

/// Preprocessor defines, in key order.
using ShaderDefines = std::map<std::string, std::string>;

/// Longest line of a source that gets defines, in bytes; a longer one ends the process, as it is prescribed.
constexpr u32 g_uShaderLineBytes = 253;

/// Inserts the defines behind the first line that begins with "#version". Blank lines disappear, and every
/// line ends with a line feed and a carriage return. Without such a line no define is inserted. An empty
/// source stays empty.
std::string g_fnInsertDefines(const std::string& szSource, const ShaderDefines& mapDefines);
/// Whole text of a file. Throws std::runtime_error "Failed to open file : " and the path.
std::string g_fnReadShaderFile(const char* szPath);

/// Throws std::runtime_error with the compiler's words on failure. Needs a current context.
class GLShader {
  public:
    /// From text; a null pDefines leaves the source as it is.
    GLShader(const std::string& szSource, u32 uStage, const ShaderDefines* pDefines);
    /// From a file.
    GLShader(const char* szPath, u32 uStage);
    GLShader(const char* szPath, u32 uStage, const ShaderDefines& mapDefines);
    GLShader(const GLShader& other) noexcept;
    GLShader& operator=(const GLShader& other) noexcept;
    ~GLShader();

    /// GL name.
    u32 m_fnObject() const noexcept { return m_uObject; }

  private:
    void m_fnCompile(const std::string& szSource, u32 uStage, const ShaderDefines* pDefines);
    void m_fnDrop() noexcept;

    u32 m_uObject = 0;
    u32* m_puUseCount = nullptr;
};
