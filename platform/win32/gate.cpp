#include "platform/win32/gate.h"
#include "platform/win32/shutdown.h"
#include "platform/win32/windows_api.h"
#include <cstddef>
#include <cstring>

namespace platform {
namespace {

constexpr u32 kPageBytes = 4096; // code, then data
constexpr u32 kPatienceMs = 3000;
constexpr u32 kPauseMs = 1;

} // namespace

/// What the gate's code reads, in the page behind it. The code knows the offsets.
struct stGateData {
    volatile LONG m_iInside; ///< 0
    volatile LONG m_iOpen;   ///< 4
    u32 (*m_fnAhead)(void*); ///< 8; its answer: g_uGateRelease, g_uGateStamp
    void* m_fnReal;          ///< 16
    void* m_fnBehind;        ///< 24
    void* m_fnFreeLibrary;   ///< 32
    HMODULE m_hModule;       ///< 40
    void* m_fnCounter;       ///< 48: QueryPerformanceCounter
    volatile i64 m_iStamp;   ///< 56
};

namespace {

static_assert(sizeof(stGateData) == 64 &&
              g_uSwapGateWayOffset == kPageBytes + offsetof(stGateData, m_fnAhead));

// Copied to memory of its own. The last error (at 0x68 of the thread's block) is the program's: the real
// function finds it as the program left it, and the program finds it as that one left it.
extern "C" const u8 OrvinGateBegin[], OrvinGateNothing[], OrvinGateEnd[];
asm(".text\n"
    ".globl OrvinGateBegin\n"
    ".globl OrvinGateNothing\n"
    ".globl OrvinGateEnd\n"
    "OrvinGateBegin:\n"
    "    subq $0x48, %rsp\n"
    "    movq %rcx, 0x30(%rsp)\n"
    "    lock incl OrvinGateBegin+4096(%rip)\n"
    "    cmpl $0, OrvinGateBegin+4096+4(%rip)\n"
    "    je 1f\n"
    "    call *OrvinGateBegin+4096+8(%rip)\n"
    "    lock decl OrvinGateBegin+4096(%rip)\n"
    "    movl %eax, 0x38(%rsp)\n"
    "    testl $1, %eax\n"
    "    je 2f\n"
    "    movl %gs:0x68, %eax\n"
    "    movl %eax, 0x28(%rsp)\n"
    "    movq OrvinGateBegin+4096+40(%rip), %rcx\n"
    "    call *OrvinGateBegin+4096+32(%rip)\n"
    "    movl 0x28(%rsp), %eax\n"
    "    movl %eax, %gs:0x68\n"
    "    jmp 2f\n"
    "1:  lock decl OrvinGateBegin+4096(%rip)\n"
    "    movl $0, 0x38(%rsp)\n"
    "2:  movq 0x30(%rsp), %rcx\n"
    "    call *OrvinGateBegin+4096+16(%rip)\n"
    "    movl %eax, 0x20(%rsp)\n"
    "    movl %gs:0x68, %eax\n"
    "    movl %eax, 0x28(%rsp)\n"
    "    testl $2, 0x38(%rsp)\n"
    "    je 3f\n"
    "    leaq OrvinGateBegin+4096+56(%rip), %rcx\n"
    "    call *OrvinGateBegin+4096+48(%rip)\n"
    "3:  call *OrvinGateBegin+4096+24(%rip)\n"
    "    movl 0x28(%rsp), %eax\n"
    "    movl %eax, %gs:0x68\n"
    "    movl 0x20(%rsp), %eax\n"
    "    addq $0x48, %rsp\n"
    "    ret\n"
    "OrvinGateNothing:\n"
    "    ret\n"
    "OrvinGateEnd:\n");

/// How an exception finds its way through the gate to a handler of the program: 0x48 bytes of stack, taken by
/// the first instruction of 4 bytes.
constexpr u8 kUnwindInfo[] = {0x01, 0x04, 0x01, 0x00, 0x04, 0x82, 0x00, 0x00};

HMODULE ThisLibrary() {
    HMODULE hModule = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const char*>(&ThisLibrary), &hModule);
    return hModule;
}

u32 Offset(const u8* pLabel) { return static_cast<u32>(pLabel - OrvinGateBegin); }

/// The code with its unwind data. An entry of the table of functions has to lie in memory that stays too.
void WriteCode(u8* pCode) {
    const u32 uUnwind = (Offset(OrvinGateEnd) + 3) / 4 * 4;
    std::memcpy(pCode, OrvinGateBegin, Offset(OrvinGateEnd));
    std::memcpy(pCode + uUnwind, kUnwindInfo, sizeof kUnwindInfo);
    auto* const pEntry = reinterpret_cast<RUNTIME_FUNCTION*>(pCode + uUnwind + sizeof kUnwindInfo);
    pEntry->BeginAddress = 0;
    pEntry->EndAddress = Offset(OrvinGateNothing);
    pEntry->UnwindData = uUnwind;
    DWORD uOld = 0;
    VirtualProtect(pCode, kPageBytes, PAGE_EXECUTE_READ, &uOld);
    FlushInstructionCache(GetCurrentProcess(), pCode, kPageBytes);
    RtlAddFunctionTable(pEntry, 1, reinterpret_cast<DWORD64>(pCode));
}

void* SystemFunction(const char* szName) {
    return reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), szName));
}

} // namespace

void* CGate::m_fnMake(u32 (*fnAhead)(void*), void* fnBehind) noexcept {
    if (!m_pData) {
        void* const pMemory = VirtualAlloc(nullptr, 2 * kPageBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
        if (!pMemory) return nullptr;
        m_pCode = static_cast<u8*>(pMemory);
        WriteCode(m_pCode);
        m_pData = reinterpret_cast<stGateData*>(m_pCode + kPageBytes);
        m_pData->m_fnFreeLibrary = SystemFunction("FreeLibrary");
        m_pData->m_fnCounter = SystemFunction("QueryPerformanceCounter");
        m_pData->m_hModule = ThisLibrary();
    }
    m_pData->m_fnAhead = fnAhead;
    m_pData->m_fnBehind = fnBehind ? fnBehind : m_pCode + Offset(OrvinGateNothing);
    return m_pCode;
}

void CGate::m_fnOpen(void* fnReal) noexcept {
    if (!m_pData) return;
    m_pData->m_fnReal = fnReal;
    InterlockedExchange(&m_pData->m_iOpen, 1);
}

void CGate::m_fnClose() noexcept {
    if (!m_pData) return;
    InterlockedExchange(&m_pData->m_iOpen, 0);
    for (u32 u = 0; m_pData->m_iInside && u < kPatienceMs && !IsProcessEnding(); u += kPauseMs)
        Sleep(kPauseMs);
}

bool CGate::m_fnIsOpen() const noexcept { return m_pData && m_pData->m_iOpen; }

void CGate::m_fnClearStamp() noexcept {
    if (m_pData) m_pData->m_iStamp = 0;
}

i64 CGate::m_fnStamp() const noexcept { return m_pData ? m_pData->m_iStamp : 0; }

} // namespace platform
