#pragma once
// Outcome of a step: an exit code and, unless it is 0, one line that says why.
#include <string>
#include <utility>

namespace platform::tool {

/// Exit codes of the program.
enum ExitCode : int { kOk = 0, kFailed = 1, kUsage = 2, kNotFound = 3 };

struct Result {
    int iCode = kOk;
    std::string strError;

    static Result Fail(std::string strWhy) { return {kFailed, std::move(strWhy)}; }
    static Result Usage(std::string strWhy) { return {kUsage, std::move(strWhy)}; }
    static Result NotFound(std::string strWhy) { return {kNotFound, std::move(strWhy)}; }
    explicit operator bool() const { return iCode == kOk; }
};

} // namespace platform::tool
