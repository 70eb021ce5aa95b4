// Named blocks as shared-memory objects. They outlive their makers, so the maker removes the name when it
// closes the handle, and a leftover that carries this process's id from before this process began counts as
// new.
#include "platform/named_mapping.h"
#include "platform/linux/dead_claims.h"
#include "platform/linux/shm_object.h"
#include "platform/utf.h"
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

struct Mapping {
    int m_iFile = -1;
    pid_t m_iOwner = 0; ///< process that made the object, 0 if it was there before
    char m_szPath[host::g_uShmPathBytes] = {};
};

struct View {
    void* m_pView = nullptr;
    u64 m_uBytes = 0;
};
constexpr u32 g_uViews = 64;
View g_astViews[g_uViews];
constinit std::mutex g_lock;

View* FindView(void* pView) noexcept {
    for (View& st : g_astViews)
        if (st.m_pView == pView) return &st;
    return nullptr;
}

i64 Nanoseconds(const timespec& st) noexcept { return static_cast<i64>(st.tv_sec) * 1000000000 + st.tv_nsec; }

i64 Now(clockid_t eClock) noexcept {
    timespec st{};
    clock_gettime(eClock, &st);
    return Nanoseconds(st);
}

/// Whether an object was last written before this process began. Both times are coarse by a tick or two.
bool IsFromBefore(int iFile) noexcept {
    struct stat st {};
    const i64 iTicks = host::ReadProcess(static_cast<u32>(getpid())).m_iStartTicks;
    if (iTicks < 0 || fstat(iFile, &st) != 0) return false;
    const i64 iSinceStart = Now(CLOCK_BOOTTIME) - iTicks * (1000000000 / sysconf(_SC_CLK_TCK));
    const i64 iStart = Now(CLOCK_REALTIME) - iSinceStart;
    constexpr i64 iMargin = 20000000;
    return Nanoseconds(st.st_mtim) < iStart - iMargin;
}

bool CarriesOwnId(const char* szName) noexcept {
    char szTag[32];
    std::snprintf(szTag, sizeof szTag, "[PID:%d]", static_cast<int>(getpid()));
    return std::strstr(szName, szTag) != nullptr;
}

/// Opens or makes the object; sets the owner if it counts as made here.
bool OpenOrMake(Mapping& st, const char* szName, u32 uBytes) noexcept {
    for (int i = 0; i < 4; ++i) {
        st.m_iFile = host::MakeShm(st.m_szPath, uBytes);
        if (st.m_iFile >= 0) {
            st.m_iOwner = getpid();
            return true;
        }
        if (errno != EEXIST) return false;
        st.m_iFile = host::OpenShm(st.m_szPath, 0);
        const bool bLeftover = st.m_iFile >= 0 && CarriesOwnId(szName) && IsFromBefore(st.m_iFile);
        if (st.m_iFile >= 0 && !bLeftover) return true;
        if (st.m_iFile < 0 && errno != ENOENT) return false;
        if (bLeftover) {
            close(st.m_iFile);
            unlink(st.m_szPath);
        }
    }
    return false;
}

} // namespace

void* CreateNamedMapping(const char* szName, u32 uBytes) noexcept {
    auto* const pMapping = new (std::nothrow) Mapping;
    if (!pMapping) return nullptr;
    if (uBytes > 0 && host::ShmPath(szName, pMapping->m_szPath, sizeof pMapping->m_szPath) &&
        OpenOrMake(*pMapping, szName, uBytes))
        return pMapping;
    delete pMapping;
    return nullptr;
}

void* OpenNamedMapping(const char16_t* wzName) noexcept {
    char szName[host::g_uShmPathBytes];
    auto* const pMapping = new (std::nothrow) Mapping;
    if (!pMapping) return nullptr;
    if (Utf16ToUtf8(wzName, szName, sizeof szName) &&
        host::ShmPath(szName, pMapping->m_szPath, sizeof pMapping->m_szPath))
        pMapping->m_iFile = host::OpenShm(pMapping->m_szPath, 0);
    if (pMapping->m_iFile >= 0) return pMapping;
    delete pMapping;
    return nullptr;
}

void* MapView(void* hMapping, u32 uBytes) noexcept {
    auto* const pMapping = static_cast<Mapping*>(hMapping);
    struct stat st {};
    // A view past the object's end would fault in the host at the first access.
    if (!pMapping || uBytes == 0 || fstat(pMapping->m_iFile, &st) != 0 ||
        static_cast<u64>(st.st_size) < uBytes)
        return nullptr;
    std::lock_guard lock(g_lock);
    View* const pSlot = FindView(nullptr);
    void* const pView = pSlot ? host::MapShm(pMapping->m_iFile, uBytes) : nullptr;
    if (pView) *pSlot = {pView, uBytes};
    return pView;
}

void UnmapView(void* pView) noexcept {
    if (!pView) return;
    std::lock_guard lock(g_lock);
    if (View* const pSlot = FindView(pView)) {
        munmap(pView, pSlot->m_uBytes);
        *pSlot = {};
    }
}

void CloseMapping(void* hMapping) noexcept {
    auto* const pMapping = static_cast<Mapping*>(hMapping);
    if (!pMapping) return;
    if (pMapping->m_iOwner == getpid()) unlink(pMapping->m_szPath);
    close(pMapping->m_iFile);
    delete pMapping;
}

void RemoveDeadMappings() noexcept { host::RemoveDeadClaims(); }

} // namespace platform
