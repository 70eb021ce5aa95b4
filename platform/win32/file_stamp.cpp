#include "platform/file_stamp.h"
#include "platform/win32/windows_api.h"

namespace platform {

FileStamp StampOfFile(const char* szPath) noexcept {
    WIN32_FILE_ATTRIBUTE_DATA st = {};
    if (!GetFileAttributesExA(szPath, GetFileExInfoStandard, &st)) return {};
    const u64 uSize = u64{st.nFileSizeHigh} << 32 | st.nFileSizeLow;
    const u64 uChanged = u64{st.ftLastWriteTime.dwHighDateTime} << 32 | st.ftLastWriteTime.dwLowDateTime;
    return {true, uSize, static_cast<i64>(uChanged)};
}

} // namespace platform
