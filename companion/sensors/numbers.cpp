#include "companion/sensors/numbers.h"
#include <algorithm>

namespace companion::sensors {

void Numbers::Propose(const std::string& strKind, const std::string& strKey, u64 uRank) {
    if (!IndexOf(strKind, strKey)) m_listNew.push_back({strKind, strKey, uRank});
}

void Numbers::Settle() {
    std::stable_sort(m_listNew.begin(), m_listNew.end(),
                     [](const Proposal& stA, const Proposal& stB) { return stA.uRank > stB.uRank; });
    for (const Proposal& st : m_listNew) {
        auto& mapKeys = m_mapKinds[st.strKind];
        mapKeys.emplace(st.strKey, static_cast<u32>(mapKeys.size()));
    }
    m_listNew.clear();
}

std::optional<u32> Numbers::IndexOf(const std::string& strKind, const std::string& strKey) const {
    const auto itKind = m_mapKinds.find(strKind);
    if (itKind == m_mapKinds.end()) return std::nullopt;
    const auto it = itKind->second.find(strKey);
    return it != itKind->second.end() ? std::optional(it->second) : std::nullopt;
}

u32 Numbers::Count(const std::string& strKind) const {
    const auto itKind = m_mapKinds.find(strKind);
    return itKind != m_mapKinds.end() ? static_cast<u32>(itKind->second.size()) : 0;
}

} // namespace companion::sensors
