#include "platform/last_error.h"
#include "platform/win32/windows_api.h"

namespace platform {

u32 LastError() noexcept { return GetLastError(); }
void SetLastErrorOfThread(u32 uError) noexcept { SetLastError(uError); }

} // namespace platform
