#pragma once
#include "draw/glyph_quads.h"

class CFontUniCode;

/// Size of a cell of a font's picture; of a null font: more than any picture has.
stCellSize g_fnCellOf(const CFontUniCode* pFont);
