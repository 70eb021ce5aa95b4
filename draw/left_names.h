#pragma once
// Names of objects that could not be deleted, since another context was current when they were done with.
// They are kept for the context that made them and deleted when it is set up again. Without that, a program
// that presents from several contexts in turn would lose a set of objects at each change.
#include "platform/surface.h"
#include "platform/types.h"

enum eNames : u32 { NAMES_TEXTURES, NAMES_BUFFERS, NAMES_PROGRAMS, NAMES_VERTEX_ARRAYS, NAMES_KINDS };

/// Deletes the overlay's objects of one kind, now or when their context is set up again. Names of 0 are
/// passed over. Where that context is gone, or without memory, they are forgotten.
void g_fnDeleteNames(eNames eKind, u32 uCount, const u32* puNames) noexcept;
inline void g_fnDeleteName(eNames eKind, u32 uName) noexcept { g_fnDeleteNames(eKind, 1, &uName); }

/// What has been left since the last call is the named context's from now on; null: nobody's.
void g_fnGiveLeftNames(platform::ContextHandle hContext) noexcept;
/// The current context is set up: what was left in it goes.
void g_fnDeleteLeftNames() noexcept;
/// A context is about to be destroyed, and its objects with it; null: all of them. From any thread.
void g_fnForgetLeftNames(platform::ContextHandle hContext) noexcept;
