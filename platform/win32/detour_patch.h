#pragma once
// Exchanges the first bytes of a function.
#include "platform/win32/detour_code.h"

namespace platform {

enum class PatchResult { Done, OtherBytes, Protected };

/// True if the bytes lie within one aligned word, so that one store changes them all.
bool IsOneStore(const u8* pAt) noexcept;
/// Puts g_uJumpBytes new bytes where the expected ones stand. OtherBytes: something else stands there, and
/// nothing was written. Unless IsOneStore, no thread may be running these bytes.
PatchResult ExchangeBytes(u8* pAt, const u8* pExpected, const u8* pNew) noexcept;

} // namespace platform
