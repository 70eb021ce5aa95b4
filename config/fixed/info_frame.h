#pragma once
// The info block of a style as a whole: columns that fit into the picture, its place, and what lies behind
// it.
#include "config/fixed/style_items.h"
#include "platform/types.h"

class CControl;

/// Rows from fTop on, canvas units, that reach below the picture go on beside the others, in as many columns
/// of like height as they need. The place of the block tells how much room there is. A footer, or null, stays
/// below all columns. Nothing for rows that have room.
void g_fnWrapInfoRows(f32 fTop, CControl* pFooter);
/// Moves the block to the place that the profile gives it and hangs every part of it there with the same
/// anchor code; then makes the panels behind it and behind the texts of the settings. False if a panel
/// failed.
bool g_fnFrameInfo(const stStyleItems& style);
