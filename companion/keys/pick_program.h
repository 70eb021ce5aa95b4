#pragma once
// The program that a key means.
#include "companion/control_library.h"

namespace companion::keys {

/// The program that has the keyboard if it carries the overlay, else the only one that does, else the one
/// that presents the most. kNotFound if none carries it.
Result PickProgram(const ControlLibrary& stLibrary, u32& uProcessId);

} // namespace companion::keys
