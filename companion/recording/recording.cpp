#include "companion/recording/recording.h"
#include "companion/profile_folder.h"
#include "companion/utf.h"
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace companion::recording {
namespace {

constexpr std::string_view kMark = "# orvin-osd recording 1";
constexpr std::string_view kColumns =
    "row,time_ms,frame,frame_ms,swap_ms,overlay_ms,wait_ms,thread,name,value,unit";
enum Field : size_t {
    kRow,
    kTime,
    kFrame,
    kFrameMs,
    kSwapMs,
    kOverlayMs,
    kWaitMs,
    kThread,
    kName,
    kValue,
    kUnit,
    kFields
};

constexpr f64 kLongest = 1e12; ///< milliseconds; more is no time of ours

/// Three decimals of a microsecond.
std::string Number(f64 f) {
    char sz[64];
    std::snprintf(sz, sizeof sz, "%.6f", f);
    return sz;
}

std::string Known(f64 f) { return f < 0.0 ? "" : Number(f); }

/// As a field: quoted where it has to be.
std::string Quoted(const std::string& str) {
    if (str.find_first_of(",\"") == std::string::npos) return str;
    std::string strOut = "\"";
    for (const char c : str) strOut += c == '"' ? std::string("\"\"") : std::string(1, c);
    return strOut + "\"";
}

/// False for a quote that does not end, and for more fields than there are columns.
bool Split(std::string_view szLine, std::vector<std::string>& listFields) {
    listFields.assign(1, {});
    bool bInside = false;
    for (size_t u = 0; u < szLine.size(); ++u) {
        const char c = szLine[u];
        if (c == '"' && bInside && u + 1 < szLine.size() && szLine[u + 1] == '"')
            listFields.back() += szLine[++u];
        else if (c == '"')
            bInside = !bInside;
        else if (c == ',' && !bInside)
            listFields.emplace_back();
        else
            listFields.back() += c;
        if (listFields.size() > kFields) return false;
    }
    return !bInside && listFields.size() == kFields;
}

bool ReadNumber(const std::string& str, f64& f) {
    const auto [pEnd, eError] = std::from_chars(str.data(), str.data() + str.size(), f);
    return eError == std::errc() && pEnd == str.data() + str.size() && std::isfinite(f);
}

/// A time, or nothing at all where it may be unknown.
bool ReadTime(const std::string& str, bool bMayBeUnknown, f64& f) {
    if (str.empty() && bMayBeUnknown) {
        f = g_fUnknown;
        return true;
    }
    return ReadNumber(str, f) && f >= 0.0 && f <= kLongest;
}

bool ReadCount(const std::string& str, u64& u) {
    const auto [pEnd, eError] = std::from_chars(str.data(), str.data() + str.size(), u);
    return eError == std::errc() && pEnd == str.data() + str.size();
}

Result Bad(const char* szWhat, const std::string& strText) {
    return Result::Fail(std::string(szWhat) + " \"" + Printable(strText.substr(0, 40)) + "\"");
}

} // namespace

std::vector<f64> FrameTimes(const Recording& st) {
    std::vector<f64> listTimes;
    listTimes.reserve(st.listFrames.size());
    for (const Frame& stFrame : st.listFrames)
        if (stFrame.fFrame >= 0.0) listTimes.push_back(stFrame.fFrame);
    return listTimes;
}

std::string HeadText(const Head& listHead) {
    std::string strText = std::string(kMark) + "\n";
    for (const auto& [strKey, strValue] : listHead)
        strText += "# " + strKey + ": " + Printable(strValue) + "\n";
    return strText + std::string(kColumns) + "\n";
}

std::string FrameText(const Frame& st) {
    char szThread[48];
    std::snprintf(szThread, sizeof szThread, ",%u,,,\n", st.uThread);
    std::string str = "frame," + Number(st.fTime) + "," + std::to_string(st.uNumber) + ",";
    str.append(Known(st.fFrame)).append(",").append(Known(st.fSwap)).append(",");
    return str.append(Known(st.fOverlay)).append(",").append(Known(st.fWait)).append(szThread);
}

std::string SensorText(f64 fTime, const std::string& strName, f64 fValue, const std::string& strUnit) {
    char szValue[64];
    std::snprintf(szValue, sizeof szValue, "%.10g", fValue);
    return "sensor," + Number(fTime) + ",,,,,,," + Quoted(strName) + "," + szValue + "," + Quoted(strUnit) +
           "\n";
}

std::string LostText(f64 fTime, u64 uFrames) {
    return "lost," + Number(fTime) + ",,,,,,,," + std::to_string(uFrames) + ",frames\n";
}

std::string EndText(f64 fTime, const std::string& strWhy) {
    return "end," + Number(fTime) + ",,,,,,," + Quoted(strWhy) + ",,\n";
}

Result Parser::HeadLine(std::string_view szLine) {
    if (m_st.listHead.size() >= g_uMostHeadLines) return Result::Fail("the head has too many lines");
    szLine.remove_prefix(1);
    while (szLine.starts_with(' ')) szLine.remove_prefix(1);
    const size_t uColon = szLine.find(": ");
    if (uColon != std::string_view::npos)
        m_st.listHead.emplace_back(Printable(szLine.substr(0, uColon)), Printable(szLine.substr(uColon + 2)));
    return {};
}

Result Parser::FrameRow(f64 fTime, const std::vector<std::string>& list) {
    if (m_st.listFrames.size() >= g_uMostFrames) return Result::Fail("there are too many frames");
    Frame st;
    u64 uThread = 0;
    st.fTime = m_fLast = fTime;
    if (!ReadCount(list[kFrame], st.uNumber)) return Bad("no frame number:", list[kFrame]);
    if (!ReadTime(list[kFrameMs], true, st.fFrame)) return Bad("no time of a frame:", list[kFrameMs]);
    if (!ReadTime(list[kSwapMs], true, st.fSwap)) return Bad("no time of a swap:", list[kSwapMs]);
    if (!ReadTime(list[kOverlayMs], true, st.fOverlay))
        return Bad("no time of the overlay:", list[kOverlayMs]);
    if (!ReadTime(list[kWaitMs], true, st.fWait)) return Bad("no time of the limiter:", list[kWaitMs]);
    if (!ReadCount(list[kThread], uThread) || uThread > ~0u) return Bad("no thread:", list[kThread]);
    st.uThread = static_cast<u32>(uThread);
    m_st.listFrames.push_back(st);
    return {};
}

Result Parser::SensorRow(f64 fTime, const std::vector<std::string>& list) {
    f64 fValue = 0.0;
    if (!ReadNumber(list[kValue], fValue) || std::abs(fValue) > kLongest)
        return Bad("no value:", list[kValue]);
    const std::string strName = Printable(list[kName]);
    const auto [it, bNew] = m_mapSensors.emplace(strName, m_st.listSensors.size());
    if (bNew && m_st.listSensors.size() >= g_uMostSensors) return Result::Fail("there are too many sensors");
    if (bNew) m_st.listSensors.push_back({strName, Printable(list[kUnit]), {}});
    if (++m_uValues > g_uMostSensorValues) return Result::Fail("there are too many values of sensors");
    m_st.listSensors[it->second].listValues.emplace_back(fTime, fValue);
    return {};
}

Result Parser::Row(const std::vector<std::string>& list) {
    f64 fTime = 0.0;
    if (!ReadTime(list[kTime], false, fTime)) return Bad("no time:", list[kTime]);
    if (list[kRow] == "frame" && fTime < m_fLast) return Bad("a time that runs back:", list[kTime]);
    if (list[kRow] == "frame") return FrameRow(fTime, list);
    if (list[kRow] == "sensor") return SensorRow(fTime, list);
    u64 uLost = 0;
    if (list[kRow] == "lost") {
        if (!ReadCount(list[kValue], uLost)) return Bad("no count of frames:", list[kValue]);
        m_st.uLost += uLost;
        return {};
    }
    if (list[kRow] != "end") return Bad("no kind of row:", list[kRow]);
    m_st.strEnd = Printable(list[kName]);
    m_st.fEnd = fTime;
    return {};
}

Result Parser::Line(std::string_view szLine) {
    if (szLine.ends_with('\r')) szLine.remove_suffix(1);
    if (szLine.size() > g_uLongestLine) return Result::Fail("the line is too long");
    if (++m_uLines == 1)
        return szLine == kMark ? Result{}
                               : Result::Fail("this is no recording: its first line is not \"" +
                                              std::string(kMark) + "\"");
    if (szLine.empty()) return {};
    if (szLine.front() == '#') return HeadLine(szLine);
    if (!m_bColumns) {
        m_bColumns = szLine == kColumns;
        return m_bColumns ? Result{} : Result::Fail("the columns are not those of a recording");
    }
    std::vector<std::string> listFields;
    if (!Split(szLine, listFields))
        return Result::Fail("the row has not " + std::to_string(kFields) + " fields");
    return Row(listFields);
}

Result Parser::End() const {
    if (!m_bColumns) return Result::Fail("this is no recording: it has no columns");
    return m_st.listFrames.empty() ? Result::Fail("the recording has no frames") : Result{};
}

namespace {

Result Located(const Result& st, const std::string& strPath, size_t uLine) {
    if (st) return st;
    const std::string strPlace = uLine ? "line " + std::to_string(uLine) + ": " : "";
    return Result::Fail(Printable(strPath) + ": " + strPlace + st.strError);
}

/// Every line of a file; a piece that is longer than a line may be counts as one.
Result ReadLines(std::istream& file, Parser& parser, const std::string& strPath) {
    std::string strLine, strChunk(1u << 16, '\0');
    size_t uLine = 0;
    const auto fnLine = [&](size_t uNumber) { return Located(parser.Line(strLine), strPath, uNumber); };
    while (file.read(strChunk.data(), static_cast<std::streamsize>(strChunk.size())), file.gcount() > 0) {
        for (const char c : std::string_view(strChunk.data(), static_cast<size_t>(file.gcount()))) {
            if (c != '\n' && strLine.size() <= g_uLongestLine) {
                strLine += c;
                continue;
            }
            const Result st = fnLine(++uLine);
            if (!st) return st;
            strLine.clear();
        }
    }
    if (file.bad()) return Result::Fail("cannot read " + Printable(strPath));
    // A last line without an end is one that the recorder could not finish.
    return Located(parser.End(), strPath, 0);
}

} // namespace

Result ReadRecording(const std::string& strPath, Recording& st) {
    const std::filesystem::path path = PathOfText(strPath);
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        return Result::NotFound("there is no file " + Printable(strPath));
    if (!std::filesystem::is_regular_file(path, error))
        return Result::Fail(Printable(strPath) + " is no file");
    std::ifstream file(path, std::ios::binary);
    if (!file) return Result::Fail("cannot read " + Printable(strPath));
    st = {};
    st.strName = TextOfPath(path.filename());
    Parser parser(st);
    return ReadLines(file, parser, strPath);
}

} // namespace companion::recording
