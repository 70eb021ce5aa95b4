#pragma once
// What the library's entry point does, for all back-ends: OnEntry() first for any reason, then one of the
// others.
#include "platform/types.h"

constexpr u32 g_uProcessPathBytes = 260;
extern void* g_hModule;                           ///< this library
extern char g_szProcessPath[g_uProcessPathBytes]; ///< image path, folded to lower case
extern bool g_bProcessExcluded;                   ///< never set: every process is admitted

/// Any reason, threads included: registers the two window messages and stores their ids in the segment.
void OnEntry() noexcept;
/// Process attach. Runs under the loader's lock: no waits.
void OnProcessAttach(void* hModule) noexcept;
/// Process detach, also at process end with the other threads gone.
void OnProcessDetach() noexcept;
