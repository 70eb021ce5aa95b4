#pragma once
// The process that a word names.
#include "companion/result.h"
#include "platform/types.h"
#include <string>

namespace companion {

/// A process id, or the only process of that name; iCode kNotFound without one, kFailed if several match.
Result ResolveTarget(const std::string& strTarget, u32& uProcessId);

/// strText as a decimal process id above 0.
bool ParseProcessId(const std::string& strText, u32& uProcessId);

} // namespace companion
