#include "entry/console.h"
#include "entry/exclusion_table.h"
#include <cstdarg>
#include <cstdio>

namespace {

// One escape of a 0xRRGGBB colour; iSelector 38 is the foreground, 48 the background.
void PrintColour(int iSelector, u32 uColour) noexcept {
    g_fnConsolePrint("\033[%i;2;%i;%i;%i;24m", iSelector, static_cast<int>((uColour >> 16) & 255),
                     static_cast<int>((uColour >> 8) & 255), static_cast<int>(uColour & 255));
}

} // namespace

void g_fnSetConsoleColour(u32 uForeground, u32 uBackground) noexcept {
    PrintColour(38, uForeground);
    PrintColour(48, uBackground);
}

void g_fnConsolePrint(const char* szFormat, ...) noexcept {
    std::va_list vaArguments;
    va_start(vaArguments, szFormat);
    std::vfprintf(stdout, szFormat, vaArguments);
    va_end(vaArguments);
}

void g_fnPrintExclusionTable() noexcept {
    g_fnSetConsoleColour(0xFFFFFF, 0x000000);
    for (u32 u = 0; u < g_uExclusionRowCount; ++u)
        g_fnConsolePrint("[%d]: %s\n", static_cast<int>(u), g_aszExclusionTable[u] + 1);
    std::fflush(stdout);
}
