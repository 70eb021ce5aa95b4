#pragma once
// The records that the controls of a style are made of: one for every instance of every item that is on.
#include "config/fixed/classic_grid.h"
#include "config/fixed/style_items.h"
#include "config/fixed/template_init.h"
#include "font/font_file.h"

#include <deque>
#include <string>
#include <vector>

struct stStyleTexts {
    std::vector<stTextInit> records;
    std::deque<std::u16string> ownTexts; ///< of records whose text is not the template's
};

/// Records stand in the order of the style's table, sensors last. Their texts live as long as the templates
/// and g_stLooks.
///
/// pGrid: of Classic, whose second block lines its values up; null for RV5, where "TextAlign" of a profile
/// takes the place of anchor codes.
/// Titles that a style has for several cards, CPUs or groups at once end in their numbers.
stStyleTexts g_fnMakeStyleTexts(const stStyleItems& style, const stClassicGrid* pGrid);
std::vector<stNumInit> g_fnMakeStyleNumbers(const stStyleItems& style, const stClassicGrid* pGrid);
/// A flip box is on where the panel of its word is.
std::vector<stFlipInit> g_fnMakeStyleFlips(const stStyleItems& style);
std::vector<stPanelInit> g_fnMakeStylePanels(const stStyleItems& style, const stClassicGrid* pGrid);

/// Makes the font of each text that a profile's settings bring along and that is on. False if one can't be
/// set up.
bool g_fnMakeSettingsFonts(const stStyleItems& style, const stFontFilePlace& stPlace);
