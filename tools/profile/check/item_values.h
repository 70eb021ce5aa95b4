#pragma once
// What the values of an item mean together: graphs and gauges, owners, data names, sizes of writing.
#include "tools/profile/check/findings.h"
#include "tools/profile/check/items.h"

namespace companion {

/// Data names that this machine knows beside those of the library.
struct DataNames {
    std::vector<std::string> published; ///< whole names
    std::vector<std::string> sensors;   ///< base names
};

/// Judges the items that the readers took. all holds those that they refused, too.
void CheckItems(const std::vector<const ProfileItem*>& taken, const std::vector<ProfileItem>& all,
                const DataNames& names, Findings& findings);

/// False for a profile that stays unseen: items without words, size or opacity.
bool AnyCanBeSeen(const std::vector<const ProfileItem*>& taken);

/// A number without its fraction.
std::string WholeText(double f);
/// How many columns a graph gets: as written, or out of its width for stairs and bars.
unsigned GraphColumns(const ProfileItem& item);

} // namespace companion
