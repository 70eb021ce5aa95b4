#pragma once
// Which index a piece of hardware has in its data names.
#include "platform/types.h"
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace companion::sensors {

/// Hands out indexes from 0 up, one list a kind. Hardware keeps its index as long as the companion runs, also
/// while it is unplugged, so that a name never changes what it means.
class Numbers {
  public:
    /// Proposes hardware strKey ("0000:03:00.0") of a kind ("gpu"). uRank decides among what comes new in one
    /// round: the higher rank gets the lower index, equal ones keep the order of their proposals.
    void Propose(const std::string& strKind, const std::string& strKey, u64 uRank = 0);
    /// Ends the round: new hardware gets its index.
    void Settle();

    std::optional<u32> IndexOf(const std::string& strKind, const std::string& strKey) const;
    /// How many of a kind have an index.
    u32 Count(const std::string& strKind) const;

  private:
    struct Proposal {
        std::string strKind;
        std::string strKey;
        u64 uRank;
    };
    std::vector<Proposal> m_listNew;
    std::map<std::string, std::map<std::string, u32>> m_mapKinds;
};

} // namespace companion::sensors
