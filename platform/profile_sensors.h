#pragma once
// The sensor definitions that the system itself keeps, for the program that draws profiles.

namespace platform::tool {

/// Hands them to the headless back-end: from the registry of Windows; nothing on other systems.
void TakeSensorsOfSystem();

} // namespace platform::tool
