// Where the last error is errno.
#include "platform/last_error.h"
#include <cerrno>

namespace platform {

u32 LastError() noexcept { return static_cast<u32>(errno); }
void SetLastErrorOfThread(u32 uError) noexcept { errno = static_cast<int>(uError); }

} // namespace platform
