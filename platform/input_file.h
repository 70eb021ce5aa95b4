#pragma once
// The one way to the contents of a file: of the right kind, opened without waiting, and never more of it than
// the caller has room for.
#include "platform/types.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

namespace platform {

struct FileCloser {
    void operator()(std::FILE* pFile) const noexcept { std::fclose(pFile); }
};
using InputFile = std::unique_ptr<std::FILE, FileCloser>;

/// A regular file, at its start; null if there is none, or for a null path. The narrow form is that of
/// NarrowPath.
InputFile OpenInput(const char16_t* wzPath) noexcept;
InputFile OpenInput(const char* szPath) noexcept;
/// As OpenInput; on Win32 nobody else may open the file meanwhile.
InputFile OpenInputAlone(const char16_t* wzPath) noexcept;

/// Appends what follows in a file, uMost bytes at most. They come piece by piece, so that a file that says it
/// is larger than it is takes no memory; small ones first, as most files are.
template <typename Bytes> void AppendBytes(std::FILE* pFile, u64 uMost, Bytes& bytes) {
    constexpr u64 uLeast = 8 * 1024, uPiece = 256 * 1024;
    for (const u64 uEnd = bytes.size() + uMost; bytes.size() < uEnd;) {
        const std::size_t uHad = bytes.size(), uWanted = static_cast<std::size_t>(std::min(
                                                   uEnd - uHad, std::clamp<u64>(uHad, uLeast, uPiece)));
        bytes.resize(uHad + uWanted);
        const std::size_t uRead = std::fread(bytes.data() + uHad, 1, uWanted, pFile);
        bytes.resize(uHad + uRead);
        if (uRead < uWanted) return;
    }
}

/// Contents of a file of uMost bytes or less. False if there is no file, or a larger one, of which nothing is
/// read.
bool ReadWholeFile(const InputFile& pFile, u64 uMost, std::string& strBytes);

} // namespace platform
