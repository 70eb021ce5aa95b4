#pragma once
// Commands of the companion to the instances, by their numbers.
#include "platform/types.h"

enum eCommand : u32 {
    COMMAND_ENABLE = 0,    ///< the overlay on or off, for all
    COMMAND_NOTHING = 1,   ///< accepted, does nothing
    COMMAND_RELEASE = 3,   ///< tear down and build anew, for those whom the filter names
    COMMAND_POSITIONS = 4, ///< places of the status panels
    COMMAND_SCREENSHOT = 5,
    COMMAND_TIMER = 6,       ///< stopwatch on or off
    COMMAND_RELEASE_ALL = 7, ///< the release, for everyone
    COMMAND_REBUILD = 9,     ///< build the update lists anew
};
constexpr u32 g_uCommandLast = 9;

/// Numbers between the first and the last that no version has used.
constexpr bool g_fnIsUnusedCommand(u32 uCommand) noexcept { return uCommand == 2 || uCommand == 8; }
