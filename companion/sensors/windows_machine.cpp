#include "companion/sensors/windows_machine.h"
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <algorithm>
#include <windows.h>

#include <powrprof.h>

namespace companion::sensors {
namespace {

/// What the power manager tells of one processor; the system's headers leave it out.
struct ProcessorPower {
    ULONG uNumber, uMaximumMhz, uCurrentMhz, uLimitMhz, uMaximumIdle, uCurrentIdle;
};

constexpr const wchar_t* kProcessorKey = L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

u64 Ticks(const FILETIME& st) { return (static_cast<u64>(st.dwHighDateTime) << 32) | st.dwLowDateTime; }

/// The fastest processor's clock; empty where the power manager does not tell.
std::optional<i32> PowerClock() {
    SYSTEM_INFO stSystem{};
    GetSystemInfo(&stSystem);
    std::vector<ProcessorPower> listPower(std::max<DWORD>(stSystem.dwNumberOfProcessors, 64));
    const auto uBytes = static_cast<ULONG>(listPower.size() * sizeof(ProcessorPower));
    if (CallNtPowerInformation(ProcessorInformation, nullptr, 0, listPower.data(), uBytes) != 0)
        return std::nullopt;
    ULONG uMost = 0;
    for (const ProcessorPower& st : listPower) uMost = std::max(uMost, st.uCurrentMhz);
    return Plausible(uMost, 1, 20000);
}

/// The nominal clock as the registry holds it.
std::optional<i32> NominalClock() {
    DWORD uMegahertz = 0, uBytes = sizeof(uMegahertz);
    const LSTATUS iStatus = RegGetValueW(HKEY_LOCAL_MACHINE, kProcessorKey, L"~MHz", RRF_RT_REG_DWORD,
                                         nullptr, &uMegahertz, &uBytes);
    return iStatus == ERROR_SUCCESS ? Plausible(uMegahertz, 1, 20000) : std::nullopt;
}

} // namespace

void WindowsCpu::Probe(Numbers& numbers) { numbers.Propose("cpu", "0"); }

void WindowsCpu::List(const Numbers&) {
    m_listReadings.clear();
    m_listReadings.push_back({FullName("CPU_USAGE", 0), "%", "GetSystemTimes", m_iLoad});
    if (PowerClock())
        m_listReadings.push_back({FullName("CPU_CLK", 0), "MHz", "CallNtPowerInformation", {}});
    else if (NominalClock())
        m_listReadings.push_back({FullName("CPU_CLK", 0), "MHz", "registry, ~MHz", {}});
}

std::optional<i32> WindowsCpu::ReadLoad() {
    FILETIME stIdle{}, stKernel{}, stUser{};
    if (!GetSystemTimes(&stIdle, &stKernel, &stUser)) return std::nullopt;
    const u64 uTotal = Ticks(stKernel) + Ticks(stUser); // kernel time has the idle time in it
    const u64 uIdle = Ticks(stIdle);
    if (m_uTotal != 0 && uTotal > m_uTotal) {
        const u64 uPassed = uTotal - m_uTotal;
        const u64 uRested = uIdle > m_uIdle ? std::min(uIdle - m_uIdle, uPassed) : 0;
        m_iLoad = Percent(uPassed - uRested, uPassed);
    }
    m_uTotal = uTotal;
    m_uIdle = uIdle;
    return m_iLoad;
}

void WindowsCpu::Read() {
    m_listReadings[0].iValue = ReadLoad();
    if (m_listReadings.size() < 2) return;
    const auto iClock = PowerClock();
    m_listReadings[1].iValue = iClock ? iClock : NominalClock();
}

void WindowsMemory::List(const Numbers&) {
    m_listReadings.clear();
    m_listReadings.push_back({FullName("RAM_USAGE_MB", 0), "MB", "GlobalMemoryStatusEx", {}});
    m_listReadings.push_back({FullName("RAM_USAGE_P", 0), "%", "GlobalMemoryStatusEx", {}});
}

void WindowsMemory::Read() {
    MEMORYSTATUSEX st{};
    st.dwLength = sizeof(st);
    const bool bRead = GlobalMemoryStatusEx(&st) && st.ullAvailPhys <= st.ullTotalPhys;
    const u64 uUsed = bRead ? st.ullTotalPhys - st.ullAvailPhys : 0;
    m_listReadings[0].iValue = bRead ? Plausible(static_cast<i64>(uUsed >> 20), 0, 0x7FFFFFFF) : std::nullopt;
    m_listReadings[1].iValue = bRead ? Percent(uUsed, st.ullTotalPhys) : std::nullopt;
}

} // namespace companion::sensors
