#include "platform/swap_gate.h"
#include "platform/win32/shutdown.h"
#include "platform/win32/windows_api.h"
#include <atomic>
#include <cstddef>
#include <cstring>

namespace platform {
namespace {

constexpr u32 kPageBytes = 4096; // code, then data
constexpr u32 kPatienceMs = 3000;
constexpr u32 kPauseMs = 1;

/// What the gate's code reads, in the page behind it. The code knows the offsets.
struct stGateData {
    volatile LONG m_iInside; ///< 0
    volatile LONG m_iOpen;   ///< 4
    u32 (*m_fnAhead)(void*); ///< 8; its answer: whether a reference of the library is to be given back
    void* m_fnReal;          ///< 16
    void* m_fnDrain;         ///< 24
    void* m_fnFreeLibrary;   ///< 32
    HMODULE m_hModule;       ///< 40
};
static_assert(sizeof(stGateData) == 48 &&
              g_uSwapGateWayOffset == kPageBytes + offsetof(stGateData, m_fnAhead));

// Copied to memory of its own. The last error (at 0x68 of the thread's block) is the program's: the real swap
// finds it as the program left it, and the program finds it as the real swap left it.
extern "C" const u8 OrvinGateBegin[], OrvinGateEnd[];
asm(".text\n"
    ".globl OrvinGateBegin\n"
    ".globl OrvinGateEnd\n"
    "OrvinGateBegin:\n"
    "    subq $0x38, %rsp\n"
    "    movq %rcx, 0x30(%rsp)\n"
    "    lock incl OrvinGateBegin+4096(%rip)\n"
    "    cmpl $0, OrvinGateBegin+4096+4(%rip)\n"
    "    je 1f\n"
    "    call *OrvinGateBegin+4096+8(%rip)\n"
    "    lock decl OrvinGateBegin+4096(%rip)\n"
    "    testl %eax, %eax\n"
    "    je 2f\n"
    "    movl %gs:0x68, %eax\n"
    "    movl %eax, 0x28(%rsp)\n"
    "    movq OrvinGateBegin+4096+40(%rip), %rcx\n"
    "    call *OrvinGateBegin+4096+32(%rip)\n"
    "    movl 0x28(%rsp), %eax\n"
    "    movl %eax, %gs:0x68\n"
    "    jmp 2f\n"
    "1:  lock decl OrvinGateBegin+4096(%rip)\n"
    "2:  movq 0x30(%rsp), %rcx\n"
    "    call *OrvinGateBegin+4096+16(%rip)\n"
    "    movl %eax, 0x20(%rsp)\n"
    "    movl %gs:0x68, %eax\n"
    "    movl %eax, 0x28(%rsp)\n"
    "    call *OrvinGateBegin+4096+24(%rip)\n"
    "    movl 0x28(%rsp), %eax\n"
    "    movl %eax, %gs:0x68\n"
    "    movl 0x20(%rsp), %eax\n"
    "    addq $0x38, %rsp\n"
    "    ret\n"
    "OrvinGateEnd:\n");

/// How an exception finds its way through the gate to a handler of the program: 0x38 bytes of stack, taken by
/// the first instruction of 4 bytes.
constexpr u8 kUnwindInfo[] = {0x01, 0x04, 0x01, 0x00, 0x04, 0x62, 0x00, 0x00};

stGateData* g_pGate = nullptr;
u8* g_pGateCode = nullptr;
std::atomic<DWORD> g_uHolder{0}; ///< thread whose swap holds a reference of the library
void (*g_fnAhead)(void*) noexcept = nullptr;

using LockLoader = LONG(NTAPI*)(ULONG uFlags, ULONG* puState, ULONG_PTR* puCookie);
using UnlockLoader = LONG(NTAPI*)(ULONG uFlags, ULONG_PTR uCookie);
constexpr ULONG kTryOnly = 2, kLocked = 1;

template <class Function> Function FromSystem(const char* szModule, const char* szName) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(szModule), szName)));
}

LockLoader g_fnLockLoader = nullptr;
UnlockLoader g_fnUnlockLoader = nullptr;

