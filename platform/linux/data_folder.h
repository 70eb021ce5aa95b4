#pragma once
// Where the data lies that programs share. Header only: tools look there without the rest of the back-end.
#include "platform/types.h"
#include <cstdio>
#include <cstdlib>

namespace platform::host {

inline const char* Variable(const char* szName) noexcept {
    const char* const szValue = secure_getenv(szName);
    return szValue && *szValue ? szValue : nullptr;
}

/// The folder without a trailing separator. False if it does not fit or is unknown.
inline bool DataFolder(char* szOut, u32 uCapacity) noexcept {
    int iLength = -1;
    if (const char* const szOwn = Variable("ORVIN_OSD_APPDATA"))
        iLength = std::snprintf(szOut, uCapacity, "%s", szOwn);
    else if (const char* const szData = Variable("XDG_DATA_HOME"))
        iLength = std::snprintf(szOut, uCapacity, "%s", szData);
    else if (const char* const szHome = Variable("HOME"))
        iLength = std::snprintf(szOut, uCapacity, "%s/.local/share", szHome);
    if (iLength <= 0 || iLength >= static_cast<int>(uCapacity)) return false;
    while (iLength > 1 && szOut[iLength - 1] == '/') szOut[--iLength] = 0;
    return true;
}

} // namespace platform::host
