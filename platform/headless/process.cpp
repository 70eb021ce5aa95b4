#include "platform/process.h"
#include "platform/headless/state.h"
#include "platform/last_error.h"
#include <algorithm>
#include <cctype>
#include <cstring>

namespace platform {
namespace {

using headless::Get;

const char g_cGlModule = 0;

bool SameFolded(const std::string& strA, const char* szB) noexcept {
    const auto fold = [](char c) { return std::toupper(static_cast<unsigned char>(c)); };
    return strA.size() == std::strlen(szB) &&
           std::equal(strA.begin(), strA.end(), szB, [&](char a, char b) { return fold(a) == fold(b); });
}

i32 CountSwap(void* hSurface, u32& uCounter) noexcept {
    auto& st = Get();
    ++uCounter;
    st.m_hLastSwap = hSurface;
    if (st.m_fnSwap) st.m_fnSwap(hSurface);
    return st.m_iSwapResult;
}

i32 RealSwap(void* hSurface) noexcept { return CountSwap(hSurface, Get().m_uRealSwaps); }

i32 RealDelete(void* hContext) noexcept {
    auto& st = Get();
    ++st.m_uDeletes;
    st.m_hLastDelete = hContext;
    return st.m_iDeleteResult;
}

void AnyFunction() noexcept {}

} // namespace

u32 CurrentProcessId() noexcept { return Get().m_uPid; }
u32 CurrentThreadId() noexcept { return Get().m_uTid; }

u32 ProcessStamp(u32 uProcessId) noexcept {
    const auto it = Get().m_mapStamps.find(uProcessId);
    return it == Get().m_mapStamps.end() ? 0 : it->second;
}

bool IsProcessGone(u32 uProcessId, u32 uStamp) noexcept {
    const auto it = Get().m_mapStamps.find(uProcessId);
    return it != Get().m_mapStamps.end() && (it->second == 0 || (uStamp != 0 && it->second != uStamp));
}

void ProcessPath(char* szOut, u32 uCapacity) noexcept {
    if (uCapacity == 0) return;
    const std::string& strPath = Get().m_strPath;
    const std::size_t uLength = std::min<std::size_t>(strPath.size(), uCapacity - 1);
    std::memcpy(szOut, strPath.data(), uLength);
    szOut[uLength] = 0;
}

void DuplicateCurrentThreadHandle() noexcept {}

bool IsAnyModuleLoaded(const char* const* aszNames, u32 uCount) noexcept {
    ++Get().m_uModuleWalks;
    const auto& vecModules = Get().m_vecModules;
    return std::any_of(vecModules.begin(), vecModules.end(), [&](const std::string& str) {
        return std::any_of(aszNames, aszNames + uCount, [&](const char* sz) { return SameFolded(str, sz); });
    });
}

void* FindModule(const char*) noexcept {
    return Get().m_bGlModule ? const_cast<char*>(&g_cGlModule) : nullptr;
}

void* LoadModule(const char*) noexcept {
    auto& st = Get();
    ++st.m_uLoadCalls;
    return st.m_bLoadSucceeds ? const_cast<char*>(&g_cGlModule) : nullptr;
}

void* FindProc(void* hModule, const char* szName) noexcept {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    st.m_vecAskedProcs.emplace_back(szName);
    const auto& vecMissing = st.m_vecMissingProcs;
    const bool bMissing = std::any_of(vecMissing.begin(), vecMissing.end(),
                                      [&](const std::string& str) { return str == "*" || str == szName; });
    if (!hModule || bMissing) return nullptr;
    if (!std::strcmp(szName, "wglSwapBuffers")) return reinterpret_cast<void*>(&RealSwap);
    if (!std::strcmp(szName, "wglDeleteContext")) return reinterpret_cast<void*>(&RealDelete);
    return reinterpret_cast<void*>(&AnyFunction);
}

i32 ImportedSwapBuffers(void* hSurface) noexcept { return CountSwap(hSurface, Get().m_uImportedSwaps); }
i32 ImportedDeleteContext(void* hContext) noexcept { return RealDelete(hContext); }

u32 RegisterMessage(const char* szName) noexcept {
    u32 uHash = 2166136261u;
    for (; *szName; ++szName) uHash = (uHash ^ static_cast<u8>(*szName)) * 16777619u;
    return 0xC000u | (uHash & 0x3FFFu);
}

std::intptr_t CallNextMessageHook(void* hHook, i32 iCode, std::uintptr_t wParam,
                                  std::intptr_t lParam) noexcept {
    auto& st = Get();
    st.m_vecNextHooks.push_back({hHook, iCode, wParam, lParam});
    if (st.m_uNextHookError) SetLastErrorOfThread(st.m_uNextHookError);
    return st.m_iNextHookResult;
}

bool UnhookMessageHook(void* hHook) noexcept {
    Get().m_vecUnhooked.push_back(hHook);
    return Get().m_bUnhookResult;
}

void BroadcastMessage(u32 uMessage, std::uintptr_t wParam) noexcept {
    Get().m_vecBroadcasts.emplace_back(uMessage, wParam);
}

bool HookMessageParam(std::intptr_t lParam, u32 uNumber, void** ppValue) noexcept {
    const auto* pMessage = reinterpret_cast<const headless::HookMessage*>(lParam);
    if (!pMessage || pMessage->m_uMessage != uNumber) return false;
    *ppValue = reinterpret_cast<void*>(pMessage->m_lParam);
    return true;
}

namespace headless {

void SetProcessId(u32 uPid) { Get().m_uPid = uPid; }
void SetThreadId(u32 uTid) { Get().m_uTid = uTid; }
void SetProcessStamp(u32 uPid, u32 uStamp) { Get().m_mapStamps[uPid] = uStamp; }
void SetProcessPath(const char* szPath) { Get().m_strPath = szPath; }
void AddLoadedModule(const char* szName) { Get().m_vecModules.emplace_back(szName); }
u32 ModuleWalks() { return Get().m_uModuleWalks; }
void ClearLoadedModules() { Get().m_vecModules.clear(); }
void SetGlModulePresent(bool bPresent) { Get().m_bGlModule = bPresent; }
void SetLoadModuleSucceeds(bool bSucceeds) { Get().m_bLoadSucceeds = bSucceeds; }
u32 LoadModuleCalls() { return Get().m_uLoadCalls; }

void SetMissingProc(const char* szName) {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    if (szName)
        st.m_vecMissingProcs.emplace_back(szName);
    else
        st.m_vecMissingProcs.clear();
}

std::vector<std::string> AskedProcs() {
    auto& st = Get();
    std::lock_guard lock(st.m_lock);
    return st.m_vecAskedProcs;
}

u32 RealSwapCalls() { return Get().m_uRealSwaps; }
u32 ImportedSwapCalls() { return Get().m_uImportedSwaps; }
u32 DeleteContextCalls() { return Get().m_uDeletes; }
void* LastSwapSurface() { return Get().m_hLastSwap; }
void* LastDeletedContext() { return Get().m_hLastDelete; }
void SetSwapResult(i32 iResult) { Get().m_iSwapResult = iResult; }
void SetDeleteContextResult(i32 iResult) { Get().m_iDeleteResult = iResult; }
void SetSwapCallback(void (*fnCallback)(void*)) { Get().m_fnSwap = fnCallback; }

void SetNextHookResult(std::intptr_t iResult) { Get().m_iNextHookResult = iResult; }
void SetNextHookError(u32 uError) { Get().m_uNextHookError = uError; }
std::vector<NextHookRecord> NextHookCalls() { return Get().m_vecNextHooks; }
void SetUnhookResult(bool bResult) { Get().m_bUnhookResult = bResult; }
std::vector<void*> UnhookedHooks() { return Get().m_vecUnhooked; }
std::vector<std::pair<u32, std::uintptr_t>> BroadcastMessages() { return Get().m_vecBroadcasts; }

} // namespace headless
} // namespace platform
