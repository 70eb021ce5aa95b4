#pragma once
// What the readers of item elements share.
#include "config/items/interner.h"
#include "config/items/item_map.h"
#include "config/items/item_property.h"
#include "config/make/panel_records.h"
#include "config/make/text_look.h"
#include "config/settings/setting_binding.h"

#include <memory>
#include <utility>

/// First child of that name, or the next sibling; null if there is none or the argument is null.
const tinyxml2::XMLElement* g_fnFirstElement(const tinyxml2::XMLElement* pParent, const char* szElement);
const tinyxml2::XMLElement* g_fnNextElement(const tinyxml2::XMLElement* pElement, const char* szElement);

/// Items beyond so many, and elements of one kind beyond so many, are left out: no layout has room for them,
/// and the program that the overlay stands in must not wait for them.
constexpr std::size_t g_uItemsMax = 4096, g_uElementsMax = 65536;
/// False, with the reason reported, if the element with that place among its kind is one too many.
bool g_fnIsRoomForItem(std::size_t uElement, const char* szElement);

/// Reads each child of that element name into a fresh record: fnRead(element, record) applies the class's own
/// keys and validates, false for a record that must not be kept. After the first such record the walk reads
/// and reports on, but registers nothing more; the names of those items stay free.
template <class T, class Read>
void g_fnReadItems(const tinyxml2::XMLElement* pParent, const char* szElement, Read fnRead) {
    bool bFailed = false;
    std::size_t uElement = 0;
    const tinyxml2::XMLElement* pElement = g_fnFirstElement(pParent, szElement);
    for (; pElement; pElement = g_fnNextElement(pElement, szElement)) {
        if (!g_fnIsRoomForItem(uElement++, szElement)) return;
        T item;
        if (!g_fnParseItemBase(pElement, &item)) continue;
        if (!fnRead(*pElement, item)) bFailed = true;
        // KEEP(profiles): one bad item takes all later ones of its kind along; authors of profiles are told
        // so.
        if (bFailed) continue;
        if constexpr (requires { item.m_szDataFullName; }) g_fnInternName(item.m_szDataFullName);
        auto pCopy = std::make_unique<T>(item);
        pCopy->m_fnAttachComplete();
        g_fnEnterItem(std::move(pCopy));
    }
}

/// Applies an item's own rows, and those that fnAddMore(table) adds.
template <std::size_t N, class AddMore>
void g_fnApplyRows(const tinyxml2::XMLElement& element, const stSettingRow (&aRows)[N], AddMore fnAddMore) {
    SettingTable table;
    g_fnAddSettings(table, aRows);
    fnAddMore(table);
    g_fnApplyXmlSettings(&element, table);
    g_fnFreeSettings(table);
}

/// The rows of graphs and charts, and those of their look.
template <class T, class AddLook>
void g_fnApplyGraphRows(const tinyxml2::XMLElement& element, T& item, AddLook fnAddLook) {
    const stSettingRow aRows[] = {
        {"DataFullName", "", SETTING_TEXT, TARGET_TEXT, item.m_szDataFullName,
         std::size(item.m_szDataFullName)},
        {"ZIndex", "", SETTING_TEXT, TARGET_TEXT, item.m_szZIndex, std::size(item.m_szZIndex)},
    };
    g_fnApplyRows(element, aRows, [&](SettingTable& table) { fnAddLook(table, item); });
}

/// Reports a field of an item.
void g_fnReportField(const CItemProperty_Base& item, const char* szField);

/// KEEP(profiles): alphas go through whole percent and back, so 128 becomes 127 and 1 becomes 0.
inline void g_fnAlphasToPercent(stTextColors& item) {
    item.m_u8TextOpacity = static_cast<u8>(g_fnAlphaToPercent(item.m_u8TextA));
    item.m_u8ShadowOpacity = static_cast<u8>(g_fnAlphaToPercent(item.m_u8ShadowA));
}

inline void g_fnAlphasFromPercent(stTextColors& item) {
    item.m_u8TextA = g_fnPercentToAlpha(item.m_u8TextOpacity);
    item.m_u8ShadowA = g_fnPercentToAlpha(item.m_u8ShadowOpacity);
}

/// Reports a shadow percentage above 100; the item is kept.
void g_fnCheckShadowOpacity(const CItemProperty_Base& item, u32 uPercent);

/// Log lines of a colour and of a wide text.
void g_fnPrintColor(const char* szTitle, u8 uR, u8 uG, u8 uB, u8 uA);
void g_fnPrintWide(const char* szTitle, const char16_t* wzText);
