#include "companion/recording/report.h"
#include "companion/recording/output_file.h"
#include "companion/segment_json.h"
#include "companion/table.h"
#include "companion/utf.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace companion {
namespace recording {
namespace {

using Json = nlohmann::ordered_json;

std::string Fixed(f64 f, int iDecimals) {
    char sz[64];
    std::snprintf(sz, sizeof sz, "%.*f", iDecimals, f);
    return sz;
}

/// As many digits as are in the value: not more than a millionth of a millisecond.
f64 Rounded(f64 f) { return std::round(f * 1e6) / 1e6; }

std::string MeanText(const Reported& st, f64 Frame::*pMember) {
    f64 fSum = 0.0;
    size_t uCount = 0;
    for (const Frame& stFrame : st.stRecording.listFrames) {
        if (stFrame.*pMember < 0.0) continue;
        fSum += stFrame.*pMember;
        ++uCount;
    }
    return uCount ? MillisecondsText(fSum / static_cast<f64>(uCount)) : "-";
}

std::string EndWords(const Recording& st) { return st.strEnd.empty() ? "the file breaks off" : st.strEnd; }

Json LowsJson(const Figures& st) {
    Json jsLows = Json::object();
    for (u32 uKind = 0; uKind < LOW_KINDS; ++uKind) {
        Json& jsKind = jsLows[g_aLowDefinitions[uKind].szKey];
        for (u32 uShare = 0; uShare < LOW_SHARES; ++uShare) {
            const f64 fLow = st.aafLow[uKind][uShare];
            jsKind[uShare == LOW_1 ? "1%" : "0.1%"] = {{"frame_ms", Rounded(fLow)},
                                                       {"fps", Rounded(Rate(fLow))}};
        }
    }
    return jsLows;
}

Json StuttersJson(const Reported& st) {
    const std::vector<f64> listTimes = TimesOfFrames(st.stRecording);
    Json jsStutters = Json::array();
    for (const Stutter& stOne : st.stFigures.listStutters)
        jsStutters.push_back({{"time_ms", Rounded(listTimes[stOne.uIndex])},
                              {"frame_ms", Rounded(stOne.fFrame)},
                              {"around_ms", Rounded(stOne.fMedian)}});
    return jsStutters;
}

Json SensorsJson(const Recording& st) {
    Json jsSensors = Json::array();
    for (const Sensor& stSensor : st.listSensors) {
        f64 fLowest = stSensor.listValues.front().second, fHighest = fLowest, fSum = 0.0;
        for (const auto& [fTime, fValue] : stSensor.listValues) {
            fLowest = std::min(fLowest, fValue), fHighest = std::max(fHighest, fValue);
            fSum += fValue;
        }
        jsSensors.push_back({{"name", stSensor.strName},
                             {"unit", stSensor.strUnit},
                             {"values", stSensor.listValues.size()},
                             {"lowest", fLowest},
                             {"highest", fHighest},
                             {"mean", fSum / static_cast<f64>(stSensor.listValues.size())}});
    }
    return jsSensors;
}

Json RecordingJson(const Reported& st) {
    const Figures& stFigures = st.stFigures;
    Json js = {{"file", st.stRecording.strName}};
    Json jsHead = Json::object();
    for (const auto& [strKey, strValue] : st.stRecording.listHead) jsHead[strKey] = strValue;
    js["recorded"] = jsHead;
    js["end"] = EndWords(st.stRecording);
    js["frames"] = stFigures.uFrames;
    js["lost"] = st.stRecording.uLost;
    js["seconds"] = Rounded(stFigures.fSeconds);
    js["fps"] = {{"average", Rounded(Rate(stFigures.fMean))},
                 {"minimum", Rounded(Rate(stFigures.fLongest))},
                 {"maximum", Rounded(Rate(stFigures.fShortest))}};
    js["frame_ms"] = {{"average", Rounded(stFigures.fMean)},     {"deviation", Rounded(stFigures.fDeviation)},
                      {"minimum", Rounded(stFigures.fShortest)}, {"maximum", Rounded(stFigures.fLongest)},
                      {"p50", Rounded(stFigures.fMedian)},       {"p95", Rounded(stFigures.f95)},
                      {"p99", Rounded(stFigures.f99)},           {"p99.9", Rounded(stFigures.f999)}};
    js["lows"] = LowsJson(stFigures);
    js["stutter_share_percent"] = Rounded(stFigures.fStutterShare);
    js["stutters"] = StuttersJson(st);
    js["sensors"] = SensorsJson(st.stRecording);
    return js;
}

std::string LowsText(const std::vector<Reported>& listReported, const std::vector<std::string>& listTitles) {
    std::vector<Column> listColumns{{"LOW"}, {"SHARE", Align::Right}};
    for (const std::string& str : listTitles) listColumns.push_back({str, Align::Right});
    std::vector<std::vector<std::string>> listRows;
    for (u32 uKind = 0; uKind < LOW_KINDS; ++uKind)
        for (u32 uShare = 0; uShare < LOW_SHARES; ++uShare) {
            std::vector<std::string> listRow{g_aLowDefinitions[uKind].szTitle, g_aszShares[uShare]};
            for (const Reported& st : listReported) {
                const f64 fLow = st.stFigures.aafLow[uKind][uShare];
                listRow.push_back(RateText(fLow) + " (" + MillisecondsText(fLow) + ")");
            }
            listRows.push_back(listRow);
        }
    return FormatTable(listColumns, listRows);
}

std::string SensorsText(const Recording& st, const std::string& strTitle) {
    if (st.listSensors.empty()) return {};
    std::vector<std::vector<std::string>> listRows;
    for (const Json& js : SensorsJson(st))
        listRows.push_back(
            {js["name"], Fixed(js["lowest"], 0), Fixed(js["mean"], 1), Fixed(js["highest"], 0), js["unit"]});
    return "\nSensors of " + strTitle + "\n" +
           FormatTable({{"NAME"},
                        {"LOWEST", Align::Right},
                        {"MEAN", Align::Right},
                        {"HIGHEST", Align::Right},
                        {"UNIT"}},
                       listRows);
}

} // namespace

std::string MillisecondsText(f64 f) { return Fixed(f, f < 100.0 ? 2 : 1) + " ms"; }
std::string RateText(f64 fMilliseconds) { return Fixed(Rate(fMilliseconds), 1) + " fps"; }

std::string LowWords(LowKind eKind, const std::string& strShare) {
    std::string str = g_aLowDefinitions[eKind].szWords;
    const size_t u = str.find("%s");
    return u == std::string::npos ? str : str.replace(u, 2, strShare);
}

std::vector<f64> TimesOfFrames(const Recording& st) {
    std::vector<f64> listTimes;
    listTimes.reserve(st.listFrames.size());
    for (const Frame& stFrame : st.listFrames)
        if (stFrame.fFrame >= 0.0) listTimes.push_back(stFrame.fTime);
    return listTimes;
}

std::vector<std::string> Titles(const std::vector<Reported>& listReported) {
    std::vector<std::string> listTitles;
    for (const Reported& st : listReported) {
        std::string str = st.stRecording.strName;
        if (str.ends_with(".csv")) str.resize(str.size() - 4);
        const auto uSame = std::count(listTitles.begin(), listTitles.end(), str);
        listTitles.push_back(uSame ? str + " (" + std::to_string(listTitles.size() + 1) + ")" : str);
    }
    return listTitles;
}

const std::vector<FigureRow>& FigureRows() {
    static const std::vector<FigureRow> s_listRows{
        {"frames", [](const Reported& st) { return std::to_string(st.stFigures.uFrames); }},
        {"frames lost", [](const Reported& st) { return std::to_string(st.stRecording.uLost); }},
        {"duration", [](const Reported& st) { return Fixed(st.stFigures.fSeconds, 1) + " s"; }},
        {"end", [](const Reported& st) { return EndWords(st.stRecording); }},
        {"average rate", [](const Reported& st) { return RateText(st.stFigures.fMean); }},
        {"lowest rate", [](const Reported& st) { return RateText(st.stFigures.fLongest); }},
        {"highest rate", [](const Reported& st) { return RateText(st.stFigures.fShortest); }},
        {"average frame time", [](const Reported& st) { return MillisecondsText(st.stFigures.fMean); }},
        {"standard deviation", [](const Reported& st) { return MillisecondsText(st.stFigures.fDeviation); }},
        {"shortest frame", [](const Reported& st) { return MillisecondsText(st.stFigures.fShortest); }},
        {"median (50 %)", [](const Reported& st) { return MillisecondsText(st.stFigures.fMedian); }},
        {"95 % of the frames within", [](const Reported& st) { return MillisecondsText(st.stFigures.f95); }},
        {"99 % within", [](const Reported& st) { return MillisecondsText(st.stFigures.f99); }},
        {"99.9 % within", [](const Reported& st) { return MillisecondsText(st.stFigures.f999); }},
        {"longest frame", [](const Reported& st) { return MillisecondsText(st.stFigures.fLongest); }},
        {"stutters", [](const Reported& st) { return std::to_string(st.stFigures.listStutters.size()); }},
        {"time in stutters", [](const Reported& st) { return Fixed(st.stFigures.fStutterShare, 2) + " %"; }},
        {"in the swap, mean", [](const Reported& st) { return MeanText(st, &Frame::fSwap); }},
        {"overlay itself, mean", [](const Reported& st) { return MeanText(st, &Frame::fOverlay); }},
        {"limiter's wait, mean", [](const Reported& st) { return MeanText(st, &Frame::fWait); }},
    };
    return s_listRows;
}

std::string ReportText(const std::vector<Reported>& listReported) {
    const std::vector<std::string> listTitles = Titles(listReported);
    std::vector<Column> listColumns{{"FIGURE"}};
    for (const std::string& str : listTitles) listColumns.push_back({str, Align::Right});
    std::vector<std::vector<std::string>> listRows;
    for (const FigureRow& stRow : FigureRows()) {
        listRows.push_back({stRow.szTitle});
        for (const Reported& st : listReported) listRows.back().push_back(stRow.fnText(st));
    }
    std::string str = FormatTable(listColumns, listRows) + "\n" + LowsText(listReported, listTitles);
    for (size_t u = 0; u < listReported.size(); ++u)
        str += SensorsText(listReported[u].stRecording, listTitles[u]);
    return str;
}

std::string ReportJson(const std::vector<Reported>& listReported) {
    Json js = Json::array();
    for (const Reported& st : listReported) js.push_back(RecordingJson(st));
    return JsonToText(js);
}

} // namespace recording

