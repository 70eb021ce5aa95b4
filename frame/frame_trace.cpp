#include "frame/frame_trace.h"

#include "config/settings/limiter_settings.h"
#include "draw/canvas.h"
#include "frame/api_claim.h"
#include "platform/clock.h"
#include "platform/gl_api.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/swap_gate.h"
#include "shared/process_records.h"

#include <cstdio>
#include <cstring>

stFrameTrace g_stFrameTrace;

static constexpr u32 c_uSerialTries = 8;      // blocks of those names may be somebody else's
static constexpr u64 c_uDescribeEvery = 1024; // frames between two looks at what the head tells
static constexpr u32 c_uSerialFailed = ~0u;

static stTraceRequests& Requests() { return g_fnTraceRequests(*platform::SharedSegment()); }

static stTraceRequest* FindRequest(u32 uProcessId) {
    for (stTraceRequest& st : Requests().aRequest)
        if (g_fnReadOnce(st.uProcessId) == uProcessId) return &st;
    return nullptr;
}

/// The part of the head that may change.
static void Describe(stTraceHeader& stHeader) {
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

static void Start(stFrameTrace& st, u32 uProcessId) {
    if (!MakeBlock(st, uProcessId)) return;
    st.m_pHeader = static_cast<stTraceHeader*>(st.m_stBlock.m_pView);
    st.m_pFrames =
        reinterpret_cast<stTraceFrame*>(static_cast<u8*>(st.m_stBlock.m_pView) + g_uTraceHeaderBytes);
    st.m_uOwner = uProcessId;
    st.m_uWritten = 0;
    FillHead(*st.m_pHeader, uProcessId, st.m_uSerial);
    st.m_iBeat = st.m_pHeader->iStart;
    st.m_iSilence = st.m_pHeader->iFrequency * g_uTraceSilence;
}

/// The places have changed: somebody may ask, or ask once more.
static void LookForRequest(stFrameTrace& st, u32 uProcessId, u32 uChanges) {
    st.m_uSeen = uChanges;
    st.m_pRequest = FindRequest(uProcessId);
    if (!st.m_pRequest) return;
    if (!st.m_pHeader) Start(st, uProcessId);
    st.m_pRequest->uSerial = st.m_pHeader ? st.m_uSerial : c_uSerialFailed;
}

/// Without a word to anybody, in the copy that a fork made.
static void LetGo(stFrameTrace& st) {
    platform::CloseOwnBlock(st.m_stBlock);
    st.m_pHeader = nullptr;
    st.m_pFrames = nullptr;
    st.m_pRequest = nullptr;
    st.m_uThread.store(0, std::memory_order_relaxed);
}

static u32 Ticks(i64 iTicks) {
    if (iTicks <= 0) return 0;
    return iTicks < static_cast<i64>(g_uTraceLongest) ? static_cast<u32>(iTicks) : g_uTraceLongest;
}

static stTraceFrame& FrameAt(const stFrameTrace& st, u64 uIndex) {
    return st.m_pFrames[uIndex % g_uTraceFrames];
}

/// Where the library calls the real swap itself it has noted the moment; elsewhere the gate has.
static void CompleteLast(stFrameTrace& st) {
    if (st.m_uThread.load(std::memory_order_relaxed) == 0) return;
    st.m_uThread.store(0, std::memory_order_relaxed);
    i64 iAfter = st.m_iAfter.load(std::memory_order_relaxed);
    if (iAfter == 0) iAfter = platform::SwapStamp();
    stTraceFrame& stFrame = FrameAt(st, st.m_uWritten - 1);
    if (iAfter > stFrame.iBefore) stFrame.uSwap = Ticks(iAfter - stFrame.iBefore);
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

void g_fnNoteDrawn() noexcept {
    if (g_stFrameTrace.m_pHeader) g_stFrameTrace.m_iDrawn = platform::CounterNow();
}

/// False once nobody has read for a while.
static bool IsAsked(stFrameTrace& st, i64 iNow) {
    const u32 uBeat = st.m_pRequest ? g_fnReadOnce(st.m_pRequest->uBeat) : st.m_uBeat;
    if (uBeat == st.m_uBeat) return iNow - st.m_iBeat < st.m_iSilence;
    st.m_uBeat = uBeat;
    st.m_iBeat = iNow;
    return true;
}

static void Publish(stFrameTrace& st, i64 iNow, u32 uThreadId) {
    stTraceFrame& stFrame = FrameAt(st, st.m_uWritten);
    stFrame.uNumber = ++st.m_uWritten;
    stFrame.iBefore = iNow;
    stFrame.uSwap = 0;
    stFrame.uCost = Ticks(st.m_iDrawn - st.m_iBegin);
    stFrame.uWait = Ticks(iNow - st.m_iDrawn);
    stFrame.uThreadId = uThreadId;
    std::atomic_ref(st.m_pHeader->uWritten).store(st.m_uWritten, std::memory_order_release);
}

void g_fnEndTracedFrame(u32 uThreadId) noexcept {
    stFrameTrace& st = g_stFrameTrace;
    if (!st.m_pHeader) return;
    const i64 iNow = platform::CounterNow();
    Publish(st, iNow, uThreadId);
    if (!IsAsked(st, iNow)) return g_fnEndTrace();
    if (st.m_uWritten % c_uDescribeEvery == 0) Describe(*st.m_pHeader);
    st.m_iAfter.store(0, std::memory_order_relaxed);
    st.m_uThread.store(uThreadId, std::memory_order_relaxed);
    platform::StampSwap();
}

void g_fnNoteSwapDone() noexcept {
    stFrameTrace& st = g_stFrameTrace;
    const u32 uThread = st.m_uThread.load(std::memory_order_relaxed);
    if (uThread != 0 && uThread == platform::CurrentThreadId())
        st.m_iAfter.store(platform::CounterNow(), std::memory_order_relaxed);
}

void g_fnEndTrace() noexcept {
    stFrameTrace& st = g_stFrameTrace;
    if (!st.m_pHeader) return;
    CompleteLast(st);
    std::atomic_ref(st.m_pHeader->uEnded).store(1, std::memory_order_release);
    if (st.m_pRequest && g_fnReadOnce(st.m_pRequest->uProcessId) == st.m_uOwner) *st.m_pRequest = {};
    LetGo(st);
}
