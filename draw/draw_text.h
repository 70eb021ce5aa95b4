#pragma once
// The batcher of everything that uses a glyph atlas, as the frame driver sees it: it is drawn after the basic
// one.
#include "draw/draw_base.h"

/// No flavour makes one while no control draws text; the creation table's entry stays null.
class CDrawText_Base : public virtual CDraw_Base {};
