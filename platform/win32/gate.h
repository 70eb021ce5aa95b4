#pragma once
// Code of its own memory between a detoured function of one argument and the library. It is never given back:
// a thread may come through long after the library is gone. It counts who is inside, and calls the real
// function itself.
#include "platform/swap_gate.h"

namespace platform {

struct stGateData;

class CGate {
  public:
    /// Where a detour may lead to; null: no memory. Closed at first, when it only calls the real function.
    /// fnAhead: called ahead of that one; its answer: whether a reference of the library is to be given back.
    /// fnBehind: called behind it, without arguments, and with the last error kept; may be null.
    void* m_fnMake(u32 (*fnAhead)(void*), void* fnBehind) noexcept;
    /// fnReal has to stay where it is for good.
    void m_fnOpen(void* fnReal) noexcept;
    /// Nobody is in the library any more when this returns, but for one that took longer than any frame.
    void m_fnClose() noexcept;
    bool m_fnIsMade() const noexcept { return m_pData; }
    bool m_fnIsOpen() const noexcept;

  private:
    stGateData* m_pData = nullptr;
    u8* m_pCode = nullptr;
};

} // namespace platform
