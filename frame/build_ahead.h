#pragma once
// The parts of a build that need nothing of the program, done on a frame of their own ahead of it, so that no
// frame of the program takes the whole (draw/first_draws.h has what comes behind it). With the key
// OuterGuard; without it a build is one step, as it always was.

/// To be asked on a frame that would build. False: this frame did the parts ahead, and the next one builds.
bool g_fnIsBuildPrepared() noexcept;
/// The build holds what it needs by itself now.
void g_fnEndPreparation() noexcept;
