#pragma once
// The command that watches the programs' frame times.
#include "companion/control_library.h"
#include "companion/options.h"
#include "companion/reports.h"

namespace companion {

/// One table, or one an interval until a stop is asked for. The report of frame times is on meanwhile and
/// then as it was before.
void Watch(const ControlLibrary& stLibrary, const Options& stOptions);

/// Process, id, API, milliseconds and frames per second. A program without a frame since the API codes were
/// reset shows none.
std::string TopTable(const std::vector<StatusRow>& listRows);

/// "59.9" for the frames per second that a usable frame time stands for, else "-".
std::string RateText(f32 fMilliseconds);

} // namespace companion
