#pragma once
// Text console of the companion: true-colour escapes and plain lines on standard output.
#include "platform/types.h"

/// Colours of what is printed from here on, 0xRRGGBB.
void g_fnSetConsoleColour(u32 uForeground, u32 uBackground) noexcept;
/// printf-style text to standard output.
void g_fnConsolePrint(const char* szFormat, ...) noexcept __attribute__((format(printf, 1, 2)));
/// The exclusion table, one numbered line a row, without the leading backslash.
void g_fnPrintExclusionTable() noexcept;
