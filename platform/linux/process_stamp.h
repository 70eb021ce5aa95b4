#pragma once
// What tells a process from a later one with its id: when it began, and in which namespace its id is one.
// Header only: the companion asks these questions without the rest of the back-end.
#include "platform/types.h"
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace platform::host {

struct ProcessState {
    bool m_bGone = false;
    i64 m_iStartTicks = -1; ///< clock ticks after boot; -1 where the system does not tell
};

/// Reads from the stat line of a process, the text behind its name: field 3 is its state, 20 the number of
/// its threads, 22 its start.
inline void ReadStatLine(const char* szFields, ProcessState& st) noexcept {
    char cState = 0;
    long long iThreads = 0, iTicks = -1;
    const int iRead = std::sscanf(szFields,
                                  " %c %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %lld "
                                  "%*s %lld",
                                  &cState, &iThreads, &iTicks);
    if (iRead < 3) return;
    st.m_iStartTicks = iTicks;
    // A program whose first thread has ended shows as a zombie too, while its other threads go on.
    st.m_bGone = (cState == 'Z' || cState == 'X') && iThreads <= 1;
}

inline ProcessState ReadProcess(u32 uProcessId) noexcept {
    ProcessState st;
    const pid_t iProcess = static_cast<pid_t>(uProcessId);
    st.m_bGone = iProcess <= 0 || (kill(iProcess, 0) != 0 && errno == ESRCH);
    if (st.m_bGone) return st;
    char szText[1024];
    std::snprintf(szText, sizeof szText, "/proc/%d/stat", static_cast<int>(iProcess));
    const int iFile = open(szText, O_RDONLY | O_CLOEXEC);
    if (iFile < 0) return st;
    const ssize_t iBytes = read(iFile, szText, sizeof szText - 1);
    close(iFile);
    szText[iBytes > 0 ? iBytes : 0] = 0;
    if (const char* const szFields = std::strrchr(szText, ')')) ReadStatLine(szFields + 1, st);
    return st;
}

/// A byte that stands for the process-id namespace of this process; 0 where the system does not tell.
inline u32 NamespaceByte() noexcept {
    char szLink[64];
    const ssize_t iLength = readlink("/proc/self/ns/pid", szLink, sizeof szLink - 1);
    szLink[iLength > 0 ? iLength : 0] = 0;
    const char* const szNumber = std::strchr(szLink, '[');
    return szNumber ? static_cast<u32>(std::strtoull(szNumber + 1, nullptr, 10) % 255) + 1 : 0;
}

constexpr u32 g_uStartMask = 0xFFFFFF; // two days of ticks: a reused id is hardly as old to the tick

inline u32 MakeStamp(i64 iStartTicks) noexcept {
    const u32 uStamp = (NamespaceByte() << 24) | (static_cast<u32>(iStartTicks) & g_uStartMask);
    return uStamp == 0 ? 1 : uStamp;
}

inline u32 StampOf(u32 uProcessId) noexcept {
    const ProcessState st = ReadProcess(uProcessId);
    return st.m_bGone || st.m_iStartTicks < 0 ? 0 : MakeStamp(st.m_iStartTicks);
}

inline bool IsGone(u32 uProcessId, u32 uStamp) noexcept {
    // An id of another namespace, as in a container, means nothing here.
    if (uStamp != 0 && uStamp >> 24 != NamespaceByte()) return false;
    const ProcessState st = ReadProcess(uProcessId);
    if (st.m_bGone) return true;
    return uStamp != 0 && st.m_iStartTicks >= 0 && MakeStamp(st.m_iStartTicks) != uStamp;
}

} // namespace platform::host
