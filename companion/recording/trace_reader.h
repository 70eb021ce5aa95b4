#pragma once
// Frames of a running program, asked for and read.
#include "companion/recording/trace_ring.h"
#include "platform/tool_view.h"
#include "shared/frame_trace.h"
#include <vector>

namespace companion::recording {

enum class TraceState {
    Waiting, ///< the program has not answered yet: it does not swap, or does not carry the overlay
    Running,
    Refused, ///< the program has no memory for it
    Ended,   ///< the overlay has left it, or thought that nobody reads any more
    Full,    ///< other companions have all places
};

/// Asks one process for its frames as long as it is polled, several times a second.
class TraceReader {
  public:
    TraceReader(stSharedSegment& stSegment, u32 uProcessId)
        : m_stSegment(stSegment), m_uProcessId(uProcessId) {}
    ~TraceReader();
    TraceReader(const TraceReader&) = delete;
    TraceReader& operator=(const TraceReader&) = delete;

    /// Tells the program that somebody reads, and appends what is new. bAll: the newest frame too, whose swap
    /// may still run.
    TraceState Poll(bool bAll, std::vector<stTraceFrame>& listFrames);
    /// Of a trace that runs or ran.
    const TraceHead& Head() const { return m_stHead; }
    u64 Lost() const { return m_uLostBefore + m_ring.Lost(); }

  private:
    stTraceRequest* Place();
    TraceState Open(u32 uSerial);
    void Close();

    stSharedSegment& m_stSegment;
    const u32 m_uProcessId;
    platform::tool::ForeignBlock m_stBlock;
    TraceHead m_stHead;
    TraceRing m_ring;
    u64 m_uLostBefore = 0; ///< of blocks that have ended
    u32 m_uPolls = 0;
};

} // namespace companion::recording
