#pragma once
// What can be said of a profile of the two styles with fixed tables.
#include "platform/types.h"
#include "tools/profile/check/findings.h"

namespace tinyxml2 {
class XMLElement;
}

namespace companion {

/// A layout's "Settings" with its rows, cards, CPUs and order, for layout style 0 or 1.
void CheckFixedSettings(const tinyxml2::XMLElement& settings, Findings& findings);
/// What the reference document must have for a style. Errors name what is missing.
void CheckFixedReference(const tinyxml2::XMLElement& root, u32 uStyle, Findings& findings);

} // namespace companion
