// The shared segment as one object in the shared-memory file system. The object outlives its processes, but
// its contents must not: every process holds a shared file lock on it while it has it mapped, and whoever
// gets the exclusive lock at attach is alone and writes the initial image. Where another user has the plain
// name, the segment of this one has the user's number in its name.
#include "platform/shared_block.h"
#include "platform/clock.h"
#include "platform/linux/segment_name.h"
#include "platform/linux/shm_object.h"
#include <atomic>
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

constexpr int g_iLockTries = 200; // a millisecond each

constinit std::atomic<stSharedSegment*> g_pSegment = nullptr;
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

stSharedSegment* OpenOrMake(const char* szPath) noexcept {
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

/// True while another process has the object mapped.
bool IsInUse(const char* szPath) noexcept {
    const int iFile = host::OpenShm(szPath, sizeof(stSharedSegment));
    if (iFile < 0) return false;
    const bool bInUse = flock(iFile, LOCK_EX | LOCK_NB) != 0;
    close(iFile);
    return bInUse;
}

/// The plain name, unless another user has it, or had it when programs of this user began that still run.
stSharedSegment* OpenSegment() noexcept {
    char szPlain[host::g_uSegmentPathBytes], szUser[host::g_uSegmentPathBytes];
    host::SegmentPath(host::SegmentOwner::Any, szPlain);
    host::SegmentPath(host::SegmentOwner::User, szUser);
    if (!host::BelongsToAnother(szPlain) && !IsInUse(szUser))
        if (stSharedSegment* const pSegment = OpenOrMake(szPlain)) return pSegment;
    // Asked again: the other user may just have been faster.
    return host::BelongsToAnother(szPlain) || IsInUse(szUser) ? OpenOrMake(szUser) : nullptr;
}

stSharedSegment* PrivateSegment() noexcept {
    static stSharedSegment stPrivate;
    g_fnApplyInitialImage(stPrivate);
    return &stPrivate;
}

} // namespace

/// Once: the segment, or a block of this process alone.
static stSharedSegment* FirstSegment() noexcept {
    std::call_once(g_once, [] {
        const int iError = errno;
        stSharedSegment* const pShared = OpenSegment();
        g_pSegment = pShared ? pShared : PrivateSegment();
        errno = iError;
    });
    return g_pSegment;
}

/// Asked at each swap, also while the overlay is off; call_once alone takes eighty instructions each time.
stSharedSegment* SharedSegment() noexcept {
    stSharedSegment* const pKnown = g_pSegment.load(std::memory_order_acquire);
    return pKnown ? pKnown : FirstSegment();
}

} // namespace platform
