#pragma once
// The short animation that confirms a screenshot: "Screenshot.anm" of the data folder, all numbers u32 with
// the low byte first: duration in milliseconds, number of steps, then for each step the side of the shutter
// image, in canvas units. A file that is missing, or of another size than it says, is an animation that is
// over at once.
#include "platform/types.h"

#include <string>
#include <vector>

struct stShutterSteps {
    bool bLoaded = false;
    u32 uDurationMs = 0;
    std::vector<u32> vecSides;
};

/// From the bytes of a file.
stShutterSteps g_fnParseShutter(const std::string& strBytes);
/// Reads the file, unless it was read.
void g_fnLoadShutter();
void g_fnFreeShutter() noexcept;

/// What the shutter image shows.
struct stShutterView {
    u32 uFrame = 0; ///< of its picture
    u32 uSide = 0;  ///< of its box; 0: nothing is seen
};
/// Gives it to the image, where there is one; nothing is done where it shows that already.
void g_fnShowShutter(const stShutterView& stView);
/// What it shows so many seconds after a screenshot. False: the animation is over.
bool g_fnShutterAt(const stShutterSteps& st, f32 fSeconds, stShutterView& stView) noexcept;

/// One step of the animation, once a frame.
void g_fnStepShutter();
