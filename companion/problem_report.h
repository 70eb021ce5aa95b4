#pragma once
// A report of what goes on in a program, for whoever is to mend it: one text, shown to the person before it
// is kept, and never sent.
#include "companion/control_library.h"
#include "companion/options.h"
#include <string>
#include <vector>

namespace companion {

/// 'report-problem'.
Result ReportProblem(const ControlLibrary& stLibrary, const Options& stOptions);

/// Takes a person out of a text: the home folder becomes "~", a name that stands as a word "USER". Letters
/// are compared without case, and both separators count. Names below three characters stay, and those that
/// are no person's.
std::string WithoutPerson(std::string strText, const std::string& strHome,
                          const std::vector<std::string>& listNames);

} // namespace companion
