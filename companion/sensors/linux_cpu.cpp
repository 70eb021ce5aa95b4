#include "companion/sensors/linux_cpu.h"
#include "companion/sensors/text_file.h"
#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace companion::sensors {
namespace {

constexpr f64 kMostMegahertz = 20000.0;
constexpr size_t kLongestName = 128;
constexpr size_t kTickFields = 8;        ///< user to steal; guest time is part of user time already
constexpr u64 kMostTicks = u64{1} << 56; ///< keeps sums of them within 64 bits

/// The text behind the colon of a line "key : value" if its key is szKey.
std::optional<std::string_view> ValueOf(std::string_view strLine, std::string_view strKey) {
    const size_t uColon = strLine.find(':');
    if (uColon == std::string_view::npos || Trimmed(strLine.substr(0, uColon)) != strKey) return std::nullopt;
    return Trimmed(strLine.substr(uColon + 1));
}

f64 Megahertz(std::string_view strText) {
    const std::string strNumber(strText.substr(0, 32));
    char* pEnd = nullptr;
    const f64 fValue = std::strtod(strNumber.c_str(), &pEnd);
    return pEnd != strNumber.c_str() && *pEnd == '\0' && std::isfinite(fValue) ? fValue : 0.0;
}

/// Total and idle ticks of "cpuN ..." behind its name; idle takes waiting for devices in. False if garbage.
bool ParseTicks(std::string_view strLine, size_t uFrom, u64& uTotal, u64& uIdle) {
    uTotal = uIdle = 0;
    for (size_t i = 0; i < kTickFields; ++i) {
        const auto uTicks = TakeNumber(strLine, uFrom);
        if (!uTicks) return i > 3; // old kernels have four fields
        if (*uTicks > kMostTicks) return false;
        uTotal += *uTicks;
        if (i == 3 || i == 4) uIdle += *uTicks;
    }
    return true;
}

/// Number of a line "cpuN ..." of stat, uAt behind it; empty for other lines, the machine's sum among them.
std::optional<u64> ProcessorOf(std::string_view strLine, size_t& uAt) {
    uAt = 3;
    if (!strLine.starts_with("cpu") || strLine.size() < 4 || strLine[3] == ' ') return std::nullopt;
    return TakeNumber(strLine, uAt);
}

} // namespace

u32 LinuxCpu::PackageOf(i64 iId) {
    const auto it = std::find_if(m_listPackages.begin(), m_listPackages.end(),
                                 [iId](const Package& st) { return st.iId == iId; });
    if (it != m_listPackages.end()) return static_cast<u32>(it - m_listPackages.begin());
    m_listPackages.emplace_back().iId = iId;
    return static_cast<u32>(m_listPackages.size() - 1);
}

/// Processors that have a line of their own in stat, with what the kernel tells of each.
void LinuxCpu::FindProcessors() {
    std::map<u64, Processor> mapFound;
    ReadText(m_strRoot + "/proc/stat", m_strText);
    std::string_view strLine;
    for (size_t uFrom = 0, uAt = 0; TakeLine(m_strText, uFrom, strLine);) {
        const auto uNumber = ProcessorOf(strLine, uAt);
        if (!uNumber) continue;
        const std::string strFolder = m_strRoot + "/sys/devices/system/cpu/cpu" + std::to_string(*uNumber);
        const auto iPackage = ReadNumber(strFolder + "/topology/physical_package_id");
        Processor& st = mapFound[*uNumber];
        if (const auto it = m_mapProcessors.find(*uNumber); it != m_mapProcessors.end()) st = it->second;
        st.uPackage = PackageOf(std::max<i64>(iPackage.value_or(0), 0)); // -1: the firmware does not tell
        st.strClock = strFolder + "/cpufreq/scaling_cur_freq";
        if (!Exists(st.strClock)) st.strClock.clear();
    }
    m_mapProcessors = std::move(mapFound);
}

void LinuxCpu::Probe(Numbers& numbers) {
    m_listPackages.clear();
    FindProcessors();
    m_bInfoClocks = std::none_of(m_mapProcessors.begin(), m_mapProcessors.end(),
                                 [](const auto& entry) { return !entry.second.strClock.empty(); });
    std::vector<i64> listIds;
    for (const Package& st : m_listPackages) listIds.push_back(st.iId);
    std::sort(listIds.begin(), listIds.end());
    for (const i64 iId : listIds) numbers.Propose("cpu", std::to_string(iId));
}

/// Takes each known processor's value of that name from the text of cpuinfo.
template <class Take> void LinuxCpu::ForEachInfoValue(std::string_view strName, Take take) {
    auto itProcessor = m_mapProcessors.end();
    std::string_view strLine;
    for (size_t uFrom = 0; TakeLine(m_strText, uFrom, strLine);) {
        if (const auto strNumber = ValueOf(strLine, "processor")) {
            const auto iNumber = ParseNumber(*strNumber);
            itProcessor = iNumber ? m_mapProcessors.find(static_cast<u64>(*iNumber)) : m_mapProcessors.end();
        }
        const auto strValue = ValueOf(strLine, strName);
        if (strValue && itProcessor != m_mapProcessors.end()) take(itProcessor->second, *strValue);
    }
}

