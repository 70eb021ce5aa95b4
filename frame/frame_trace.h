#pragma once
// Frame times for a companion that asks for them (shared/frame_trace.h). Nothing is opened, written or timed
// unless somebody asks; each swap looks at one word of the shared segment. Called with the pipeline's turn,
// but for g_fnNoteSwapDone.
#include "platform/clock.h"
#include "platform/own_block.h"
#include "shared/frame_trace.h"

struct stFrameTrace {
    platform::stOwnBlock m_stBlock;
    stTraceHeader* m_pHeader = nullptr; ///< null: nobody asks
    stTraceFrame* m_pFrames = nullptr;
    stTraceFrame* m_pLast = nullptr;      ///< whose swap is not known yet
    stTraceRequest* m_pRequest = nullptr; ///< never null while there is a head
    stTraceRequest m_stNobody{};          ///< stands for a place that was cleared
    u32 m_uOwner = 0;                     ///< process that made the block; a fork's copy lets it go
    u32 m_uSeen = 0;                      ///< stTraceRequests::uChanges
    u32 m_uSerial = 0;
    u32 m_uBeat = 0;
    i64 m_iBeat = 0;    ///< when the beat was seen to change
    i64 m_iLook = 0;    ///< when to look next for how long it has stood still
    i64 m_iSilence = 0; ///< ticks
    u64 m_uWritten = 0;
    i64 m_iBegin = 0, m_iDrawn = 0;
    std::atomic<const void*> m_pSurface{nullptr}; ///< whose swap m_iAfter waits for
    std::atomic<i64> m_iAfter{0}; ///< when a real swap was done; of the last frame if behind it
};
extern stFrameTrace g_stFrameTrace;

/// First of all in a swap: looks for requests, completes the frame before and begins one.
void g_fnBeginTracedFrame(u32 uProcessId) noexcept;
/// Everything of the overlay is done but for its limiter.
inline void g_fnNoteDrawn() noexcept {
    if (g_stFrameTrace.m_pHeader) g_stFrameTrace.m_iDrawn = platform::CounterNow();
}
/// Ends the frame at a moment.
void g_fnPublishTracedFrame(i64 iNow, u32 uThreadId, const void* pSurface) noexcept;
/// Last of all ahead of the real swap: the frame is published.
inline void g_fnEndTracedFrame(u32 uThreadId, const void* pSurface) noexcept {
    if (g_stFrameTrace.m_pHeader) g_fnPublishTracedFrame(platform::CounterNow(), uThreadId, pSurface);
}
/// Behind the real swap of a surface, where this library runs it; from any thread.
void g_fnNoteSwapDone(const void* pSurface) noexcept;
/// Says to those who read that nothing comes any more.
void g_fnEndTrace() noexcept;
