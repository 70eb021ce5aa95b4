#include "platform/threads.h"
#include "platform/linux/thread_sleep.h"
#include <cerrno>
#include <csignal>
#include <ctime>
#include <new>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace platform {
namespace {

// Threads live in a fixed set of slots; a handle is slot and use count, so a late KillThread() of a thread
// that has ended touches nobody else.
struct Slot {
    bool m_bUsed = false;
    bool m_bStop = false;
    u32 m_uUse = 0;
    ThreadFunction m_fnThread = nullptr;
    void* m_pArgument = nullptr;
    pthread_cond_t m_wake;
};
constexpr u32 g_uSlots = 64;
constexpr u32 g_uSections = 16;

Slot g_astSlots[g_uSlots];
pthread_mutex_t g_lock = PTHREAD_MUTEX_INITIALIZER;
pthread_mutex_t* g_apSections[g_uSections]; // guarded by g_lock
thread_local Slot* t_pSelf __attribute__((tls_model("initial-exec"))) = nullptr;

struct Lock {
    Lock() noexcept { pthread_mutex_lock(&g_lock); }
    ~Lock() { pthread_mutex_unlock(&g_lock); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
};

ThreadHandle HandleOf(const Slot& stSlot) noexcept {
    const std::uintptr_t uIndex = static_cast<std::uintptr_t>(&stSlot - g_astSlots);
    return reinterpret_cast<void*>((static_cast<std::uintptr_t>(stSlot.m_uUse) << 8) | (uIndex + 1));
}

Slot* TakeSlot(ThreadFunction fnThread, void* pArgument) noexcept {
    Lock lock;
    for (Slot& stSlot : g_astSlots) {
        if (stSlot.m_bUsed) continue;
        pthread_condattr_t attributes;
        pthread_condattr_init(&attributes);
        pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
        pthread_cond_init(&stSlot.m_wake, &attributes);
        pthread_condattr_destroy(&attributes);
        stSlot.m_bUsed = true;
        stSlot.m_bStop = false;
        ++stSlot.m_uUse;
        stSlot.m_fnThread = fnThread;
        stSlot.m_pArgument = pArgument;
        return &stSlot;
    }
    return nullptr;
}

void FreeSlot(Slot& stSlot) noexcept {
    Lock lock;
    pthread_cond_destroy(&stSlot.m_wake);
    stSlot.m_bUsed = false;
}

void* RunSlot(void* pSlot) {
    t_pSelf = static_cast<Slot*>(pSlot);
    t_pSelf->m_fnThread(t_pSelf->m_pArgument);
    FreeSlot(*t_pSelf);
    return nullptr;
}

/// Starts with every signal blocked: the host's handlers expect the host's threads.
bool StartDetached(void* (*fnStart)(void*), void* pArgument, const pthread_attr_t* pAttributes) noexcept {
    sigset_t stAll, stOld;
    sigfillset(&stAll);
    pthread_sigmask(SIG_SETMASK, &stAll, &stOld);
    pthread_t thread;
    const bool bStarted = pthread_create(&thread, pAttributes, fnStart, pArgument) == 0;
    pthread_sigmask(SIG_SETMASK, &stOld, nullptr);
    if (bStarted) pthread_detach(thread);
    return bStarted;
}

/// What a thread that nobody asks for again runs.
struct stErrand {
    ThreadFunction m_fnThread;
    void* m_pArgument;
};
constexpr std::size_t g_uErrandStack = 4u << 20; ///< bytes; the host may have chosen too few for all threads
constexpr int g_iErrandNice = 5;                 ///< below the host's threads

void* RunErrand(void* pErrand) {
    const stErrand st = *static_cast<stErrand*>(pErrand);
    delete static_cast<stErrand*>(pErrand);
    const auto uSelf = static_cast<id_t>(gettid());
    setpriority(PRIO_PROCESS, uSelf, getpriority(PRIO_PROCESS, uSelf) + g_iErrandNice);
    st.m_fnThread(st.m_pArgument);
    return nullptr;
}

timespec Deadline(u32 uMilliseconds) noexcept {
    timespec st{};
    clock_gettime(CLOCK_MONOTONIC, &st);
    const i64 iNanoseconds = st.tv_nsec + static_cast<i64>(uMilliseconds % 1000) * 1000000;
    st.tv_sec += uMilliseconds / 1000 + iNanoseconds / 1000000000;
    st.tv_nsec = iNanoseconds % 1000000000;
    return st;
}

} // namespace

namespace host {

void SleepUnlessStopped(u32 uMilliseconds) noexcept {
    const timespec stDeadline = Deadline(uMilliseconds);
    if (!t_pSelf) {
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &stDeadline, nullptr) == EINTR) {
        }
        return;
    }
    Lock lock;
    while (!t_pSelf->m_bStop && pthread_cond_timedwait(&t_pSelf->m_wake, &g_lock, &stDeadline) != ETIMEDOUT) {
    }
}

