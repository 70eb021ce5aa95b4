#pragma once
// Executable memory close enough to a function for a 32-bit jump.
#include "platform/types.h"

namespace platform {

/// One relay with its trampoline. Never given back: another engine, or a thread that read the trampoline's
/// address a moment ago, may still come through here long after the detour is gone.
struct stNearSlot {
    u8* m_pRelay = nullptr;                    ///< an indirect jump through *m_ppDestination
    void* volatile* m_ppDestination = nullptr; ///< in a page of its own, which stays writable
    u8* m_pTrampoline = nullptr;               ///< g_uTrampolineBytes
};

/// Takes a free slot within reach of the function, allocating if need be. False when there is no room near
/// it. The caller keeps other engine calls out.
bool TakeNearSlot(const u8* pTarget, stNearSlot& slot) noexcept;
/// Writes code into the slot's trampoline. Other slots of the page may be running meanwhile. False if the
/// page can't be made writable.
bool WriteTrampoline(const stNearSlot& slot, const u8* pCode, u32 uBytes) noexcept;

} // namespace platform
