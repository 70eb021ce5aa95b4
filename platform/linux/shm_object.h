#pragma once
// Shared-memory objects by name, with the checks that keep a foreign or cut object from harming the host.
#include "platform/types.h"

namespace platform::host {

constexpr u32 g_uShmPathBytes = 288;

/// Path of the object in the shared-memory file system: slashes and backslashes of the name become "_".
/// False for an empty name or one that does not fit.
bool ShmPath(const char* szName, char* szPath, u32 uCapacity) noexcept;
/// Opens an existing object of this user's, at least uBytes long. -1 on failure.
int OpenShm(const char* szPath, u64 uBytes) noexcept;
/// Makes a new object of uBytes zero bytes, mode 0600. -1 on failure, with errno EEXIST if there is one.
int MakeShm(const char* szPath, u64 uBytes) noexcept;
/// Read-write shared view; null on failure.
void* MapShm(int iFile, u64 uBytes) noexcept;

} // namespace platform::host
