#pragma once
// The settings of the overlay that are a user's to change, by names that a user types; one row each.
#include "companion/result.h"
#include "platform/types.h"
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace companion {

/// Where a setting stands.
enum class SettingPlace : u8 {
    Store,    ///< the settings store; szKey: its key
    Ini,      ///< OSD.ini of the data folder; szKey: the section
    Companion ///< the user's choices of this program
};

enum class SettingKind : u8 {
    Switch,   ///< on or off
    Number,   ///< iMin to iMax
    Words,    ///< one of szWords
    Color,    ///< #RRGGBB: three values, szValue with R, G and B behind it
    Text,     ///< up to 127 units
    Folder,   ///< the same, a folder that exists
    File,     ///< the same, a file that exists
    Language, ///< a language file; setting it switches captions on
    Keys      ///< a combination of keys, or "none"
};

struct SettingRow {
    const char* szName;
    SettingPlace ePlace;
    const char* szKey;
    const char* szValue;
    SettingKind eKind;
    const char* szMissing; ///< what counts where the setting is missing, as it is shown
    const char* szShipped; ///< what is shipped, which '--default' gives; null: nothing, so szMissing
    const char* szHelp;
    i64 iMin = 0, iMax = 0;
    const char* szWords = ""; ///< "word=number" with blanks between
    const char* szUnit = "";

    const char* Default() const { return szShipped ? szShipped : szMissing; }
};

/// A value as it is stored: a number, else a text.
struct StoredValue {
    std::optional<u32> uNumber;
    std::string strText;
};

std::span<const SettingRow> SettingRows();
/// Null if there is none of that name.
const SettingRow* FindSetting(std::string_view strName);
/// What may be given: "on, off", "10 to 10000 ms", "png, jpg" ...
std::string RangeText(const SettingRow& row);
/// Takes what a user typed. kUsage, with what may be given, if it cannot be meant.
Result ParseSetting(const SettingRow& row, const std::string& strText, StoredValue& stOut);
/// What a user would type for a value; nothing counts as missing.
std::string SettingText(const SettingRow& row, const std::optional<StoredValue>& stValue);
/// "limit-rate  60 frames a second ..." for all of them, for the help.
std::string SettingsHelp();

} // namespace companion
