#include "frame/frame_trace.h"

#include "config/load.h"
#include "config/settings/limiter_settings.h"
#include "draw/canvas.h"
#include "frame/api_claim.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/resources.h"
#include "frame/surface_owner.h"
#include "platform/clock.h"
#include "platform/gl_api.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/swap_gate.h"
#include "shared/process_records.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

stFrameTrace g_stFrameTrace;

static constexpr u32 c_uSerialTries = 8; // blocks of those names may be somebody else's
static constexpr u32 c_uSerialFailed = ~0u;

static stTraceRequests& Requests() { return platform::SharedSegment()->TraceRequests; }

static stTraceRequest* FindRequest(u32 uProcessId) {
    for (stTraceRequest& st : Requests().aRequest)
        if (g_fnReadOnce(st.uProcessId) == uProcessId) return &st;
    return nullptr;
}

static eTraceOverlay OverlayState() {
    if (g_iInitFailCount >= g_uInitFailLimit) return TRACE_OVERLAY_GAVE_UP;
    if (g_bInitGL) return TRACE_OVERLAY_DRAWS;
    if (g_fnHaveBatchersFailed()) return TRACE_OVERLAY_SHADERS_FAILED;
    return g_fnHasLoadFailed() ? TRACE_OVERLAY_LAYOUT_FAILED : TRACE_OVERLAY_BUILDS;
}

/// The part of the head that may change.
static void Describe(stTraceHeader& stHeader) {
    stHeader.uOverlay = OverlayState();
    stHeader.uPassed = g_uPassedSwaps.load(std::memory_order_relaxed);
    stHeader.uSurfaces = g_uSurfacesTaken;
    stHeader.uWidth = g_uWidth;
    stHeader.uHeight = g_uHeight;
    stHeader.uLimit = EnableFPSLimiter ? FPS_Target : 0;
    std::memcpy(stHeader.wzProfile, g_wzProfileName, sizeof stHeader.wzProfile);
    stHeader.wzProfile[g_uProfileNameUnits - 1] = 0;
}

static void TakeString(char (&szTo)[g_uTraceTextBytes], GLenum eName) {
    const GLubyte* const pText = glGetString(eName);
    std::snprintf(szTo, sizeof szTo, "%s", pText ? reinterpret_cast<const char*>(pText) : "");
}

static void DescribeDriver(stTraceHeader& stHeader) {
    if (g_bOtherApiOwnsProcess) return; // no call of ours reaches GL there
    TakeString(stHeader.szVendor, GL_VENDOR);
    TakeString(stHeader.szRenderer, GL_RENDERER);
    TakeString(stHeader.szVersion, GL_VERSION);
}

static bool MakeBlock(stFrameTrace& st, u32 uProcessId) {
    for (u32 u = 0; u < c_uSerialTries && !st.m_stBlock.m_pView; ++u) {
        char szName[64];
        std::snprintf(szName, sizeof szName, g_szTraceBlockFormat, uProcessId, ++st.m_uSerial);
        st.m_stBlock = platform::MakeOwnBlock(szName, g_uTraceBlockBytes);
    }
    return st.m_stBlock.m_pView;
}

static void FillHead(stTraceHeader& stHeader, u32 uProcessId, u32 uSerial) {
    stHeader.uVersion = g_uTraceVersion;
    stHeader.uHeaderBytes = g_uTraceHeaderBytes;
    stHeader.uFrameBytes = sizeof(stTraceFrame);
    stHeader.uFrames = g_uTraceFrames;
    stHeader.uProcessId = uProcessId;
    stHeader.uSerial = uSerial;
    stHeader.iFrequency = platform::CounterFrequency();
    stHeader.iStart = platform::CounterNow();
    Describe(stHeader);
    DescribeDriver(stHeader);
    std::atomic_thread_fence(std::memory_order_release);
    std::memcpy(stHeader.acTag, g_szTraceTag, sizeof g_szTraceTag);
}

/// Ticks up to the next look, no more than a frame's fields can hold.
static i64 LookSpan(const stFrameTrace& st) { return std::min(st.m_iSilence / 4, i64{g_uTraceLongest}); }

static void Start(stFrameTrace& st, u32 uProcessId) {
    if (!MakeBlock(st, uProcessId)) return;
    st.m_pHeader = static_cast<stTraceHeader*>(st.m_stBlock.m_pView);
    st.m_pFrames =
        reinterpret_cast<stTraceFrame*>(static_cast<u8*>(st.m_stBlock.m_pView) + g_uTraceHeaderBytes);
    st.m_uOwner = uProcessId;
    st.m_uWritten = 0;
    FillHead(*st.m_pHeader, uProcessId, st.m_uSerial);
    st.m_iSilence = st.m_pHeader->iFrequency * g_uTraceSilence;
    st.m_iBeat = st.m_pHeader->iStart;
    st.m_iLook = st.m_iBeat + LookSpan(st);
}

