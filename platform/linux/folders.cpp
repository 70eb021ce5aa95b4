#include "platform/folders.h"
#include "platform/regular_file.h"
#include "platform/utf.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace platform {
namespace {

constexpr u32 g_uPathRoom = 4096;
/// On the heap: the thread is the host's, and its stack may be small.
struct PathRoom {
    char m_sz[g_uPathRoom];
};

const char* Variable(const char* szName) noexcept {
    const char* const szValue = secure_getenv(szName);
    return szValue && *szValue ? szValue : nullptr;
}

} // namespace

const char16_t g_cPathSeparator = u'/';
const char16_t* const g_wzFixedScreenshotCache = nullptr;

bool CommonDataFolder(char16_t* wzOut, u32 uCapacity) noexcept {
    std::unique_ptr<PathRoom> pRoom(new (std::nothrow) PathRoom);
    if (!pRoom) return false;
    char* const szFolder = pRoom->m_sz;
    int iLength = -1;
    if (const char* const szOwn = Variable("ORVIN_OSD_APPDATA"))
        iLength = std::snprintf(szFolder, g_uPathRoom, "%s", szOwn);
    else if (const char* const szData = Variable("XDG_DATA_HOME"))
        iLength = std::snprintf(szFolder, g_uPathRoom, "%s", szData);
    else if (const char* const szHome = Variable("HOME"))
        iLength = std::snprintf(szFolder, g_uPathRoom, "%s/.local/share", szHome);
    if (iLength <= 0 || iLength >= static_cast<int>(g_uPathRoom)) return false;
    while (iLength > 1 && szFolder[iLength - 1] == '/') szFolder[--iLength] = 0;
    return Utf8ToUtf16(szFolder, wzOut, uCapacity);
}

bool NarrowPath(const char16_t* wzPath, char* szOut, u32 uCapacity) noexcept {
    return Utf16ToUtf8(wzPath, szOut, uCapacity);
}

std::FILE* OpenFileForRead(const char16_t* wzPath) noexcept { return OpenRegularFile(wzPath, false); }

std::FILE* OpenFileForReadAlone(const char16_t* wzPath) noexcept { return OpenRegularFile(wzPath, true); }

std::FILE* OpenFileForWrite(const char16_t* wzPath) noexcept {
    std::unique_ptr<PathRoom> pRoom(new (std::nothrow) PathRoom);
    return pRoom && NarrowPath(wzPath, pRoom->m_sz, g_uPathRoom) ? std::fopen(pRoom->m_sz, "wb+") : nullptr;
}

} // namespace platform
