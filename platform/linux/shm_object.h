#pragma once
// Shared-memory objects by name, with the checks that keep a foreign or cut object from harming the host.
// Header only, as the companion opens them too.
#include "platform/types.h"
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::host {

constexpr u32 g_uShmPathBytes = 288;
constexpr u32 g_uShmNameLimit = 250;

/// Path of the object in the shared-memory file system: slashes and backslashes of the name become "_".
/// False for an empty name or one that does not fit.
inline bool ShmPath(const char* szName, char* szPath, u32 uCapacity) noexcept {
    constexpr char szFolder[] = "/dev/shm/";
    const std::size_t uLength = szName ? std::strlen(szName) : 0;
    const std::size_t uFolder = sizeof szFolder - 1;
    if (uLength == 0 || uLength > g_uShmNameLimit || uFolder + uLength >= uCapacity || szName[0] == '.')
        return false;
    std::memcpy(szPath, szFolder, uFolder);
    for (std::size_t i = 0; i <= uLength; ++i)
        szPath[uFolder + i] = szName[i] == '/' || szName[i] == '\\' ? '_' : szName[i];
    return true;
}

inline int CloseWithError(int iFile, int iError) noexcept {
    close(iFile);
    errno = iError;
    return -1;
}

/// Opens an existing object of this user's, at least uBytes long. -1 on failure.
inline int OpenShm(const char* szPath, u64 uBytes) noexcept {
    const int iFile = open(szPath, O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (iFile < 0) return -1;
    struct stat st {};
    const bool bGood = fstat(iFile, &st) == 0 && S_ISREG(st.st_mode) && st.st_uid == geteuid() &&
                       static_cast<u64>(st.st_size) >= uBytes;
    return bGood ? iFile : CloseWithError(iFile, EACCES);
}

/// Makes a new object of uBytes zero bytes, mode 0600. -1 on failure, with errno EEXIST if there is one.
inline int MakeShm(const char* szPath, u64 uBytes) noexcept {
    const int iFile = open(szPath, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (iFile < 0) return -1;
    // Allocated, not only sized: a full memory file system must fail here and not as a fault at a store.
    if (fchmod(iFile, 0600) == 0 && posix_fallocate(iFile, 0, static_cast<off_t>(uBytes)) == 0) return iFile;
    unlink(szPath);
    return CloseWithError(iFile, ENOSPC);
}

/// Read-write shared view; null on failure.
inline void* MapShm(int iFile, u64 uBytes) noexcept {
    void* const pView = mmap(nullptr, uBytes, PROT_READ | PROT_WRITE, MAP_SHARED, iFile, 0);
    return pView == MAP_FAILED ? nullptr : pView;
}

} // namespace platform::host
