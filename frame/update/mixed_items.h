#pragma once
// Items of the custom style that are made of several boxes: the time of day and the size of the picture.
#include "frame/update/update_records.h"

class CItemProperty_Base;

/// Fills the record of a mixed item: the places of its boxes, its alignment, its updater. False, with a line
/// in the log, for a null item, an item of another kind, an unknown data name, or a missing part.
bool g_fnGetUpdateMixedDataByCustomStyle(CItemProperty_Base* pItemPty_N, stUpdateMixedData& record);

/// Aligns hour, text, minute, text, second in the record's panel. False, with a line in the log, if a part is
/// missing.
bool g_fnFixSystemTimeAlignByCustomStyle(stUpdateMixedData& record);
/// Writes the client size into the two number boxes, then aligns width, text, height.
bool g_fnFixResolutionAlignByCustomStyle(stUpdateMixedData& record);
/// Their work without touching any place: these only write the number boxes.
bool g_fnFixSystemTimeAlignByCustomStyle_Hide(stUpdateMixedData& record);
bool g_fnFixResolutionAlignByCustomStyle_Hide(stUpdateMixedData& record);

/// Runs the hide form of every mixed item, ahead of a rebuild.
void g_fnHideMixedItems();
