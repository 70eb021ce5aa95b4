#include "companion/shader_check.h"
#include "companion/profile_folder.h"
#include "draw/gl_shader.h"
#include <algorithm>
#include <string_view>

namespace companion {
namespace {

namespace fs = std::filesystem;

struct ShaderFile {
    const char* szName;
    bool bDefines;       ///< compiled with defines, so that its lines are copied one by one
    bool bSpare = false; ///< without it the others draw
};

constexpr ShaderFile kShaders[] = {{"DrawBasic_GL_C.vs", false},
                                   {"DrawBasic_GL_C.fs", false},
                                   {"DrawBasic_GL_Tex.vs", false},
                                   {"DrawBasic_GL_Tex.fs", false},
                                   {"DrawBasic_GL_CB.vs", false},
                                   {"DrawBasic_GL_CB.fs", true},
                                   {"DrawText_GL.vs", false},
                                   {"DrawText_GL.fs", false},
                                   {"DrawText_GL_G.fs", false},
                                   {"DrawMerged_GL_C.vs", false, true},
                                   {"DrawMerged_GL_C.fs", false, true},
                                   {"DrawMerged_GL_Tex.vs", false, true},
                                   {"DrawMerged_GL_Tex.fs", false, true},
                                   {"DrawMerged_GL_CB.fs", true, true},
                                   {"DrawMerged_GL_T.vs", false, true},
                                   {"DrawMerged_GL_T.fs", false, true},
                                   {"DrawMerged_GL_TG.fs", false, true}};

/// Number of the first line that is too long, from 1; 0 if there is none.
size_t LongLine(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    for (size_t uLine = 1; !text.empty(); ++uLine) {
        const size_t uEnd = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, uEnd);
        if (line.size() - line.ends_with('\r') > g_uShaderLineLimit) return uLine;
        text.remove_prefix(std::min(uEnd + 1, text.size()));
    }
    return 0;
}

/// What is wrong with a file; empty if nothing is.
std::string Fault(const fs::path& path, const ShaderFile& st) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) return st.bSpare ? "" : "is missing";
    if (!fs::is_regular_file(status)) return "is no plain file";
    const auto uSize = fs::file_size(path, error);
    if (error) return "cannot be read";
    if (uSize == 0) return "is empty";
    if (uSize > g_uShaderBytesMax)
        return "is larger than " + std::to_string(g_uShaderBytesMax / 1024) + " KiB";
    std::string strText;
    if (!ReadFile(path, g_uShaderBytesMax, strText) || strText.empty()) return "cannot be read";
    const size_t uLine = st.bDefines ? LongLine(strText) : 0;
    if (uLine == 0) return {};
    return "has more than " + std::to_string(g_uShaderLineLimit) + " bytes in line " + std::to_string(uLine) +
           ", which ends every program that loads it";
}

} // namespace

std::vector<std::string> ShaderFaults(const fs::path& pathData) {
    std::vector<std::string> listFaults;
    for (const ShaderFile& st : kShaders)
        if (const std::string strFault = Fault(pathData / st.szName, st); !strFault.empty())
            listFaults.push_back(std::string("shader ") + st.szName + " " + strFault);
    return listFaults;
}

} // namespace companion
