// The input as the item list of a profile: whatever is registered holds together.
#include "config/item_map.h"
#include "config/item_number.h"
#include "config/item_panel.h"
#include "config/item_text.h"
#include "frame/log.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

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

void CheckItem(const std::string& szName, const CItemProperty_Base& item) {
    Require(Ends(item.m_szItemName) && Ends(item.m_szItemOwner));
    Require(!szName.empty() && szName == item.m_szItemName && item.m_bIsShow);
    Require(g_mapItemById.at(item.m_u64ItemId) == &item);
    if (const auto* pText = g_fnAsTextBox(&item)) CheckText(*pText);
    if (const auto* pNumber = g_fnAsNumBox(&item)) CheckNumber(*pNumber);
    if (const auto* pPanel = g_fnAsPanel(&item)) Require(pPanel->m_u8PanelOpacity <= 100);
    std::u16string wz;
    item.m_fnQueryString("TEXT_STRING", wz);
    item.m_fnPrintData();
    g_fnItemControlName(item, "_F");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    g_fnLogSink = [](const char* szLine) { Require(std::strlen(szLine) < 1024); };
    tinyxml2::XMLDocument document;
    document.Parse(reinterpret_cast<const char*>(pData), uBytes);
    const tinyxml2::XMLElement* pInfo = document.RootElement();
    g_fnClearItems();
    Require(g_fnReadTextBoxItems(pInfo, false) && g_fnReadTextBoxItems(pInfo, true));
    Require(g_fnReadNumBoxItems(pInfo) && g_fnReadPanelItems(pInfo));
    for (const auto& [szName, pItem] : g_mapItemByName) CheckItem(szName, *pItem);
    return 0;
}
