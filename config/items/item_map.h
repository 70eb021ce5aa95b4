#pragma once
// The items of the custom layout, by name and by id.
#include "config/items/item_property.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

/// Owns the records; byte order of the names.
extern std::map<std::string, std::unique_ptr<CItemProperty_Base>, std::less<>> g_mapItemByName;
/// These records in id order. A later record under a taken id takes its place here only.
extern std::map<u64, CItemProperty_Base*> g_mapItemById;

/// Enters a complete record. False, with the record gone, for a name that is taken.
bool g_fnEnterItem(std::unique_ptr<CItemProperty_Base> pItem);
/// The item of that name (null and unknown give false, with *ppOut untouched).
bool g_fnQueryItemProperty(const char* szName, CItemProperty_Base** ppOut);
bool g_fnIsItemNameTaken(const char* szName);
/// Clears the list, then appends all items of a type in id order.
void g_fnEnumItemsOfType(std::vector<CItemProperty_Base*>& list, u32 uType);
/// Drops all items; names keep their ids.
void g_fnClearItems();

/// Name up to the last "@".
std::string g_fnItemStem(const CItemProperty_Base& item);
/// Owner text, which is the group; false, with szOut untouched, if there is none.
bool g_fnItemOwner(const CItemProperty_Base& item, std::string& szOut);
/// Name of a control of the item: stem, suffix ("_F", "[0]", "") and, if there is one, "@" and the owner.
std::string g_fnItemControlName(const CItemProperty_Base& item, const char* szSuffix);
