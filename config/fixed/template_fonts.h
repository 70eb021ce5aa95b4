#pragma once
// Fonts of the styles with fixed tables: the slots that "Font" elements fill, and the fonts made of them.
#include "config/make/profile_fonts.h"

#include <array>
#include <bitset>
#include <span>

namespace tinyxml2 {
class XMLElement;
}

/// By font number; one without a face stays unused.
struct stFontSlots {
    std::array<stFontRecord, g_uFixedFonts> aRecord;
    std::bitset<g_uFixedFonts> bitsUsed;
};
extern stFontSlots g_stFontSlots;

/// What changes slots after the elements are read: the language's own faces.
using FontOverride = void (*)(std::span<stFontRecord>);

void g_fnClearFontSlots();
/// Reads each "Font" into the slot that its title numbers. False only without "Template".
bool g_fnReadFontSlots(const tinyxml2::XMLElement* pTemplate);
/// The step of a layout's creation that makes its fixed fonts: name of the language file, slots, override (or
/// null), fonts. False if one can't be set up.
bool g_fnMakeTemplateFonts(const tinyxml2::XMLElement* pTemplate, FontOverride fnOverride,
                           const stFontFilePlace& stPlace);

/// Font number of a text item: that of its template's style. g_uNoFont without template or style.
constexpr u32 g_uNoFont = 0xFFFFFFFF;
u32 g_fnTextItemFont(u32 uTextBID);
/// Makes the font of a text that is known at load, such as a memo: that of the item's style, whose slot must
/// be dynamic, holding the text. A face that is not empty takes the place of the slot's. True, with nothing
/// done, for an item without such a slot or without a face. False if the font can't be set up; its number
/// then has none.
bool g_fnMakeTemplateTextFont(u32 uTextBID, const char16_t* wzText, const char16_t* wzFace,
                              const stFontFilePlace& stPlace);
