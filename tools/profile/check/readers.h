#pragma once
// What the library's own readers say of a profile's items, with the elements that it belongs to.
#include "tools/profile/check/findings.h"
#include "tools/profile/check/items.h"

namespace companion {

/// Runs the readers over the list of items. Their reports become findings, and so does what they don't say:
/// items without a name, of a name that is taken, and those that a bad one took along. Those that they took,
/// in the order of items; they stay registered.
std::vector<const ProfileItem*> CheckByReaders(const tinyxml2::XMLElement& info,
                                               const std::vector<ProfileItem>& items, Findings& findings);

} // namespace companion
