#pragma once
// What machine this is, in words for people; empty where the system does not tell.
#include <string>
#include <vector>

namespace platform::tool {

/// Name and version of the operating system.
std::string SystemText();
/// The processor as its maker calls it.
std::string ProcessorText();

/// Folder of the person who runs this, without a trailing separator; empty if the system tells none.
std::string HomeFolder();
/// Names of that person, as an account and in full, where the system tells them.
std::vector<std::string> PersonNames();

} // namespace platform::tool
