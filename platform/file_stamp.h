#pragma once
// What tells that a file was changed, made or taken away.
#include "platform/types.h"

namespace platform {

/// Of a file that does not exist all is zero.
struct FileStamp {
    bool m_bExists = false;
    u64 m_uSize = 0;
    i64 m_iChanged = 0; ///< in units of the system

    bool operator==(const FileStamp&) const = default;
};

/// Path in the encoding of the platform's file calls. The file is not opened.
FileStamp StampOfFile(const char* szPath) noexcept;

} // namespace platform
