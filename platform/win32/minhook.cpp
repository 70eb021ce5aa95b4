#include "platform/minhook.h"
#include "platform/win32/detour_code.h"
#include "platform/win32/detour_memory.h"
#include "platform/win32/detour_patch.h"
#include "platform/win32/detour_threads.h"
#include "platform/win32/shutdown.h"
#include "platform/win32/windows_api.h"
#include <atomic>
#include <cstring>

namespace {

using namespace platform;

constexpr u32 kHooks = 64;

struct stHook {
    u8* m_pTarget = nullptr; ///< null: never used. Stays after removal, with slot and plan.
    void* m_pDetour = nullptr;
    stNearSlot m_slot;
    stTrampolinePlan m_plan;
    u8 m_abJump[g_uJumpBytes] = {};
    bool m_bCreated = false;
    bool m_bEnabled = false;
    bool m_bEverEnabled = false;
    /// Removed while another engine's bytes stood over ours: our jump may be reached through its trampoline.
    bool m_bBuried = false;
};

stHook g_aHooks[kHooks];
bool g_bInitialized = false;
std::atomic<bool> g_bBusy{false};

/// Keeps engine calls apart. At process end the holder may be dead, so nothing waits then.
class EngineLock {
  public:
    EngineLock() {
        while (g_bBusy.exchange(true) && !IsProcessEnding()) Sleep(0);
    }
    ~EngineLock() { g_bBusy.store(false); }
    EngineLock(const EngineLock&) = delete;
    EngineLock& operator=(const EngineLock&) = delete;
};

stHook* FindHook(const void* pTarget) {
    for (stHook& hook : g_aHooks)
        if (hook.m_bCreated && hook.m_pTarget == pTarget) return &hook;
    return nullptr;
}

bool HasBytes(const stHook& hook, const u8* pBytes, u32 uCount) {
    return IsExecutable(hook.m_pTarget) && std::memcmp(hook.m_pTarget, pBytes, uCount) == 0;
}

/// A removed detour of the same function whose trampoline still tells the truth.
stHook* FindRetired(const void* pTarget) {
    for (stHook& hook : g_aHooks) {
        if (hook.m_bCreated || hook.m_pTarget != pTarget || hook.m_plan.m_uDisplaced == 0) continue;
        if (HasBytes(hook, hook.m_plan.m_abOriginal, hook.m_plan.m_uDisplaced)) return &hook;
        if (hook.m_bBuried && HasBytes(hook, hook.m_abJump, g_uJumpBytes)) return &hook;
    }
    return nullptr;
}

/// A fresh entry, else one of a removed detour: what its relay and trampoline say stays true without it.
stHook* FindUnused() {
    for (stHook& hook : g_aHooks)
        if (!hook.m_pTarget) return &hook;
    for (stHook& hook : g_aHooks) {
        if (hook.m_bCreated) continue;
        hook = {};
        return &hook;
    }
    return nullptr;
}

void SetDestination(const stHook& hook, void* pDestination) {
    InterlockedExchangePointer(hook.m_slot.m_ppDestination, pDestination);
}

MH_STATUS WritePlan(stHook& hook) {
    MH_STATUS status = MH_ERROR_UNSUPPORTED_FUNCTION;
    if (PlanTrampoline(hook.m_pTarget, hook.m_slot.m_pTrampoline, hook.m_plan))
        status = WriteTrampoline(hook.m_slot, hook.m_plan.m_abCode, hook.m_plan.m_uCodeBytes)
                     ? MH_OK
                     : MH_ERROR_MEMORY_PROTECT;
    if (status != MH_OK) hook.m_plan = {};
    return status;
}

MH_STATUS BuildHook(stHook& hook, u8* pTarget) {
    stTrampolinePlan trial;
    // Tried in place first: a function that is refused anyway should not cost a slot.
    if (!PlanTrampoline(pTarget, pTarget, trial)) return MH_ERROR_UNSUPPORTED_FUNCTION;
    if (!TakeNearSlot(pTarget, hook.m_slot)) return MH_ERROR_MEMORY_ALLOC;
    hook.m_abJump[0] = 0xE9;
    const i32 iDistance = static_cast<i32>(hook.m_slot.m_pRelay - (pTarget + g_uJumpBytes));
    std::memcpy(hook.m_abJump + 1, &iDistance, sizeof(iDistance));
    hook.m_pTarget = pTarget;
    const MH_STATUS status = WritePlan(hook);
    if (status != MH_OK) hook.m_pTarget = nullptr;
    return status;
}

/// Writes the jump. Threads have to stand still only where it takes more than one store, or where it covers
/// the beginning of a second instruction that one of them may be about to run.
PatchResult LayJump(stHook& hook) {
    if (!IsExecutable(hook.m_pTarget)) return PatchResult::Protected;
    if (IsOneStore(hook.m_pTarget) && hook.m_plan.m_uInstructions == 1)
        return ExchangeBytes(hook.m_pTarget, hook.m_plan.m_abOriginal, hook.m_abJump);
    ThreadFreeze freeze;
    const PatchResult result = ExchangeBytes(hook.m_pTarget, hook.m_plan.m_abOriginal, hook.m_abJump);
    if (result == PatchResult::Done) freeze.MoveOut(hook.m_pTarget, hook.m_plan, hook.m_slot.m_pTrampoline);
    return result;
}

/// The jump is one instruction, so no thread can stand inside it; only a torn store needs them still.
PatchResult LiftJump(stHook& hook) {
    if (!IsExecutable(hook.m_pTarget)) return PatchResult::OtherBytes; // its module is gone
    if (IsOneStore(hook.m_pTarget))
        return ExchangeBytes(hook.m_pTarget, hook.m_abJump, hook.m_plan.m_abOriginal);
    ThreadFreeze freeze;
    return ExchangeBytes(hook.m_pTarget, hook.m_abJump, hook.m_plan.m_abOriginal);
}

MH_STATUS LayOverOtherBytes(stHook& hook) {
    if (hook.m_bBuried)
        return MH_OK; // still reached through the other engine's bytes, or standing there itself
    // Another engine came between creation and enabling: nobody has run our trampoline yet, so it can be
    // rewritten.
    if (hook.m_bEverEnabled || WritePlan(hook) != MH_OK) return MH_ERROR_UNSUPPORTED_FUNCTION;
    return LayJump(hook) == PatchResult::Done ? MH_OK : MH_ERROR_UNSUPPORTED_FUNCTION;
}

MH_STATUS Enable(stHook& hook) {
    if (hook.m_bEnabled) return MH_ERROR_ENABLED;
    SetDestination(hook, hook.m_pDetour);
    const PatchResult result = LayJump(hook);
    MH_STATUS status = result == PatchResult::Done ? MH_OK : MH_ERROR_MEMORY_PROTECT;
    if (result == PatchResult::OtherBytes) status = LayOverOtherBytes(hook);
    if (status != MH_OK) {
        SetDestination(hook, hook.m_slot.m_pTrampoline);
        return status;
    }
    hook.m_bEnabled = hook.m_bEverEnabled = true;
    hook.m_bBuried = false;
    return MH_OK;
}

MH_STATUS Disable(stHook& hook) {
    if (!hook.m_bEnabled) return MH_ERROR_DISABLED;
    const PatchResult result = LiftJump(hook);
    // Whoever still comes through the relay gets the original function: other bytes than ours are left alone,
    // and they may well lead here.
    SetDestination(hook, hook.m_slot.m_pTrampoline);
    hook.m_bBuried = result != PatchResult::Done;
    hook.m_bEnabled = false;
    return MH_OK;
}

void Remove(stHook& hook) {
    Disable(hook);
    hook.m_bCreated = false;
}

template <class Operation> MH_STATUS WithHook(void* pTarget, Operation fnOperation) {
    EngineLock lock;
    if (!g_bInitialized) return MH_ERROR_NOT_INITIALIZED;
    stHook* pHook = FindHook(pTarget);
    return pHook ? fnOperation(*pHook) : MH_ERROR_NOT_CREATED;
}

} // namespace

