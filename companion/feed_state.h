#pragma once
// Whether somebody keeps the published values moving, and what becomes of those of a feed that was killed.
#include "companion/control_library.h"
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace companion {

enum class FeedLife {
    None,   ///< nothing is published
    Alive,  ///< its process lives
    Once,   ///< values that were meant to stand: 'set', 'feed --once'
    Dead,   ///< its process was ended without being asked
    Unknown ///< somebody else's values, who does not tell
};

struct FeedState {
    FeedLife eLife = FeedLife::None;
    u32 uProcessId = 0; ///< of the feed
    u64 uAge = 0;       ///< milliseconds since the values were written
    size_t uValues = 0;
    bool bTakenBack = false;
};

/// uNow: milliseconds since 1970. fnIsGone: whether no process of an id and stamp lives.
FeedState LookAtFeed(const stSharedSegment& stSegment, u64 uNow, bool (*fnIsGone)(u32, u32) noexcept);

/// Takes the values of a feed that was killed back and has all overlays built anew, since gauges and graphs
/// would stand at the last ones. Says what was found.
FeedState TakeBackDeadValues(const ControlLibrary& stLibrary);

/// One line with its end, for people.
std::string FeedText(const FeedState& st);
/// The line, for commands that have other things to say: empty unless values were taken back.
std::string TakenBackText(const FeedState& st);
nlohmann::ordered_json FeedJson(const FeedState& st);
/// "0.4 s", "35 s", "12 min", "3 h" or "4 days".
std::string AgeText(u64 uMilliseconds);

} // namespace companion
