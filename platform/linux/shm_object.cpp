#include "platform/linux/shm_object.h"
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::host {
namespace {

constexpr char g_szFolder[] = "/dev/shm/";
constexpr std::size_t g_uNameLimit = 250;

int CloseWithError(int iFile, int iError) noexcept {
    close(iFile);
    errno = iError;
    return -1;
}

} // namespace

bool ShmPath(const char* szName, char* szPath, u32 uCapacity) noexcept {
    const std::size_t uLength = szName ? std::strlen(szName) : 0;
    const std::size_t uFolder = sizeof g_szFolder - 1;
    if (uLength == 0 || uLength > g_uNameLimit || uFolder + uLength >= uCapacity || szName[0] == '.')
        return false;
    std::memcpy(szPath, g_szFolder, uFolder);
    for (std::size_t i = 0; i <= uLength; ++i)
        szPath[uFolder + i] = szName[i] == '/' || szName[i] == '\\' ? '_' : szName[i];
    return true;
}

int OpenShm(const char* szPath, u64 uBytes) noexcept {
    const int iFile = open(szPath, O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (iFile < 0) return -1;
    struct stat st {};
    const bool bGood = fstat(iFile, &st) == 0 && S_ISREG(st.st_mode) && st.st_uid == geteuid() &&
                       static_cast<u64>(st.st_size) >= uBytes;
    return bGood ? iFile : CloseWithError(iFile, EACCES);
}

int MakeShm(const char* szPath, u64 uBytes) noexcept {
    const int iFile = open(szPath, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (iFile < 0) return -1;
    // Allocated, not only sized: a full memory file system must fail here and not as a fault at a store.
    if (fchmod(iFile, 0600) == 0 && posix_fallocate(iFile, 0, static_cast<off_t>(uBytes)) == 0) return iFile;
    unlink(szPath);
    return CloseWithError(iFile, ENOSPC);
}

void* MapShm(int iFile, u64 uBytes) noexcept {
    void* const pView = mmap(nullptr, uBytes, PROT_READ | PROT_WRITE, MAP_SHARED, iFile, 0);
    return pView == MAP_FAILED ? nullptr : pView;
}

} // namespace platform::host
