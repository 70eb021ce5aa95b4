#include "capture/control_block.h"

#include "base/slots.h"
#include "base/timer.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "platform/process.h"
#include "platform/watched_block.h"
#include "shared/frame_sources.h"
#include "shared/process_records.h"

u32 g_uCtrlBlockSize = 0;

namespace {

constexpr u32 c_uBlockBytes = 256;
constexpr u32 c_uFirstPanel = 4; ///< the style panel of index 0

/// Where reading the block is a call of the system it is read so often, in seconds, and not in each frame.
constexpr f32 c_fReadSeconds = 0.05f;

void* g_hBlock = nullptr;
stControlBlock g_stSeen;
bool g_bSeen = false;
CTimer g_timerSeen;
// KEEP(companions): not taken from the block that is found, so a request that stands there builds each new
// program's overlay once more.
u32 g_uLastGeneration = 0;

/// False while there is nothing to go by.
bool LookAtBlock() noexcept {
    if (!g_hBlock) return false;
    const bool bFresh = g_bSeen && platform::IsWatchedReadACall() && g_timerSeen.Elapsed() < c_fReadSeconds;
    if (bFresh) return true;
    g_bSeen = platform::ReadWatchedBlock(g_hBlock, &g_stSeen, sizeof g_stSeen);
    g_timerSeen.Restart();
    return g_bSeen;
}

void Rebuild(u32 uGeneration) noexcept {
    if (uGeneration == g_uLastGeneration) return;
    g_uLastGeneration = uGeneration;
    const u32 uProcessId = platform::CurrentProcessId(), uThreadId = platform::CurrentThreadId();
    stSharedCommand stCommand{};
    // KEEP(companions): without a record of its own a program remembers the request and does nothing.
    if (!ReadCommandRecord(uProcessId, uThreadId, g_uRecordCommand, nullptr, &stCommand)) return;
    stCommand.bRelease = 1;
    WriteCommandRecord(uProcessId, uThreadId, 1, stCommand, g_uRecordChanged | g_uRecordCommand);
}

void Recolour(const stControlBlock& st) noexcept {
    if (st.uIndex >= g_uControlColors) return;
    const u8* const pColor = st.aau8Color[st.uIndex];
    for (COSDManager* const pManager : g_apOSDManager) {
        CPanel_Base* const* const ppPanel = pManager ? pManager->m_stArrays.m_ppStylePanel : nullptr;
        CPanel_Base* const pPanel = ppPanel ? ppPanel[c_uFirstPanel + st.uIndex] : nullptr;
        if (pPanel) pPanel->m_fnSetColorB(pColor[0], pColor[1], pColor[2], pColor[3]);
    }
}

} // namespace

void g_fnOpenControlBlock() noexcept {
    g_uCtrlBlockSize = c_uBlockBytes;
    if (!g_hBlock && !g_bLocalPreview)
        g_hBlock = platform::OpenWatchedBlock(g_wzControlBlock, g_uCtrlBlockSize);
}

void g_fnPollControlBlock() noexcept {
    if (!LookAtBlock()) return;
    if (g_stSeen.uOp == CONTROL_REBUILD) Rebuild(g_stSeen.uGeneration);
    if (g_stSeen.uOp == CONTROL_RECOLOUR) Recolour(g_stSeen);
}

void g_fnCloseControlBlock() noexcept {
    platform::CloseWatchedBlock(g_hBlock);
    g_hBlock = nullptr;
    g_bSeen = false;
}

void g_fnResetControlBlock() noexcept {
    g_fnCloseControlBlock();
    g_uLastGeneration = 0;
    g_uCtrlBlockSize = 0;
}
