#pragma once
// One GL shader object with shared ownership, and the rule by which text reaches it.
#include "platform/types.h"

#include <map>
#include <string>
#include <string_view>

/// Name to value, in the order in which the lines are inserted.
using ShaderDefines = std::map<std::string, std::string>;

/// A larger file is no shader and counts as one that cannot be opened, as does what is no regular file.
constexpr std::size_t g_uShaderBytesMax = 1024 * 1024;
/// Longest line, line end not counted, that a source with defines or a "#define" line may have, in bytes.
constexpr std::size_t g_uShaderLineLimit = 253;

/// The source with "#define NAME VALUE" lines directly behind the first line that begins with "#version";
/// without such a line nothing is inserted. Blank lines vanish and every line ends in LF CR. The text ends at
/// a NUL. A line above g_uShaderLineLimit is fatal to the process.
std::string g_fnInsertDefines(std::string_view szSource, const ShaderDefines& defines);

/// The text of a shader file, given by its narrow path; its time of change is watched. Throws
/// std::runtime_error when it cannot be read.
std::string g_fnReadShaderFile(const char* szPath);

/// Copies share the object; the last one deletes it, in a context that must be current. All failures are
/// std::runtime_error. Stages are GL_VERTEX_SHADER and GL_FRAGMENT_SHADER.
class GLShader {
  public:
    /// Of a file, given by its narrow path.
    GLShader(const char* szPath, u32 uStage);
    GLShader(const char* szPath, u32 uStage, const ShaderDefines& defines);
    /// Of text; no defines where the pointer is null.
    GLShader(const std::string& szSource, u32 uStage, const ShaderDefines* pDefines);
    GLShader(const GLShader& other) noexcept;
    GLShader& operator=(const GLShader& other) noexcept;
    ~GLShader();

    /// The GL name.
    u32 m_fnGetObject() const noexcept { return m_uObject; }

  private:
    void Compile(const std::string& szSource, u32 uStage, const ShaderDefines* pDefines);
    void Drop() noexcept;

    u32 m_uObject = 0;
    u32* m_puUses = nullptr;
};
