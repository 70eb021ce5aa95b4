#pragma once
// Code of its own memory between a detoured function of one argument and the library. It is never given back:
// a thread may come through long after the library is gone. It counts who is inside, and calls the real
// function itself.
#include "platform/swap_gate.h"

namespace platform {

struct stGateData;

/// Bits of what is answered to the gate: a reference of the library is to be given back; the end of the real
/// function is to be noted.
constexpr u32 g_uGateRelease = 1, g_uGateStamp = 2;

class CGate {
  public:
    /// Where a detour may lead to; null: no memory. Closed at first, when it only calls the real function.
    /// fnAhead: called ahead of that one; its answer: the bits above.
    /// fnBehind: called behind it, without arguments, and with the last error kept; may be null.
    void* m_fnMake(u32 (*fnAhead)(void*), void* fnBehind) noexcept;
    /// fnReal has to stay where it is for good.
    void m_fnOpen(void* fnReal) noexcept;
    /// Nobody is in the library any more when this returns, but for one that took longer than any frame.
    void m_fnClose() noexcept;
    bool m_fnIsMade() const noexcept { return m_pData; }
    bool m_fnIsOpen() const noexcept;
    void m_fnClearStamp() noexcept;
    /// The performance counter behind the last real function that was to be noted; 0 since the stamp was
    /// cleared.
    i64 m_fnStamp() const noexcept;

  private:
    stGateData* m_pData = nullptr;
    u8* m_pCode = nullptr;
};

} // namespace platform
