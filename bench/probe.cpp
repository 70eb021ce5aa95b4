// Bench-only preload beside a host program: a clock that advances by a fixed step a frame, and a count of the
// allocations made between two frames. The host program calls orvin_bench_frame() after each of its frames.
//
// Environment: BENCH_STEP_NS=N      virtual clock: N nanoseconds a frame (0 stands still); absent: the real
// clock
//              BENCH_FROM, BENCH_TO  allocations are counted between the ends of these frames
//              BENCH_OUT=FILE       "allocations=", "bytes=", "frees=", "clock_reads=", "threads=",
//                                "private_kb=" after frame BENCH_TO
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

std::atomic<unsigned long long> g_uAllocations, g_uBytes, g_uFrees, g_uClockReads;
unsigned long long g_uFrame = 0, g_uFrom = 0, g_uTo = ~0ull;
unsigned long long g_uStart[4], g_uEnd[4];
bool g_bVirtual = false;
long long g_iStep = 0, g_iNow = 1000000000000ll; // a clock that starts at 1000 s
unsigned g_uThreads = 0;

void Count(std::size_t uBytes) {
    g_uAllocations.fetch_add(1, std::memory_order_relaxed);
    g_uBytes.fetch_add(uBytes, std::memory_order_relaxed);
}

void Snapshot(unsigned long long* puOut) {
    puOut[0] = g_uAllocations.load(), puOut[1] = g_uBytes.load(), puOut[2] = g_uFrees.load();
    puOut[3] = g_uClockReads.load();
}

unsigned CountThreads() {
    unsigned uCount = 0;
    if (DIR* pFolder = opendir("/proc/self/task")) {
        while (const dirent* pEntry = readdir(pFolder)) uCount += pEntry->d_name[0] != '.';
        closedir(pFolder);
    }
    return uCount;
}

unsigned PrivateKilobytes() {
    unsigned uAll = 0, uOne = 0;
    char szLine[256];
    std::FILE* pFile = std::fopen("/proc/self/smaps_rollup", "r");
    if (!pFile) return 0;
    while (std::fgets(szLine, sizeof szLine, pFile))
        if (std::sscanf(szLine, "Private_Dirty: %u", &uOne) == 1) uAll += uOne;
    std::fclose(pFile);
    return uAll;
}

struct CProbe {
    CProbe() {
        if (const char* sz = std::getenv("BENCH_STEP_NS")) g_bVirtual = true, g_iStep = std::atoll(sz);
        if (const char* sz = std::getenv("BENCH_FROM")) g_uFrom = std::strtoull(sz, nullptr, 10);
        if (const char* sz = std::getenv("BENCH_TO")) g_uTo = std::strtoull(sz, nullptr, 10);
    }
} g_clProbe;

void Report() {
    const char* szPath = std::getenv("BENCH_OUT");
    std::FILE* pFile = szPath ? std::fopen(szPath, "w") : nullptr;
    if (!pFile) return;
    const unsigned uPrivate = PrivateKilobytes();
    std::fprintf(pFile,
                 "allocations=%llu\nbytes=%llu\nfrees=%llu\nclock_reads=%llu\nthreads=%u\nprivate_kb=%"
                 "u\nframes=%llu\n",
                 g_uEnd[0] - g_uStart[0], g_uEnd[1] - g_uStart[1], g_uEnd[2] - g_uStart[2],
                 g_uEnd[3] - g_uStart[3], g_uThreads, uPrivate, g_uTo - g_uFrom);
    std::fclose(pFile);
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

void orvin_bench_frame() {
    ++g_uFrame;
    g_iNow += g_iStep;
    if (g_uFrame == g_uFrom) Snapshot(g_uStart);
    if (g_uFrame != g_uTo) return;
    Snapshot(g_uEnd);
    g_uThreads = CountThreads();
    Report();
}

int clock_gettime(clockid_t eClock, timespec* pOut) noexcept {
    const bool bPassing = eClock == CLOCK_PROCESS_CPUTIME_ID || eClock == CLOCK_THREAD_CPUTIME_ID;
    g_uClockReads.fetch_add(1, std::memory_order_relaxed);
    if (!g_bVirtual || bPassing) return int(syscall(SYS_clock_gettime, eClock, pOut));
    pOut->tv_sec = g_iNow / 1000000000, pOut->tv_nsec = g_iNow % 1000000000;
    return 0;
}

void* malloc(std::size_t uBytes) {
    Count(uBytes);
    return __libc_malloc(uBytes);
}
void* calloc(std::size_t uCount, std::size_t uBytes) {
    Count(uCount * uBytes);
    return __libc_calloc(uCount, uBytes);
}
void* realloc(void* pOld, std::size_t uBytes) {
    Count(uBytes);
    return __libc_realloc(pOld, uBytes);
}
void* memalign(std::size_t uAlign, std::size_t uBytes) {
    Count(uBytes);
    return __libc_memalign(uAlign, uBytes);
}
void* aligned_alloc(std::size_t uAlign, std::size_t uBytes) { return memalign(uAlign, uBytes); }
int posix_memalign(void** ppOut, std::size_t uAlign, std::size_t uBytes) {
    *ppOut = memalign(uAlign, uBytes);
    return *ppOut ? 0 : ENOMEM;
}
void free(void* pOld) {
    if (pOld) g_uFrees.fetch_add(1, std::memory_order_relaxed);
    __libc_free(pOld);
}

} // extern "C"
#pragma GCC visibility pop
