#pragma once
// Names of GL objects belong to the context that made them: in another one these numbers are the program's
// objects. This is the one place that knows whose context is current.
#include "platform/surface.h"

#include <atomic>

/// The context that the resources were built in; null: none.
extern std::atomic<platform::ContextHandle> g_hGLRC;

/// Whether names of the overlay's objects may be deleted now. Elsewhere they wait for their context
/// (draw/left_names.h), which takes the objects along at its end.
bool g_fnMayDeleteNames() noexcept;
/// Takes the current context as the one that makes the names from now on.
void g_fnTakeContext() noexcept;
/// Leaves it; nothing is deleted.
void g_fnLeaveContext() noexcept;
/// Whether the current context is another than the one that was taken. A new context may well get the handle
/// of one that is gone, so the end of contexts counts too. False while none is taken.
bool g_fnHasContextChanged() noexcept;
/// Whether the context that was taken has been destroyed.
bool g_fnIsContextGone() noexcept;
/// A context is about to be destroyed; null: all of them. From any thread; calls no GL.
void g_fnNoteContextGone(platform::ContextHandle hContext) noexcept;
