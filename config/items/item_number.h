#pragma once
// Number items: the element "NumBox". With data name "SYSTEM_TIME" or "RESOLUTION" it becomes a mixed item.
#include "config/items/item_property.h"
#include "config/make/text_look.h"

/// Byte alphas go through whole percent and back: 128 becomes 127, 1 becomes 0.
class CItemProperty_NumBox : public virtual CItemProperty_Base, public stTextLook {
  public:
    CItemProperty_NumBox();
    void m_fnAttachComplete() override;
    /// Knows "TEXT_FONT".
    bool m_fnQueryString(const char* szKey, std::u16string& wzOut) const override;
    void m_fnPrintData() const override;

    char16_t m_wzFontName[128] = u"";
    char m_szDataFullName[64] = ""; ///< such as "GPU_CLK#0"
};

/// Registers each child "NumBox" that holds. After one without a font or data name nothing more is registered
/// by this call, though the rest is still read and reported. Always true.
bool g_fnReadNumBoxItems(const tinyxml2::XMLElement* pParent);

/// Works out the percentages and the type, and reports what is wrong. False for a record that must not be
/// kept.
bool g_fnValidateNumBox(CItemProperty_NumBox& item);