extern "C" {

MH_STATUS MH_Initialize() {
    EngineLock lock;
    if (g_bInitialized) return MH_ERROR_ALREADY_INITIALIZED;
    g_bInitialized = true;
    return MH_OK;
}

MH_STATUS MH_Uninitialize() {
    EngineLock lock;
    if (!g_bInitialized) return MH_ERROR_NOT_INITIALIZED;
    for (stHook& hook : g_aHooks)
        if (hook.m_bCreated) Remove(hook);
    g_bInitialized = false;
    return MH_OK;
}

MH_STATUS MH_CreateHook(void* pTarget, void* pDetour, void** ppOriginal) {
    EngineLock lock;
    if (!g_bInitialized) return MH_ERROR_NOT_INITIALIZED;
    if (!IsExecutable(pTarget) || !IsExecutable(pDetour)) return MH_ERROR_NOT_EXECUTABLE;
    if (FindHook(pTarget)) return MH_ERROR_ALREADY_CREATED;
    stHook* pHook = FindRetired(pTarget);
    if (!pHook) {
        pHook = FindUnused();
        if (!pHook) return MH_ERROR_MEMORY_ALLOC;
        const MH_STATUS status = BuildHook(*pHook, static_cast<u8*>(pTarget));
        if (status != MH_OK) return status;
    }
    pHook->m_pDetour = pDetour;
    pHook->m_bCreated = true;
    if (ppOriginal) *ppOriginal = pHook->m_slot.m_pTrampoline;
    return MH_OK;
}

MH_STATUS MH_EnableHook(void* pTarget) {
    return WithHook(pTarget, [](stHook& hook) { return Enable(hook); });
}

MH_STATUS MH_DisableHook(void* pTarget) {
    return WithHook(pTarget, [](stHook& hook) { return Disable(hook); });
}

MH_STATUS MH_RemoveHook(void* pTarget) {
    return WithHook(pTarget, [](stHook& hook) {
        Remove(hook);
        return MH_OK;
    });
}

} // extern "C"
