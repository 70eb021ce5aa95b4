#pragma once
// How a back-end opens a file whose kind nobody vouches for: paths and folders belong to users.
#include "platform/types.h"
#include <cstdio>

namespace platform {

/// Opens a regular file for binary reading; null for a folder, a device or a pipe, and on failure. Waits for
/// nobody, and programs that the host starts do not inherit the file. bAlone: nobody else may open it
/// meanwhile, where the system can say so (Win32).
std::FILE* OpenRegularFile(const char16_t* wzPath, bool bAlone) noexcept;
/// OpenRegularFile by the narrow form of a path, shared with others.
std::FILE* OpenRegularFile(const char* szPath) noexcept;
/// Size of an open file at this moment; 0 on failure.
u64 SizeOfFile(std::FILE* pFile) noexcept;
/// The first place from uAt on where an open file may hold more than zeros, as far as the system knows: uAt
/// itself where it does not. Behind the last such place: the file's size.
u64 DataFrom(std::FILE* pFile, u64 uAt) noexcept;
/// Gives the room on the disk that an open file takes for zeros back, where the system can. What the file
/// holds does not change.
void FreeBlankParts(std::FILE* pFile) noexcept;

} // namespace platform
