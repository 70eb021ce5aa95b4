#pragma once
// The commands about profiles.
#include "companion/control_library.h"
#include "companion/options.h"
#include "companion/programs.h"

namespace companion {

/// kNotFound if a name that is to be set has no profile's folder on this machine. An empty name, which stands
/// for the default profile, passes, and any name does with bForce.
Result NeedProfileFolder(const std::string& strName, bool bForce);

/// Makes a profile that of all programs and has them reload; an empty name stands for the default one.
Result UseProfile(const ControlLibrary& stLibrary, const std::string& strName);

/// 'profile ...' and 'fontcache ...'. listWords: the command line, for what the tool beside this program
/// does; iExitCode: its exit code.
Result PerformProfile(const Options& stOptions, const std::vector<std::string>& listWords, int& iExitCode);

} // namespace companion
