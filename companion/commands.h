#pragma once
// What each command does.
#include "companion/control_library.h"
#include "companion/options.h"
#include "companion/result.h"
#include <string>
#include <vector>

namespace companion {

/// Runs the program: parses, acts, prints. Returns the exit code.
int Main(const std::vector<std::string>& listArguments);

} // namespace companion
