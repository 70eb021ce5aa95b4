#pragma once
// The layout as the library builds it, at the sizes that pictures commonly have.
#include "tools/profile/check/findings.h"
#include "tools/profile/check/items.h"

#include <filesystem>

namespace companion {

/// More items of a kind than there are places for controls. True if all have one.
bool CheckCapacity(const std::vector<const ProfileItem*>& taken, const tinyxml2::XMLElement& info,
                   Findings& findings);

/// Builds the layout and says which controls stand outside the picture or are cut.
void CheckLayout(const std::vector<const ProfileItem*>& taken, const std::filesystem::path& pathFolder,
                 const std::filesystem::path& pathData, Findings& findings);

} // namespace companion
