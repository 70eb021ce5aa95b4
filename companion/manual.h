#pragma once
// Man pages and completions for shells, made of the description of the command line that --help prints.
#include <map>
#include <string>

namespace CLI {
class App;
}

namespace companion {

/// The files by their names in a package: man1/*.1, and completions for bash and fish.
std::map<std::string, std::string> ManualFiles(const CLI::App& app, const std::string& strVersion);

} // namespace companion
