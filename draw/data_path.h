#pragma once
// Paths of the files in the overlay's data folder.
#include "platform/types.h"

/// Room for a path with its terminator, in characters or units.
constexpr u32 g_uDataPathCapacity = 260;

/// Writes the path of a data file, below the common application data folder. False, with an empty path, if it
/// does not fit or the folder is unknown. The narrow form is in the encoding of the platform's file calls.
bool g_fnResolveDataPath(char* szOut, const char* szName) noexcept;
bool g_fnResolveDataPath(char16_t* wzOut, const char16_t* wzName) noexcept;

/// True for a whole path at which a regular file can be opened.
bool g_fnCheckFileExistence(const char16_t* wzPath) noexcept;
