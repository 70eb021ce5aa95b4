#include "draw/data_shader.h"

#include "draw/data_path.h"

GLShader g_fnDataShader(const char* szName, u32 uStage, const ShaderDefines* pDefines) {
    char szPath[g_uDataPathCapacity];
    g_fnResolveDataPath(szPath, szName);
    return pDefines ? GLShader(szPath, uStage, *pDefines) : GLShader(szPath, uStage);
}
