#pragma once
// A request about a window that is gone makes the server answer with an error, and the default handler of the
// X library ends the program. While a trap stands, errors about its drawable are swallowed.
#include "platform/types.h"

namespace platform::host {

class XErrorTrap {
  public:
    XErrorTrap(void* hDisplay, unsigned long uDrawable) noexcept;
    ~XErrorTrap();
    XErrorTrap(const XErrorTrap&) = delete;
    XErrorTrap& operator=(const XErrorTrap&) = delete;
    /// Whether an error was swallowed. Meaningful after a request with an answer.
    bool Failed() const noexcept;
};

} // namespace platform::host
