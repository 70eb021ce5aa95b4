#pragma once
// The picture files of a profile, decoded as the library decodes them.
#include "tools/profile/check/findings.h"
#include "tools/profile/check/items.h"

#include <filesystem>

namespace companion {

/// What is wrong with the picture of an image item, and what it looks like in the item's box.
void CheckPicture(const ProfileItem& item, const std::filesystem::path& path, Findings& findings);

} // namespace companion
