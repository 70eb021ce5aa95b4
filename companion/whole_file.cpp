#include "companion/whole_file.h"
#include "companion/profile_folder.h"
#include "platform/tool.h"
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace companion {

Result WriteWhole(const fs::path& path, const std::string& strText) {
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    fs::path pathNew = path;
    pathNew += ".new-" + std::to_string(platform::tool::OwnProcessId());
    {
        errno = 0;
        std::ofstream file(pathNew, std::ios::binary | std::ios::trunc);
        const bool bWritten = static_cast<bool>((file << strText).flush());
        if (!bWritten) error = std::error_code(errno != 0 ? errno : EIO, std::generic_category());
        if (bWritten) error.clear(); // the folder was there
    }
    if (!error) fs::rename(pathNew, path, error);
    if (!error) return {};
    std::error_code ignored;
    fs::remove(pathNew, ignored);
    return Result::Fail("cannot write " + TextOfPath(path) + ": " + error.message());
}

Result NeedWholeOutput() {
    errno = 0;
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return {};
    const std::string strWhy = errno != 0 ? ": " + std::generic_category().message(errno) : "";
    return Result::Fail("cannot write the output" + strWhy);
}

} // namespace companion