namespace {

using namespace recording;

Result WriteOut(const Options& st, const std::string& strText) {
    if ((st.bText || st.bJson) && st.strOutput.empty()) {
        const bool bWritten = std::fwrite(strText.data(), 1, strText.size(), stdout) == strText.size();
        return bWritten && std::fflush(stdout) == 0 ? Result{} : Result::Fail("cannot write the report");
    }
    OutputFile file;
    Result stResult = file.Open(st.strOutput.empty() ? "report.html" : st.strOutput, st.bForce);
    if (stResult) stResult = file.Write(strText);
    return stResult ? file.Close() : stResult;
}

} // namespace

Result WriteReport(const Options& stOptions) {
    std::vector<Reported> listReported;
    for (const std::string& strFile : stOptions.listFiles) {
        Reported& st = listReported.emplace_back();
        const Result stRead = ReadRecording(strFile, st.stRecording);
        if (!stRead) return stRead;
        st.stFigures = FiguresOf(FrameTimes(st.stRecording));
        if (st.stFigures.uFrames == 0)
            return Result::Fail(Printable(strFile) + ": the recording has no two frames in a row");
    }
    if (stOptions.bJson) return WriteOut(stOptions, ReportJson(listReported));
    return WriteOut(stOptions, stOptions.bText ? ReportText(listReported) : ReportPage(listReported));
}

} // namespace companion
