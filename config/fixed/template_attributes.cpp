#include "config/fixed/template_attributes.h"

#include "base/numbers.h"

#include <algorithm>
#include <cmath>

CTemplateAttributes::CTemplateAttributes(const tinyxml2::XMLElement& element,
                                         std::span<const stTemplateKey> keys)
    : m_keys(keys), m_listTexts(keys.size()) {
    SettingTable table;
    for (std::size_t u = 0; u < keys.size(); ++u) {
        const stSettingRow aRows[] = {{keys[u].szKey, keys[u].szDefault, SETTING_TEXT, TARGET_TEXT,
                                       m_listTexts[u].data(), g_uSettingText}};
        g_fnAddSettings(table, aRows);
    }
    g_fnApplyXmlSettings(&element, table);
    g_fnFreeSettings(table);
}

const char* CTemplateAttributes::m_fnText(std::string_view szKey) const {
    for (std::size_t u = 0; u < m_keys.size(); ++u)
        if (szKey == m_keys[u].szKey) return m_listTexts[u].data();
    return "";
}

std::u16string CTemplateAttributes::m_fnWide(std::string_view szKey) const {
    char16_t wzText[g_uSettingText];
    g_fnDecodeUtf8(m_fnText(szKey), wzText, g_uSettingText);
    return wzText;
}

u32 CTemplateAttributes::m_fnWhole(std::string_view szKey) const {
    constexpr f64 fMost = 9007199254740992.0; // whole numbers are exact up to here
    const f64 fValue = g_fnReadAttribute(m_fnText(szKey)).fValue;
    return static_cast<u32>(static_cast<u64>(static_cast<i64>(std::clamp(fValue, -fMost, fMost))));
}

f32 CTemplateAttributes::m_fnFloat(std::string_view szKey) const {
    return g_fnNarrow(g_fnReadAttribute(m_fnText(szKey)).fValue);
}

i32 CTemplateAttributes::m_fnScaled(std::string_view szKey) const {
    return g_fnCutToWhole(g_fnScaleAttribute(g_fnReadAttribute(m_fnText(szKey))));
}

f64 CTemplateAttributes::m_fnScaledSize(std::string_view szKey, std::string_view szFactorKey) const {
    return g_fnScaleSize(m_fnText(szKey), m_fnText(szFactorKey));
}
