#pragma once
// Looks at a program from outside, for a diagnosis.
#include "companion/control_library.h"
#include "companion/diagnosis.h"

namespace companion {

constexpr u32 g_uShortLook = 600; ///< long enough for windows that take turns

/// Takes a second or two while a program stands still. The program records its frames meanwhile and for some
/// seconds more (shared/frame_trace.h).
/// uLook: milliseconds for which its frames are watched.
Evidence CollectEvidence(const ControlLibrary& stLibrary, u32 uProcessId, u32 uLook = g_uShortLook);

/// Asks a program for its frames and watches them for so long, milliseconds, once it answers.
TraceFacts WatchTrace(const ControlLibrary& stLibrary, u32 uProcessId, u32 uMilliseconds);

} // namespace companion
