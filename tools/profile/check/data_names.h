#pragma once
// Names of values, against all that somebody publishes.
#include "tools/profile/check/item_values.h"

#include <set>

namespace companion {

class DataNameCheck {
  public:
    explicit DataNameCheck(const DataNames& names);
    /// Judges the DataFullName of a number, a graph or a chart.
    void Check(const ProfileItem& item, Findings& findings) const;

  private:
    bool IsKnown(const std::string& strName) const;
    std::string Nearest(const std::string& strName) const;

    std::set<std::string> m_listPublished; ///< whole names
    std::set<std::string> m_listSensors;   ///< base names out of the settings
};

} // namespace companion
