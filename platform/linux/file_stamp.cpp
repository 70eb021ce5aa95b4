#include "platform/file_stamp.h"
#include <sys/stat.h>

namespace platform {

FileStamp StampOfFile(const char* szPath) noexcept {
    struct stat st {};
    if (stat(szPath, &st) != 0) return {};
    return {true, static_cast<u64>(st.st_size), st.st_mtim.tv_sec * 1'000'000'000 + st.st_mtim.tv_nsec};
}

} // namespace platform
