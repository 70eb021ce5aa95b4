#pragma once
// What an instance writes of its frames (shared/frame_trace.h), read from bytes that anybody may have
// written.
#include "platform/types.h"
#include "shared/frame_trace.h"
#include <optional>
#include <string>
#include <vector>

namespace companion::recording {

/// The head of a block, as far as it can be believed.
struct TraceHead {
    u32 uProcessId = 0;
    u32 uFrames = 0; ///< places of the ring
    i64 iFrequency = 1;
    u32 uWidth = 0, uHeight = 0;
    u32 uLimit = 0;
    bool bEnded = false;
    std::string strVendor, strRenderer, strVersion, strProfile;
    u32 uOverlay = 0;               ///< eTraceOverlay; of later versions, more
    u32 uPassed = 0, uSurfaces = 0; ///< as in stTraceHeader
};

/// None for what is no such block, or one that does not fit into its bytes.
std::optional<TraceHead> ReadTraceHead(const u8* pBlock, size_t uBytes);

/// Reads the frames of a block one after another.
class TraceRing {
  public:
    /// Begins with the next frame that is written.
    void Begin(const u8* pBlock, const TraceHead& stHead);
    /// Appends what is new. The newest frame waits for the next call, as its swap may still run, unless bAll.
    void Read(bool bAll, std::vector<stTraceFrame>& listFrames);
    /// Frames that were written and never read, so far.
    u64 Lost() const { return m_uLost; }

  private:
    u64 Written() const;
    void Take(u64 uIndex, std::vector<stTraceFrame>& listFrames);

    const u8* m_pBlock = nullptr;
    u32 m_uFrames = 0;
    u64 m_uNext = 0; ///< index of the next frame
    u64 m_uLost = 0;
    i64 m_iLast = 0; ///< of the last frame; no time lies below 0
};

} // namespace companion::recording
