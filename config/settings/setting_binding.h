#pragma once
// Binding tables: how a key of a document, a settings file or the registry becomes a typed field. Every
// reader fills a table, applies it once and frees it.
#include "platform/types.h"

#include <map>
#include <span>
#include <string>

namespace tinyxml2 {
class XMLElement;
}

/// How the text of a value is read.
enum eSettingKind : u16 {
    SETTING_DECIMAL = 1, ///< sign and digits; stops at the first other character, no digits give 0
    SETTING_HEX = 2,     ///< as SETTING_DECIMAL, but to base 16, with or without "0x"
    SETTING_FLOAT = 3,   ///< decimal floating point, point as separator whatever the program's locale
    SETTING_TEXT = 4,
    SETTING_TEXT_LOCAL = 5 ///< text meant for the reader's eye; stored as 4 is
};

/// What the target pointer points at. Any other code stores nothing.
enum eSettingTarget : u8 {
    TARGET_I8 = 1,
    TARGET_U8 = 2,
    TARGET_I16 = 3,
    TARGET_U16 = 4,
    TARGET_I32 = 5,
    TARGET_U32 = 6,
    TARGET_F32 = 18,
    TARGET_U64 = 19,
    TARGET_TEXT = 33, ///< char array of uTargetUnits
    TARGET_WIDE = 34  ///< char16_t array of uTargetUnits
};

constexpr u32 g_uSettingText = 256; ///< room for names, defaults and narrow values, terminator included

/// One key of a narrow source (XML attributes).
struct stSettingBinding {
    char szName[g_uSettingText];
    char szDefault[g_uSettingText];
    u16 uKind;
    void* pTarget; ///< null discards the value
    u8 uTargetType;
    u8 uFound;        ///< 1 if the source held the key
    u32 uTargetUnits; ///< text targets: room in characters, terminator included; longer text is cut
};

/// One key of a wide source (settings file, registry).
struct stSettingBindingW {
    char16_t wzName[g_uSettingText]; ///< registry: value name, which may differ from the map key
    char16_t wzDefault[g_uSettingText];
    u16 uKind;
    void* pTarget;
    u8 uTargetType;
    u8 uFound;
    u32 uTargetUnits;
};

using SettingTable = std::map<std::string, stSettingBinding>;
using SettingTableW = std::map<std::u16string, stSettingBindingW>;

/// One line of a key table as readers write them down; uUnits only for text targets.
struct stSettingRow {
    const char* szKey;
    const char* szDefault;
    eSettingKind uKind;
    eSettingTarget uType;
    void* pTarget;
    std::size_t uUnits = 0;
};

/// One line of a wide key table; null wzName means the key itself.
struct stSettingRowW {
    const char16_t* wzKey;
    const char16_t* wzDefault;
    eSettingKind uKind;
    eSettingTarget uType;
    void* pTarget;
    std::size_t uUnits = 0;
    const char16_t* wzName = nullptr;
};

/// Enters rows one after another; a key entered twice keeps the later row. Overlong names and defaults are
/// cut.
void g_fnAddSettings(SettingTable& table, std::span<const stSettingRow> rows);
void g_fnAddSettingsW(SettingTableW& table, std::span<const stSettingRowW> rows);

/// Reads each row's attribute in key order, converts and stores it; a missing attribute stores the default.
/// Attribute text beyond 255 bytes is cut. A null element counts as one without attributes.
void g_fnApplyXmlSettings(const tinyxml2::XMLElement* pElement, SettingTable& table);
/// For rows that need no table of their own: fills one, applies it, frees it.
void g_fnReadXmlSettings(const tinyxml2::XMLElement* pElement, std::span<const stSettingRow> rows);
/// One decimal attribute.
u32 g_fnReadXmlDecimal(const tinyxml2::XMLElement* pElement, const char* szKey, const char* szDefault = "0");

/// Converts and stores one value; null text means that the source does not hold the key. Sets uFound.
void g_fnStoreSetting(stSettingBinding& row, const char* szText);
void g_fnStoreSettingW(stSettingBindingW& row, const char16_t* wzText);

void g_fnFreeSettings(SettingTable& table);
void g_fnFreeSettingsW(SettingTableW& table);

/// The number rules of the three kinds. Integers beyond 64 bits saturate; a floating value is always finite.
u64 g_fnParseDecimal(const char* szText);
u64 g_fnParseHex(const char* szText);
f64 g_fnParseFloat(const char* szText);

/// Terminated UTF-16 of UTF-8 without any byte order mark, cut to the room; wrong bytes become U+FFFD.
void g_fnDecodeUtf8(const char* szText, char16_t* wzOut, u32 uUnits);
