// The interposed dlsym(). The C library finds the caller of a look-up in RTLD_NEXT by the return address, so
// a look-up that is not ours must reach it by a jump, with nothing of ours on the stack.
#include "platform/linux/preload_real.h"
#include "platform/linux/preload_swap.h"
#include <cstring>
#include <dlfcn.h>

#if !defined(__x86_64__)
#error "the interposed dlsym is written for x86-64"
#endif

namespace {

using namespace platform::preload;

struct Answer {
    u64 m_bOurs; ///< not 0: m_pSymbol is the answer
    void* m_pSymbol;
};

/// The real function that this look-up finds, ours left aside.
void* FindBeyondUs(void* hModule, Name eName, const char* szName) {
    void* const pFound = RealSymbol(hModule, szName);
    return pFound == Interposer(eName) ? Real(eName) : pFound;
}

} // namespace

extern "C" {

__attribute__((visibility("hidden"))) Answer OrvinFilterDlsym(void* hModule, const char* szName) noexcept {
    if (hModule == RTLD_DEFAULT && szName && !std::strcmp(szName, g_szLinkName)) return {1, &Link()};
    // A look-up for the next one goes on from its caller, which is none of our business.
    const Name eName = hModule == RTLD_NEXT ? Name::Count : Find(szName);
    if (eName == Name::Count) return {0, nullptr};
    void* const pReal = FindBeyondUs(hModule, eName, szName);
    if (!pReal) return {1, nullptr};
    AttachOnce();
    Remember(eName, pReal);
    dlerror();
    return {1, Interposer(eName)};
}

__attribute__((visibility("hidden"))) void* OrvinRealDlsym() noexcept { return RealDlsym(); }

} // extern "C"

asm(".pushsection .text\n"
    ".globl dlsym\n.type dlsym,@function\n"
    "dlsym:\n"
    "\tpushq %rdi\n\tpushq %rsi\n\tsubq $8, %rsp\n"
    "\tcall OrvinFilterDlsym\n"
    "\ttestq %rax, %rax\n\tjnz 1f\n"
    "\tcall OrvinRealDlsym\n"
    "\taddq $8, %rsp\n\tpopq %rsi\n\tpopq %rdi\n"
    "\tjmp *%rax\n"
    "1:\tmovq %rdx, %rax\n"
    "\taddq $24, %rsp\n\tret\n"
    ".size dlsym,.-dlsym\n"
    ".popsection\n");
