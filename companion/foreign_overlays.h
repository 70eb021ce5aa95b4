#pragma once
// Overlays of others, for which the library waits before it lays its detour.
#include <string_view>

namespace companion {

/// True if strFile, the file part of a module's path, is one of them; letters compared without case.
bool IsForeignOverlay(std::string_view strFile);

/// ASCII letters compared without case.
bool EqualFolded(std::string_view strA, std::string_view strB);

} // namespace companion
