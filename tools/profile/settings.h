#pragma once
// The sensor definitions of this machine: without them the tools would take each defined sensor for an
// unknown one.
#include <filesystem>
#include <string>
#include <vector>

namespace companion {

/// Hands the sensor definitions of the machine's settings to the overlay's code in this program. On Linux
/// they stand in the file Settings/settings.ini beside the data folder; on Windows in the registry, unless
/// such a file stands beside the folder. The file may say too what cards and CPUs report; otherwise one card
/// and one CPU that report everything are made up. All other settings are those that are shipped, so that a
/// picture is alike on every machine.
void TakeMachineSettings(const std::filesystem::path& pathData, bool bNamed);
/// Base names of the values that these definitions are for; reads them.
std::vector<std::string> DefinedSensors();

} // namespace companion
