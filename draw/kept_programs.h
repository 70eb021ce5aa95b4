#pragma once
// Programs that outlive what draws with them. A reload lets go of a program and asks for the very same one a
// moment later; compiling and linking it anew would cost the host a frame. Render thread only, but for
// g_fnForgetKeptPrograms.
#include "draw/gl_program.h"
#include "platform/surface.h"

#include <memory>
#include <string>

/// Letting go of a program keeps it, if its context is current; otherwise it is deleted as all names are.
struct stKeepProgram {
    void operator()(GLProgram* pProgram) const noexcept;
};
using KeptProgram = std::unique_ptr<GLProgram, stKeepProgram>;

/// One that was let go of, made in the current context from these sources; null if there is none. Its
/// uniforms are as they were left.
KeptProgram g_fnTakeKeptProgram(const std::string& strSources);
/// A new one, to be kept under its sources.
KeptProgram g_fnMakeKept(std::unique_ptr<GLProgram> pProgram, std::string strSources);

/// Deletes those that nobody holds, where their context is current. At the end of the overlay in a process.
void g_fnDeleteKeptPrograms() noexcept;
/// A context is about to be destroyed, and its programs with it; null: all. From any thread; calls no GL.
void g_fnForgetKeptPrograms(platform::ContextHandle hContext) noexcept;
