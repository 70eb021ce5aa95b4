#pragma once
// Paths of the data folder, "<common application data>/ZARN/Orvin Deck/ORVIN-OSD/Data".
#include "platform/types.h"

/// Characters of a resolved path, terminator included.
constexpr u32 g_uPathChars = 260;

/// Path of a file in the data folder. False, with an empty path, if it does not fit or the folder is unknown.
bool g_fnResolveDataPath(char16_t (&wzOut)[g_uPathChars], const char16_t* wzName) noexcept;
/// The same for the narrow file calls.
bool g_fnResolveDataPath(char (&szOut)[g_uPathChars], const char* szName) noexcept;
