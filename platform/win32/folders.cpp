#include "platform/folders.h"
#include "platform/regular_file.h"
#include "platform/win32/data_folder.h"

namespace platform {

const char16_t g_cPathSeparator = u'\\';
const char16_t* const g_wzFixedScreenshotCache =
    uR"(C:\ProgramData\ZARN\Orvin Deck\ORVIN-OSD\Data\Screenshot.png.cache)";

bool CommonDataFolder(char16_t* wzOut, u32 uCapacity) noexcept {
    wchar_t wzPath[MAX_PATH];
    const std::size_t uLength = host::DataFolder(wzPath);
    if (uLength == 0 || uLength >= uCapacity) return false;
    for (std::size_t i = 0; i < uLength; ++i) wzOut[i] = static_cast<char16_t>(wzPath[i]);
    wzOut[uLength] = 0;
    return true;
}

bool NarrowPath(const char16_t* wzPath, char* szOut, u32 uCapacity) noexcept {
    // The call wants a signed size; a file path never needs more than this.
    const int iCapacity = uCapacity > 0x7FFF ? 0x7FFF : static_cast<int>(uCapacity);
    return iCapacity > 0 && WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<const wchar_t*>(wzPath), -1,
                                                szOut, iCapacity, nullptr, nullptr) > 0;
}

std::FILE* OpenFileForRead(const char16_t* wzPath) noexcept { return OpenRegularFile(wzPath, false); }

std::FILE* OpenFileForReadAlone(const char16_t* wzPath) noexcept { return OpenRegularFile(wzPath, true); }

std::FILE* OpenFileForWrite(const char16_t* wzPath) noexcept {
    return _wfopen(reinterpret_cast<const wchar_t*>(wzPath), L"wb+");
}

} // namespace platform
