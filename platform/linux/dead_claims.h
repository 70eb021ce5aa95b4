#pragma once
// Named blocks that carry the id of a process outlive it here when it is killed. Header only, as the
// companion removes them too.
#include "platform/linux/process_stamp.h"
#include <dirent.h>
#include <sys/stat.h>

namespace platform::host {

constexpr u32 g_uClaimEntries = 4096; ///< names that are looked at: anybody may fill the folder

/// The process id in the name of an API claim; 0 for any other name.
inline u32 ClaimOwner(const char* szName) noexcept {
    int iProcess = 0, iEnd = 0;
    const bool bClaim = std::sscanf(szName, "[RV5-OSD][PID:%d]%n", &iProcess, &iEnd) == 1 && iEnd > 0;
    return bClaim && szName[iEnd] == 0 && iProcess > 0 ? static_cast<u32>(iProcess) : 0;
}

/// The claim's file tells when its maker ran, so that an id in use again by another process needs no look:
/// that one clears the name itself.
inline void RemoveDeadClaims() noexcept {
    DIR* const pFolder = opendir("/dev/shm");
    if (!pFolder) return;
    const int iFolder = dirfd(pFolder);
    for (u32 i = 0; i < g_uClaimEntries; ++i) {
        const dirent* const pEntry = readdir(pFolder);
        if (!pEntry) break;
        const u32 uOwner = ClaimOwner(pEntry->d_name);
        struct stat st {};
        if (uOwner == 0 || !ReadProcess(uOwner).m_bGone) continue;
        if (fstatat(iFolder, pEntry->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 && st.st_uid == geteuid())
            unlinkat(iFolder, pEntry->d_name, 0);
    }
    closedir(pFolder);
}

} // namespace platform::host
