#pragma once
// The program that does what the companion's commands about profiles need the overlay's own code for.
#include "companion/options.h"
#include "companion/result.h"
#include <string>
#include <vector>

namespace companion {

/// Runs the program: parses a command line of the companion, acts, prints. Returns the exit code.
int ToolMain(const std::vector<std::string>& listArguments);

// What each command does; iExitCode: the exit code of one that did its work.
Result ListProfiles(const Options& stOptions, int& iExitCode);
Result CheckProfileCommand(const Options& stOptions, int& iExitCode);
Result RenderCommand(const Options& stOptions, int& iExitCode);
Result WriteFontCache(const Options& stOptions, int& iExitCode);
Result ListFontCache(const Options& stOptions, int& iExitCode);
Result CheckFontCache(const Options& stOptions, int& iExitCode);
Result ListRows(const Options& stOptions, int& iExitCode);
Result ListLanguages(const Options& stOptions, int& iExitCode);
Result UseLanguage(const Options& stOptions, int& iExitCode);
Result LeaveLanguage(const Options& stOptions, int& iExitCode);

} // namespace companion
