#pragma once
// The two stages of resource creation, and their release.
#include "platform/types.h"

/// Start of the current build, performance-counter ticks.
extern i64 g_iStartTime;

/// Fills g_stCreationTable with the makers of the _GL objects and the release hook, names the API. Cannot
/// fail.
bool g_fnInitGL_Resource() noexcept;
/// Makes manager, layout and batchers of the current slot. False on failure; the next frame tries again.
bool g_fnTavo_Init_Resource();
/// Whether the last build came to nothing for want of shaders that can be used.
bool g_fnHaveBatchersFailed() noexcept;
/// After an exception out of the build: what it left is released, and the next try waits as after any
/// failure.
void g_fnAbandonBuild() noexcept;
/// Destroys everything the two stages made, in the prescribed order.
void g_fnReleaseResources() noexcept;
