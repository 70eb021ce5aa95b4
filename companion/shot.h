#pragma once
// The command that asks programs for a screenshot and tells where it lies.
#include "companion/control_library.h"
#include "companion/options.h"

#include <string>
#include <vector>

namespace companion {

/// Sets what is needed, asks, waits for the finished files and prints their paths. What was changed in the
/// settings comes back, also when a stop is asked for.
Result TakeShots(const ControlLibrary& stLibrary, const Options& stOptions);

/// Type of the settings for a word of the command line; g_uNoShotType for a word that is none.
constexpr u32 g_uNoShotType = ~0u;
u32 ShotTypeOf(const std::string& strWord);
/// Extensions of the files that a type makes.
std::vector<std::string> ShotExtensions(u32 uType);

} // namespace companion
