#pragma once
// What the titles of rows say, in the order in which it is given: the row's own name, what the language file
// says, and last the profile's own words.
#include "config/fixed/style_items.h"

#include <string>

namespace tinyxml2 {
class XMLElement;
}

/// Gives an item's template another text; false for an item without one.
bool g_fnSetItemText(u32 uTextBID, const std::u16string& wzText);
/// Gives every title that a caption leads to that caption.
void g_fnApplyFixedCaptions();
/// Gives every sensor row on display templates, title and unit of its own, and its record the numbers of its
/// items. After the templates were read: what the reference file has under a sensor's own name stays.
void g_fnPrepareSensorRows(const stStyleItems& style);
/// Gives the titles of rows the "DisplayText" that their elements in a profile have.
void g_fnApplyDisplayTexts(const stStyleItems& style, const tinyxml2::XMLElement* pInfo);
