#include "config/items/item_reader.h"

#include "base/log.h"
#include "config/items/item_report.h"
#include "platform/utf.h"

#include <tinyxml2.h>

const tinyxml2::XMLElement* g_fnFirstElement(const tinyxml2::XMLElement* pParent, const char* szElement) {
    return pParent ? pParent->FirstChildElement(szElement) : nullptr;
}

const tinyxml2::XMLElement* g_fnNextElement(const tinyxml2::XMLElement* pElement, const char* szElement) {
    return pElement ? pElement->NextSiblingElement(szElement) : nullptr;
}

bool g_fnIsRoomForItem(std::size_t uElement, const char* szElement) {
    if (uElement < g_uElementsMax && g_mapItemByName.size() < g_uItemsMax) return true;
    g_fnReportError("too many items, from \"%s\" number %i on", szElement, static_cast<i32>(uElement + 1));
    return false;
}

void g_fnReportField(const CItemProperty_Base& item, const char* szField) {
    g_fnReportError("item \"%s\" %s", item.m_szItemName, szField);
}

void g_fnCheckShadowOpacity(const CItemProperty_Base& item, u32 uPercent) {
    if (uPercent > 100) g_fnReportError("item \"%s\" m_u8ShadowOpacity", item.m_szItemName);
}

void g_fnPrintColor(const char* szTitle, u8 uR, u8 uG, u8 uB, u8 uA) {
    g_fnLog("%s", szTitle);
    g_fnLog("RGBA %i %i %i %i", uR, uG, uB, uA);
}

void g_fnPrintWide(const char* szTitle, const char16_t* wzText) {
    char szText[1024 * 3 + 1];
    g_fnLog("%s", szTitle);
    if (platform::Utf16ToUtf8(wzText, szText, sizeof szText)) g_fnLog("%s", szText);
}
