#pragma once
// What the companion needs to ask for screenshots: what can be written here. One implementation a system.
#include <string>

namespace platform::tool {

bool HasHeifEncoder();
bool IsFolder(const std::string& strPath);
/// A file can be made in a folder.
bool CanWriteTo(const std::string& strFolder);

} // namespace platform::tool
