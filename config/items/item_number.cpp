#include "config/items/item_number.h"

#include "base/log.h"
#include "config/items/item_reader.h"
#include "config/items/item_report.h"

#include <map>
#include <string_view>

namespace {

void ApplyOwnKeys(const tinyxml2::XMLElement& element, CItemProperty_NumBox& item) {
    const stSettingRow aRows[] = {
        {"FontName", "", SETTING_TEXT_LOCAL, TARGET_WIDE, item.m_wzFontName, std::size(item.m_wzFontName)},
        {"DataFullName", "", SETTING_TEXT, TARGET_TEXT, item.m_szDataFullName,
         std::size(item.m_szDataFullName)},
    };
    g_fnApplyRows(element, aRows, [&](SettingTable& table) { g_fnAddTextSettings(table, item); });
}

/// False, with the reason reported, if a name is missing without which the number can't be.
bool CheckNames(const CItemProperty_NumBox& item) {
    const bool bFont = *item.m_wzFontName, bData = *item.m_szDataFullName;
    if (!bFont) g_fnReportError("item \"%s\" m_wzFontName is invalid", item.m_szItemName);
    if (!bData) g_fnReportError("item \"%s\" m_szDataFullName is invalid", item.m_szItemName);
    return bFont && bData;
}

bool IsMixed(std::string_view szData) { return szData == "SYSTEM_TIME" || szData == "RESOLUTION"; }

} // namespace

CItemProperty_NumBox::CItemProperty_NumBox() {
    m_pComplete = this;
    m_fnSetType(ITEM_NUMBOX);
}

void CItemProperty_NumBox::m_fnAttachComplete() { m_pComplete = this; }

bool CItemProperty_NumBox::m_fnQueryString(const char* szKey, std::u16string& wzOut) const {
    static const std::map<std::string_view, u32> mapKeys = {{"TEXT_FONT", 0}};
    if (!mapKeys.contains(szKey)) return false;
    wzOut = m_wzFontName;
    return true;
}

void CItemProperty_NumBox::m_fnPrintData() const {
    CItemProperty_Base::m_fnPrintData();
    g_fnPrintWide("TEXT_FONT: ", m_wzFontName);
    g_fnLog("TEXT_SIZE: %f\n", static_cast<f64>(m_fTextSize));
    g_fnLog("TEXT_SPACING_X: %f\n", static_cast<f64>(m_fTextSpacingX));
    g_fnPrintColor("TEXT_COLOR:", m_u8TextR, m_u8TextG, m_u8TextB, m_u8TextA);
    g_fnPrintColor("SHADOW_COLOR:", m_u8ShadowR, m_u8ShadowG, m_u8ShadowB, m_u8ShadowA);
    g_fnLog("DATA_FULLNAME: %s\n", m_szDataFullName);
}

bool g_fnReadNumBoxItems(const tinyxml2::XMLElement* pParent) {
    g_fnReadItems<CItemProperty_NumBox>(pParent, g_fnItemType(ITEM_NUMBOX).szElement,
                                        [](const auto& element, auto& item) {
                                            ApplyOwnKeys(element, item);
                                            return g_fnValidateNumBox(item);
                                        });
    return true;
}

bool g_fnValidateNumBox(CItemProperty_NumBox& item) {
    g_fnAlphasToPercent(item);
    g_fnCheckShadowOpacity(item, item.m_u8ShadowOpacity);
    if (!CheckNames(item)) return false;
    if (IsMixed(item.m_szDataFullName)) item.m_fnSetType(ITEM_MIXED);
    g_fnAlphasFromPercent(item);
    return true;
}
