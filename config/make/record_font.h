#pragma once
// The font that a record names.
#include "controls/osd_manager.h"

/// Null for a place without a font or beyond the array.
inline CFontUniCode* g_fnFontAt(u32 uFont) {
    return g_ppFont && uFont < g_uFontEntries ? g_ppFont[uFont] : nullptr;
}
