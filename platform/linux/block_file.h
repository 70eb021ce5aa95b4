#pragma once
// The file behind a block that one program writes and others watch. Locks on its first bytes tell who has it
// open, so that it goes with the last of them and what killed programs left counts as nothing. Other programs
// that write such a block do as here: a lock on the writer's byte, for as long as they have it open. Header
// only, as the companion writes such blocks.
#include "platform/linux/segment_name.h"
#include "platform/linux/shm_object.h"
#include <cstdio>
#include <ctime>

namespace platform::host {

/// Bytes of the file whose locks tell of its users. Many watch, one writes. The third is held by whoever
/// comes or goes.
enum BlockByte : u8 { BLOCK_WATCHED, BLOCK_WRITTEN, BLOCK_GUARD };
constexpr u32 g_uBlockRoles = 2; ///< watched and written, from the first byte on

/// Where a block of that name lies: with the suffix of a segment of one's own, and with the user's number
/// where the plain name is another user's. False for a name that cannot be one.
inline bool BlockPath(const char* szName, char (&szPath)[g_uShmPathBytes]) noexcept {
    if (!ShmPath(szName, szPath, sizeof szPath)) return false;
    char szSuffix[g_uSegmentSuffixLimit + 2];
    SegmentSuffix(szSuffix);
    const std::size_t uUsed = std::strlen(szPath), uSuffix = std::strlen(szSuffix);
    constexpr std::size_t uUserRoom = 24;
    if (uUsed + uSuffix + uUserRoom >= sizeof szPath) return false;
    std::memcpy(szPath + uUsed, szSuffix, uSuffix + 1);
    if (BelongsToAnother(szPath)) std::snprintf(szPath + uUsed + uSuffix, uUserRoom, ".uid%u", geteuid());
    return true;
}

/// Locks of open files and not of processes: a program may have a block open twice.
inline struct flock BlockLock(short iType, off_t iFirst, off_t iBytes) noexcept {
    struct flock st {};
    st.l_type = iType;
    st.l_whence = SEEK_SET;
    st.l_start = iFirst;
    st.l_len = iBytes;
    return st;
}

inline bool LockByte(int iFile, BlockByte eByte, short iType) noexcept {
    struct flock st = BlockLock(iType, eByte, 1);
    return fcntl(iFile, F_OFD_SETLK, &st) == 0;
}

/// Whether somebody else has a lock on these bytes.
inline bool IsByteHeld(int iFile, BlockByte eFirst, u32 uBytes = 1) noexcept {
    struct flock st = BlockLock(F_WRLCK, eFirst, uBytes);
    return fcntl(iFile, F_OFD_GETLK, &st) == 0 && st.l_type != F_UNLCK;
}

/// The guard is held for moments. One that a stopped program holds costs us the block, not the host its
/// start.
inline bool LockGuard(int iFile) noexcept {
    constexpr int iTries = 100;
    for (int i = 0; i < iTries; ++i) {
        if (LockByte(iFile, BLOCK_GUARD, F_WRLCK)) return true;
        const timespec stMillisecond{0, 1000000};
        nanosleep(&stMillisecond, nullptr);
    }
    return false;
}

/// Whether the path still leads to the open file.
inline bool IsFileAt(int iFile, const char* szPath) noexcept {
    struct stat stFile {
    }, stPath{};
    return fstat(iFile, &stFile) == 0 && lstat(szPath, &stPath) == 0 && stFile.st_ino == stPath.st_ino &&
           stFile.st_dev == stPath.st_dev;
}

/// A hole is zeros. A file system without holes gets them written.
inline void ZeroFile(int iFile, u64 uBytes) noexcept {
    if (fallocate(iFile, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(uBytes)) == 0)
        return;
    static constexpr char acZeros[4096] = {};
    for (u64 u = 0; u < uBytes; u += sizeof acZeros) {
        const u64 uPart = uBytes - u < sizeof acZeros ? uBytes - u : sizeof acZeros;
        if (pwrite(iFile, acZeros, uPart, static_cast<off_t>(u)) < 0) return;
    }
}

/// A new file under a name of our own first, so that nobody opens one that has not grown to its size yet. It
/// takes memory only where it is written.
inline int MakeBlockFile(const char* szPath, u64 uBytes) noexcept {
    char szPrivate[g_uShmPathBytes + 16];
    std::snprintf(szPrivate, sizeof szPrivate, "%s.%d", szPath, static_cast<int>(getpid()));
    const int iFile = open(szPrivate, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (iFile < 0) return -1;
    const bool bMade = fchmod(iFile, 0600) == 0 && ftruncate(iFile, static_cast<off_t>(uBytes)) == 0 &&
                       link(szPrivate, szPath) == 0;
    const int iError = errno;
    unlink(szPrivate);
    return bMade ? iFile : CloseWithError(iFile, iError);
}

/// Takes the place of a watcher or of the writer in an open file. The contents of one that nobody has open
/// are those of programs that are gone.
inline bool EnterBlockFile(int iFile, const char* szPath, u64 uBytes, BlockByte eRole) noexcept {
    if (!LockGuard(iFile)) return false;
    bool bIn = IsFileAt(iFile, szPath);
    if (bIn && !IsByteHeld(iFile, BLOCK_WATCHED, g_uBlockRoles)) ZeroFile(iFile, uBytes);
    bIn = bIn && LockByte(iFile, eRole, eRole == BLOCK_WRITTEN ? F_WRLCK : F_RDLCK);
    LockByte(iFile, BLOCK_GUARD, F_UNLCK);
    return bIn;
}

/// Opens or makes the file. -1 on failure: a smaller file, another user's, or a second writer.
inline int OpenBlockFile(const char* szPath, u64 uBytes, BlockByte eRole) noexcept {
    constexpr int iTries = 8; // others come and go meanwhile
    for (int i = 0; i < iTries; ++i) {
        int iFile = OpenShm(szPath, uBytes);
        if (iFile < 0 && errno != ENOENT) return -1;
        if (iFile < 0) iFile = MakeBlockFile(szPath, uBytes);
        if (iFile < 0 && errno != EEXIST) return -1;
        if (iFile < 0) continue;
        if (EnterBlockFile(iFile, szPath, uBytes, eRole)) return iFile;
        const bool bGone = !IsFileAt(iFile, szPath);
        close(iFile);
        if (!bGone) return -1;
    }
    return -1;
}

/// The last one out takes the name away. Under the guard.
inline void UnlinkUnlessHeld(int iFile, const char* szPath) noexcept {
    if (IsFileAt(iFile, szPath) && !IsByteHeld(iFile, BLOCK_WATCHED, g_uBlockRoles)) unlink(szPath);
}

inline void CloseBlockFile(int iFile, const char* szPath) noexcept {
    if (LockGuard(iFile)) UnlinkUnlessHeld(iFile, szPath);
    close(iFile);
}

} // namespace platform::host
