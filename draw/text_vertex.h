#pragma once
// What a text control is drawn from: quads of four vertices (top left, top right, bottom right, bottom left)
// and six u32 indices (b, b+1, b+2, b, b+2, b+3).
#include "platform/types.h"

/// Vertex of a text control.
struct stTextVertex {
    f32 m_afPos[2];   ///< canvas units, relative to the control
    f32 m_afTex[2];   ///< of the atlas, 0 to 1, from its top left
    f32 m_afColor[4]; ///< red, green, blue, alpha, each 0 to 1
};
static_assert(sizeof(stTextVertex) == 32, "the shaders read 32 bytes a vertex");
