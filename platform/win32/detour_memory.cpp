#include "platform/win32/detour_memory.h"
#include "platform/win32/detour_code.h"
#include "platform/win32/windows_api.h"
#include <cstring>

namespace platform {

namespace {

constexpr u64 kPageBytes = 4096;
constexpr u64 kBlockBytes = 2 * kPageBytes; // code, then the relays' destinations
constexpr u64 kGranularity = 0x10000;
constexpr u64 kReach = 0x7FF00000; // a little less than 2 GB, for the bytes around the ends
constexpr u32 kSlotBytes = 128;
constexpr u32 kTrampolineOffset = kSlotBytes - g_uTrampolineBytes;
constexpr u32 kSlotsPerBlock = kPageBytes / kSlotBytes;
constexpr u32 kBlocks = 64;

struct stBlock {
    u8* m_pBase = nullptr;
    u32 m_uUsed = 0;
};

stBlock g_aBlocks[kBlocks];
u32 g_uBlocks = 0;

u64 Distance(u64 uA, u64 uB) { return uA > uB ? uA - uB : uB - uA; }
u64 Address(const void* p) { return reinterpret_cast<u64>(p); }

/// The nearest free place in one direction; 0 if none within reach.
u64 FindFree(u64 uTarget, bool bDown) {
    u64 uAt = uTarget & ~(kGranularity - 1);
    MEMORY_BASIC_INFORMATION info{};
    while (uAt >= kGranularity && Distance(uAt, uTarget) < kReach) {
        if (!VirtualQuery(reinterpret_cast<void*>(uAt), &info, sizeof(info))) return 0;
        const u64 uBase = Address(info.BaseAddress), uEnd = uBase + info.RegionSize;
        if (info.State == MEM_FREE && uAt + kBlockBytes <= uEnd) return uAt;
        // Downwards skip the whole reservation; a free region is entered at its upper end.
        const u64 uFirst = info.State == MEM_FREE ? uBase : Address(info.AllocationBase);
        if (bDown && uFirst < kGranularity) return 0;
        uAt = bDown ? (uFirst - 1) & ~(kGranularity - 1) : (uEnd + kGranularity - 1) & ~(kGranularity - 1);
    }
    return 0;
}

u8* AllocateAt(u64 uAddress) {
    if (uAddress == 0) return nullptr;
    void* pBase = VirtualAlloc(reinterpret_cast<void*>(uAddress), kBlockBytes, MEM_RESERVE | MEM_COMMIT,
                               PAGE_READWRITE);
    DWORD uOld = 0;
    if (pBase && VirtualProtect(pBase, kPageBytes, PAGE_EXECUTE_READ, &uOld)) return static_cast<u8*>(pBase);
    if (pBase) VirtualFree(pBase, 0, MEM_RELEASE);
    return nullptr;
}

u8* AllocateNear(u64 uTarget) {
    const u64 uBelow = FindFree(uTarget, true), uAbove = FindFree(uTarget, false);
    const bool bBelowFirst = uAbove == 0 || (uBelow != 0 && uTarget - uBelow < uAbove - uTarget);
    u8* pBase = AllocateAt(bBelowFirst ? uBelow : uAbove);
    return pBase ? pBase : AllocateAt(bBelowFirst ? uAbove : uBelow);
}

stBlock* FindBlock(u64 uTarget) {
    for (u32 i = 0; i < g_uBlocks; ++i)
        if (g_aBlocks[i].m_uUsed < kSlotsPerBlock &&
            Distance(Address(g_aBlocks[i].m_pBase), uTarget) < kReach)
            return &g_aBlocks[i];
    if (g_uBlocks == kBlocks) return nullptr;
    u8* pBase = AllocateNear(uTarget);
    if (!pBase) return nullptr;
    g_aBlocks[g_uBlocks] = {pBase, 0};
    return &g_aBlocks[g_uBlocks++];
}

/// Writes into a page that other threads may be running, so it stays executable throughout.
bool WriteCode(u8* pAt, const u8* pCode, u32 uBytes) {
    DWORD uOld = 0;
    if (!VirtualProtect(pAt, uBytes, PAGE_EXECUTE_READWRITE, &uOld)) return false;
    std::memcpy(pAt, pCode, uBytes);
    VirtualProtect(pAt, uBytes, PAGE_EXECUTE_READ, &uOld);
    FlushInstructionCache(GetCurrentProcess(), pAt, uBytes);
    return true;
}

bool WriteRelay(const stNearSlot& slot) {
    u8 abRelay[6] = {0xFF, 0x25}; // jmp [rip + distance]
    const i32 iDistance = static_cast<i32>(Address(const_cast<void**>(slot.m_ppDestination)) -
                                           Address(slot.m_pRelay + sizeof(abRelay)));
    std::memcpy(abRelay + 2, &iDistance, sizeof(iDistance));
    return WriteCode(slot.m_pRelay, abRelay, sizeof(abRelay));
}

} // namespace

bool TakeNearSlot(const u8* pTarget, stNearSlot& slot) noexcept {
    stBlock* pBlock = FindBlock(Address(pTarget));
    if (!pBlock) return false;
    slot.m_pRelay = pBlock->m_pBase + pBlock->m_uUsed * kSlotBytes;
    slot.m_pTrampoline = slot.m_pRelay + kTrampolineOffset;
    slot.m_ppDestination = reinterpret_cast<void* volatile*>(pBlock->m_pBase + kPageBytes) + pBlock->m_uUsed;
    *slot.m_ppDestination = slot.m_pTrampoline;
    if (!WriteRelay(slot)) return false;
    ++pBlock->m_uUsed;
    return true;
}

bool WriteTrampoline(const stNearSlot& slot, const u8* pCode, u32 uBytes) noexcept {
    return WriteCode(slot.m_pTrampoline, pCode, uBytes);
}

} // namespace platform
