#pragma once
// What tells a process from a later one with its id: when it was made. Header only: the companion asks
// these questions without the rest of the back-end.
#include "platform/types.h"
#include "platform/win32/windows_api.h"

namespace platform::host {

/// 0 where the process cannot be asked.
inline u32 StartOf(HANDLE hProcess) noexcept {
    FILETIME stStart{}, stExit{}, stKernel{}, stUser{};
    if (!GetProcessTimes(hProcess, &stStart, &stExit, &stKernel, &stUser)) return 0;
    const u32 uStamp = (stStart.dwLowDateTime ^ (stStart.dwHighDateTime * 2654435761u)) | 1;
    return uStamp;
}

inline u32 StampOf(u32 uProcessId) noexcept {
    const HANDLE hProcess = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, uProcessId);
    if (!hProcess) return 0;
    const u32 uStamp = StartOf(hProcess);
    CloseHandle(hProcess);
    return uStamp;
}

inline bool IsGone(u32 uProcessId, u32 uStamp) noexcept {
    constexpr DWORD c_uAccess = PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE;
    const HANDLE hProcess = OpenProcess(c_uAccess, FALSE, uProcessId);
    // Anything but "no such id", say a refusal, means that somebody has it.
    if (!hProcess) return GetLastError() == ERROR_INVALID_PARAMETER;
    // Its end may have come while somebody still holds a handle to it.
    const bool bEnded = WaitForSingleObject(hProcess, 0) == WAIT_OBJECT_0;
    const u32 uStart = StartOf(hProcess);
    CloseHandle(hProcess);
    return bEnded || (uStamp != 0 && uStart != 0 && uStart != uStamp);
}

} // namespace platform::host
