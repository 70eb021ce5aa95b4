#pragma once
// The programs of the merged batchers. Their sources number the attributes themselves, so that one vertex
// array serves all programs of a batcher.
#include "draw/kept_programs.h"

/// Whether the files are there and the context can compile them.
bool g_fnCanDrawMerged();

/// Sets what never changes over a program's life. A program that was let go of in this context is taken again
/// while its files say what they said. Throws std::runtime_error.
KeptProgram g_fnBuildMergedProgram(const char* szVertexFile, const char* szFragmentFile,
                                   const ShaderDefines* pDefines = nullptr);
/// Leaves the program in use.
void g_fnSetMergedProjection(const GLProgram& program);
