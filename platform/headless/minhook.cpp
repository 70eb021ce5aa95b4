// The hook engine's rules without any patching: what was created, what is enabled, and every call recorded.
#include "platform/headless/state.h"

using platform::headless::Get;
using platform::headless::HookCall;

namespace {

/// Records the call; the status the test asked for, or MH_OK to go on.
MH_STATUS Record(HookCall eCall, void* pTarget, void* pDetour) {
    auto& st = Get();
    st.m_vecHookCalls.push_back({eCall, pTarget, pDetour});
    return st.m_aeHookStatus[static_cast<u8>(eCall)];
}

MH_STATUS Switch(HookCall eCall, void* pTarget, bool bOn) {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    if (const MH_STATUS eForced = Record(eCall, pTarget, nullptr); eForced != MH_OK) return eForced;
    if (!st.m_bEngineReady) return MH_ERROR_NOT_INITIALIZED;
    const auto it = st.m_mapHooks.find(pTarget);
    if (it == st.m_mapHooks.end()) return MH_ERROR_NOT_CREATED;
    if (it->second == bOn) return bOn ? MH_ERROR_ENABLED : MH_ERROR_DISABLED;
    it->second = bOn;
    return MH_OK;
}

} // namespace

extern "C" {

MH_STATUS MH_Initialize() {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    if (const MH_STATUS eForced = Record(HookCall::Initialize, nullptr, nullptr); eForced != MH_OK)
        return eForced;
    if (st.m_bEngineReady) return MH_ERROR_ALREADY_INITIALIZED;
    st.m_bEngineReady = true;
    return MH_OK;
}

MH_STATUS MH_Uninitialize() {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    if (const MH_STATUS eForced = Record(HookCall::Uninitialize, nullptr, nullptr); eForced != MH_OK)
        return eForced;
    if (!st.m_bEngineReady) return MH_ERROR_NOT_INITIALIZED;
    st.m_bEngineReady = false;
    st.m_mapHooks.clear();
    return MH_OK;
}

MH_STATUS MH_CreateHook(void* pTarget, void* pDetour, void** ppOriginal) {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    if (const MH_STATUS eForced = Record(HookCall::Create, pTarget, pDetour); eForced != MH_OK)
        return eForced;
    if (!st.m_bEngineReady) return MH_ERROR_NOT_INITIALIZED;
    if (!st.m_mapHooks.emplace(pTarget, false).second) return MH_ERROR_ALREADY_CREATED;
    if (ppOriginal && st.m_bTrampoline) *ppOriginal = pTarget;
    return MH_OK;
}

MH_STATUS MH_EnableHook(void* pTarget) { return Switch(HookCall::Enable, pTarget, true); }
MH_STATUS MH_DisableHook(void* pTarget) { return Switch(HookCall::Disable, pTarget, false); }

MH_STATUS MH_RemoveHook(void* pTarget) {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    if (const MH_STATUS eForced = Record(HookCall::Remove, pTarget, nullptr); eForced != MH_OK)
        return eForced;
    if (!st.m_bEngineReady) return MH_ERROR_NOT_INITIALIZED;
    return st.m_mapHooks.erase(pTarget) ? MH_OK : MH_ERROR_NOT_CREATED;
}

} // extern "C"

namespace platform::headless {

void SetHookStatus(HookCall eCall, MH_STATUS eStatus) {
    Get().m_aeHookStatus[static_cast<u8>(eCall)] = eStatus;
}
std::vector<HookRecord> HookCalls() { return Get().m_vecHookCalls; }
void SetTrampolineGiven(bool bGiven) { Get().m_bTrampoline = bGiven; }

u32 HookCallCount(HookCall eCall) {
    u32 uCount = 0;
    for (const HookRecord& st : Get().m_vecHookCalls) uCount += st.m_eCall == eCall ? 1 : 0;
    return uCount;
}

} // namespace platform::headless
