#pragma once
// Image names of programs that were once kept out.
#include "platform/types.h"

constexpr u32 g_uExclusionRowCount = 488;
/// Rows as they are searched in the image path, each with a leading backslash.
/// The bound is left open here, so that the count at the definition is that of the rows.
extern const char* const g_aszExclusionTable[];
