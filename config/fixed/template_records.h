#pragma once
// Templates of the styles with fixed tables, as the reference file gives them: looks by style number, and one
// template per item. Lengths in canvas units; where it says "scaled" the profile's font scale is in them.
#include "config/fixed/template_pool.h"
#include "config/make/flip_records.h"

#include <string>

namespace tinyxml2 {
class XMLElement;
}

/// Style numbers are below this; item numbers below the other.
constexpr u32 g_uTemplateStyles = 64, g_uTemplateItems = 4096;

/// "TextBoxStyle", "FlipBoxStyle" and, without spacing, "NumBoxStyle".
struct stTextStyle {
    u32 uFontID = 0;
    f32 fTextSize = 0; ///< scaled, not whole
    f32 fTextSpacingX = 0, fTextSpacingY = 0;
};
struct stPanelStyle {
    i32 iWidth = 0, iHeight = 0; ///< scaled; 0: the item's own
};

/// What all item templates have.
struct stItemPlace {
    u32 uStyleID = 0;
    i32 iAnchor = 1;
    i32 iAnchorX = 0, iAnchorY = 0; ///< scaled
};
struct stTextTemplate : stItemPlace {
    std::u16string wzText;
};
struct stNumTemplate : stItemPlace {
    i32 iWidth = 0, iHeight = 0; ///< not scaled
    f32 fDigitSpacing = 0;
    u32 uDigitPadding = 0;
    u32 uHideDigitPad = 1;
};
struct stFlipTemplate : stItemPlace {
    std::u16string awzText[g_uFlipTexts];
};
struct stPanelTemplate : stItemPlace {
    bool bHidden = false;
    i32 iWidth = 0, iHeight = 0; ///< not scaled; read where the style has 0
};

/// Styles by style id, templates by item number.
struct stTemplates {
    CTemplatePool<stTextStyle, g_uTemplateStyles> poolTextBoxStyle, poolFlipBoxStyle, poolNumBoxStyle;
    CTemplatePool<stPanelStyle, g_uTemplateStyles> poolPanelStyle;
    CTemplatePool<stTextTemplate, g_uTemplateItems> poolTextBox;
    CTemplatePool<stNumTemplate, g_uTemplateItems> poolNumBox;
    CTemplatePool<stFlipTemplate, g_uTemplateItems> poolFlipBox;
    CTemplatePool<stPanelTemplate, g_uTemplateItems> poolPanel;
};
extern stTemplates g_stTemplates;

/// No item's or style's number.
constexpr u32 g_uNoTemplate = 0xFFFFFFFF;

/// The readers take all elements of their kind below "Template", in place of what stood under their numbers.
/// An element that is not enabled, or whose title has no number or is in no map, is passed over without a
/// word. False only without "Template".
bool g_fnReadTextBoxStyles(const tinyxml2::XMLElement* pTemplate);
bool g_fnReadNumBoxStyles(const tinyxml2::XMLElement* pTemplate);
bool g_fnReadFlipBoxStyles(const tinyxml2::XMLElement* pTemplate);
bool g_fnReadPanelStyles(const tinyxml2::XMLElement* pTemplate);
/// The four above, in their order.
bool g_fnReadTemplateStyles(const tinyxml2::XMLElement* pTemplate);

/// Titles go through the name maps, which must be filled.
bool g_fnReadTextBoxTemplates(const tinyxml2::XMLElement* pTemplate);
bool g_fnReadNumBoxTemplates(const tinyxml2::XMLElement* pTemplate);
bool g_fnReadFlipBoxTemplates(const tinyxml2::XMLElement* pTemplate);
bool g_fnReadPanelTemplates(const tinyxml2::XMLElement* pTemplate);
/// The four above, in their order.
bool g_fnReadTemplates(const tinyxml2::XMLElement* pTemplate);

/// Empties all pools, font slots included.
void g_fnClearTemplates();
