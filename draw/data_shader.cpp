#include "draw/data_shader.h"

#include "draw/data_path.h"

std::string g_fnReadDataShader(const char* szName) {
    char szPath[g_uDataPathCapacity];
    g_fnResolveDataPath(szPath, szName);
    return g_fnReadShaderFile(szPath);
}

GLShader g_fnDataShader(const char* szName, u32 uStage, const ShaderDefines* pDefines) {
    return GLShader(g_fnReadDataShader(szName), uStage, pDefines);
}
