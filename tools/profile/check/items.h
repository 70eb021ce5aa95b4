#pragma once
// The items of a profile, as elements: what the readers make of them, and in which order.
#include "tools/profile/check/attributes.h"

#include <string>
#include <vector>

namespace tinyxml2 {
class XMLAttribute;
class XMLElement;
} // namespace tinyxml2

namespace companion {

struct ProfileItem {
    const tinyxml2::XMLElement* pElement;
    const stElement* pKind;
    std::string strName;  ///< cut as the reader cuts it
    std::string strOwner; ///< empty without an "@"
    bool bShown;          ///< "IsShow" is not 0 and the name not empty: the reader takes it
};

/// Known item elements in the order in which the readers take them: kind by kind, each in document order.
std::vector<ProfileItem> ItemsInReadingOrder(const tinyxml2::XMLElement* pInfo);

/// Text of an attribute; the default if the element does not have it.
std::string AttributeText(const ProfileItem& item, const char* szName);
/// That text as the readers see a number: 0 where there is none.
double AttributeNumber(const ProfileItem& item, const char* szName);
/// Line of the attribute, or of the element if it does not have it.
int AttributeLine(const tinyxml2::XMLElement& element, const char* szName);
/// "TextBox \"fps\"".
std::string ItemTitle(const ProfileItem& item);

} // namespace companion
