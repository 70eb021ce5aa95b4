#include "capture/preview_feed.h"

#include "base/renew.h"
#include "base/timer.h"
#include "config/settings/settings.h"
#include "controls/osd_manager.h"
#include "controls/video_box.h"
#include "platform/clock.h"

#include <algorithm>
#include <iterator>
#include <limits>

static_assert(g_uFrameSources == g_uVideoBoxEntries && g_uFrameSources == g_uVideoSources);

u8 g_abVideoDue[g_uFrameSources][g_uManagerSlots];

namespace {

struct stFeed {
    CTimer aTimer[g_uFrameSources];
    f32 afTook[g_uFrameSources] = {}; ///< seconds that the last frame took to be brought in
};
stFeed g_stFeed;

constexpr f32 c_fShortestPeriod = 0.01f;

f32 SecondsSince(i64 iStart) noexcept {
    return static_cast<f32>(static_cast<f64>(platform::CounterNow() - iStart) /
                            static_cast<f64>(platform::CounterFrequency()));
}

/// True if this manager's slot leads: it is the one in whose update the period ended.
bool RaiseWhenDue(u32 uSource) {
    const stVideoSource& st = g_stSettings.aVideoSource[uSource];
    const f32 fPeriod = g_fnVideoPeriod(st.uUpdateInterval, st.uUpdateFrames);
    // What a transfer takes comes off the wait for the next, so that frames keep the period.
    if (!(g_stFeed.aTimer[uSource].Elapsed() >= fPeriod - g_stFeed.afTook[uSource])) return false;
    const bool bWasUp = g_abVideoDue[uSource][g_uManagerSlot] != 0;
    std::fill(std::begin(g_abVideoDue[uSource]), std::end(g_abVideoDue[uSource]), u8{1});
    return !bWasUp;
}

void Transfer(u32 uSource, CVideoBox_Base& box) {
    const u32 uBytes = static_cast<u32>(box.m_fFrameW) * static_cast<u32>(box.m_fFrameH) * 4;
    if (uBytes == 0 || !g_fnHasFrameSource(uSource)) return;
    const bool bLeads = RaiseWhenDue(uSource);
    if (!g_abVideoDue[uSource][g_uManagerSlot]) return;
    g_abVideoDue[uSource][g_uManagerSlot] = 0;
    // The timers of an update share one reading, in which no time passes.
    const i64 iStart = platform::CounterNow();
    if (bLeads) g_stFeed.aTimer[uSource].Restart();
    if (const u8* const pFrame = g_fnTakeFrame(uSource, uBytes)) box.m_fnWriteFrame(pFrame, g_uFormatRGBA8);
    if (bLeads) g_stFeed.afTook[uSource] = SecondsSince(iStart);
}

} // namespace

f32 g_fnVideoPeriod(u32 uInterval, u32 uFrames) noexcept {
    if (uFrames == 0) return std::numeric_limits<f32>::infinity();
    const f32 fPeriod = static_cast<f32>(uInterval) / static_cast<f32>(uFrames) / 1000.0f;
    return std::max(fPeriod, c_fShortestPeriod);
}

void g_fnTransferVideo() {
    for (u32 u = 0; g_ppVideoBox && u < g_uFrameSources; ++u)
        if (g_ppVideoBox[u]) Transfer(u, *g_ppVideoBox[u]);
}

void g_fnRestartVideoTimers() noexcept {
    for (CTimer& timer : g_stFeed.aTimer) timer.Restart();
}

void g_fnResetPreviewFeed() noexcept {
    g_fnCloseFrameSources();
    g_fnRenew(g_stFeed);
    for (auto& abDue : g_abVideoDue) std::fill(std::begin(abDue), std::end(abDue), u8{0});
}
