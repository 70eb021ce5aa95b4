#pragma once
// Attributes of one template element, read through one table. Numbers may be written out or named by a
// variable.
#include "config/fixed/attribute_value.h"
#include "config/settings/setting_binding.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

/// One key of a kind of template.
struct stTemplateKey {
    const char* szKey;
    const char* szDefault;
};

class CTemplateAttributes {
  public:
    CTemplateAttributes(const tinyxml2::XMLElement& element, std::span<const stTemplateKey> keys);

    /// Text of a key of the table, empty for any other. Lives as long as this object.
    const char* m_fnText(std::string_view szKey) const;
    /// That text as UTF-16.
    std::u16string m_fnWide(std::string_view szKey) const;
    /// Low 32 bits of the part before the point.
    u32 m_fnWhole(std::string_view szKey) const;
    f32 m_fnFloat(std::string_view szKey) const;
    /// Times the font scale, cut to a whole number.
    i32 m_fnScaled(std::string_view szKey) const;
    /// Times another key's factor and the font scale.
    f64 m_fnScaledSize(std::string_view szKey, std::string_view szFactorKey) const;

  private:
    const std::span<const stTemplateKey> m_keys;
    std::vector<std::array<char, g_uSettingText>> m_listTexts;
};
