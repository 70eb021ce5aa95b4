#pragma once
// The video boxes that the settings store asks for: one for each source that is on, with its frames' block.
#include "platform/types.h"

/// Opacity byte of a box for the store's value, which is a percentage of transparency: 0 is opaque, 100 is
/// clear.
u8 g_fnVideoAlpha(u8 u8Alpha) noexcept;

/// Makes the boxes of the current manager, in g_ppVideoBox by source; none while video is off. A source that
/// cannot be shown has none, which is no failure of the layout. Needs the master switch to have been read.
void g_fnCreateVideoBoxes();
