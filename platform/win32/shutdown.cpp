#include "platform/win32/shutdown.h"
#include "platform/win32/windows_api.h"

namespace platform {

bool IsProcessEnding() noexcept {
    using Query = BOOLEAN(NTAPI*)();
    // Not in the import libraries; an old system without it never says yes, as before the function existed.
    static const auto fnQuery = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlDllShutdownInProgress")));
    return fnQuery && fnQuery();
}

} // namespace platform
