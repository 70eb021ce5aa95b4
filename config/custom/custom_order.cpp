// How graphs and charts of the custom style stand on top of one another.
#include "config/custom/custom_layout.h"
#include "config/items/item_graph.h"
#include "config/items/item_pie.h"
#include "config/items/item_reader.h"
#include "config/items/kinds.h"
#include "controls/control_ids.h"
#include "controls/control_kinds.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>
#include <string_view>

#include <tinyxml2.h>

namespace {

struct stStacked {
    i64 iZIndex;
    CControl* pControl;
};

/// A plain whole number; anything else is 0. Saturates.
i64 WholeNumber(std::string_view text) {
    constexpr i64 c_iMost = std::numeric_limits<i64>::max() / 10 - 1;
    const bool bNegative = text.starts_with('-');
    if (bNegative) text.remove_prefix(1);
    i64 iValue = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return 0;
        if (iValue < c_iMost) iValue = iValue * 10 + (c - '0');
    }
    return bNegative ? -iValue : iValue;
}

/// The item that an element became; null for one that was hidden or refused.
const CItemProperty_Base* ItemOf(const tinyxml2::XMLElement& element) {
    char szName[g_uItemNameBytes];
    u32 uIsShow = 0;
    const stSettingRow aRows[] = {
        {"IsShow", "0", SETTING_DECIMAL, TARGET_U32, &uIsShow},
        {"Name", "", SETTING_TEXT, TARGET_TEXT, szName, sizeof szName},
    };
    SettingTable table;
    g_fnAddSettings(table, aRows);
    g_fnApplyXmlSettings(&element, table);
    g_fnFreeSettings(table);
    CItemProperty_Base* pItem = nullptr;
    if (uIsShow == 0 || !g_fnQueryItemProperty(szName, &pItem)) return nullptr;
    return std::strcmp(g_fnItemType(pItem->m_uItemType).szElement, element.Value()) == 0 ? pItem : nullptr;
}

/// Control and number of an item; no control for those of other kinds and those that were not made.
stStacked StackedOf(const CItemProperty_Base* pItem) {
    if (const auto* pGraph = g_fnAsLineGraph(pItem))
        return {WholeNumber(pGraph->m_szZIndex), g_fnFindCtrlByName('L', pItem->m_szItemName)};
    if (const auto* pChart = g_fnAsPieChart(pItem))
        return {WholeNumber(pChart->m_szZIndex), g_fnFindCtrlByName('C', pItem->m_szItemName)};
    return {0, nullptr};
}

} // namespace

std::vector<CControl*> g_fnColorListOrder(const tinyxml2::XMLElement* pInfo) {
    std::vector<stStacked> list;
    std::set<const CControl*> seen;
    const std::size_t uAll = g_fnControlNames('L')->size() + g_fnControlNames('C')->size();
    const tinyxml2::XMLElement* pElement = pInfo ? pInfo->FirstChildElement() : nullptr;
    for (; pElement && list.size() < uAll; pElement = pElement->NextSiblingElement()) {
        const std::string_view element = pElement->Value();
        if (element != "LineGraph" && element != "PieChart") continue;
        const stStacked st = StackedOf(ItemOf(*pElement));
        if (st.pControl && seen.insert(st.pControl).second) list.push_back(st);
    }
    std::stable_sort(list.begin(), list.end(),
                     [](const stStacked& a, const stStacked& b) { return a.iZIndex < b.iZIndex; });
    std::vector<CControl*> order;
    for (const stStacked& st : list) order.push_back(st.pControl);
    return order;
}
