#pragma once
// Machine-wide settings that the companion leaves for every process: keys with named values, like the
// registry's, opened for reading only. Paths are below the machine's root, parts separated by backslashes;
// paths and names are compared without case. Win32: HKEY_LOCAL_MACHINE. Linux: the file "settings.ini" in the
// folder "Settings" beside the data folder; a section per key, bare whole numbers (decimal or 0x) of up to
// 32 bits are numbers and everything else is text, quotes make text of a number. Headless: memory.
#include "platform/types.h"

namespace platform {

/// An open key; null: none.
using SettingsKey = void*;

/// What a value claims to be; its bytes may say otherwise.
enum class SettingsType : u8 {
    Number, ///< 32 bits, little endian
    Text,   ///< UTF-16; an end mark is usual, not certain
    Other
};

constexpr u32 g_uSettingsKeyNameMax = 255;     ///< units of a key's own name
constexpr u32 g_uSettingsValueNameMax = 16383; ///< units of a value's name

/// Null if there is no such key or it may not be read.
SettingsKey OpenSettingsKey(const char16_t* wzPath) noexcept;
void CloseSettingsKey(SettingsKey hKey) noexcept;
/// Bytes of a value as they are stored. uBytes: room at pOut in, bytes written out. False if the key has no
/// such value or the room is too small; pOut holds nothing of use then.
bool QuerySettingsValue(SettingsKey hKey, const char16_t* wzName, SettingsType& eType, void* pOut,
                        u32& uBytes) noexcept;
/// Terminated name of a key's subkey or value, counted from 0 in an order of the store's own. False past the
/// last one, or if the name does not fit; capacity in units.
bool EnumSettingsSubkey(SettingsKey hKey, u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept;
bool EnumSettingsValue(SettingsKey hKey, u32 uIndex, char16_t* wzOut, u32 uCapacity) noexcept;

} // namespace platform
