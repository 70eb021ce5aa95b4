// Linux: the block is among the open files of its process. Only one whose size is sealed is looked at:
// reading a view of another would fault here as soon as somebody cuts it.
#include "platform/tool_view.h"
#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::tool {
namespace {

bool IsWhole(int iFile, std::size_t uBytes) {
    struct stat st {};
    const int iSeals = fcntl(iFile, F_GET_SEALS);
    return iSeals >= 0 && (iSeals & F_SEAL_SHRINK) && fstat(iFile, &st) == 0 &&
           static_cast<std::size_t>(st.st_size) >= uBytes;
}

ForeignBlock Map(const std::string& strPath, std::size_t uBytes) {
    const int iFile = open(strPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (iFile < 0) return {};
    void* const pView =
        IsWhole(iFile, uBytes) ? mmap(nullptr, uBytes, PROT_READ, MAP_SHARED, iFile, 0) : MAP_FAILED;
    close(iFile);
    return pView == MAP_FAILED ? ForeignBlock{} : ForeignBlock{static_cast<const u8*>(pView), uBytes};
}

} // namespace

ForeignBlock OpenForeignBlock(u32 uProcessId, const std::string& strName, std::size_t uBytes) {
    const std::string strFolder = "/proc/" + std::to_string(uProcessId) + "/fd";
    const std::string strLink = "/memfd:" + strName + " (deleted)";
    std::error_code error;
    std::filesystem::directory_iterator it(strFolder, error);
    for (; !error && it != std::filesystem::directory_iterator(); it.increment(error)) {
        std::error_code errorOfLink;
        if (std::filesystem::read_symlink(it->path(), errorOfLink) != strLink) continue;
        const ForeignBlock st = Map(it->path().string(), uBytes);
        if (st.pView) return st;
    }
    return {};
}

void CloseForeignBlock(ForeignBlock& st) {
    if (st.pView) munmap(const_cast<u8*>(st.pView), st.uBytes);
    st = {};
}

} // namespace platform::tool
