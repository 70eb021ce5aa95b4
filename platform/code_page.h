#pragma once
// Narrow text of files that carry no mark of their encoding.
#include "platform/types.h"

namespace platform {

/// Turns bytes of the system's code page (Win32: the ANSI code page; elsewhere Latin-1) into UTF-16, not
/// terminated. Returns the units written, at most uCapacity; as many units as bytes are always enough. 0 on
/// failure.
u32 CodePageToUtf16(const char* pBytes, u32 uBytes, char16_t* pOut, u32 uCapacity) noexcept;

} // namespace platform
