#include "platform/file_stamp.h"
#include <filesystem>

namespace platform {

FileStamp StampOfFile(const char* szPath) noexcept {
    std::error_code error;
    const std::filesystem::path path(szPath);
    const auto uSize = std::filesystem::file_size(path, error);
    if (error) return {};
    const auto when = std::filesystem::last_write_time(path, error);
    return {true, uSize, static_cast<i64>(when.time_since_epoch().count())};
}

} // namespace platform
