#pragma once
// The report of frame times, for as long as a command needs it.
#include "companion/control_library.h"

namespace companion {

/// Turns the report of frame times on, and back to what it was.
class FrameTimeReport {
  public:
    explicit FrameTimeReport(const ControlLibrary& st)
        : m_stLibrary(st), m_u8Before(g_fnReadOnce(st.pSegment->bEnableQueryFrameTime)) {}
    ~FrameTimeReport() { m_stLibrary.fnEnableQueryFrameTime(m_u8Before); }
    FrameTimeReport(const FrameTimeReport&) = delete;
    FrameTimeReport& operator=(const FrameTimeReport&) = delete;
    /// On, also if another companion has turned it off meanwhile.
    void Keep() { m_stLibrary.fnEnableQueryFrameTime(1); }

  private:
    const ControlLibrary& m_stLibrary;
    u8 m_u8Before;
};

} // namespace companion
