#pragma once
// Shaders from the overlay's data folder.
#include "draw/gl_shader.h"

/// The text of a shader file. Throws std::runtime_error.
std::string g_fnReadDataShader(const char* szName);
/// Compiles a shader file, with defines where there are any. Throws std::runtime_error.
GLShader g_fnDataShader(const char* szName, u32 uStage, const ShaderDefines* pDefines = nullptr);
