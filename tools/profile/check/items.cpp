#include "tools/profile/check/items.h"

#include "config/items/item_property.h"
#include "config/settings/setting_binding.h"
#include "tools/profile/check/document.h"

#include <tinyxml2.h>

namespace companion {
namespace {

/// As far as the readers look at an attribute's text.
constexpr std::size_t g_uAttributeBytes = 255;

constexpr const char* g_aszReadingOrder[] = {"TextBox", "Memo",      "NumBox",  "Panel",
                                             "Image",   "LineGraph", "PieChart"};

std::string NameOf(const tinyxml2::XMLElement& element) {
    const char* szName = element.Attribute("Name");
    return szName ? std::string(szName).substr(0, g_uItemNameBytes - 1) : std::string();
}

ProfileItem MakeItem(const tinyxml2::XMLElement& element, const stElement& kind) {
    ProfileItem item{&element, &kind, NameOf(element), {}, false};
    if (const std::size_t uAt = item.strName.rfind('@'); uAt != std::string::npos)
        item.strOwner = item.strName.substr(uAt + 1);
    item.bShown = static_cast<u32>(g_fnParseDecimal(AttributeText(item, "IsShow").c_str())) != 0 &&
                  !item.strName.empty();
    return item;
}

} // namespace

std::vector<ProfileItem> ItemsInReadingOrder(const tinyxml2::XMLElement* pInfo) {
    std::vector<ProfileItem> list;
    for (const char* szElement : g_aszReadingOrder) {
        const stElement* pKind = FindElement(szElement, "Info");
        const tinyxml2::XMLElement* p = pInfo ? pInfo->FirstChildElement(szElement) : nullptr;
        for (; p; p = p->NextSiblingElement(szElement)) list.push_back(MakeItem(*p, *pKind));
    }
    return list;
}

std::string AttributeText(const ProfileItem& item, const char* szName) {
    if (const char* szText = item.pElement->Attribute(szName))
        return std::string(szText).substr(0, g_uAttributeBytes);
    const stAttribute* pAttribute = FindAttribute(*item.pKind, szName);
    return pAttribute ? pAttribute->szDefault : "";
}

double AttributeNumber(const ProfileItem& item, const char* szName) {
    const stAttribute* pAttribute = FindAttribute(*item.pKind, szName);
    return pAttribute ? ReadNumber(AttributeText(item, szName).c_str(), pAttribute->eKind) : 0;
}

int AttributeLine(const tinyxml2::XMLElement& element, const char* szName) {
    const tinyxml2::XMLAttribute* pAttribute = element.FindAttribute(szName);
    return pAttribute ? pAttribute->GetLineNum() : element.GetLineNum();
}

std::string ItemTitle(const ProfileItem& item) {
    return std::string(item.pKind->szName) + " \"" + item.strName + '"';
}

} // namespace companion
