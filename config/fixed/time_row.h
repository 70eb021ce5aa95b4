#pragma once
// The clock of RV5: three numbers and two separators that are measured once and then stand still.
#include "platform/types.h"

/// The code, 7, 8 or 9, by which a row that starts with this number is laid out: that of the number itself,
/// 7 for any other.
i32 g_fnRowAlign(u32 uNumBID);
/// Where the separators' middles are, from the left edge of the clock.
struct stTimeRow {
    f32 fFirst, fSecond;
    f32 fWidth;
};
/// fDigit: width of a digit in text sizes.
stTimeRow g_fnMeasureTimeRow(f32 fDigit, f32 fTextSize, f32 fSpacing);
/// Hangs the parts into the clock's panel and lays them out, with fields of two digits. Nothing where the
/// hours are off.
void g_fnJoinTimeRow();
