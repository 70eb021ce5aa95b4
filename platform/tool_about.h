#pragma once
// What machine this is, in words for people; empty where the system does not tell.
#include <string>

namespace platform::tool {

/// Name and version of the operating system.
std::string SystemText();
/// The processor as its maker calls it.
std::string ProcessorText();

} // namespace platform::tool
