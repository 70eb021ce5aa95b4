#pragma once
// Text files that a profile names.
#include "draw/data_path.h"

#include <memory>
#include <string_view>

/// Room for the path of a file in the profile folder, with its terminator, in units.
constexpr u32 g_uProfilePathCapacity = g_uDataPathCapacity;
/// A text file above this many bytes is cut at a line's end: no picture has room for that much text.
constexpr u32 g_uTextFileBytesMax = 256 * 1024;

/// True if a name, with folders in it or not, cannot lead out of the folder that it is meant for: no parent
/// step, root or drive, by the rules of any system.
bool g_fnStaysInFolder(std::u16string_view name) noexcept;
/// Path of a file in the folder of the profile in use. False, with an empty path, if it does not fit or leads
/// out of it, the folder is unknown, or the profile's name is not that of a folder. wzOut:
/// g_uProfilePathCapacity units.
bool g_fnResolveProfilePath(char16_t* wzOut, const char16_t* wzName) noexcept;
/// True if the profile folder holds such a file; wzFullPath (or null) gets its path.
bool g_fnCheckMemoFile(const char16_t* wzName, char16_t* wzFullPath = nullptr) noexcept;
/// A text file's contents, terminated. UTF-16 of either byte order and UTF-8 by their mark, UTF-8 without one
/// where it is valid, otherwise the code page of the system. Of a file above the limit as many whole lines as
/// fit, or as much of its first line. Null if there is nothing to read or no text in it, or without memory.
std::unique_ptr<char16_t[]> g_fnLoadTextFromFile(const char16_t* wzFullPath) noexcept;
