// The page: what is written here is all that it needs.
#include "companion/recording/charts.h"
#include "companion/recording/report.h"
#include <algorithm>
#include <cstdio>

namespace companion::recording {
namespace {

constexpr size_t kStuttersListed = 12;

constexpr const char* kStyle = R"(
:root{color-scheme:light dark;--bg:#fff;--card:#f5f6f8;--ink:#1b2230;--soft:#5a6474;--line:#d9dee6;--bad:#d32f2f;
--c0:#2563eb;--c1:#d97706;--c2:#0e9f6e;--c3:#9333ea;--c4:#c2410c;--c5:#0891b2}
@media (prefers-color-scheme:dark){:root{--bg:#12151b;--card:#1b2029;--ink:#e6e9ef;--soft:#9aa4b5;--line:#333b49;--bad:#ff6b6b;
--c0:#6ea8fe;--c1:#f5b04c;--c2:#4cd6a4;--c3:#c792ff;--c4:#ff9166;--c5:#5cd3ea}}
*{box-sizing:border-box}
body{margin:0;background:var(--bg);color:var(--ink);font:15px/1.5 system-ui,-apple-system,"Segoe UI",Roboto,"DejaVu Sans",sans-serif}
main{max-width:1080px;margin:0 auto;padding:24px 20px 48px}
h1{font-size:26px;line-height:1.2;margin:0 0 4px}
h2{font-size:19px;margin:36px 0 10px;padding-top:14px;border-top:1px solid var(--line)}
h3{font-size:15px;margin:22px 0 6px}
p{margin:6px 0}.soft{color:var(--soft)}
.cards{display:grid;grid-template-columns:repeat(auto-fit,minmax(132px,1fr));gap:10px;margin:14px 0}
.card{background:var(--card);border-radius:8px;padding:10px 12px}
.card b{display:block;font-size:21px;line-height:1.25;font-variant-numeric:tabular-nums}
.card span{color:var(--soft);font-size:13px}
.card.bad b{color:var(--bad)}
.scroll{overflow-x:auto;margin:8px 0}.narrow{max-width:520px}
table{border-collapse:collapse;width:100%;font-size:14px;font-variant-numeric:tabular-nums}
th,td{padding:5px 10px;text-align:right;border-bottom:1px solid var(--line);vertical-align:top}
th:first-child,td:first-child{text-align:left;padding-left:0}
td.words{text-align:left;color:var(--soft);min-width:230px;max-width:440px}
th{font-weight:600;overflow-wrap:anywhere;min-width:84px}
td small{display:block;color:var(--soft)}
dl{display:grid;grid-template-columns:max-content 1fr;gap:2px 14px;margin:8px 0;font-size:14px}
dt{color:var(--soft)}dd{margin:0;overflow-wrap:anywhere}
figure{margin:14px 0}figcaption{color:var(--soft);font-size:13px}
figcaption b{color:var(--ink)}
.area{position:relative;margin:10px 14px 26px 52px;height:240px;font-size:12px;color:var(--soft)}
.mid .area{height:180px}.low .area{height:110px}
.area svg{display:block;width:100%;height:100%;overflow:visible}
.y{position:absolute;right:100%;margin-right:7px;transform:translateY(50%);white-space:nowrap}
.x{position:absolute;top:100%;margin-top:4px;transform:translateX(-50%);white-space:nowrap}
path{vector-effect:non-scaling-stroke;fill:none}
.grid{stroke:var(--line);stroke-width:1}
.line{stroke-width:1.2;stroke-linejoin:round}.thick{stroke-width:2}.point{stroke-width:6;stroke-linecap:round}
.dashed{stroke-dasharray:6 4}
.band{stroke-width:1.2;stroke-linejoin:round;fill-opacity:.45}
.stutter{stroke:var(--bad);stroke-width:7;stroke-linecap:round}
.c0{--c:var(--c0)}.c1{--c:var(--c1)}.c2{--c:var(--c2)}.c3{--c:var(--c3)}.c4{--c:var(--c4)}.c5{--c:var(--c5)}
.line,.band{stroke:var(--c)}.band,.bar{fill:var(--c)}
.dot{display:inline-block;width:8px;height:8px;border-radius:50%;background:var(--bad)}
.key{display:inline-block;margin:0 12px 0 0;white-space:nowrap}
.swatch{display:inline-block;width:18px;border-top:3px solid var(--c);vertical-align:middle;margin-right:6px}
.swatch.dashed{border-top-style:dashed}
.sensors{display:grid;grid-template-columns:repeat(auto-fill,minmax(300px,1fr));gap:0 22px}
.note{background:var(--card);border-left:3px solid var(--bad);padding:8px 12px;border-radius:4px;margin:10px 0}
footer{margin-top:40px;color:var(--soft);font-size:13px}
@media (max-width:560px){main{padding:16px 14px 32px}h1{font-size:22px}.area{margin-left:44px;height:190px}
.card b{font-size:18px}dl{grid-template-columns:1fr}dt{margin-top:4px}.sensors{grid-template-columns:1fr}}
@media print{:root{color-scheme:light;--bg:#fff;--card:#f3f4f6;--ink:#000;--soft:#444;--line:#bbb;--bad:#c62828;
--c0:#1d4ed8;--c1:#b45309;--c2:#047857;--c3:#7e22ce;--c4:#9a3412;--c5:#0e7490}
body{font-size:11pt;-webkit-print-color-adjust:exact;print-color-adjust:exact}main{max-width:none;padding:0}
figure,tr,.card,dl,.note{break-inside:avoid}h2,h3{break-after:avoid}.scroll{overflow:visible}
.sensors{grid-template-columns:1fr 1fr}}
)";

std::string Card(const std::string& strValue, const std::string& strName, bool bBad = false) {
    return std::string("<div class=\"card") + (bBad ? " bad" : "") + "\"><b>" + Escaped(strValue) +
           "</b><span>" + Escaped(strName) + "</span></div>";
}

std::string Cards(const Reported& st) {
    const Figures& stFigures = st.stFigures;
    return "<div class=\"cards\">" + Card(RateText(stFigures.fMean), "average") +
           Card(RateText(stFigures.aafLow[LOW_PERCENTILE][LOW_1]), "1 % low (percentile)") +
           Card(RateText(stFigures.aafLow[LOW_PERCENTILE][LOW_01]), "0.1 % low (percentile)") +
           Card(MillisecondsText(stFigures.fMedian), "median frame") +
           Card(MillisecondsText(stFigures.fLongest), "longest frame") +
           Card(std::to_string(stFigures.listStutters.size()), "stutters", !stFigures.listStutters.empty()) +
           "</div>\n";
}

std::string HeadRow(const char* szFirst, const std::vector<std::string>& listTitles, const char* szLast) {
    std::string str = std::string("<tr><th>") + szFirst + "</th>";
    for (const std::string& strTitle : listTitles) str += "<th>" + Escaped(strTitle) + "</th>";
    if (*szLast) str += std::string("<th class=\"words\" style=\"text-align:left\">") + szLast + "</th>";
    return str + "</tr>";
}

std::string FigureTable(const std::vector<Reported>& listReported,
                        const std::vector<std::string>& listTitles) {
    std::string str = "<div class=\"scroll\"><table>" + HeadRow("", listTitles, "");
    for (const FigureRow& stRow : FigureRows()) {
        str += std::string("<tr><td>") + stRow.szTitle + "</td>";
        for (const Reported& st : listReported) str += "<td>" + Escaped(stRow.fnText(st)) + "</td>";
        str += "</tr>";
    }
    return str + "</table></div>\n";
}

std::string LowTable(const std::vector<Reported>& listReported, const std::vector<std::string>& listTitles) {
    std::string str = "<div class=\"scroll\"><table>" + HeadRow("low", listTitles, "in words");
    for (u32 uKind = 0; uKind < LOW_KINDS; ++uKind)
        for (u32 uShare = 0; uShare < LOW_SHARES; ++uShare) {
            str += std::string("<tr><td>") + g_aszShares[uShare] + " low, " +
                   g_aLowDefinitions[uKind].szTitle + "</td>";
            for (const Reported& st : listReported) {
                const f64 fLow = st.stFigures.aafLow[uKind][uShare];
                str += "<td>" + RateText(fLow) + "<small>" + MillisecondsText(fLow) + "</small></td>";
            }
            const std::string strWords = uShare == LOW_1
                                             ? LowWords(static_cast<LowKind>(uKind), g_aszShares[uShare])
                                             : "The same with 0.1 %.";
            str += "<td class=\"words\">" + Escaped(strWords) + "</td></tr>";
        }
    return str + "</table></div>\n<p class=\"soft\">A rate is 1000 divided by the frame time in "
                 "milliseconds. Programs "
                 "that call something \"1 % low\" mean one of these.</p>\n";
}

std::string HeadList(const Recording& st) {
    std::string str = "<dl>";
    for (const auto& [strKey, strValue] : st.listHead)
        if (!strValue.empty()) str += "<dt>" + Escaped(strKey) + "</dt><dd>" + Escaped(strValue) + "</dd>";
    return str + "</dl>\n";
}

std::string Notes(const Recording& st) {
    std::string str;
    if (st.uLost)
        str += "<p class=\"note\">" + std::to_string(st.uLost) +
               " frames were lost: nobody read them in time. They count nowhere in this report.</p>\n";
    if (st.strEnd.empty())
        str += "<p class=\"note\">The file breaks off: the recorder was killed, or its disk was full.</p>\n";
    return str;
}

std::string StutterTable(const Reported& st) {
    std::vector<Stutter> list = st.stFigures.listStutters;
    if (list.empty()) return {};
    const std::vector<f64> listTimes = TimesOfFrames(st.stRecording);
    std::stable_sort(list.begin(), list.end(),
                     [](const Stutter& a, const Stutter& b) { return a.fFrame > b.fFrame; });
    const bool bMore = list.size() > kStuttersListed;
    if (bMore) list.resize(kStuttersListed);
    std::string str = std::string("<h3>") + (bMore ? "The longest stutters" : "Stutters") +
                      "</h3><div class=\"scroll narrow\"><table><tr><th>at</th><th>frame</th><th>frames "
                      "around it</th></tr>";
    for (const Stutter& stOne : list) {
        char szTime[48];
        std::snprintf(szTime, sizeof szTime, "%.2f s", listTimes[stOne.uIndex] / 1000.0);
        str += std::string("<tr><td>") + szTime + "</td><td>" + MillisecondsText(stOne.fFrame) + "</td><td>" +
               MillisecondsText(stOne.fMedian) + "</td></tr>";
    }
    return str + "</table></div>\n";
}

std::string SensorPart(const Recording& st, size_t uColor) {
    if (st.listSensors.empty()) return {};
    std::string str = "<h3>Sensors</h3><div class=\"sensors\">";
    for (const Sensor& stSensor : st.listSensors) str += SensorChart(stSensor, uColor);
    return str + "</div>\n";
}

std::string RecordingPart(const Reported& st, const std::string& strTitle, size_t uColor) {
    return "<section><h2>" + Escaped(strTitle) + "</h2>\n" + Notes(st.stRecording) + Cards(st) +
           FrameTimeChart(st, uColor) + DistributionChart(st, uColor) + StutterTable(st) +
           SensorPart(st.stRecording, uColor) + "<h3>Recorded</h3>" + HeadList(st.stRecording) +
           "</section>\n";
}

std::string Heading(const std::vector<Reported>& listReported, const std::vector<std::string>& listTitles) {
    const bool bOne = listReported.size() == 1;
    std::string strProgram = listTitles.front();
    for (const auto& [strKey, strValue] : listReported.front().stRecording.listHead)
        if (bOne && strKey == "program" && !strValue.empty()) strProgram = strValue;
    return "<h1>" +
           Escaped(bOne ? strProgram : std::to_string(listReported.size()) + " recordings compared") +
           "</h1>\n";
}

std::string FigurePart(const std::vector<Reported>& listReported,
                       const std::vector<std::string>& listTitles) {
    return "<section><h2>Figures</h2>\n" + FigureTable(listReported, listTitles) +
           ShareChart(listReported, listTitles) +
           "</section>\n<section><h2>Lows, by every definition in use</h2>\n" +
           LowTable(listReported, listTitles) + "</section>\n";
}

} // namespace

std::string ReportPage(const std::vector<Reported>& listReported) {
    const std::vector<std::string> listTitles = Titles(listReported);
    std::string str = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
                      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
                      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
                      "'unsafe-inline'\">"
                      "<title>Frame times</title><style>";
    str += kStyle;
    str += "</style></head><body><main>\n" + Heading(listReported, listTitles);
    str += "<p class=\"soft\">Frame times as ORVIN-OSD has recorded them: from one call of the swap to the "
           "next.</p>\n";
    std::string strParts;
    for (size_t u = 0; u < listReported.size(); ++u)
        strParts += RecordingPart(listReported[u], listTitles[u], u);
    const std::string strFigures = FigurePart(listReported, listTitles);
    str +=
        listReported.size() > 1 ? strFigures + strParts : strParts + strFigures; // a comparison comes first
    str += "<footer>A stutter is a frame that took more than twice the median of the frames around it (up to "
           "15 before "
           "and 15 behind), and at least 4 ms more. Percentiles are by nearest rank. Lost frames and the "
           "gaps that they "
           "leave are no frame times.</footer>\n</main></body></html>\n";
    return str;
}

} // namespace companion::recording
