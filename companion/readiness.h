#pragma once
// Whether a program had better stay without the overlay: what cannot be drawn is not tried in a game.
#include "companion/control_library.h"
#include <string>

namespace companion {

/// Success if the machine's data folder, its shaders and the profile that a program would show are fit to
/// use; else the reason, with the command that helps. strProgram: its file name, empty for programs without a
/// profile of their own.
Result NeedReady(const ControlLibrary& stLibrary, const std::string& strProgram);

/// Success if a profile passes the check, which prints what is wrong unless it is to be silent. strData: the
/// data folder, empty for that of this machine.
Result NeedGoodProfile(const std::string& strProfile, const std::string& strData, bool bSilent);
/// Success if all shaders of a data folder can be used.
Result NeedGoodShaders(const std::string& strData);

} // namespace companion
