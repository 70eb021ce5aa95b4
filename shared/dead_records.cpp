#include "shared/dead_records.h"

namespace {

bool FreeIfDead(stProcessRecord& stRecord, u32& uStamp, ProcessGoneFunction fnGone) noexcept {
    if (g_fnReadOnce(stRecord.uThreadId) == 0) return false;
    const u32 uProcessId = g_fnReadOnce(stRecord.uProcessId);
    if (!fnGone(uProcessId, g_fnReadOnce(uStamp))) return false;
    // Somebody else may have freed it meanwhile, and a newcomer taken it.
    if (g_fnReadOnce(stRecord.uProcessId) != uProcessId) return false;
    uStamp = 0;
    stRecord.uProcessId = 0;
    stRecord.uThreadId = 0; // last: from here on the slot counts as free
    return true;
}

} // namespace

u32 g_fnFreeDeadRecords(stSharedSegment& stSegment, ProcessGoneFunction fnGone) noexcept {
    u32 uFreed = 0;
    for (u32 u = 0; u < g_uProcessRecordCount; ++u) {
        uFreed += FreeIfDead(stSegment.CommandTable[u], stSegment.aCommandStamp[u], fnGone);
        uFreed += FreeIfDead(stSegment.StatusTable[u], stSegment.aStatusStamp[u], fnGone);
    }
    return uFreed;
}
