#pragma once
// Folders and files by path.
#include "platform/types.h"
#include <cstdio>

namespace platform {

/// The common application data folder (Win32: CSIDL 35; Linux: $ORVIN_OSD_APPDATA, else $XDG_DATA_HOME, else
/// ~/.local/share), UTF-16, no trailing separator. False if it does not fit or is unknown.
bool CommonDataFolder(char16_t* wzOut, u32 uCapacity) noexcept;
/// Where the raw picture of the screenshot marker lies, whatever the data folder; null: in the data folder.
extern const char16_t* const g_wzFixedScreenshotCache;
/// Separator between path parts: backslash on Win32, slash elsewhere.
extern const char16_t g_cPathSeparator;
/// Narrow form of a path for the file calls (Win32: ANSI code page; Linux: UTF-8). False if it does not fit.
bool NarrowPath(const char16_t* wzPath, char* szOut, u32 uCapacity) noexcept;
/// Opens a regular file for binary reading, without waiting; null for any other kind and on failure. Contents
/// are read by platform/input_file.h.
std::FILE* OpenFileForRead(const char16_t* wzPath) noexcept;
/// As OpenFileForRead; on Win32 nobody else may open the file meanwhile.
std::FILE* OpenFileForReadAlone(const char16_t* wzPath) noexcept;
/// Opens a file for binary writing and reading, empty; null on failure.
std::FILE* OpenFileForWrite(const char16_t* wzPath) noexcept;

} // namespace platform
