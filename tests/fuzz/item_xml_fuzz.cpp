// The input once as the text of a profile's item list, once as the attribute values of each element, since
// few changes of a text leave it well formed. Whatever is registered holds together.
#include "base/log.h"
#include "config/items/item_graph.h"
#include "config/items/item_number.h"
#include "config/items/item_panel.h"
#include "config/items/item_pie.h"
#include "config/items/item_text.h"
#include "config/items/kinds.h"
#include "tools/profile/check/attributes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tinyxml2.h>

namespace {

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

template <class T, std::size_t N> bool Ends(const T (&text)[N]) {
    return std::char_traits<T>::find(text, N, T{}) != nullptr;
}

void CheckText(const CItemProperty_TextBox& item) {
    Require(Ends(item.m_wzText) && Ends(item.m_szStringFullName));
    Require(Ends(item.m_wzFontName) && *item.m_wzFontName);
    Require(std::isfinite(item.m_fTextSize) && std::isfinite(item.m_fTextSpacingX) &&
            std::isfinite(item.m_fTextSpacingY));
    Require(item.m_u8TextOpacity <= 100 && item.m_u8ShadowOpacity <= 100);
}

void CheckNumber(const CItemProperty_NumBox& item) {
    Require(Ends(item.m_wzFontName) && *item.m_wzFontName);
    Require(Ends(item.m_szDataFullName) && *item.m_szDataFullName);
    Require(std::isfinite(item.m_fTextSize) && std::isfinite(item.m_fTextSpacingX));
    g_fnItemAlign(item);
}

void CheckGraph(const CItemProperty_LineGraph& item) {
    Require(Ends(item.m_szDataFullName) && *item.m_szDataFullName && Ends(item.m_szZIndex));
    Require(std::isfinite(item.m_fDataWidth) && std::isfinite(item.m_fMinValue) &&
            std::isfinite(item.m_fMaxValue));
    Require(item.m_uLineType < 4 && item.m_uDataNum != 0 && item.m_u8LineOpacity <= 100);
}

void CheckChart(const CItemProperty_PieChart& item) {
    Require(Ends(item.m_szDataFullName) && *item.m_szDataFullName && Ends(item.m_szZIndex));
    Require(std::isfinite(item.m_fMinValue) && std::isfinite(item.m_fMaxValue));
    Require(item.m_uChartType < 2 && item.m_uSlotNum != 0 && item.m_uShapeSegNum != 0);
    Require(item.m_fSlotFillRatio > 0 && item.m_fSlotFillRatio <= 100);
    Require(item.m_fChartFillRatio > 0 && item.m_fChartFillRatio <= 100 && item.m_u8ChartOpacity <= 100);
}

void CheckItem(const std::string& szName, const CItemProperty_Base& item) {
    Require(Ends(item.m_szItemName) && Ends(item.m_szItemOwner));
    Require(!szName.empty() && szName == item.m_szItemName && item.m_bIsShow);
    Require(g_mapItemById.at(item.m_u64ItemId) == &item);
    if (const auto* pText = g_fnAsTextBox(&item)) CheckText(*pText);
    if (const auto* pNumber = g_fnAsNumBox(&item)) CheckNumber(*pNumber);
    if (const auto* pPanel = g_fnAsPanel(&item)) Require(pPanel->m_u8PanelOpacity <= 100);
    if (const auto* pGraph = g_fnAsLineGraph(&item)) CheckGraph(*pGraph);
    if (const auto* pChart = g_fnAsPieChart(&item)) CheckChart(*pChart);
    std::u16string wz;
    item.m_fnQueryString("TEXT_STRING", wz);
    item.m_fnPrintData();
    g_fnItemControlName(item, "_F");
}

void ReadAndCheck(const tinyxml2::XMLElement* pInfo) {
    g_fnClearItems();
    Require(g_fnReadTextBoxItems(pInfo, false) && g_fnReadTextBoxItems(pInfo, true));
    Require(g_fnReadNumBoxItems(pInfo) && g_fnReadPanelItems(pInfo));
    Require(g_fnReadLineGraphItems(pInfo) && g_fnReadPieChartItems(pInfo));
    for (const auto& [szName, pItem] : g_mapItemByName) CheckItem(szName, *pItem);
}

/// The elements of items, and all attributes that one of them has.
struct stWords {
    std::vector<const char*> elements, keys;
};

stWords TakeWords() {
    stWords st;
    std::set<std::string_view> known;
    const auto Add = [&](std::span<const companion::stAttribute> attributes) {
        for (const companion::stAttribute& attribute : attributes)
            if (known.insert(attribute.szName).second) st.keys.push_back(attribute.szName);
    };
    Add(companion::CommonAttributes());
    for (const companion::stElement& element : companion::ProfileElements()) {
        if (element.eUse != companion::ElementUse::Item) continue;
        st.elements.push_back(element.szName);
        Add(element.attributes);
    }
    return st;
}

const stWords g_stWords = TakeWords();

/// Values end at line ends of the input; keys go round until there are no more values.
void Fill(tinyxml2::XMLElement& info, const std::string& szInput) {
    tinyxml2::XMLElement* pElement = nullptr;
    std::size_t uKey = 0;
    for (std::size_t uFrom = 0; uFrom <= szInput.size(); ++uKey) {
        const std::size_t uTo = std::min(szInput.find('\n', uFrom), szInput.size());
        const std::size_t uKeys = g_stWords.keys.size();
        if (uKey % uKeys == 0) {
            pElement =
                info.InsertNewChildElement(g_stWords.elements[uKey / uKeys % g_stWords.elements.size()]);
            pElement->SetAttribute("IsShow", 1);
        }
        pElement->SetAttribute(g_stWords.keys[uKey % uKeys], szInput.substr(uFrom, uTo - uFrom).c_str());
        uFrom = uTo + 1;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    g_fnLogSink = [](const char* szLine) { Require(std::strlen(szLine) < 1024); };
    tinyxml2::XMLDocument asText, asValues;
    asText.Parse(reinterpret_cast<const char*>(pData), uBytes);
    ReadAndCheck(asText.RootElement());
    tinyxml2::XMLElement* pInfo = asValues.NewElement("Info");
    asValues.InsertEndChild(pInfo);
    Fill(*pInfo, {reinterpret_cast<const char*>(pData), uBytes});
    ReadAndCheck(pInfo);
    g_fnClearItems();
    return 0;
}
