#pragma once
// The fonts of a layout: fixed ones by id, those for a text known at load, and the dynamic ones that a custom
// layout asks for by name. Each is loaded from its cache file, or else drawn. The thread that assembles the
// layout, with the context current and a manager selected.
#include "font/font_file.h"
#include "platform/types.h"

#include <map>
#include <span>
#include <string>
#include <vector>

/// Ids below this belong to the records of the profile.
constexpr u32 g_uFixedFonts = 16;

/// What a font is made of.
struct stFontRecord {
    char16_t m_wzFontName[128] = u""; ///< empty: no font
    u32 m_uFontTexW = 0, m_uFontTexH = 0;
    i32 m_iFontWeight = 400;
    u32 m_uFontLayoutX = 8; ///< cells across and down
    bool m_bDynamic = false;
};

/// A font that a custom layout asked for, under the id that it got.
struct stDynamicFont {
    u32 uId;
    stFontRecord stRecord;
};

using FontIdsByName = std::map<std::u16string, u32>;

/// Makes the fonts of the records, whose places are their ids, except of those without name, width or grid,
/// of dynamic ones, and where a font stands already. Each one made goes into ids; then all fonts with a fixed
/// id get the printable set. False if one can't be set up: the load has failed.
bool g_fnMakeFixedFonts(std::span<const stFontRecord> records, const stFontFilePlace& stPlace,
                        FontIdsByName& ids);

/// Cells across of the grid for so many characters: a power of two, at least 2, with one cell to spare.
u32 g_fnTextFontLayout(u32 uCodes);
/// Replaces the font of an id by one that holds a text, with cells of the record's size. False if it can't be
/// set up; the id then has no font.
bool g_fnMakeTextFont(u32 uFontId, const stFontRecord& stRecord, const char16_t* wzText,
                      const stFontFilePlace& stPlace);

/// Lowest id that has no font and was not given out since g_fnEndFontAssembly. False when all are taken.
bool g_fnGiveFontId(u32* puFontId);
/// Appends a record for each face that custom items name and that no font has, collects the text of all items
/// by font id, fits the fonts that stand already, and lets records grow that must hold more than their grid.
/// Reports items whose text can't be had and goes on. Items that get no id are left to the caller.
void g_fnCollectDynamicFonts(std::vector<stDynamicFont>& fonts);
/// Makes the fonts, each out of the first of the places that has its file, or else drawn, with the collected
/// text. They stay in the text lists without controls. False if one can't be set up; none stays then.
bool g_fnMakeDynamicFonts(std::span<const stDynamicFont> fonts, std::span<const stFontFilePlace> places);
/// Forgets collected texts and ids given out.
void g_fnEndFontAssembly();
