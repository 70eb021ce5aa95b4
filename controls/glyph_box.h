#pragma once
// What a font says about a code, in the lengths of a text.
#include "draw/glyph_quads.h"

class CFontUniCode;

struct stGlyphBox {
    f32 u0, v0, u1, v1;
    f32 fOffset;         ///< of the bottom, canvas units
    f32 fWidth, fHeight; ///< canvas units
    bool bInk;           ///< false for a glyph with an advance and no picture
};

/// False if the font can't give the code.
bool g_fnAskGlyph(CFontUniCode& font, u32 uCode, f32 fTextSize, stGlyphBox& st);
/// Puts a glyph on a line. What lies where the picture of a glyph without ink would be belongs to others, so
/// its quad has no area.
void g_fnPutGlyph(stTextVertex* pQuad, const stGlyphBox& st, f32 fPenX, f32 fLineY);
