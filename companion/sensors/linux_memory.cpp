#include "companion/sensors/linux_memory.h"
#include "companion/sensors/text_file.h"
#include <limits>

namespace companion::sensors {
namespace {

/// Kibibytes behind "szKey:" at the start of a line.
std::optional<u64> Kibibytes(std::string_view strText, std::string_view strKey) {
    std::string_view strLine;
    for (size_t uFrom = 0; TakeLine(strText, uFrom, strLine);) {
        if (!strLine.starts_with(strKey)) continue;
        size_t uAt = strKey.size();
        return TakeNumber(strLine, uAt);
    }
    return std::nullopt;
}

} // namespace

void LinuxMemory::List(const Numbers&) {
    m_listReadings.clear();
    if (!Exists(m_strFile)) return;
    m_listReadings.push_back({FullName("RAM_USAGE_MB", 0), "MB", m_strFile, {}});
    m_listReadings.push_back({FullName("RAM_USAGE_P", 0), "%", m_strFile, {}});
}

void LinuxMemory::Read() {
    for (Reading& st : m_listReadings) st.iValue.reset();
    if (m_listReadings.empty() || !ReadText(m_strFile, m_strText)) return;
    const auto uTotal = Kibibytes(m_strText, "MemTotal:");
    auto uFree = Kibibytes(m_strText, "MemAvailable:");
    if (!uFree) uFree = Kibibytes(m_strText, "MemFree:"); // kernels before 3.14
    if (!uTotal || !uFree || *uFree > *uTotal) return;
    const u64 uUsed = (*uTotal - *uFree) / 1024;
    if (uUsed > static_cast<u64>(std::numeric_limits<i32>::max())) return;
    m_listReadings[0].iValue = static_cast<i32>(uUsed);
    m_listReadings[1].iValue = Percent(*uTotal - *uFree, *uTotal);
}

} // namespace companion::sensors
