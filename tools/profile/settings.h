#pragma once
// The sensor definitions of this machine: without them the tools would take each defined sensor for an
// unknown one.
#include <filesystem>
#include <string>
#include <vector>

namespace companion {

/// Hands what the machine's settings say of sensors, cards, CPUs, the language and video sources to the
/// overlay's code in this program. On Linux it stands in the file Settings/settings.ini beside the data
/// folder; on Windows in the registry, unless such a file stands beside the folder. Where nothing is said of
/// hardware (false), one card and one CPU that report everything are made up. All other settings are those
/// that are shipped, so that a picture is alike on every machine.
bool TakeMachineSettings(const std::filesystem::path& pathData, bool bNamed);
/// Base names of the values that these definitions are for; reads them.
std::vector<std::string> DefinedSensors();

} // namespace companion
