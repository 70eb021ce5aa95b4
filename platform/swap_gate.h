#pragma once
// The way from the detoured swap into the library and out again. Where the library can be unmapped while the
// program's threads are in their swaps, this way is code that stays behind: it counts who is inside, calls
// the real swap itself, and lets nobody in any more once it is closed.
#include "platform/types.h"

namespace platform {

/// What the gate calls. Both may be called at once by several threads.
struct stSwapGateWay {
    i32 (*m_fnSwap)(void* hdc);            ///< the whole swap, for systems without a gate
    void (*m_fnAhead)(void* hdc) noexcept; ///< everything ahead of the real swap
    void* m_fnDrain;                       ///< called behind it, without arguments
};

/// Windows: how far from the gate's beginning stands the address in the library that it calls. The companion
/// tells by it whose detour it sees.
constexpr u32 g_uSwapGateWayOffset = 4096 + 8;

/// What the detour leads to: a gate, closed; m_fnSwap where the library is never unmapped or there is no
/// memory.
void* SwapGate(const stSwapGateWay& stWay) noexcept;
/// Opens it; fnReal is the real swap, and has to stay where it is for good.
void OpenSwapGate(void* fnReal) noexcept;
/// Nobody is inside the library's swap any more when this returns, but for one that took longer than any
/// frame.
void CloseSwapGate() noexcept;

/// Keeps the library mapped until the swap that this thread is in has left it: for a step that loads modules,
/// as the unload would hold the loader's lock while it waits for it. False if that is not to be had now.
bool HoldLibraryForSwap() noexcept;

/// Has the gate note when the real swap of this thread, which is on its way to it, is done; nothing where the
/// library swaps itself.
void StampSwap() noexcept;
/// That moment, of the performance counter; 0 as long as it has not come.
i64 SwapStamp() noexcept;

} // namespace platform
