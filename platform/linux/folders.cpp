#include "platform/folders.h"
#include "platform/linux/data_folder.h"
#include "platform/regular_file.h"
#include "platform/utf.h"
#include <cstdio>
#include <memory>
#include <new>

namespace platform {
namespace {

constexpr u32 g_uPathRoom = 4096;
/// On the heap: the thread is the host's, and its stack may be small.
struct PathRoom {
    char m_sz[g_uPathRoom];
};

} // namespace

const char16_t g_cPathSeparator = u'/';
const char16_t* const g_wzFixedScreenshotCache = nullptr;

bool CommonDataFolder(char16_t* wzOut, u32 uCapacity) noexcept {
    std::unique_ptr<PathRoom> pRoom(new (std::nothrow) PathRoom);
    if (!pRoom || !host::DataFolder(pRoom->m_sz, g_uPathRoom)) return false;
    return Utf8ToUtf16(pRoom->m_sz, wzOut, uCapacity);
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
