#pragma once
// The one recording that keys begin and end. It runs in a process of its own, so that the press that begins
// it and the one that ends it may come from different programs.
#include "companion/control_library.h"
#include <string>

namespace companion::keys {

/// Whether one that was begun so runs.
bool IsRecording();
/// Begins one of the program that is meant, and says where it goes once frames come.
Result BeginRecording(const ControlLibrary& stLibrary, const std::string& strLibrary);
/// Ends it, waits until its file is whole and says what it holds.
Result EndRecording();
/// What the last one said at its end, without a line's end.
std::string LastRecordingText();

} // namespace companion::keys
