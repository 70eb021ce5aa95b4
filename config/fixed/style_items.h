#pragma once
// The items of the two styles with fixed tables. A reference file's templates and groups name them; their
// numbers stand in no file, only here: one run a line, whose words have consecutive numbers in one role.
#include "config/fixed/name_maps.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

/// Kinds of items, as an item's name ends.
enum class eItem : u8 { Text, Number, Flip, Panel };

/// Items with consecutive numbers: one a word, all in the same role. A role of "" is the word alone.
struct stItemRun {
    eItem eKind;
    u32 uFirst;
    std::span<const char* const> words;
    const char* szRole;
};

/// One style.
struct stStyleItems {
    const char* szPrefix;
    std::span<const stItemRun> runs;
    const char* szValuePanel; ///< role of the panel that a row's value stands in
};
extern const stStyleItems g_stClassicItems, g_stRV5Items;

/// One item of a run.
struct stStyleItem {
    eItem eKind;
    u32 uBID;
    const char* szWord;
    const char* szRole;
};
/// Calls fnDo with each item, in the order of the runs.
void g_fnForEachItem(const stStyleItems& style, const std::function<void(const stStyleItem&)>& fnDo);
/// Number of an item, g_uNoBID where the style has none.
u32 g_fnItemBID(const stStyleItems& style, eItem eKind, std::string_view szWord, std::string_view szRole);
/// Full name of an item.
std::string g_fnItemName(const stStyleItems& style, const stStyleItem& item);
/// Calls fnDo with each item of a sensor's row: those of the extension so many numbers on, under its word.
void g_fnForEachSensorItem(const stStyleItems& style, std::string_view szWord, u32 uRow,
                           const std::function<void(const stStyleItem&)>& fnDo);

/// Empties the name maps and fills them with a style's names and captions.
void g_fnEnterStyleNames(const stStyleItems& style);
/// Enters the names of a sensor's row.
void g_fnEnterSensorNames(const stStyleItems& style, std::string_view szWord, u32 uRow);
