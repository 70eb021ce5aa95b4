#pragma once
// Watches the programs that carry the overlay, tells in one line each what a player should know, and helps
// where it can.
#include "companion/control_library.h"
#include "companion/frame_time_report.h"
#include "companion/limiter_nurse.h"
#include "companion/segment_view.h"
#include "platform/tool_settings.h"
#include <map>
#include <memory>
#include <string>

namespace companion {

class Watcher {
  public:
    explicit Watcher(const ControlLibrary& stLibrary);
    ~Watcher();
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    /// One look at everything; up to some times a second.
    void Turn();

  private:
    struct Program {
        std::string strName;
        LimiterNurse nurse;
        u64 uLastFrame = 0; ///< milliseconds
        bool bSilent = false;
        std::string strProfile, strFault;
        bool bSeen = true;
    };
    void Meet(u64 uNow);
    void LookAtFrames(u32 uId, const Instance& stInstance, u64 uNow);
    void LookAtLimiter(u32 uId, f32 fFrameTime, u64 uNow);
    void LookAtProfile(u32 uId);
    void Lower(u32 uId);
    void Restore(u32 uId);
    void Tell(u32 uId, const std::string& strText);

    const ControlLibrary& m_stLibrary;
    FrameTimeReport m_report;
    std::map<u32, Program> m_mapPrograms;
    std::unique_ptr<platform::tool::TemporarySettings> m_pLowered;
    u32 m_uLowered = 0; ///< the process whose limiter is lowered; 0: none
    u32 m_uRate = 0;
    bool m_bLimited = false;
};

/// 'watch', until a stop.
void WatchPrograms(const ControlLibrary& stLibrary);

} // namespace companion
