#pragma once
// The data folder of a user over the one that a package installs: what the user has no file for is a link.
#include "companion/result.h"
#include <filesystem>

namespace companion {

/// Where the package of this program put its data (below it Data and Settings); empty where there is none.
std::filesystem::path InstalledData();

/// Links what is installed into a user's folder, where nothing of that name lies there; takes away links to
/// what is not installed any more. Both are folders with Data and Settings in them.
Result LinkUserData(const std::filesystem::path& pathInstalled, const std::filesystem::path& pathUser);
/// Takes the links away again, and folders that are then empty.
Result UnlinkUserData(const std::filesystem::path& pathInstalled, const std::filesystem::path& pathUser);

/// Settings in the user's place that say what the installed ones say become a link to them again, so that
/// they follow a newer package.
void RelinkSettings(const std::filesystem::path& pathInstalled, const std::filesystem::path& pathUser);

/// Both steps for the data of this program and this user; nothing to do is a success.
Result LayOutUserData();
Result RemoveUserData();
void RelinkUserSettings();

} // namespace companion
