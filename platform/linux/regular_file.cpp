#include "platform/regular_file.h"

#include "platform/folders.h"
#include "platform/pages.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

static bool IsRegular(const struct stat& st) { return S_ISREG(st.st_mode); }

std::FILE* OpenRegularFile(const char* szPath) noexcept {
    struct stat st {};
    // Asked before it is opened, since the opening alone makes some devices act, and again when it is, since
    // another one may lie there by now.
    if (!szPath || stat(szPath, &st) != 0 || !IsRegular(st)) return nullptr;
    const int iFile = open(szPath, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (iFile < 0) return nullptr;
    std::FILE* const pFile = fstat(iFile, &st) == 0 && IsRegular(st) ? fdopen(iFile, "rb") : nullptr;
    if (!pFile) close(iFile);
    return pFile;
}

std::FILE* OpenRegularFile(const char16_t* wzPath, bool) noexcept {
    constexpr u32 c_uPathBytes = 4096;
    const std::unique_ptr<char[]> pPath(new (std::nothrow) char[c_uPathBytes]); // the stack may be small
    return wzPath && pPath && NarrowPath(wzPath, pPath.get(), c_uPathBytes) ? OpenRegularFile(pPath.get())
                                                                            : nullptr;
}

u64 SizeOfFile(std::FILE* pFile) noexcept {
    struct stat st {};
    return fstat(fileno(pFile), &st) == 0 && st.st_size > 0 ? static_cast<u64>(st.st_size) : 0;
}

u64 DataFrom(std::FILE* pFile, u64 uAt) noexcept {
    const int iFile = fileno(pFile);
    const off_t iStands = lseek(iFile, 0, SEEK_CUR); // the stream counts on it
    if (iStands < 0) return uAt;
    const off_t iData = lseek(iFile, static_cast<off_t>(uAt), SEEK_DATA);
    const bool bNoMore = iData < 0 && errno == ENXIO;
    lseek(iFile, iStands, SEEK_SET);
    if (bNoMore) return std::max(uAt, SizeOfFile(pFile));
    return iData < 0 ? uAt : static_cast<u64>(iData);
}

void FreeBlankParts(std::FILE* pFile) noexcept {
    constexpr std::size_t uPiece = 65536;
    const std::unique_ptr<u8[]> pPiece(new (std::nothrow) u8[uPiece]);
    if (!pPiece || std::fflush(pFile) != 0) return;
    const int iFile = fileno(pFile);
    for (off_t iAt = 0;; iAt += uPiece) {
        const ssize_t iRead = pread(iFile, pPiece.get(), uPiece, iAt);
        if (iRead <= 0) return;
        const auto uRead = static_cast<std::size_t>(iRead);
        if (uRead == uPiece && IsBlank(pPiece.get(), uRead) &&
            fallocate(iFile, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, iAt, uPiece) != 0)
            return; // the file system can't
    }
}

} // namespace platform
