#pragma once
// A picture in a box: as large as the box lets it be with its proportion kept.
#include "draw/shape_meshes.h"

/// Vertices and indices of such a picture.
constexpr u32 g_uPictureVertices = 4;
constexpr u16 g_auPictureIndices[6] = {0, 1, 2, 0, 2, 3};

/// Sizes: of the box in canvas units, of the picture in pixels, neither side 0. The picture lies at the side
/// of the box that an anchor code from 1 to 9 names, and with any other code in its top left corner.
void g_fnBuildFittedQuad(stShapeVertex (&aVertices)[g_uPictureVertices], f32 fBoxW, f32 fBoxH, f32 fPictureW,
                         f32 fPictureH, i32 iAnchorCode);