/// Model of each package.
void LinuxCpu::FindNames() {
    ForEachInfoValue("model name", [this](const Processor& st, std::string_view strName) {
        std::string& strKept = m_listPackages[st.uPackage].strName;
        if (strKept.empty()) strKept = strName.substr(0, kLongestName);
    });
}

void LinuxCpu::List(const Numbers& numbers) {
    m_listReadings.clear();
    m_listHardware.clear();
    const std::string strClock =
        m_strRoot +
        (m_bInfoClocks ? "/proc/cpuinfo" : "/sys/devices/system/cpu/cpu*/cpufreq/scaling_cur_freq");
    ReadText(m_strRoot + "/proc/cpuinfo", m_strText);
    FindNames();
    const bool bClock = !m_bInfoClocks || m_strText.find("cpu MHz") != std::string::npos;
    for (Package& st : m_listPackages) {
        const auto uIndex = numbers.IndexOf("cpu", std::to_string(st.iId));
        if (!uIndex) continue;
        m_listHardware.push_back({"cpu", *uIndex, st.strName});
        st.uUsage = m_listReadings.size();
        m_listReadings.push_back({FullName("CPU_USAGE", *uIndex), "%", m_strRoot + "/proc/stat", {}});
        const auto itLoad = m_mapLoads.find(st.iId);
        if (itLoad != m_mapLoads.end()) m_listReadings.back().iValue = itLoad->second;
        if (!bClock) continue;
        st.uClock = m_listReadings.size();
        m_listReadings.push_back({FullName("CPU_CLK", *uIndex), "MHz", strClock, {}});
    }
}

void LinuxCpu::CountTicks(Processor& st, u64 uTotal, u64 uIdle) {
    if (st.bSeen && uTotal > st.uTotal) {
        Package& stPackage = m_listPackages[st.uPackage];
        const u64 uPassed = uTotal - st.uTotal;
        stPackage.uTotal += uPassed;
        // Waiting time may run backwards.
        stPackage.uIdle += uIdle > st.uIdle ? std::min(uIdle - st.uIdle, uPassed) : 0;
    }
    st.uTotal = uTotal;
    st.uIdle = uIdle;
    st.bSeen = true;
}

void LinuxCpu::ReadTicks() {
    for (Package& st : m_listPackages) st.uTotal = st.uIdle = 0;
    const bool bReadable = ReadText(m_strRoot + "/proc/stat", m_strText);
    std::string_view strLine;
    for (size_t uFrom = 0, uAt = 0; TakeLine(m_strText, uFrom, strLine);) {
        u64 uTotal = 0, uIdle = 0;
        const auto uNumber = ProcessorOf(strLine, uAt);
        if (!uNumber || !ParseTicks(strLine, uAt, uTotal, uIdle)) continue;
        const auto it = m_mapProcessors.find(*uNumber);
        if (it != m_mapProcessors.end()) CountTicks(it->second, uTotal, uIdle);
    }
    ShowLoads(bReadable);
}

/// A load without a single tick since the last look stays as it was.
void LinuxCpu::ShowLoads(bool bReadable) {
    for (const Package& st : m_listPackages) {
        if (!st.uUsage || (bReadable && st.uTotal == 0)) continue;
        auto& iLoad = m_listReadings[*st.uUsage].iValue;
        iLoad = Percent(st.uTotal - st.uIdle, st.uTotal);
        if (iLoad) m_mapLoads[st.iId] = *iLoad;
        if (!iLoad) m_mapLoads.erase(st.iId);
    }
}

void LinuxCpu::KeepClock(const Processor& stProcessor, f64 fMegahertz) {
    if (fMegahertz > kMostMegahertz) return;
    Package& st = m_listPackages[stProcessor.uPackage];
    st.fMegahertz = std::max(st.fMegahertz, fMegahertz);
}

void LinuxCpu::ReadInfoClocks() {
    ReadText(m_strRoot + "/proc/cpuinfo", m_strText);
    ForEachInfoValue("cpu MHz", [this](const Processor& st, std::string_view strClock) {
        KeepClock(st, Megahertz(strClock));
    });
}

void LinuxCpu::ReadClocks() {
    for (Package& st : m_listPackages) st.fMegahertz = 0.0;
    if (m_bInfoClocks) return ReadInfoClocks();
    for (const auto& [uNumber, st] : m_mapProcessors) {
        const auto iKilohertz = st.strClock.empty() ? std::nullopt : ReadNumber(st.strClock);
        if (iKilohertz) KeepClock(st, static_cast<f64>(*iKilohertz) / 1000.0);
    }
}

void LinuxCpu::ShowClocks() {
    for (const Package& st : m_listPackages) {
        if (!st.uClock) continue;
        auto& iClock = m_listReadings[*st.uClock].iValue;
        iClock.reset();
        if (st.fMegahertz >= 0.5) iClock = static_cast<i32>(st.fMegahertz + 0.5);
    }
}

void LinuxCpu::Read() {
    ReadTicks();
    ReadClocks();
    ShowClocks();
}

} // namespace companion::sensors
