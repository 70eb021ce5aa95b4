#include "platform/regular_file.h"

#include "platform/folders.h"

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

} // namespace platform
