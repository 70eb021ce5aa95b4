#pragma once
// Hints for names that are not known.
#include "tools/profile/check/attributes.h"

#include <string>

namespace companion {

/// The known child element of szParent that is nearest to szName; empty if none is near.
std::string NearestElement(const char* szName, const char* szParent);
/// The rest of a sentence about an unknown attribute: the nearest known one, or an item that has it; may be
/// empty.
std::string AttributeHint(const char* szName, const stElement& element);
/// True for values whose range depends on others of the item.
bool IsJudgedWithItem(const stElement& element, const stAttribute& attribute);

} // namespace companion
