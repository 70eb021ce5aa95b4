#include "merged/merged_programs.h"

#include "base/log.h"
#include "draw/canvas.h"
#include "draw/data_path.h"
#include "draw/data_shader.h"
#include "draw/matrix.h"
#include "platform/gl_api.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

static constexpr const char* g_aszFiles[] = {
    "DrawMerged_GL_C.vs",  "DrawMerged_GL_C.fs", "DrawMerged_GL_Tex.vs", "DrawMerged_GL_Tex.fs",
    "DrawMerged_GL_CB.fs", "DrawMerged_GL_T.vs", "DrawMerged_GL_T.fs",   "DrawMerged_GL_TG.fs",
};

static bool IsFileThere(const char* szName) {
    char szPath[g_uDataPathCapacity];
    std::error_code error;
    if (g_fnResolveDataPath(szPath, szName) && std::filesystem::is_regular_file(szPath, error)) return true;
    g_fnLog("GLGraphics: %s is missing, drawing is not merged", szName);
    return false;
}

bool g_fnCanDrawMerged() {
    if (!GLEW_VERSION_3_3 && !GLEW_ARB_explicit_attrib_location) return false;
    for (const char* szName : g_aszFiles)
        if (!IsFileThere(szName)) return false;
    return true;
}

/// All that decides over a program.
static std::string SourcesOf(const std::string& strVertex, const std::string& strFragment,
                             const ShaderDefines* pDefines) {
    std::string strAll = strVertex + '\0' + strFragment + '\0';
    if (pDefines)
        for (const auto& [strName, strValue] : *pDefines) strAll += strName + '=' + strValue + '\0';
    return strAll;
}

static KeptProgram Compile(const std::string& strVertex, const std::string& strFragment,
                           const ShaderDefines* pDefines, std::string strSources) {
    std::vector<GLShader> shaders;
    shaders.emplace_back(strVertex, GL_VERTEX_SHADER, nullptr);
    shaders.emplace_back(strFragment, GL_FRAGMENT_SHADER, pDefines);
    KeptProgram pProgram = g_fnMakeKept(std::make_unique<GLProgram>(shaders), std::move(strSources));
    f32 mView[16];
    g_fnMakeIdentity(mView);
    mView[14] = -1.0f;
    pProgram->m_fnUse();
    pProgram->m_fnSetUniformMatrix4fv("mView", mView, false);
    pProgram->m_fnSetUniform1i("tex", 0);
    return pProgram;
}

KeptProgram g_fnBuildMergedProgram(const char* szVertexFile, const char* szFragmentFile,
                                   const ShaderDefines* pDefines) {
    const std::string strVertex = g_fnReadDataShader(szVertexFile);
    const std::string strFragment = g_fnReadDataShader(szFragmentFile);
    std::string strSources = SourcesOf(strVertex, strFragment, pDefines);
    KeptProgram pProgram = g_fnTakeKeptProgram(strSources);
    if (!pProgram) pProgram = Compile(strVertex, strFragment, pDefines, std::move(strSources));
    g_fnSetMergedProjection(*pProgram);
    return pProgram;
}

void g_fnSetMergedProjection(const GLProgram& program) {
    f32 mProj[16];
    g_fnMakeOrtho(mProj, 0.0f, static_cast<f32>(g_uCanvasW), 0.0f, static_cast<f32>(g_uCanvasH), 0.0f, 1.0f);
    program.m_fnUse();
    program.m_fnSetUniformMatrix4fv("mProj", mProj, false);
}