u32 GoAhead(void* hdc) {
    g_fnAhead(hdc);
    DWORD uSelf = GetCurrentThreadId();
    return g_uHolder.compare_exchange_strong(uSelf, 0) ? 1 : 0;
}

HMODULE ReferenceLibrary() {
    HMODULE hModule = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const char*>(&GoAhead),
                       &hModule);
    return hModule;
}

HMODULE ThisLibrary() {
    HMODULE hModule = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const char*>(&GoAhead), &hModule);
    return hModule;
}

/// The code with its unwind data. An entry of the table of functions has to lie in memory that stays too.
void WriteCode(u8* pCode) {
    const u32 uBytes = static_cast<u32>(OrvinGateEnd - OrvinGateBegin), uUnwind = (uBytes + 3) / 4 * 4;
    std::memcpy(pCode, OrvinGateBegin, uBytes);
    std::memcpy(pCode + uUnwind, kUnwindInfo, sizeof kUnwindInfo);
    auto* const pEntry = reinterpret_cast<RUNTIME_FUNCTION*>(pCode + uUnwind + sizeof kUnwindInfo);
    pEntry->BeginAddress = 0;
    pEntry->EndAddress = uBytes;
    pEntry->UnwindData = uUnwind;
    DWORD uOld = 0;
    VirtualProtect(pCode, kPageBytes, PAGE_EXECUTE_READ, &uOld);
    FlushInstructionCache(GetCurrentProcess(), pCode, kPageBytes);
    RtlAddFunctionTable(pEntry, 1, reinterpret_cast<DWORD64>(pCode));
}

/// Never given back: a thread may come through long after the library is gone.
bool MakeGate() {
    if (g_pGate) return true;
    void* pMemory = VirtualAlloc(nullptr, 2 * kPageBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (!pMemory) return false;
    g_pGateCode = static_cast<u8*>(pMemory);
    WriteCode(g_pGateCode);
    g_fnLockLoader = FromSystem<LockLoader>("ntdll.dll", "LdrLockLoaderLock");
    g_fnUnlockLoader = FromSystem<UnlockLoader>("ntdll.dll", "LdrUnlockLoaderLock");
    g_pGate = reinterpret_cast<stGateData*>(g_pGateCode + kPageBytes);
    g_pGate->m_fnFreeLibrary = FromSystem<void*>("kernel32.dll", "FreeLibrary");
    g_pGate->m_hModule = ThisLibrary();
    return true;
}

} // namespace

void* SwapGate(const stSwapGateWay& stWay) noexcept {
    if (!MakeGate()) return reinterpret_cast<void*>(stWay.m_fnSwap);
    g_fnAhead = stWay.m_fnAhead;
    g_pGate->m_fnAhead = &GoAhead;
    g_pGate->m_fnDrain = stWay.m_fnDrain;
    return g_pGateCode;
}

void OpenSwapGate(void* fnReal) noexcept {
    if (!g_pGate) return;
    g_pGate->m_fnReal = fnReal;
    InterlockedExchange(&g_pGate->m_iOpen, 1);
}

void CloseSwapGate() noexcept {
    if (!g_pGate) return;
    InterlockedExchange(&g_pGate->m_iOpen, 0);
    for (u32 u = 0; g_pGate->m_iInside && u < kPatienceMs && !IsProcessEnding(); u += kPauseMs)
        Sleep(kPauseMs);
}

bool HoldLibraryForSwap() noexcept {
    if (!g_pGate || !g_pGate->m_iOpen || g_uHolder) return g_uHolder != 0 || !g_pGate;
    ULONG uState = 0;
    ULONG_PTR uCookie = 0;
    // Only tried: an unload that stands behind this lock may be waiting for this very thread.
    if (g_fnLockLoader && (g_fnLockLoader(kTryOnly, &uState, &uCookie) != 0 || uState != kLocked))
        return false;
    if (ReferenceLibrary()) g_uHolder = GetCurrentThreadId();
    if (g_fnUnlockLoader && g_fnLockLoader) g_fnUnlockLoader(0, uCookie);
    return g_uHolder != 0;
}

} // namespace platform
