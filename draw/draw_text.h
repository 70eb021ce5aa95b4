#pragma once
// Face of the batcher for everything that uses a glyph atlas. No flavour makes one yet.
#include "draw/draw_base.h"

class CDrawText_Base : public virtual CDraw_Base {};
