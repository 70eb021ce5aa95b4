#pragma once
// What can be said of a profile's document by its elements and attributes alone.
#include "tools/profile/check/attributes.h"
#include "tools/profile/check/findings.h"

#include <string_view>

namespace tinyxml2 {
class XMLAttribute;
class XMLDocument;
class XMLElement;
} // namespace tinyxml2

namespace companion {

/// Opens a document out of its text; where that fails, an error with the parser's line says why.
bool ParseForCheck(std::string_view text, tinyxml2::XMLDocument& document, Findings& findings);

/// Style, unknown and repeated elements, unknown attributes, values that are no number or out of range. The
/// list of items, if there is one that a custom layout would read, else null.
const tinyxml2::XMLElement* CheckDocument(const tinyxml2::XMLDocument& document, Findings& findings);

/// A number as the readers read it: 0 where the text begins with none.
double ReadNumber(const char* szText, ValueKind eKind);
/// One attribute's text against the table.
void CheckValue(const tinyxml2::XMLAttribute& attribute, const stAttribute& known, Findings& findings);

} // namespace companion
