#pragma once
// Where the data lies that programs share. Header only: tools look there without the rest of the back-end.
#include "platform/win32/windows_api.h"
#include <cwchar>
#include <shlobj.h>

namespace platform::host {

/// The folder without a trailing separator, empty if it is unknown. Its length.
inline std::size_t DataFolder(wchar_t (&wzPath)[MAX_PATH]) noexcept {
    wzPath[0] = 0;
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, wzPath)))
        wzPath[0] = 0;
    std::size_t uLength = std::wcslen(wzPath);
    while (uLength > 0 && wzPath[uLength - 1] == L'\\') wzPath[--uLength] = 0;
    return uLength;
}

} // namespace platform::host
