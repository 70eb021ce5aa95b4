// The library is never unmapped here, so there is nothing to guard.
#include "platform/swap_gate.h"

namespace platform {

void* SwapGate(const stSwapGateWay& stWay) noexcept { return reinterpret_cast<void*>(stWay.m_fnSwap); }
void OpenSwapGate(void*) noexcept {}
void CloseSwapGate() noexcept {}
bool HoldLibraryForSwap() noexcept { return true; }
void StampSwap() noexcept {}
i64 SwapStamp() noexcept { return 0; }

} // namespace platform
