#pragma once
// Process-wide ids of names: items, data, controls, style titles.
#include "platform/types.h"

/// Id of a name, the same for each call; ids start at 1 and go up by one per new name. Lives as long as the
/// process. A null name counts as empty.
u64 g_fnInternName(const char* szText);
