#include "frame/resources.h"

#include "base/host_care.h"
#include "base/log.h"
#include "base/slots.h"
#include "batch/draw_basic.h"
#include "batch/draw_text.h"
#include "batch/flavour_gl.h"
#include "capture/control_block.h"
#include "capture/shutter.h"
#include "config/custom/custom_layout.h"
#include "config/load.h"
#include "config/profile/profile_document.h"
#include "config/settings/intervals.h"
#include "controls/control_ids.h"
#include "controls/osd_manager.h"
#include "draw/batcher_slots.h"
#include "draw/creation_table.h"
#include "frame/layout.h"
#include "frame/release.h"
#include "frame/update/statistics.h"
#include "frame/update/status_items.h"
#include "frame/update/timers.h"
#include "frame/update/update_flags.h"
#include "frame/update/update_records.h"
#include "merged/flavour_merged.h"
#include "platform/clock.h"
#include "platform/threads.h"
#include "shared/api_code.h"
#include "shared/frame_sources.h"
#include "shared/process_records.h"

#include <cstring>
#include <exception>
#include <memory>
#include <new>

i64 g_iStartTime = 0;

/// Background workers; nothing starts any in this version.
static platform::ThreadHandle g_ahWorkers[2] = {};
static bool g_bWorkersRun = false;

bool g_fnInitGL_Resource() noexcept {
    if (g_stHostCare.bMergedDraw)
        g_fnFillCreationTable_Merged();
    else
        g_fnFillCreationTable_GL();
    g_stCreationTable.m_fnReleaseHook = [] {
        g_fnForgetFailedLoad(); // whoever asks for another build doesn't want to wait for it
        g_fnTavo_GL_Release();
    };
    static constexpr char16_t wzName[] = u"OpenGL";
    std::memcpy(g_wzApiName, wzName, sizeof wzName);
    g_uApiCode = g_uApiCodeOpenGL;
    return true;
}

static bool MakeManager() {
    COSDManager*& pSlot = g_apOSDManager[g_uManagerSlot];
    if (pSlot) return true;
    std::unique_ptr<COSDManager> pManager(new (std::nothrow) COSDManager);
    if (!pManager || !pManager->m_fnInitialize()) return false;
    pSlot = pManager.release();
    return true;
}

static void MakeFrameSamples() {
    g_uFrameSampleCount = 0;
    if (g_pFrameSamples) return;
    g_pFrameSamples = new (std::nothrow) u32[g_uFrameSampleMax];
    if (!g_pFrameSamples) throw -1;
}

static void MarkStatusDue() {
    g_abStatusDue[g_uManagerSlot] = 1;
    g_auStatus[g_uManagerSlot] = 0;
}

/// What a batcher throws while it builds its programs ends here; the log carries its words.
static bool InitializeBatcher(CDraw_Base* pBatcher) {
    try {
        return pBatcher->m_fnInitialize();
    } catch (const std::exception& error) {
        g_fnLog("GLGraphics: %s", error.what());
        return false;
    }
}

/// A flavour without text has no such batcher.
static bool MakeTextBatcher() {
    CDrawText_Base*& pSlot = g_apDrawText[g_uManagerSlot];
    if (!pSlot && g_stCreationTable.m_fnCreateDrawText) {
        std::unique_ptr<CDrawText_Base> pBatcher(g_stCreationTable.m_fnCreateDrawText());
        if (!pBatcher || !InitializeBatcher(pBatcher.get())) return false;
        pSlot = pBatcher.release();
    }
    g_pDrawText = pSlot;
    return true;
}

static bool MakeBasicBatcher() {
    CDrawBasic_Base*& pSlot = g_apDrawBasic[g_uManagerSlot];
    if (!pSlot) {
        CDrawBasic_Base* pBatcher = g_stCreationTable.m_fnCreateDrawBasic();
        if (!pBatcher) return false;
        if (!InitializeBatcher(pBatcher)) {
            delete pBatcher;
            return false;
        }
        pSlot = pBatcher;
    }
    // The lists are those of the layout just made, also for a batcher that outlived the last one.
    pSlot->m_fnSetColorListOrder(g_listColorOrder);
    g_pDrawBasic = pSlot;
    return true;
}

