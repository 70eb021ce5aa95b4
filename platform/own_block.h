#pragma once
// A block that this process writes and others only read, such as its frame times. Nobody can make it smaller
// while it is open here, so that a store never faults. Linux: memory without a name in any folder, which
// others reach through this process's open files. Win32: a named section. It goes with the last one who has
// it open.
#include "platform/types.h"

namespace platform {

struct stOwnBlock {
    void* m_pView = nullptr; ///< of zeros at first; null: there is none
    std::intptr_t m_iHandle = 0;
    u32 m_uBytes = 0;
};

/// Makes a block. Without a view where there is no memory, or where there is one of that name already.
stOwnBlock MakeOwnBlock(const char* szName, u32 uBytes) noexcept;
/// Takes a block away from this process; also from the copy of it that a fork made.
void CloseOwnBlock(stOwnBlock& st) noexcept;

} // namespace platform
