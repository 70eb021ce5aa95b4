#pragma once
// What the library's entry point does, for all back-ends: OnEntry() first for any reason but the end of the
// process, then one of the others.
#include "platform/types.h"

constexpr u32 g_uProcessPathBytes = 260;
extern void* g_hModule;                           ///< this library
extern char g_szProcessPath[g_uProcessPathBytes]; ///< image path, folded to lower case
extern bool g_bProcessExcluded;                   ///< never set: every process is admitted

/// Any reason, threads included: registers the two window messages and stores their ids in the segment.
void OnEntry() noexcept;
/// Process attach. Runs under the loader's lock: no waits.
void OnProcessAttach(void* hModule) noexcept;
/// Process detach: the library leaves a process that goes on.
void OnProcessDetach() noexcept;
/// End of the process. Other threads may be dead with any lock in their hands, or alive in the middle of a
/// swap, so records and API claim are given back and nothing else: no wait, no lock, nothing is destroyed.
void OnProcessEnd() noexcept;
