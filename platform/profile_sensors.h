#pragma once
// What the system itself keeps of a machine's settings, for the program that draws profiles.

namespace platform::tool {

/// Hands sensor definitions, hardware and the language to the headless back-end: from the registry of
/// Windows; nothing on other systems. True if there is hardware among it.
bool TakeMachineOfSystem();

} // namespace platform::tool
