#include "platform/tool_machine.h"
#include "platform/win32/tool.h"
#include "platform/win32/windows_api.h"
#include <algorithm>
#include <powrprof.h>
#include <vector>

namespace platform::tool {
namespace {

/// What the power manager tells of one processor; the system's headers leave it out.
struct ProcessorPower {
    ULONG uNumber, uMaximumMhz, uCurrentMhz, uLimitMhz, uMaximumIdle, uCurrentIdle;
};

constexpr const wchar_t* kProcessorKey = L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

u64 Ticks(const FILETIME& st) { return (static_cast<u64>(st.dwHighDateTime) << 32) | st.dwLowDateTime; }

} // namespace

bool ReadProcessorTimes(u64& uIdle, u64& uTotal) {
    FILETIME stIdle{}, stKernel{}, stUser{};
    if (!GetSystemTimes(&stIdle, &stKernel, &stUser)) return false;
    uTotal = Ticks(stKernel) + Ticks(stUser); // kernel time has the idle time in it
    uIdle = Ticks(stIdle);
    return true;
}

u32 FastestClock() {
    SYSTEM_INFO stSystem{};
    GetSystemInfo(&stSystem);
    std::vector<ProcessorPower> listPower(std::max<DWORD>(stSystem.dwNumberOfProcessors, 64));
    const auto uBytes = static_cast<ULONG>(listPower.size() * sizeof(ProcessorPower));
    if (CallNtPowerInformation(ProcessorInformation, nullptr, 0, listPower.data(), uBytes) != 0) return 0;
    ULONG uMost = 0;
    for (const ProcessorPower& st : listPower) uMost = std::max(uMost, st.uCurrentMhz);
    return uMost;
}

u32 NominalClock() {
    DWORD uMegahertz = 0, uBytes = sizeof(uMegahertz);
    const LSTATUS iStatus = RegGetValueW(HKEY_LOCAL_MACHINE, kProcessorKey, L"~MHz", RRF_RT_REG_DWORD,
                                         nullptr, &uMegahertz, &uBytes);
    return iStatus == ERROR_SUCCESS ? uMegahertz : 0;
}

std::string ProcessorName() {
    wchar_t wzName[256] = {};
    DWORD uBytes = sizeof(wzName) - sizeof(wchar_t);
    const LSTATUS iStatus = RegGetValueW(HKEY_LOCAL_MACHINE, kProcessorKey, L"ProcessorNameString",
                                         RRF_RT_REG_SZ, nullptr, wzName, &uBytes);
    std::string strName = iStatus == ERROR_SUCCESS ? FromWide(wzName) : std::string();
    strName.erase(0, strName.find_first_not_of(' '));
    strName.erase(strName.find_last_not_of(' ') + 1);
    return strName;
}

bool ReadMemorySize(u64& uFree, u64& uAll) {
    MEMORYSTATUSEX st{};
    st.dwLength = sizeof(st);
    if (!GlobalMemoryStatusEx(&st)) return false;
    uFree = st.ullAvailPhys;
    uAll = st.ullTotalPhys;
    return true;
}

} // namespace platform::tool
