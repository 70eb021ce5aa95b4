// The shared segment as one object in the shared-memory file system. The object outlives its processes, but
// its contents must not: every process holds a shared file lock on it while it has it mapped, and whoever
// gets the exclusive lock at attach is alone and writes the initial image.
#include "platform/shared_block.h"
#include "platform/clock.h"
#include "platform/linux/shm_object.h"
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr char g_szSegmentName[] = "ORVIN-OSD64-GL.Shared";
constexpr u32 g_uSuffixLimit = 64;
constexpr int g_iLockTries = 200; // a millisecond each

constinit stSharedSegment* g_pSegment = nullptr;
constinit std::once_flag g_once;

enum class LockState : u8 { Failed, Shared, Alone };

void Pause() noexcept {
    const timespec stMillisecond{0, 1000000};
    nanosleep(&stMillisecond, nullptr);
}

/// The exclusive lock if nobody else has the object, else a shared one. The exclusive one is held by others
/// for moments only; a process stopped in such a moment costs us the segment, not the host its start.
LockState LockObject(int iFile) noexcept {
    for (int i = 0; i < g_iLockTries; ++i) {
        if (flock(iFile, LOCK_EX | LOCK_NB) == 0) return LockState::Alone;
        if (flock(iFile, LOCK_SH | LOCK_NB) == 0) return LockState::Shared;
        Pause();
    }
    return LockState::Failed;
}

/// Exclusive to shared. Not atomic: another process may get the exclusive lock in between and write the image
/// once more, which harms nothing, since nobody has written anything else yet.
bool KeepShared(int iFile) noexcept {
    for (int i = 0; i < g_iLockTries; ++i) {
        if (flock(iFile, LOCK_SH | LOCK_NB) == 0) return true;
        Pause();
    }
    return false;
}

void WriteInitialImage(stSharedSegment& stSegment) noexcept {
    std::memset(static_cast<void*>(&stSegment), 0, sizeof stSegment);
    g_fnApplyInitialImage(stSegment);
}

/// "ORVIN-OSD64-GL.Shared", or with "-SUFFIX" when ORVIN_OSD_SEGMENT asks for a segment of its own.
bool SegmentPath(char* szPath, u32 uCapacity) noexcept {
    char szName[128];
    const char* const szSuffix = std::getenv("ORVIN_OSD_SEGMENT");
    const bool bSuffix = szSuffix && *szSuffix && std::strlen(szSuffix) <= g_uSuffixLimit;
    std::snprintf(szName, sizeof szName, "%s%s%s", g_szSegmentName, bSuffix ? "-" : "",
                  bSuffix ? szSuffix : "");
    return host::ShmPath(szName, szPath, uCapacity);
}

/// Makes the object under a private name, fills it and links it to its own, so that nobody ever opens half an
/// object. The answer is a file with a shared lock, or -1; EEXIST means that another process was faster.
int CreateObject(const char* szPath) noexcept {
    char szPrivate[host::g_uShmPathBytes];
    const int iLength =
        std::snprintf(szPrivate, sizeof szPrivate, "%s.%d.%lld", szPath, static_cast<int>(getpid()),
                      static_cast<long long>(SteadyNanoseconds()));
    if (iLength < 0 || iLength >= static_cast<int>(sizeof szPrivate)) return -1;
    const int iFile = host::MakeShm(szPrivate, sizeof(stSharedSegment));
    if (iFile < 0) return -1;
    void* const pView = host::MapShm(iFile, sizeof(stSharedSegment));
    bool bLinked = false;
    if (pView) {
        WriteInitialImage(*static_cast<stSharedSegment*>(pView));
        munmap(pView, sizeof(stSharedSegment));
        bLinked = flock(iFile, LOCK_SH | LOCK_NB) == 0 && link(szPrivate, szPath) == 0;
    }
    const int iError = errno;
    unlink(szPrivate);
    if (!bLinked) close(iFile);
    errno = iError;
    return bLinked ? iFile : -1;
}

/// Opens the existing object, locked; writes the image when alone. The file stays open for the process's
/// life, since the lock hangs on it.
stSharedSegment* AdoptObject(int iFile) noexcept {
    struct stat st {};
    const bool bSize = fstat(iFile, &st) == 0 && st.st_size == sizeof(stSharedSegment);
    const LockState eLock = bSize ? LockObject(iFile) : LockState::Failed;
    void* const pView = eLock == LockState::Failed ? nullptr : host::MapShm(iFile, sizeof(stSharedSegment));
    auto* const pSegment = static_cast<stSharedSegment*>(pView);
    if (pSegment && eLock == LockState::Alone) {
        WriteInitialImage(*pSegment);
        if (!KeepShared(iFile)) {
            munmap(pView, sizeof(stSharedSegment));
            close(iFile);
            return nullptr;
        }
    }
    if (!pSegment) close(iFile);
    return pSegment;
}

stSharedSegment* OpenSegment() noexcept {
    char szPath[host::g_uShmPathBytes];
    if (!SegmentPath(szPath, sizeof szPath - 48)) return nullptr;
    for (int i = 0; i < 8; ++i) {
        const int iOpened = host::OpenShm(szPath, sizeof(stSharedSegment));
        if (iOpened >= 0) return AdoptObject(iOpened);
        if (errno != ENOENT) return nullptr;
        const int iMade = CreateObject(szPath);
        if (iMade >= 0) return static_cast<stSharedSegment*>(host::MapShm(iMade, sizeof(stSharedSegment)));
        if (errno != EEXIST) return nullptr;
    }
    return nullptr;
}

stSharedSegment* PrivateSegment() noexcept {
    static stSharedSegment stPrivate;
    g_fnApplyInitialImage(stPrivate);
    return &stPrivate;
}

} // namespace

stSharedSegment* SharedSegment() noexcept {
    std::call_once(g_once, [] {
        const int iError = errno;
        g_pSegment = OpenSegment();
        if (!g_pSegment) g_pSegment = PrivateSegment();
        errno = iError;
    });
    return g_pSegment;
}

} // namespace platform
