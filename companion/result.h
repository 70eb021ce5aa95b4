#pragma once
// Outcomes, and the records that the system's part fills, by their short names.
#include "platform/tool_result.h"

namespace companion {
using namespace platform::tool;
}
