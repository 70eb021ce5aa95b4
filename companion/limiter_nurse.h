#pragma once
// A frame limiter that waits no more, seen from outside: the program runs far faster than the limit that is
// set. A longer frame than the one that it died of lets it find back: a lower limit for a second, then the
// real one. Pure: what is done is the caller's.
#include "platform/types.h"

namespace companion {

/// What is seen of a program at a moment.
struct LimiterLook {
    u64 uNow = 0; ///< milliseconds of a clock that never goes back
    bool bLimited = false;
    u32 uRate = 0;         ///< frames a second that are set
    f32 fFrameTime = 0.0f; ///< milliseconds, as reported; 0: none
};

enum class LimiterStep {
    Nothing,
    Lower,  ///< set LowRate() and have the program build anew
    Restore ///< set the real rate and have it build anew
};

class LimiterNurse {
  public:
    LimiterStep Look(const LimiterLook& st);
    /// The lower limit of this attempt; each of a row goes further down.
    u32 LowRate() const;
    /// How often in a row the limiter was found dead.
    u32 Attempts() const { return m_uAttempts; }
    /// Milliseconds until the next attempt, if this one fails.
    u64 Pause() const;

  private:
    enum class Phase { Well, Suspect, Lowered, Resting };
    LimiterStep Suspect(const LimiterLook& st);

    Phase m_ePhase = Phase::Well;
    u64 m_uSince = 0;     ///< begin of the phase
    u64 m_uWellSince = 0; ///< as long as it is well, or 0
    u32 m_uAttempts = 0;
    u32 m_uRate = 0;
};

} // namespace companion
