#pragma once
// What happens to a "Group" before it is walked: its rows take the profile's order, and rows of sensors,
// which the file can't know, get the places of the extension row.
#include "platform/types.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tinyxml2 {
class XMLElement;
}

// --- order of rows -----------------------------------------------------------------------------------------

constexpr i32 g_iNoRank = -1;
/// Rank of the row that an item belongs to, from 0, by the item's full name; g_iNoRank for one of no row.
using GroupRank = std::function<i32(const char* szItem)>;

/// "ID" of the first element in document order, this one and all below it, that has one; empty if none has.
/// Cut like any attribute text.
std::string g_fnFirstGroupId(const tinyxml2::XMLElement* pElement);
/// Puts the children of every element below pGroup, and its own, into the order of their rows. A child stands
/// for the row of its first ID; children without a row keep their places, the others share theirs.
void g_fnReorderGroup(tinyxml2::XMLElement* pGroup, const GroupRank& fnRank);

// --- rows of sensors ---------------------------------------------------------------------------------------

/// Data word of the items that stand for all sensors.
constexpr char g_szExtensionWord[] = "GROUP_EXTENSION_FIRST";
/// Most sensors that a style has room for.
constexpr u32 g_uExtensionRows = 1024;

/// A sensor shown for one group.
struct stGroupExtension {
    std::string szWord; ///< the sensor's data word
    u32 uRow;           ///< its items are the extension's, so many numbers on
    u32 uGroup;         ///< instance of its items
};
/// Sensors whose rows take the extension row's place in the next walk, in this order.
extern std::vector<stGroupExtension> g_listGroupExtension;

/// True for the name of an item of the extension row.
bool g_fnIsExtensionName(std::string_view szItem);
/// Takes the sensors out that a group names itself; szPrefix is the style's.
void g_fnDropNamedExtensions(const tinyxml2::XMLElement* pGroup, std::string_view szPrefix,
                             std::vector<stGroupExtension>& list);
