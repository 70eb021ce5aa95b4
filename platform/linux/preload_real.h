#pragma once
// The real functions behind the interposed names.
#include "platform/types.h"

namespace platform::preload {

enum class Name : u32 {
    GlxSwapBuffers,
    GlxGetProcAddress,
    GlxGetProcAddressArb,
    EglSwapBuffers,
    EglSwapBuffersWithDamageKhr,
    EglSwapBuffersWithDamageExt,
    EglGetProcAddress,
    GlxDestroyContext,
    EglDestroyContext,
    EglTerminate,
    Count
};

/// Address of the C library's own dlsym(), and a call of it. Never null on a system that can load this file.
void* RealDlsym() noexcept;
void* RealSymbol(void* hModule, const char* szName) noexcept;
/// The real function of that name; null if no GL library offers it.
void* Real(Name eName) noexcept;
/// Notes a real function that the host was given by a look-up, unless one is known already.
void Remember(Name eName, void* pReal) noexcept;
/// The name's index; Name::Count if the name is not interposed.
Name Find(const char* szName) noexcept;
/// Our function of that name.
void* Interposer(Name eName) noexcept;

/// Opens the library that lies beside this file, once, and thereby attaches it. errno is left alone.
void AttachOnce() noexcept;
/// Whether libGL or its GLX half is mapped.
bool GlxIsMapped() noexcept;

} // namespace platform::preload
