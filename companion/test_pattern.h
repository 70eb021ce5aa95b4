#pragma once
// A moving picture that needs no source, to see whether video arrives and in which colours.
#include "platform/types.h"

namespace companion {

/// Draws picture uFrame of the pattern: eight bars of colour, white, yellow, cyan, green, magenta, red, blue,
/// black; in the lowest quarter a ramp from black to white; over both a white line that crosses the picture
/// once in 120 pictures. Rows are packed, from the top down, pixels R, G, B, A and opaque.
void DrawTestPattern(u8* pPixels, u32 uWidth, u32 uHeight, u32 uFrame);

} // namespace companion
