#include "controls/fitted_quad.h"

/// Of the room that is left, the part ahead of the picture; uPlace counts from the near side to the far one.
static f32 Lead(f32 fRoom, u32 uPlace) {
    if (uPlace == 0) return 0;
    return uPlace == 1 ? fRoom * 0.5f : fRoom;
}

void g_fnBuildFittedQuad(stShapeVertex (&aVertices)[g_uPictureVertices], f32 fBoxW, f32 fBoxH, f32 fPictureW,
                         f32 fPictureH, i32 iAnchorCode) {
    const f32 fAcross = fBoxW / fPictureW, fDown = fBoxH / fPictureH;
    const f32 s = fAcross < fDown ? fAcross : fDown;
    const f32 w = fPictureW * s, h = fPictureH * s;
    // KEEP(files): codes that place the control outside its parent count as none here.
    const bool bPlaced = iAnchorCode >= 1 && iAnchorCode <= 9;
    const u32 uPlace = bPlaced ? static_cast<u32>(iAnchorCode) - 1 : 0;
    const f32 x = Lead(fBoxW - w, uPlace % 3), y = Lead(fBoxH - h, uPlace / 3);
    aVertices[0] = {{x, y}, {0, 0}};
    aVertices[1] = {{x + w, y}, {1, 0}};
    aVertices[2] = {{x + w, y + h}, {1, 1}};
    aVertices[3] = {{x, y + h}, {0, 1}};
}