/// Set by a build whose batchers failed, for want of readable shaders.
static bool g_bBatchersFailed = false;

bool g_fnHaveBatchersFailed() noexcept { return g_bBatchersFailed; }

template <class Batcher> static bool TryBatcher(Batcher* (*fnCreate)()) {
    if (!fnCreate) return true;
    const std::unique_ptr<Batcher> pBatcher(fnCreate());
    return pBatcher && InitializeBatcher(pBatcher.get());
}

/// The next try comes with the next frame. A host whose overlay can't be drawn must not pay for a layout and
/// its fonts each time, so those wait until batchers can be made.
static bool AreBatchersHopeless() {
    if (!g_bBatchersFailed) return false;
    g_bBatchersFailed = !TryBatcher(g_stCreationTable.m_fnCreateDrawBasic) ||
                        !TryBatcher(g_stCreationTable.m_fnCreateDrawText);
    return g_bBatchersFailed;
}

static bool MakeBatchers() {
    g_bBatchersFailed = !MakeBasicBatcher() || !MakeTextBatcher();
    return !g_bBatchersFailed;
}

/// What a failed build left would stand twice after the next try.
static bool Abandon() {
    g_fnReleaseResources();
    return false;
}

/// A host whose profile can't be read must not pay for it with each frame.
static bool AbandonLoad(i64 iStart) {
    Abandon();
    g_fnNoteFailedLoad(iStart);
    return false;
}

/// Shaders that can't be read or built.
static bool FailBatchers(i64 iStart) {
    // KEEP(hosts): without the key the next try comes with the next frame.
    if (g_stHostCare.bRestoreAfterFailure) g_fnNoteFailedLoad(iStart);
    return false;
}

void g_fnAbandonBuild() noexcept {
    Abandon();
    g_fnNoteFailedLoad(g_iStartTime);
}

bool g_fnTavo_Init_Resource() {
    const i64 iStart = platform::CounterNow();
    if (AreBatchersHopeless()) return FailBatchers(iStart);
    if (!MakeManager()) return false;
    g_fnSelectManager();
    MakeFrameSamples();
    g_fnSetupIntervals();
    g_fnRestartTimers();
    g_iStartTime = platform::CounterNow();
    MarkStatusDue();
    if (!g_fnMakeLayout()) return AbandonLoad(iStart);
    if (!MakeBatchers()) return Abandon() || FailBatchers(iStart);
    g_pOSDManager->m_fnOnResize();
    g_fnOpenControlBlock();
    g_fnLoadShutter();
    // The first update shows all data at once.
    g_fnRaiseUpdateFlag(g_bUpdateData);
    return true;
}

static void EndWorkers() {
    if (!g_ahWorkers[0] || !g_ahWorkers[1]) return;
    g_bWorkersRun = false;
    for (platform::ThreadHandle& hWorker : g_ahWorkers) {
        platform::KillThread(hWorker);
        hWorker = nullptr;
    }
}

/// Text above basic, as they were drawn; then the manager's globals no longer name them.
static void DestroyBatchers() {
    for (u32 uSlot = 0; uSlot < g_uManagerSlots; ++uSlot) {
        delete g_apDrawText[uSlot];
        g_apDrawText[uSlot] = nullptr;
        delete g_apDrawBasic[uSlot];
        g_apDrawBasic[uSlot] = nullptr;
    }
    g_pDrawText = nullptr;
    g_pDrawBasic = nullptr;
}

static void FreeFrameSamples() {
    delete[] g_pFrameSamples;
    g_pFrameSamples = nullptr;
    g_uFrameSampleCount = 0;
}

void g_fnReleaseResources() noexcept {
    g_fnClearControlIds();
    g_fnClearUpdateLists();
    EndWorkers();
    g_fnCloseFrameSources();
    DestroyBatchers();
    FreeFrameSamples();
    g_fnFreeShutter();
    g_fnKeepFontGlyphs();
    g_fnClearConfiguration();
    g_fnDestroyManagers();
    g_fnCloseControlBlock();
    g_fnForgetFailedLoad();
}
