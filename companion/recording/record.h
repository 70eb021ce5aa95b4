#pragma once
// The command that writes a recording of a running program.
#include "companion/control_library.h"
#include "companion/options.h"

namespace companion {

/// Records until the time is over, a stop is asked for or the program ends; the file is whole then, and a
/// line tells what it holds.
Result RecordFrames(const ControlLibrary& stLibrary, const Options& stOptions);

/// What a recording that begins now is called without a name of its own: the program's name and the time.
std::string RecordingName(const std::string& strProgram);

/// The program that is meant: by name or id, or the only one that carries the overlay.
Result FindCarrier(const ControlLibrary& stLibrary, const std::string& strTarget, u32& uProcessId);

} // namespace companion
