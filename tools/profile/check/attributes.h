#pragma once
// The elements and attributes of a profile, as data: the linter judges by them, and the user's manual shows
// them.
#include <span>
#include <string_view>

namespace companion {

enum class ValueKind {
    Whole,  ///< whole number; a sign is allowed
    Number, ///< a number, perhaps with a fraction
    Text,
    File, ///< name of a file in the profile's folder
    Data, ///< name of a value
    Face, ///< name of a font face
};

struct stAttribute {
    const char* szName;
    ValueKind eKind;
    const char* szDefault;   ///< as read when the attribute is missing
    double fLeast, fMost;    ///< both ends belong to the range; Text kinds: least and most bytes
    const char* szRange;     ///< the range in words
    const char* szMeaning;   ///< one line
    bool bTolerated = false; ///< what is out of range does no harm: a warning
};

/// Which element this is, seen from a profile with a custom layout.
enum class ElementUse {
    Read,    ///< has a meaning there
    Item,    ///< one of the items of Info
    Ignored, ///< belongs to the two other layout styles, ignored there
};

struct stElement {
    const char* szName;
    const char* szParent; ///< name of the element around it, empty for the root
    ElementUse eUse;
    std::span<const stAttribute> attributes; ///< its own
    bool bRepeats;                           ///< may stand more than once
};

/// Attributes that all items have.
std::span<const stAttribute> CommonAttributes();
/// All elements of a profile, parents before children.
std::span<const stElement> ProfileElements();

/// Null if there is no such element in that parent.
const stElement* FindElement(std::string_view szName, std::string_view szParent);
/// An attribute of an element, an item's common ones included; null if it has none of that name.
const stAttribute* FindAttribute(const stElement& element, std::string_view szName);

/// Steps (insert, leave out, replace a character, swap two neighbours) from one word to the other, case
/// blind.
unsigned WordDistance(std::string_view szA, std::string_view szB);

} // namespace companion
