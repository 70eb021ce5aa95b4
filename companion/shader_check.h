#pragma once
// The shader files of a data folder, looked at from outside: a program with the overlay does not start well
// with a bad one.
#include <filesystem>
#include <string>
#include <vector>

namespace companion {

/// What keeps the overlay from using the shader files of a data folder, a sentence for each; empty if nothing
/// does. Whether a driver compiles them cannot be told here.
std::vector<std::string> ShaderFaults(const std::filesystem::path& pathData);

} // namespace companion