/// The places have changed: somebody may ask, or ask once more, or nobody any more.
[[gnu::noinline]] static void LookForRequest(stFrameTrace& st, u32 uProcessId, u32 uChanges) {
    st.m_uSeen = uChanges;
    stTraceRequest* const pRequest = FindRequest(uProcessId);
    if (pRequest && !st.m_pHeader) Start(st, uProcessId);
    if (pRequest) pRequest->uSerial = st.m_pHeader ? st.m_uSerial : c_uSerialFailed;
    st.m_stNobody = {0, st.m_uBeat, 0, 0};
    st.m_pRequest = pRequest ? pRequest : &st.m_stNobody;
}

/// Without a word to anybody, in the copy that a fork made.
[[gnu::noinline]] static void LetGo(stFrameTrace& st) {
    platform::CloseOwnBlock(st.m_stBlock);
    st.m_pHeader = nullptr;
    st.m_pFrames = nullptr;
    st.m_pLast = nullptr;
    st.m_pRequest = nullptr;
    st.m_pSurface.store(nullptr, std::memory_order_relaxed);
}

/// Of a span that is not negative: the clock does not run backwards.
static u32 Ticks(i64 iTicks) {
    return static_cast<u32>(std::min(static_cast<u64>(iTicks), u64{g_uTraceLongest}));
}

/// Where the library calls the real swap itself it has noted the moment; elsewhere the gate has.
static void CompleteLast(stFrameTrace& st) {
    stTraceFrame* const pLast = st.m_pLast;
    if (!pLast) return;
    st.m_pLast = nullptr;
    i64 iAfter = st.m_iAfter.load(std::memory_order_relaxed);
    if (iAfter < pLast->iBefore) iAfter = platform::SwapStamp();
    if (iAfter > pLast->iBefore) pLast->uSwap = Ticks(iAfter - pLast->iBefore);
}

void g_fnBeginTracedFrame(u32 uProcessId) noexcept {
    stFrameTrace& st = g_stFrameTrace;
    const u32 uChanges = g_fnReadOnce(Requests().uChanges);
    if (uChanges != st.m_uSeen) LookForRequest(st, uProcessId, uChanges);
    if (!st.m_pHeader) return;
    if (st.m_uOwner != uProcessId) return LetGo(st);
    CompleteLast(st);
    st.m_iBegin = platform::CounterNow();
}

/// The frame becomes visible to readers.
static void Show(stFrameTrace& st, stTraceFrame& stFrame, const void* pSurface) {
    std::atomic_ref(st.m_pHeader->uWritten).store(st.m_uWritten, std::memory_order_release);
    st.m_pLast = &stFrame;
    st.m_pSurface.store(pSurface, std::memory_order_relaxed);
    platform::StampSwap();
}

/// The beat has moved, so who reads is told what the head tells; else nobody may have read for too long. A
/// frame too long for its fields comes here, too.
[[gnu::noinline]] static void ShowAndLook(stTraceFrame& stFrame, u32 uBeat, const void* pSurface) {
    stFrameTrace& st = g_stFrameTrace;
    stFrame.uCost = Ticks(st.m_iDrawn - st.m_iBegin);
    stFrame.uWait = Ticks(stFrame.iBefore - st.m_iDrawn);
    Show(st, stFrame, pSurface);
    if (uBeat == st.m_uBeat && stFrame.iBefore - st.m_iBeat >= st.m_iSilence) return g_fnEndTrace();
    if (uBeat != st.m_uBeat) {
        st.m_uBeat = uBeat;
        st.m_iBeat = stFrame.iBefore;
        Describe(*st.m_pHeader);
    }
    st.m_iLook = stFrame.iBefore + LookSpan(st);
}

void g_fnPublishTracedFrame(i64 iNow, u32 uThreadId, const void* pSurface) noexcept {
    stFrameTrace& st = g_stFrameTrace;
    stTraceFrame& stFrame = st.m_pFrames[st.m_uWritten % g_uTraceFrames];
    stFrame.uNumber = ++st.m_uWritten;
    stFrame.iBefore = iNow;
    stFrame.uSwap = 0;
    stFrame.uCost = static_cast<u32>(st.m_iDrawn - st.m_iBegin);
    stFrame.uWait = static_cast<u32>(iNow - st.m_iDrawn);
    stFrame.uThreadId = uThreadId;
    const u32 uBeat = g_fnReadOnce(st.m_pRequest->uBeat);
    if (uBeat != st.m_uBeat || iNow >= st.m_iLook) return ShowAndLook(stFrame, uBeat, pSurface);
    Show(st, stFrame, pSurface);
}

void g_fnNoteSwapDone(const void* pSurface) noexcept {
    stFrameTrace& st = g_stFrameTrace;
    if (pSurface && st.m_pSurface.load(std::memory_order_relaxed) == pSurface)
        st.m_iAfter.store(platform::CounterNow(), std::memory_order_relaxed);
}

void g_fnEndTrace() noexcept {
    stFrameTrace& st = g_stFrameTrace;
    if (!st.m_pHeader) return;
    CompleteLast(st);
    std::atomic_ref(st.m_pHeader->uEnded).store(1, std::memory_order_release);
    if (g_fnReadOnce(st.m_pRequest->uProcessId) == st.m_uOwner) *st.m_pRequest = {};
    LetGo(st);
}
