#include "tools/profile/check/nearest.h"

#include <algorithm>
#include <cstring>

namespace companion {
namespace {

/// Names longer than any known one are not compared: hostile ones may be very long.
constexpr std::size_t g_uLongestName = 64;

/// The nearest of the names offered so far, if near at all.
class Nearest {
  public:
    explicit Nearest(std::string_view szName) : m_szName(szName) {
        // One slip in a short name, and one more for each four characters.
        m_uBest = static_cast<unsigned>(2 + szName.size() / 4);
        if (szName.size() <= 3) m_uBest = 2;
    }
    void Offer(const char* szKnown) {
        if (m_szName.size() > g_uLongestName) return;
        const unsigned uDistance = WordDistance(m_szName, szKnown);
        if (uDistance >= m_uBest) return;
        m_uBest = uDistance;
        m_szFound = szKnown;
    }
    void Offer(std::span<const stAttribute> attributes) {
        for (const stAttribute& st : attributes) Offer(st.szName);
    }
    const char* Found() const { return m_szFound; }

  private:
    std::string_view m_szName;
    unsigned m_uBest;
    const char* m_szFound = "";
};

/// An item that has such an attribute of its own; null if none has.
const stElement* OwnerOfAttribute(std::string_view szName) {
    for (const stElement& element : ProfileElements())
        for (const stAttribute& attribute : element.attributes)
            if (szName == attribute.szName) return &element;
    return nullptr;
}

} // namespace

std::string NearestElement(const char* szName, const char* szParent) {
    Nearest nearest(szName);
    for (const stElement& element : ProfileElements())
        if (!std::strcmp(element.szParent, szParent)) nearest.Offer(element.szName);
    return nearest.Found();
}

std::string AttributeHint(const char* szName, const stElement& element) {
    if (const stElement* pOwner = OwnerOfAttribute(szName))
        return std::string("; it belongs to <") + pOwner->szName + '>';
    Nearest nearest(szName);
    if (element.eUse == ElementUse::Item) nearest.Offer(CommonAttributes());
    nearest.Offer(element.attributes);
    if (!*nearest.Found()) return {};
    return std::string("; did you mean \"") + nearest.Found() + "\"?";
}

bool IsJudgedWithItem(const stElement& element, const stAttribute& attribute) {
    static constexpr const char* c_aszNames[] = {"DataNum", "DataWidth", "DataStartIdx", "SlotNum",
                                                 "ShapeSegNum"};
    if (element.eUse != ElementUse::Item) return false;
    return std::any_of(std::begin(c_aszNames), std::end(c_aszNames),
                       [&](const char* sz) { return !std::strcmp(sz, attribute.szName); });
}

} // namespace companion
