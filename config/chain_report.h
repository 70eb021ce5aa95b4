#pragma once
// What a user may learn of a layout that could not be made.
#include "platform/types.h"

/// Shows which step of a style's creation failed, under the creation's name, where message boxes are asked
/// for.
void g_fnReportChainFailure(const char* szChain, i32 iStep);
