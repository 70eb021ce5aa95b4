#pragma once
// Text items: the elements "TextBox" and "Memo".
#include "config/items/item_property.h"
#include "config/make/text_look.h"

/// Byte alphas go through whole percent and back: 128 becomes 127, 1 becomes 0.
class CItemProperty_TextBox : public virtual CItemProperty_Base, public stTextLook {
  public:
    CItemProperty_TextBox();
    void m_fnAttachComplete() override;
    /// Knows "TEXT_FONT" and "TEXT_STRING".
    bool m_fnQueryString(const char* szKey, std::u16string& wzOut) const override;
    void m_fnPrintData() const override;

    char16_t m_wzText[1024] = u""; ///< the text; of a memo the file name
    char16_t m_wzFontName[128] = u"";
    char m_szStringFullName[64] = "";       ///< program value shown in place of the text
    u32 m_bMemoFlagA = 0, m_bMemoFlagB = 0; ///< both 1 for a memo
};

/// Registers each child "TextBox" (or "Memo") of a profile's item list that holds. After one without a font
/// nothing more is registered by this call, though the rest is still read and reported. Always true.
bool g_fnReadTextBoxItems(const tinyxml2::XMLElement* pParent, bool bMemo);

/// What a program value shows ("GL", "ARCH", "PROFILE_NAME", "PID", "TID"; case counts). False, with wzOut
/// untouched, for other names and for "GL" with an unknown API.
bool g_fnProgramValue(const char* szName, std::u16string& wzOut);

/// Works out the percentages, reports what is wrong and puts a program value in place of the text. False for
/// a record that must not be kept.
bool g_fnValidateTextBox(CItemProperty_TextBox& item);
