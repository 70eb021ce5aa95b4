#include "config/items/item_map.h"

#include <cstring>
#include <utility>

std::map<std::string, std::unique_ptr<CItemProperty_Base>, std::less<>> g_mapItemByName;
std::map<u64, CItemProperty_Base*> g_mapItemById;

bool g_fnEnterItem(std::unique_ptr<CItemProperty_Base> pItem) {
    CItemProperty_Base* const pEntered = pItem.get();
    if (!g_mapItemByName.try_emplace(pEntered->m_szItemName, std::move(pItem)).second) return false;
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