void RenewLocksInChild() noexcept {
    new (&g_lock) pthread_mutex_t(PTHREAD_MUTEX_INITIALIZER);
    for (pthread_mutex_t* const pSection : g_apSections)
        if (pSection) new (pSection) pthread_mutex_t(PTHREAD_MUTEX_INITIALIZER);
    for (Slot& stSlot : g_astSlots)
        if (&stSlot != t_pSelf) stSlot.m_bUsed = false;
}

} // namespace host

ThreadHandle StartThread(ThreadFunction fnThread, void* pArgument) noexcept {
    Slot* const pSlot = fnThread ? TakeSlot(fnThread, pArgument) : nullptr;
    if (!pSlot) return nullptr;
    const ThreadHandle hThread = HandleOf(*pSlot);
    if (StartDetached(&RunSlot, pSlot, nullptr)) return hThread;
    FreeSlot(*pSlot);
    return nullptr;
}

bool StartDetachedThread(ThreadFunction fnThread, void* pArgument) noexcept {
    stErrand* const pErrand = fnThread ? new (std::nothrow) stErrand{fnThread, pArgument} : nullptr;
    if (!pErrand) return false;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, g_uErrandStack);
    const bool bStarted = StartDetached(&RunErrand, pErrand, &attributes);
    pthread_attr_destroy(&attributes);
    if (!bStarted) delete pErrand;
    return bStarted;
}

void KillThread(ThreadHandle hThread) noexcept {
    const auto uHandle = reinterpret_cast<std::uintptr_t>(hThread);
    const std::uintptr_t uIndex = (uHandle & 0xFF) - 1;
    if (uIndex >= g_uSlots) return;
    Lock lock;
    Slot& stSlot = g_astSlots[uIndex];
    if (!stSlot.m_bUsed || HandleOf(stSlot) != hThread) return;
    stSlot.m_bStop = true;
    pthread_cond_broadcast(&stSlot.m_wake);
}

bool StopRequested() noexcept {
    if (!t_pSelf) return false;
    Lock lock;
    return t_pSelf->m_bStop;
}

void CriticalSection::Initialize(u32) noexcept {
    if (m_pImpl) return;
    auto* const pMutex = new (std::nothrow) pthread_mutex_t(PTHREAD_MUTEX_INITIALIZER);
    m_pImpl = pMutex;
    Lock lock;
    for (pthread_mutex_t*& pSection : g_apSections)
        if (pMutex && !pSection) {
            pSection = pMutex;
            return;
        }
}

void CriticalSection::Enter() noexcept {
    if (void* const pMutex = m_pImpl) pthread_mutex_lock(static_cast<pthread_mutex_t*>(pMutex));
}

void CriticalSection::Leave() noexcept {
    if (void* const pMutex = m_pImpl) pthread_mutex_unlock(static_cast<pthread_mutex_t*>(pMutex));
}

void CriticalSection::Delete() noexcept {}

} // namespace platform
