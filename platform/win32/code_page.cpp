#include "platform/code_page.h"

#include "platform/win32/windows_api.h"

namespace platform {

u32 CodePageToUtf16(const char* pBytes, u32 uBytes, char16_t* pOut, u32 uCapacity) noexcept {
    constexpr u32 uMost = 0x7FFFFFFF; // the call wants signed counts
    if (uBytes == 0 || uBytes > uMost) return 0;
    const int iCapacity = static_cast<int>(uCapacity > uMost ? uMost : uCapacity);
    const int iUnits = MultiByteToWideChar(CP_ACP, 0, pBytes, static_cast<int>(uBytes),
                                           reinterpret_cast<wchar_t*>(pOut), iCapacity);
    return iUnits > 0 && iCapacity > 0 ? static_cast<u32>(iUnits) : 0;
}

} // namespace platform
