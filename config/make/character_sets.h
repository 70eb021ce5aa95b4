#pragma once
// Which characters a font must hold: what a layout will show is known once its profile has been read, and
// goes into the atlases in one batch each. All of it belongs to the thread that assembles the layout.
#include "platform/types.h"

#include <map>
#include <set>
#include <string>

/// Every fixed font and every font that a custom layout asks for holds these.
extern const char16_t* const g_wzPrintableSet;
/// What number boxes, and the mixed ones (clock, resolution), can show.
extern const char16_t* const g_wzNumberSet;
extern const char16_t* const g_wzResolutionSet;

/// Codes that a font must hold when it is made, by font id. Filled for one assembly.
extern std::map<u32, std::set<u32>> g_mapQueryTextByFontID;

/// Adds the codes of a text, blanks too. False for a text without any.
bool g_fnInsertQueryTextByFontID(u32 uFontId, std::u16string wzText);
/// Copies the codes of a font; none for an unknown id.
void g_fnQueryTextByFontID(u32 uFontId, std::set<u32>* pOut);

/// The font with exactly this face name; false, with *puFontId untouched, if there is none.
bool g_fnFontIdByName(const char16_t* wzName, u32* puFontId);

class CItemProperty_Base;
/// Face name and text of an item: texts and memos their own (a memo's out of its file), numbers and mixed
/// items all they can show. False for other types, without a face, or if a file gives no text, which is said
/// if bReport.
bool g_fnItemFontText(const CItemProperty_Base& item, bool bReport, std::u16string& wzFace,
                      std::u16string& wzText);

/// Cells across and pixels across of the grid that a font gets which is too small, by the number of codes
/// that it holds (not of those that it is to hold).
struct stFontGrid {
    u32 uLayout, uTexture;
};
stFontGrid g_fnLargerGrid(u32 uCodesHeld);

/// Makes room in fonts that stand already for the text of all custom items: each font gets the missing codes,
/// after losing those that nothing needs if they do not fit, or after starting over with a larger grid if
/// that is not enough. Fonts without items are left alone.
void g_fnFixFontCharSet();
