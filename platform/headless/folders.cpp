#include "platform/folders.h"
#include "platform/headless/state.h"
#include "platform/regular_file.h"
#include "platform/utf.h"
#include <algorithm>

namespace platform {

using headless::Get;

const char16_t g_cPathSeparator = u'/';
const char16_t* const g_wzFixedScreenshotCache = nullptr;

/// A file by whichever of the two forms of its path the C library takes in full.
static std::FILE* Open([[maybe_unused]] const char16_t* wzPath, [[maybe_unused]] const char* szPath,
                       const char* szMode) noexcept {
#ifdef _WIN32
    const std::wstring wzMode(szMode, szMode + std::char_traits<char>::length(szMode));
    return _wfopen(reinterpret_cast<const wchar_t*>(wzPath), wzMode.c_str());
#else
    return std::fopen(szPath, szMode);
#endif
}

bool CommonDataFolder(char16_t* wzOut, u32 uCapacity) noexcept {
    const std::u16string& wstrFolder = Get().m_wstrFolder;
    if (wstrFolder.empty() || wstrFolder.size() >= uCapacity) return false;
    std::copy(wstrFolder.begin(), wstrFolder.end(), wzOut);
    wzOut[wstrFolder.size()] = 0;
    return true;
}

bool NarrowPath(const char16_t* wzPath, char* szOut, u32 uCapacity) noexcept {
    return Utf16ToUtf8(wzPath, szOut, uCapacity);
}

std::FILE* OpenFileForRead(const char16_t* wzPath) noexcept {
    char szPath[4096];
    if (!NarrowPath(wzPath, szPath, sizeof szPath)) return nullptr;
    Get().m_vecOpened.emplace_back(szPath);
    return OpenRegularFile(wzPath, false);
}

std::FILE* OpenFileForReadAlone(const char16_t* wzPath) noexcept { return OpenFileForRead(wzPath); }

std::FILE* OpenFileForWrite(const char16_t* wzPath) noexcept {
    char szPath[4096];
    return NarrowPath(wzPath, szPath, sizeof szPath) ? Open(wzPath, szPath, "wb+") : nullptr;
}

namespace headless {

void SetCommonDataFolder(const char16_t* wzFolder) { Get().m_wstrFolder = wzFolder ? wzFolder : u""; }

void SetCommonDataFolder(const std::string& strUtf8) {
    char16_t wzFolder[4096];
    SetCommonDataFolder(Utf8ToUtf16(strUtf8.c_str(), wzFolder, 4096) ? wzFolder : nullptr);
}

std::vector<std::string> OpenedFiles() { return Get().m_vecOpened; }

} // namespace headless
} // namespace platform
