#pragma once
// Batch files of Windows: the command interpreter that runs them reads their words once more, as commands.
#include <string>
#include <vector>

namespace platform::tool {

/// True if Windows would hand a file of that name to its command interpreter: it ends in .bat or .cmd. Dots
/// and blanks at the end, which Windows drops, do not hide that.
bool IsBatchFile(const std::string& strFile);

/// Why a batch file cannot be given these words, its own name among them; empty if it can. No quoting that
/// holds in every interpreter is known for the characters that are refused.
std::string BatchFault(const std::vector<std::string>& listWords);

} // namespace platform::tool
