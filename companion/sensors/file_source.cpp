#include "companion/sensors/file_source.h"
#include "companion/sensors/text_file.h"
#include <algorithm>

namespace companion::sensors {
namespace {

/// iNumber / iDivisor, halves away from 0, if that is within the quantity's range.
std::optional<i32> Scaled(i64 iNumber, const Quantity& st) {
    if (iNumber < 0 && st.iLowest >= 0) return std::nullopt; // would be rounded to a made-up 0
    const i64 iWhole = iNumber / st.iDivisor;
    if (!Plausible(iWhole, st.iLowest, st.iHighest)) return std::nullopt;
    const i64 iTwice = iNumber % st.iDivisor * 2;
    const i64 iStep = (iTwice >= st.iDivisor ? 1 : 0) - (iTwice <= -st.iDivisor ? 1 : 0);
    return Plausible(iWhole + iStep, st.iLowest, st.iHighest);
}

std::optional<i32> ReadShare(const std::string& strFile, const std::string& strWhole, const Quantity& st) {
    const auto iPart = ReadNumber(strFile);
    auto iWhole = ReadNumber(strWhole);
    if (!iWhole && st.iDivisor > 1 && !Exists(strWhole)) iWhole = st.iDivisor;
    if (!iPart || !iWhole || *iPart < 0 || *iWhole <= 0) return std::nullopt;
    const f64 fPercent = static_cast<f64>(*iPart) * 100.0 / static_cast<f64>(*iWhole);
    return fPercent <= st.iHighest ? std::optional(static_cast<i32>(fPercent + 0.5)) : std::nullopt;
}

std::string FaultFile(const std::string& strFile) {
    constexpr std::string_view strInput = "_input";
    if (!strFile.ends_with(strInput)) return {};
    return strFile.substr(0, strFile.size() - strInput.size()) + "_fault";
}

} // namespace

void FileSource::Clear() {
    m_listReadings.clear();
    m_listChannels.clear();
}

bool FileSource::Add(const Quantity& stQuantity, u32 uIndex, const std::string& strFile,
                     const std::string& strWhole) {
    const std::string strName = FullName(stQuantity.szBase, uIndex);
    const bool bListed = std::any_of(m_listReadings.begin(), m_listReadings.end(),
                                     [&](const Reading& st) { return st.strName == strName; });
    if (bListed || !Exists(strFile)) return false;
    std::string strFault = FaultFile(strFile);
    if (!strFault.empty() && !Exists(strFault)) strFault.clear();
    m_listChannels.push_back({&stQuantity, strFile, strWhole, std::move(strFault)});
    m_listReadings.push_back({strName, stQuantity.szUnit, strFile, std::nullopt});
    return true;
}

std::optional<i32> FileSource::ReadStarred(const Channel& stChannel) {
    ReadText(stChannel.strFile, m_strText);
    std::string_view strLine;
    for (size_t uFrom = 0; TakeLine(m_strText, uFrom, strLine);) {
        strLine = Trimmed(strLine);
        size_t uAt = strLine.find(':');
        if (!strLine.ends_with('*') || uAt == std::string_view::npos) continue;
        const auto uNumber = TakeNumber(strLine, ++uAt);
        if (!uNumber || *uNumber > 1000000 || strLine.substr(uAt, 3) != "Mhz") return std::nullopt;
        return Scaled(static_cast<i64>(*uNumber), *stChannel.pQuantity);
    }
    return std::nullopt;
}

std::optional<i32> FileSource::ReadChannel(const Channel& stChannel) {
    const Quantity& st = *stChannel.pQuantity;
    if (st.eForm == Form::Starred) return ReadStarred(stChannel);
    if (st.eForm == Form::Share) return ReadShare(stChannel.strFile, stChannel.strWhole, st);
    if (!stChannel.strFault.empty() && ReadNumber(stChannel.strFault) == 1) return std::nullopt;
    const auto iNumber = ReadNumber(stChannel.strFile);
    return iNumber ? Scaled(*iNumber, st) : std::nullopt;
}

void FileSource::Read() {
    for (size_t i = 0; i < m_listChannels.size(); ++i)
        m_listReadings[i].iValue = ReadChannel(m_listChannels[i]);
}

} // namespace companion::sensors
