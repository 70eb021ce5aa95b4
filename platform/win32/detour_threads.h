#pragma once
// Holds all other threads of the process still while code changes under them.
#include "platform/types.h"

namespace platform {

struct stTrampolinePlan;

/// Stops the other threads for its lifetime. Between construction and destruction the caller takes no lock
/// that a stopped thread could hold, the heap's included. One at a time. Does nothing at process end.
class ThreadFreeze {
  public:
    ThreadFreeze() noexcept;
    ~ThreadFreeze();
    ThreadFreeze(const ThreadFreeze&) = delete;
    ThreadFreeze& operator=(const ThreadFreeze&) = delete;
    /// Threads about to run a displaced instruction other than the first go on with its copy.
    void MoveOut(const u8* pTarget, const stTrampolinePlan& plan, const u8* pTrampoline) noexcept;
};

} // namespace platform
