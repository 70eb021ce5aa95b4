#include "config/items/item_map.h"

#include "config/items/item_graph.h"
#include "config/items/item_image.h"
#include "config/items/item_number.h"
#include "config/items/item_panel.h"
#include "config/items/item_pie.h"
#include "config/items/item_text.h"

#include <cstring>
#include <utility>

std::map<std::string, std::unique_ptr<CItemProperty_Base>, std::less<>> g_mapItemByName;
std::map<u64, CItemProperty_Base*> g_mapItemById;

namespace {

using CloneFunction = std::unique_ptr<CItemProperty_Base> (*)(const CItemProperty_Base&);

/// Copy of the complete object that the base belongs to.
template <class T> std::unique_ptr<CItemProperty_Base> Clone(const CItemProperty_Base& item) {
    auto pCopy = std::make_unique<T>(*static_cast<const T*>(item.m_pComplete));
    pCopy->m_fnAttachComplete();
    return pCopy;
}

/// Record classes by type code.
constexpr std::pair<u32, CloneFunction> g_aClones[] = {
    {ITEM_TEXTBOX, Clone<CItemProperty_TextBox>},     {ITEM_MEMO, Clone<CItemProperty_TextBox>},
    {ITEM_NUMBOX, Clone<CItemProperty_NumBox>},       {ITEM_MIXED, Clone<CItemProperty_NumBox>},
    {ITEM_PANEL, Clone<CItemProperty_Panel>},         {ITEM_IMAGE, Clone<CItemProperty_ImgBox>},
    {ITEM_LINEGRAPH, Clone<CItemProperty_LineGraph>}, {ITEM_PIECHART, Clone<CItemProperty_PieChart>},
};

CloneFunction CloneOf(u32 uType) {
    for (const auto& [uCode, fnClone] : g_aClones)
        if (uCode == uType) return fnClone;
    return nullptr;
}

} // namespace

bool g_fnRegisterItemProperty(const CItemProperty_Base* pItem) {
    if (!pItem || g_fnIsItemNameTaken(pItem->m_szItemName)) return false;
    const CloneFunction fnClone = CloneOf(pItem->m_uItemType);
    if (!fnClone) return false;
    auto pCopy = fnClone(*pItem);
    CItemProperty_Base* const pEntered = pCopy.get();
    g_mapItemByName.emplace(pEntered->m_szItemName, std::move(pCopy));
    g_mapItemById[pEntered->m_u64ItemId] = pEntered;
    return true;
}

bool g_fnQueryItemProperty(const char* szName, CItemProperty_Base** ppOut) {
    if (!szName || !ppOut) return false;
    const auto it = g_mapItemByName.find(std::string_view(szName));
    if (it == g_mapItemByName.end()) return false;
    *ppOut = it->second.get();
    return true;
}

bool g_fnIsItemNameTaken(const char* szName) {
    return szName && g_mapItemByName.contains(std::string_view(szName));
}

void g_fnEnumItemsOfType(std::vector<CItemProperty_Base*>& list, u32 uType) {
    list.clear();
    for (const auto& [u64Id, pItem] : g_mapItemById)
        if (pItem->m_uItemType == uType) list.push_back(pItem);
}

void g_fnClearItems() {
    g_mapItemById.clear();
    g_mapItemByName.clear();
}

const CItemProperty_NumBox* g_fnAsNumBox(const CItemProperty_Base* pItem) {
    if (!pItem || (pItem->m_uItemType != ITEM_NUMBOX && pItem->m_uItemType != ITEM_MIXED)) return nullptr;
    return static_cast<const CItemProperty_NumBox*>(pItem->m_pComplete);
}

const CItemProperty_TextBox* g_fnAsTextBox(const CItemProperty_Base* pItem) {
    if (!pItem || (pItem->m_uItemType != ITEM_TEXTBOX && pItem->m_uItemType != ITEM_MEMO)) return nullptr;
    return static_cast<const CItemProperty_TextBox*>(pItem->m_pComplete);
}

const CItemProperty_Panel* g_fnAsPanel(const CItemProperty_Base* pItem) {
    if (!pItem || pItem->m_uItemType != ITEM_PANEL) return nullptr;
    return static_cast<const CItemProperty_Panel*>(pItem->m_pComplete);
}

const CItemProperty_ImgBox* g_fnAsImgBox(const CItemProperty_Base* pItem) {
    if (!pItem || pItem->m_uItemType != ITEM_IMAGE) return nullptr;
    return static_cast<const CItemProperty_ImgBox*>(pItem->m_pComplete);
}

const CItemProperty_LineGraph* g_fnAsLineGraph(const CItemProperty_Base* pItem) {
    if (!pItem || pItem->m_uItemType != ITEM_LINEGRAPH) return nullptr;
    return static_cast<const CItemProperty_LineGraph*>(pItem->m_pComplete);
}

const CItemProperty_PieChart* g_fnAsPieChart(const CItemProperty_Base* pItem) {
    if (!pItem || pItem->m_uItemType != ITEM_PIECHART) return nullptr;
    return static_cast<const CItemProperty_PieChart*>(pItem->m_pComplete);
}

const char* g_fnItemDataName(const CItemProperty_Base& item) {
    if (const auto* pNumber = g_fnAsNumBox(&item)) return pNumber->m_szDataFullName;
    if (const auto* pGraph = g_fnAsLineGraph(&item)) return pGraph->m_szDataFullName;
    if (const auto* pChart = g_fnAsPieChart(&item)) return pChart->m_szDataFullName;
    return nullptr;
}

std::string g_fnItemStem(const CItemProperty_Base& item) {
    const char* szAt = std::strrchr(item.m_szItemName, '@');
    return szAt ? std::string(item.m_szItemName, szAt) : std::string(item.m_szItemName);
}

bool g_fnItemOwner(const CItemProperty_Base& item, std::string& szOut) {
    if (!*item.m_szItemOwner) return false;
    szOut = item.m_szItemOwner;
    return true;
}

std::string g_fnItemControlName(const CItemProperty_Base& item, const char* szSuffix) {
    if (!*szSuffix) return item.m_szItemName;
    std::string szName = g_fnItemStem(item) + szSuffix;
    std::string szOwner;
    return g_fnItemOwner(item, szOwner) ? szName + "@" + szOwner : szName;
}

stItemAlign g_fnItemAlign(const CItemProperty_NumBox& item) {
    return {static_cast<u32>(item.m_iContentAnchor), item.m_iContentAnchorX, item.m_iContentAnchorY,
            item.m_fTextSpacingX};
}
