#pragma once
// Where the shared segment lies. Header only, as the companion looks at these places too.
#include "platform/types.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::host {

constexpr u32 g_uSegmentPathBytes = 192;
constexpr u32 g_uSegmentSuffixLimit = 64;

/// The plain name is one for all users, and whoever comes first has it. The others' segments have the user's
/// number in their name.
enum class SegmentOwner : u8 { Any, User };

/// "-SUFFIX" when ORVIN_OSD_SEGMENT asks for a segment of its own, else nothing.
inline void SegmentSuffix(char (&szSuffix)[g_uSegmentSuffixLimit + 2]) noexcept {
    const char* const szAsked = secure_getenv("ORVIN_OSD_SEGMENT");
    const bool bAsked = szAsked && *szAsked && std::strlen(szAsked) <= g_uSegmentSuffixLimit;
    std::snprintf(szSuffix, sizeof szSuffix, "%s%s", bAsked ? "-" : "", bAsked ? szAsked : "");
    for (char* p = szSuffix; *p; ++p)
        if (*p == '/' || *p == '\\') *p = '_';
}

/// "/dev/shm/ORVIN-OSD64-GL.Shared" with the suffix, and with ".uidN" for a user's own.
inline void SegmentPath(SegmentOwner eOwner, char (&szPath)[g_uSegmentPathBytes]) noexcept {
    char szUser[24] = "", szSuffix[g_uSegmentSuffixLimit + 2];
    SegmentSuffix(szSuffix);
    if (eOwner == SegmentOwner::User) std::snprintf(szUser, sizeof szUser, ".uid%u", geteuid());
    std::snprintf(szPath, sizeof szPath, "/dev/shm/ORVIN-OSD64-GL.Shared%s%s", szSuffix, szUser);
}

/// The user that an object of that name belongs to, whatever its kind; false if there is none.
inline bool OwnerOf(const char* szPath, uid_t& uOwner) noexcept {
    struct stat st {};
    if (lstat(szPath, &st) != 0) return false;
    uOwner = st.st_uid;
    return true;
}

inline bool BelongsToAnother(const char* szPath) noexcept {
    uid_t uOwner = 0;
    return OwnerOf(szPath, uOwner) && uOwner != geteuid();
}

} // namespace platform::host
