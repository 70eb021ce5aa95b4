#pragma once
// Linux: programs that a tool starts.
#include "platform/tool.h"
#include <sys/types.h>

namespace platform::tool {

/// Waits for a child's end. Its exit code, or 128 and the signal that ended it.
Result WaitForEnd(pid_t iChild, int& iExitCode);

} // namespace platform::tool
