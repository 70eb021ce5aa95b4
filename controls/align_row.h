#pragma once
// Places the parts of a row side by side in their panel. Lengths are canvas units.
#include "platform/types.h"

#include <span>

class CControl;

/// Length of one gap unit of a row: the font scale. 1 until a profile says otherwise.
extern f32 g_fGlyphGapUnit;

/// Lays the items from left to right, with a gap of fGapFactor units. Mode 7: from the panel's left edge;
/// 8 and 9: the row in the middle of the panel, placed by centres or by right edges. Y offsets stay; null
/// items are skipped; an item that stands right already is left alone. Nothing without a panel.
void g_fnAlignRow(CControl* pPanel, std::span<CControl* const> items, i32 iMode, f32 fGapFactor);

/// Lays the items with anchor offsets from fLeft and the same fTop. Mode 7: from the left; 8: around the
/// middle; 9: from the right edge backward; any other mode places nothing. Null items are skipped.
void g_fnAlignCustom(CControl* pPanel, std::span<CControl* const> items, i32 iMode, f32 fLeft, f32 fTop,
                     f32 fGap);
