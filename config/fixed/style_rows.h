#pragma once
// The rows of the two styles with fixed tables, in the order that a profile gives them.
#include "config/fixed/group_order.h"
#include "config/fixed/style_items.h"
#include "platform/types.h"

#include <string_view>
#include <vector>

namespace tinyxml2 {
class XMLElement;
}

/// Whose row it is.
enum class eRowOf : u8 { Program, Card, Cpu, Debug };

struct stDisplayRow {
    const char* szElement;      ///< in a profile
    const char* szOtherElement; ///< means the same row; null for most
    const char* szWord;         ///< of its items
    eRowOf eOf;
    u32 uIndex; ///< among the rows of its owner
};
/// All rows in the order that they have without a profile's.
const std::vector<stDisplayRow>& g_fnDisplayRows();
/// Words of the rows of the program, by eProgramRow, the last one's included, which is no row of the order.
const char* g_fnProgramRowWord(u32 uRow);

/// Ranks by the words of rows: what "DisplayIndex" of "Info" says, where it says the same the order above;
/// then sensors of own items by number, the extension last. Other items have no rank.
GroupRank g_fnRankRows(const stStyleItems& style, const tinyxml2::XMLElement* pInfo);
/// Puts the rows of a group into the order of a profile.
void g_fnApplyDisplayOrder(const stStyleItems& style, const tinyxml2::XMLElement* pInfo,
                           tinyxml2::XMLElement* pGroup);
