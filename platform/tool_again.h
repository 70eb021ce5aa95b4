#pragma once
// This program once more, as another process.
#include "platform/tool_result.h"
#include "platform/types.h"
#include <string>
#include <vector>

namespace platform::tool {

/// Runs this program once more to its end, with this one's output and nothing to read; iExitCode receives its
/// exit code. From any thread; a stop that is asked for is not passed on.
Result RunAgain(const std::vector<std::string>& listArguments, int& iExitCode);

/// Starts this program once more apart from this one: it outlives it and has no terminal. What it prints goes
/// into a file, which is made empty first.
Result StartApart(const std::vector<std::string>& listArguments, const std::string& strOutput,
                  u32& uProcessId);

} // namespace platform::tool
