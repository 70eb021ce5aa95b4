#pragma once
// The programs of the merged batchers. Their sources number the attributes themselves, so that one vertex
// array serves all programs of a batcher.
#include "draw/gl_program.h"

#include <memory>

/// Whether the files are there and the context can compile them.
bool g_fnCanDrawMerged();

/// Sets what never changes over a program's life. Throws std::runtime_error.
std::unique_ptr<GLProgram> g_fnBuildMergedProgram(const char* szVertexFile, const char* szFragmentFile,
                                                  const ShaderDefines* pDefines = nullptr);
/// Leaves the program in use.
void g_fnSetMergedProjection(const GLProgram& program);
