#pragma once
// A host's thread may have a stack of 64 KB, which some libraries alone would take.

namespace platform::host {

/// Runs fn(pArgument) on this thread where 256 KB of its stack are free, else on one that is waited for.
void RunWithStack(void (*fn)(void*), void* pArgument) noexcept;

} // namespace platform::host
