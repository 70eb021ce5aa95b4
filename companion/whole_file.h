#pragma once
// Files that are replaced whole or not at all.
#include "companion/result.h"
#include <filesystem>
#include <string>

namespace companion {

/// Writes beside the file and then takes its place, that of a link too; makes its folder. A full disk leaves
/// what was there.
Result WriteWhole(const std::filesystem::path& path, const std::string& strText);

/// What was printed has to have left this program, or whoever reads it takes a piece for the whole.
Result NeedWholeOutput();

} // namespace companion
