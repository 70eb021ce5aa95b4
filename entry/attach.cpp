#include "entry/attach.h"
#include "entry/exclusion_table.h"
#include "entry/exports.h"
#include "entry/hooking.h"
#include "frame/api_claim.h"
#include "frame/real_swap.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"
#include <cstring>

void* g_hModule = nullptr;
char g_szProcessPath[g_uProcessPathBytes] = {};
bool g_bProcessExcluded = false;

namespace {

constexpr u32 c_uSpinCount = 1024;
constexpr u32 c_uDetachCase = 1;

void FoldCase(char* sz) noexcept {
    for (; *sz; ++sz)
        if (*sz >= 'A' && *sz <= 'Z') *sz = static_cast<char>(*sz - 'A' + 'a');
}

// Both sides folded, since either may come in any case.
bool PathContains(const char* szRow) noexcept {
    char szPath[g_uProcessPathBytes], szFolded[g_uProcessPathBytes];
    std::memcpy(szPath, g_szProcessPath, sizeof szPath);
    std::strncpy(szFolded, szRow, sizeof szFolded - 1);
    szFolded[sizeof szFolded - 1] = 0;
    FoldCase(szPath);
    FoldCase(szFolded);
    return std::strstr(szPath, szFolded) != nullptr;
}

// KEEP(hosts): the search runs and its result is dropped: every process is admitted.
void SearchExclusionTable() noexcept {
    for (u32 u = 0; u < g_uExclusionRowCount; ++u) {
        [[maybe_unused]] const bool bFound = PathContains(g_aszExclusionTable[u]);
    }
}

} // namespace

void OnEntry() noexcept {
    const u32 uFromGWexe = platform::RegisterMessage("ZARN_ORVIN_OSD_WM_MSG_FROM_GWEXE_GWDLL");
    const u32 uUnhookThread = platform::RegisterMessage("Unhook Thread ID data From GWDll_GL");
    platform::SharedSegment()->uMsgFromGWexe = uFromGWexe;
    platform::SharedSegment()->uMsgUnhookThread = uUnhookThread;
}

void OnProcessAttach(void* hModule) noexcept {
    // KEEP(hosts): the handle is made and dropped.
    platform::DuplicateCurrentThreadHandle();
    g_hModule = hModule;
    g_csHook.Initialize(c_uSpinCount);
    platform::ProcessPath(g_szProcessPath, g_uProcessPathBytes);
    FoldCase(g_szProcessPath);
    SearchExclusionTable();
    if (g_bProcessExcluded) return;
    g_fnClearOnFirstAttach();
    RegisterProcess(platform::CurrentProcessId(), platform::CurrentThreadId());
    Hook_graph();
}

void OnProcessDetach() noexcept {
    if (!g_bProcessExcluded) deInit_GWDll_GL(c_uDetachCase);
    g_csHook.Delete();
}

void OnProcessEnd() noexcept {
    if (g_bProcessExcluded) return;
    g_bHooked = false; // what still swaps passes straight through, or it would claim and register once more
    UnregisterProcess(platform::CurrentProcessId(), platform::CurrentThreadId());
    g_fnDropApiClaim();
}
