#include "companion/sensors/windows_machine.h"
#include "platform/tool_machine.h"
#include <algorithm>

namespace companion::sensors {
namespace {

/// The fastest processor's clock; empty where the power manager does not tell.
std::optional<i32> PowerClock() { return Plausible(platform::tool::FastestClock(), 1, 20000); }

/// The nominal clock as the registry holds it.
std::optional<i32> NominalClock() { return Plausible(platform::tool::NominalClock(), 1, 20000); }

} // namespace

void WindowsCpu::Probe(Numbers& numbers) { numbers.Propose("cpu", "0"); }

void WindowsCpu::List(const Numbers&) {
    m_listReadings.clear();
    m_listHardware = {{"cpu", 0, platform::tool::ProcessorName()}};
    m_listReadings.push_back({FullName("CPU_USAGE", 0), "%", "GetSystemTimes", m_iLoad});
    if (PowerClock())
        m_listReadings.push_back({FullName("CPU_CLK", 0), "MHz", "CallNtPowerInformation", {}});
    else if (NominalClock())
        m_listReadings.push_back({FullName("CPU_CLK", 0), "MHz", "registry, ~MHz", {}});
}

std::optional<i32> WindowsCpu::ReadLoad() {
    u64 uIdle = 0, uTotal = 0;
    if (!platform::tool::ReadProcessorTimes(uIdle, uTotal)) return std::nullopt;
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
    u64 uFree = 0, uAll = 0;
    const bool bRead = platform::tool::ReadMemorySize(uFree, uAll) && uFree <= uAll;
    const u64 uUsed = bRead ? uAll - uFree : 0;
    m_listReadings[0].iValue = bRead ? Plausible(static_cast<i64>(uUsed >> 20), 0, 0x7FFFFFFF) : std::nullopt;
    m_listReadings[1].iValue = bRead ? Percent(uUsed, uAll) : std::nullopt;
}

} // namespace companion::sensors
