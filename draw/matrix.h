#pragma once
// The few matrices that drawing needs: 16 consecutive floats, column-major.
#include "platform/types.h"

void g_fnMakeIdentity(f32* pMatrix) noexcept;
/// Projection of a canvas with the given sides. Elements 12 and 13 are -1 whatever left and bottom are: every
/// canvas starts at 0. Row 0 of the canvas lands at the bottom; the vertex shaders turn it to the top.
void g_fnMakeOrtho(f32* pMatrix, f32 fLeft, f32 fRight, f32 fBottom, f32 fTop, f32 p, f32 q) noexcept;
