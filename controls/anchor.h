#pragma once
// Anchor arithmetic: from a code and an offset to a place on the canvas, and back.
//
// Codes 1 to 9 count as on a telephone keypad, from the top row down, and put a rectangle inside its parent
// against that point; -1 to -9 put it outside against that point. Every other code counts as 1. All
// lengths are canvas units, y grows downward, and all arithmetic is single precision in the order written.
#include "platform/types.h"

/// Top-left corner of a rectangle of size (w, h) with the offset (x, y) under iCode. Outputs may be null.
void g_fnAnchorToPosition(i32 iCode, f32 x, f32 y, f32 w, f32 h, f32 parentX, f32 parentY, f32 parentW,
                          f32 parentH, f32* pOutX, f32* pOutY);

/// As g_fnAnchorToPosition, with all four edges. Outputs may be null.
void g_fnAnchorToRect(i32 iCode, f32 x, f32 y, f32 w, f32 h, f32 parentX, f32 parentY, f32 parentW,
                      f32 parentH, f32* pOutLeft, f32* pOutTop, f32* pOutRight, f32* pOutBottom);

/// Offset that leaves a rectangle in its place under iNewCode, 1 to 9; any other new code passes x
/// and y through. Exact only for a parent at (0, 0). Outputs may be null.
void g_fnReanchor(i32 iCode, f32 x, f32 y, f32 w, f32 h, f32 parentX, f32 parentY, f32 parentW, f32 parentH,
                  i32 iNewCode, f32* pOutX, f32* pOutY);

/// g_fnReanchor with the whole canvas as parent.
void g_fnReanchorOnCanvas(i32 iCode, f32 x, f32 y, f32 w, f32 h, i32 iNewCode, f32* pOutX, f32* pOutY);
