#pragma once
// Names of the items of styles with fixed tables. Groups and templates name items; the tables number them.
#include "platform/types.h"

#include <map>
#include <string>
#include <string_view>

/// Words that an item's name begins with.
constexpr char g_szClassicPrefix[] = "CLASSIC_STYLE", g_szRV5Prefix[] = "RV5_STYLE";
/// Words that it ends with, by kind.
constexpr char g_szTextBoxKind[] = "TEXTBOXID", g_szNumBoxKind[] = "NUMBOXID",
               g_szFlipBoxKind[] = "FLIPBOXID", g_szPanelKind[] = "PANELID";

/// Number of an item that has none.
constexpr u32 g_uNoBID = 0xFFFFFFFF;

using NameMap = std::map<std::string, u32, std::less<>>;
/// Names are compared exactly.
struct stNameMaps {
    NameMap mapTextBox, mapNumBox, mapFlipBox, mapPanel; ///< item numbers by full name
    std::map<std::u16string, std::string, std::less<>>
        mapCaptionTitle; ///< title item of a row by the caption that it shows
};
extern stNameMaps g_stNameMaps;

/// PREFIX_ENTRY_KIND; an entry is a data word with its role, such as "VRAM_CLK_TITLE".
std::string g_fnItemFullName(std::string_view szPrefix, std::string_view szEntry, std::string_view szKind);
/// PREFIX_WORD_ROLE_KIND.
std::string g_fnItemFullName(std::string_view szPrefix, std::string_view szWord, std::string_view szRole,
                             std::string_view szKind);

/// One entry of a style's table: a name and its number.
struct stNameRow {
    const char* szEntry;
    u32 uBID;
};
/// Enters uCount names PREFIX_ENTRY_KIND.
void g_fnEnterNames(NameMap& map, std::string_view szPrefix, std::string_view szKind, const stNameRow* pRows,
                    std::size_t uCount);

/// The number of a name in a map, or g_uNoBID; says nothing.
u32 g_fnFindBID(const NameMap& map, std::string_view szName);
/// The number of a control's name, at run time; a name that is absent leaves a line in the log.
u32 g_fnGetTextBoxBIDByName(std::string_view szName);
u32 g_fnGetNumBoxBIDByName(std::string_view szName);
u32 g_fnGetPanelBIDByName(std::string_view szName);

/// Empties all five maps.
void g_fnClearNameMaps();
