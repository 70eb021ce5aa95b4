#include "config/items/item_text.h"

#include "base/log.h"
#include "config/items/item_reader.h"
#include "config/items/item_report.h"
#include "platform/process.h"
#include "shared/api_code.h"
#include "shared/process_records.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace {

/// Labels by API code.
constexpr std::pair<u32, std::u16string_view> g_aApiLabels[] = {
    {6144, u"D3D8"},  {6400, u"D3D9"},  {6416, u"D3D9E"}, {6656, u"D3D10"},
    {6912, u"D3D11"}, {7168, u"D3D12"}, {8192, u"VK"},    {g_uApiCodeOpenGL, u"OGL"},
};

std::u16string Decimal(u32 uValue) {
    const std::string szDigits = std::to_string(uValue);
    return {szDigits.begin(), szDigits.end()};
}

bool ApiLabel(std::u16string& wzOut) {
    for (const auto& [uCode, wzLabel] : g_aApiLabels) {
        if (uCode != g_uApiCode) continue;
        wzOut = wzLabel;
        return true;
    }
    return false;
}

void StoreText(CItemProperty_TextBox& item, std::u16string_view wzText) {
    const std::size_t u = std::min(wzText.size(), std::size(item.m_wzText) - 1);
    std::copy_n(wzText.data(), u, item.m_wzText);
    item.m_wzText[u] = 0;
}

void ApplyOwnKeys(const tinyxml2::XMLElement& element, CItemProperty_TextBox& item, bool bMemo) {
    const stSettingRow aCommon[] = {
        {"FontName", "", SETTING_TEXT_LOCAL, TARGET_WIDE, item.m_wzFontName, std::size(item.m_wzFontName)},
    };
    const stSettingRow aMemo[] = {
        {"FileName", "", SETTING_TEXT_LOCAL, TARGET_WIDE, item.m_wzText, std::size(item.m_wzText)},
        {"TextSpacingY", "0", SETTING_FLOAT, TARGET_F32, &item.m_fTextSpacingY},
    };
    const stSettingRow aTextBox[] = {
        {"Text", "", SETTING_TEXT_LOCAL, TARGET_WIDE, item.m_wzText, std::size(item.m_wzText)},
        {"StringFullName", "", SETTING_TEXT, TARGET_TEXT, item.m_szStringFullName,
         std::size(item.m_szStringFullName)},
    };
    g_fnApplyRows(element, aCommon, [&](SettingTable& table) {
        g_fnAddTextSettings(table, item);
        g_fnAddSettings(table, bMemo ? aMemo : aTextBox);
    });
}

bool ReadTextBox(const tinyxml2::XMLElement& element, CItemProperty_TextBox& item, bool bMemo) {
    item.m_fnSetType(bMemo ? ITEM_MEMO : ITEM_TEXTBOX);
    item.m_bMemoFlagA = item.m_bMemoFlagB = bMemo;
    ApplyOwnKeys(element, item, bMemo);
    return g_fnValidateTextBox(item);
}

} // namespace

CItemProperty_TextBox::CItemProperty_TextBox() {
    m_pComplete = this;
    m_fnSetType(ITEM_TEXTBOX);
}

void CItemProperty_TextBox::m_fnAttachComplete() { m_pComplete = this; }

bool CItemProperty_TextBox::m_fnQueryString(const char* szKey, std::u16string& wzOut) const {
    static const std::map<std::string_view, u32> mapKeys = {{"TEXT_FONT", 0}, {"TEXT_STRING", 1}};
    const char16_t* const awzValues[] = {m_wzFontName, m_wzText};
    const auto it = mapKeys.find(szKey);
    if (it == mapKeys.end()) return false;
    wzOut = awzValues[it->second];
    return true;
}

void CItemProperty_TextBox::m_fnPrintData() const {
    CItemProperty_Base::m_fnPrintData();
    g_fnPrintWide("TEXT_STRING: ", m_wzText);
    g_fnPrintWide("TEXT_FONT: ", m_wzFontName);
    g_fnLog("STRING_FULLNAME: %s\n", m_szStringFullName);
    g_fnLog("TEXT_SIZE: %f\n", static_cast<f64>(m_fTextSize));
    g_fnLog("TEXT_SPACING_X: %f\n", static_cast<f64>(m_fTextSpacingX));
    g_fnLog("TEXT_SPACING_Y: %f\n", static_cast<f64>(m_fTextSpacingY));
    g_fnPrintColor("TEXT_COLOR:", m_u8TextR, m_u8TextG, m_u8TextB, m_u8TextA);
    g_fnPrintColor("SHADOW_COLOR:", m_u8ShadowR, m_u8ShadowG, m_u8ShadowB, m_u8ShadowA);
}

bool g_fnReadTextBoxItems(const tinyxml2::XMLElement* pParent, bool bMemo) {
    const char* szElement = g_fnItemType(bMemo ? ITEM_MEMO : ITEM_TEXTBOX).szElement;
    g_fnReadItems<CItemProperty_TextBox>(pParent, szElement, [bMemo](const auto& element, auto& item) {
        return ReadTextBox(element, item, bMemo);
    });
    return true;
}

bool g_fnProgramValue(const char* szName, std::u16string& wzOut) {
    const std::string_view sz = szName;
    if (sz == "GL") return ApiLabel(wzOut);
    if (sz == "ARCH")
        wzOut = u"64 bit";
    else if (sz == "PROFILE_NAME")
        wzOut = g_wzProfileName;
    else if (sz == "PID")
        wzOut = Decimal(platform::CurrentProcessId());
    else if (sz == "TID")
        wzOut = Decimal(platform::CurrentThreadId());
    else
        return false;
    return true;
}

bool g_fnValidateTextBox(CItemProperty_TextBox& item) {
    g_fnAlphasToPercent(item);
    g_fnCheckShadowOpacity(item, item.m_u8ShadowOpacity);
    // KEEP(profiles): reported, also where a program value is about to take the place, and kept.
    if (!*item.m_wzText) g_fnReportError("item \"%s\" m_wzText", item.m_szItemName);
    std::u16string wzValue;
    if (g_fnProgramValue(item.m_szStringFullName, wzValue)) StoreText(item, wzValue);
    if (!*item.m_wzFontName) {
        g_fnReportError("item \"%s\" m_wzFontName is invalid", item.m_szItemName);
        return false;
    }
    g_fnAlphasFromPercent(item);
    return true;
}
