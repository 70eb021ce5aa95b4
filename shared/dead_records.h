#pragma once
// Records of processes that ended without giving them back: killed ones, and programs that another one took
// the place of. Beside its record a process leaves its stamp, since ids are used again.
#include "platform/segment.h"

/// Whether the process with this id and stamp does not exist any more; false where that cannot be told. A
/// stamp of 0 is not known.
using ProcessGoneFunction = bool (*)(u32 uProcessId, u32 uStamp) noexcept;

/// Frees the records of processes that are gone, in both tables. What they held beside the ids stays, as in
/// any record that is given back. Answers how many were freed.
u32 g_fnFreeDeadRecords(stSharedSegment& stSegment, ProcessGoneFunction fnGone) noexcept;
