#include "platform/regular_file.h"

#include "platform/win32/windows_api.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace platform {

static constexpr int c_iMode = _O_RDONLY | _O_BINARY | _O_NOINHERIT;

/// Devices have names of files too ("NUL", "CON"), and pipes have paths.
static std::FILE* TakeRegular(int iFile) noexcept {
    if (iFile < 0) return nullptr;
    const auto hFile = reinterpret_cast<HANDLE>(_get_osfhandle(iFile));
    std::FILE* const pFile = GetFileType(hFile) == FILE_TYPE_DISK ? _fdopen(iFile, "rb") : nullptr;
    if (!pFile) _close(iFile);
    return pFile;
}

std::FILE* OpenRegularFile(const char16_t* wzPath, bool bAlone) noexcept {
    if (!wzPath) return nullptr;
    return TakeRegular(
        _wsopen(reinterpret_cast<const wchar_t*>(wzPath), c_iMode, bAlone ? _SH_DENYRW : _SH_DENYNO));
}

std::FILE* OpenRegularFile(const char* szPath) noexcept {
    return szPath ? TakeRegular(_sopen(szPath, c_iMode, _SH_DENYNO)) : nullptr;
}

u64 SizeOfFile(std::FILE* pFile) noexcept {
    struct _stat64 st {};
    return _fstat64(_fileno(pFile), &st) == 0 && st.st_size > 0 ? static_cast<u64>(st.st_size) : 0;
}

u64 DataFrom(std::FILE*, u64 uAt) noexcept { return uAt; }

void FreeBlankParts(std::FILE*) noexcept {}

} // namespace platform
