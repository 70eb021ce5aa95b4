#include "platform/folders.h"
#include "platform/regular_file.h"
#include "platform/utf.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace platform {
namespace {

const char* Variable(const char* szName) noexcept {
    const char* const szValue = std::getenv(szName);
    return szValue && *szValue ? szValue : nullptr;
}

} // namespace

const char16_t g_cPathSeparator = u'/';

bool CommonDataFolder(char16_t* wzOut, u32 uCapacity) noexcept {
    char szFolder[4096];
    int iLength = -1;
    if (const char* const szOwn = Variable("ORVIN_OSD_APPDATA"))
        iLength = std::snprintf(szFolder, sizeof szFolder, "%s", szOwn);
    else if (const char* const szData = Variable("XDG_DATA_HOME"))
        iLength = std::snprintf(szFolder, sizeof szFolder, "%s", szData);
    else if (const char* const szHome = Variable("HOME"))
        iLength = std::snprintf(szFolder, sizeof szFolder, "%s/.local/share", szHome);
    if (iLength <= 0 || iLength >= static_cast<int>(sizeof szFolder)) return false;
    while (iLength > 1 && szFolder[iLength - 1] == '/') szFolder[--iLength] = 0;
    return Utf8ToUtf16(szFolder, wzOut, uCapacity);
}

bool NarrowPath(const char16_t* wzPath, char* szOut, u32 uCapacity) noexcept {
    return Utf16ToUtf8(wzPath, szOut, uCapacity);
}

std::FILE* OpenFileForRead(const char16_t* wzPath) noexcept { return OpenRegularFile(wzPath, false); }

std::FILE* OpenFileForReadAlone(const char16_t* wzPath) noexcept { return OpenRegularFile(wzPath, true); }

std::FILE* OpenFileForWrite(const char16_t* wzPath) noexcept {
    char szPath[4096];
    return NarrowPath(wzPath, szPath, sizeof szPath) ? std::fopen(szPath, "wb+") : nullptr;
}

} // namespace platform
