#pragma once
// How a back-end opens a file whose kind nobody vouches for: paths and folders belong to users.
#include "platform/types.h"
#include <cstdio>

namespace platform {

/// Opens a regular file for binary reading; null for a folder, a device or a pipe, and on failure. Waits for
/// nobody, and programs that the host starts do not inherit the file. bAlone: nobody else may open it
/// meanwhile, where the system can say so (Win32).
std::FILE* OpenRegularFile(const char16_t* wzPath, bool bAlone) noexcept;
/// The same by the narrow form of a path.
std::FILE* OpenRegularFile(const char* szPath) noexcept;
/// Size of an open file at this moment; 0 on failure.
u64 SizeOfFile(std::FILE* pFile) noexcept;

} // namespace platform
