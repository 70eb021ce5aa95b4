#pragma once
// The calling thread's last error: errno, on Windows what GetLastError() answers.
#include "platform/types.h"

namespace platform {

u32 LastError() noexcept;
void SetLastErrorOfThread(u32 uError) noexcept;

/// The host finds the last error as it stood when this was made, whatever calls came in between.
class ErrorKeeper {
  public:
    ErrorKeeper() noexcept : m_uError(LastError()) {}
    ~ErrorKeeper() { SetLastErrorOfThread(m_uError); }
    ErrorKeeper(const ErrorKeeper&) = delete;
    ErrorKeeper& operator=(const ErrorKeeper&) = delete;

  private:
    u32 m_uError;
};

} // namespace platform
