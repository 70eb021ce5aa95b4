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

/// A process id, or the only process of that name; iCode kNotFound without one, kFailed if several match.
Result ResolveTarget(const std::string& strTarget, u32& uProcessId);

/// strText as a decimal process id above 0.
bool ParseProcessId(const std::string& strText, u32& uProcessId);

} // namespace companion
