#include "companion/recording/charts.h"
#include <algorithm>
#include <cmath>
#include <cstdio>

namespace companion::recording {
namespace {

constexpr f64 kSide = 1000.0;    ///< of the square that a picture is drawn in before it is stretched
constexpr size_t kColumns = 500; ///< of a graph over time
constexpr size_t kBars = 60;
constexpr size_t kMarksMost = 400; ///< stutters that are marked, the longest ones

std::string Short(f64 f) {
    char sz[48];
    std::snprintf(sz, sizeof sz, "%.6g", f);
    return sz;
}

std::string Place(f64 f) {
    char sz[48];
    std::snprintf(sz, sizeof sz, "%.1f", std::clamp(f, -kSide, 2 * kSide));
    return sz;
}

/// From values to the square.
struct Scale {
    f64 fFrom = 0.0, fTo = 1.0;
    f64 At(f64 f) const { return fTo > fFrom ? (f - fFrom) / (fTo - fFrom) : 0.5; }
};

struct Picture {
    Scale stX, stY;
    std::string strShapes, strLabels;

    std::string X(f64 f) const { return Place(stX.At(f) * kSide); }
    std::string Y(f64 f) const { return Place((1.0 - stY.At(f)) * kSide); }
    std::string Point(f64 fX, f64 fY) const { return X(fX) + " " + Y(fY); }
};

void Path(Picture& st, const std::string& strClass, const std::string& strWay) {
    if (!strWay.empty()) st.strShapes += "<path class=\"" + strClass + "\" d=\"" + strWay + "\"/>";
}

std::string Percent(f64 fShare) {
    char sz[32];
    std::snprintf(sz, sizeof sz, "%.2f%%", fShare * 100.0);
    return sz;
}

void MarkY(Picture& st, f64 f, const std::string& strText) {
    Path(st, "grid", "M0 " + st.Y(f) + "H1000");
    st.strLabels += "<span class=\"y\" style=\"bottom:" + Percent(st.stY.At(f)) + "\">" + strText + "</span>";
}

void MarkX(Picture& st, f64 f, const std::string& strText) {
    st.strLabels += "<span class=\"x\" style=\"left:" + Percent(st.stX.At(f)) + "\">" + strText + "</span>";
}

void MarkSeconds(Picture& st) {
    for (const f64 f : Ticks(st.stX.fFrom / 1000.0, st.stX.fTo / 1000.0, 6))
        MarkX(st, f * 1000.0, Short(f) + " s");
}

void MarkValues(Picture& st, u32 uMost) {
    for (const f64 f : Ticks(st.stY.fFrom, st.stY.fTo, uMost)) MarkY(st, f, Short(f));
}

std::string Finish(const Picture& st, const std::string& strKind, const std::string& strWords,
                   const std::string& strCaption) {
    return "<figure class=\"plot " + strKind +
           "\"><div class=\"area\"><svg viewBox=\"0 0 1000 1000\" "
           "preserveAspectRatio=\"none\" role=\"img\" aria-label=\"" +
           Escaped(strWords) + "\">" + st.strShapes + "</svg>" + st.strLabels + "</div><figcaption>" +
           strCaption + "</figcaption></figure>\n";
}

std::string ColorClass(const char* szKind, size_t uColor) {
    return std::string(szKind) + " c" + std::to_string(uColor % 6) + (uColor >= 6 ? " dashed" : "");
}

/// The highest frame time that is shown: a single long frame must not press all others flat.
f64 Top(const Figures& st) {
    return std::max(std::min(st.fLongest * 1.06, std::max(st.fMedian * 8.0, st.f99 * 1.3)), 0.001);
}

/// Shortest and longest of each column of time.
struct Band {
    f64 fLow = 0.0, fHigh = -1.0;
};

std::vector<Band> Bands(const std::vector<f64>& listTimes, const std::vector<f64>& listFrames,
                        const Scale& stX) {
    std::vector<Band> listBands(kColumns);
    for (size_t u = 0; u < listFrames.size(); ++u) {
        const f64 fAt = std::clamp(stX.At(listTimes[u]) * static_cast<f64>(kColumns), 0.0, kColumns - 1.0);
        Band& st = listBands[static_cast<size_t>(fAt)];
        st.fLow = st.fHigh < 0.0 ? listFrames[u] : std::min(st.fLow, listFrames[u]);
        st.fHigh = std::max(st.fHigh, listFrames[u]);
    }
    return listBands;
}

/// An area between the longest and the shortest frames where there are many, a line where there are few.
std::string FrameWay(const Picture& st, const std::vector<f64>& listTimes,
                     const std::vector<f64>& listFrames) {
    std::string strWay;
    if (listFrames.size() <= 2 * kColumns) {
        for (size_t u = 0; u < listFrames.size(); ++u)
            strWay += (u ? "L" : "M") + st.Point(listTimes[u], std::min(listFrames[u], st.stY.fTo));
        return strWay;
    }
    std::string strBack;
    const std::vector<Band> listBands = Bands(listTimes, listFrames, st.stX);
    for (size_t u = 0; u < kColumns; ++u) {
        if (listBands[u].fHigh < 0.0) continue;
        const std::string strX = Place((static_cast<f64>(u) + 0.5) * kSide / kColumns);
        strWay += (strWay.empty() ? "M" : "L") + strX + " " + st.Y(std::min(listBands[u].fHigh, st.stY.fTo));
        strBack = "L" + strX + " " + st.Y(std::min(listBands[u].fLow, st.stY.fTo)) + strBack;
    }
    return strWay + strBack + "Z";
}

/// A dot for each stutter, of the longest ones where there are very many.
std::string StutterWay(const Picture& st, const Figures& stFigures, const std::vector<f64>& listTimes) {
    std::vector<Stutter> list = stFigures.listStutters;
    std::sort(list.begin(), list.end(),
              [](const Stutter& a, const Stutter& b) { return a.fFrame > b.fFrame; });
    if (list.size() > kMarksMost) list.resize(kMarksMost);
    std::string strWay;
    for (const Stutter& stOne : list)
        strWay += "M" + st.Point(listTimes[stOne.uIndex], std::min(stOne.fFrame, st.stY.fTo)) + "h0";
    return strWay;
}

size_t CountAbove(const std::vector<f64>& list, f64 f) {
    return static_cast<size_t>(std::count_if(list.begin(), list.end(), [f](f64 fOne) { return fOne > f; }));
}

} // namespace

std::string Escaped(const std::string& str) {
    std::string strOut;
    for (const char c : str) {
        switch (c) {
        case '<':
            strOut += "&lt;";
            break;
        case '>':
            strOut += "&gt;";
            break;
        case '&':
            strOut += "&amp;";
            break;
        case '"':
            strOut += "&quot;";
            break;
        case '\'':
            strOut += "&#39;";
            break;
        default:
            strOut += c;
        }
    }
    return strOut;
}

std::vector<f64> Ticks(f64 fFrom, f64 fTo, u32 uMost) {
    std::vector<f64> listTicks;
    if (!(fTo > fFrom) || uMost == 0) return listTicks;
    const f64 fRaw = (fTo - fFrom) / uMost;
    const f64 fTen = std::pow(10.0, std::floor(std::log10(fRaw)));
    const f64 fPart = fRaw / fTen;
    const f64 fStep = fTen * (fPart <= 1.0 ? 1.0 : fPart <= 2.0 ? 2.0 : fPart <= 5.0 ? 5.0 : 10.0);
    const f64 fFirst = std::ceil(fFrom / fStep - 1e-9);
    for (u32 u = 0; u <= uMost + 1; ++u) {
        const f64 f = (fFirst + u) * fStep;
        if (f <= fTo + fStep * 1e-9) listTicks.push_back(f);
    }
    return listTicks;
}

std::string FrameTimeChart(const Reported& st, size_t uColor) {
    const std::vector<f64> listFrames = FrameTimes(st.stRecording), listTimes = TimesOfFrames(st.stRecording);
    Picture stPicture;
    stPicture.stX = {listTimes.front(), listTimes.back()};
    stPicture.stY = {0.0, Top(st.stFigures)};
    MarkValues(stPicture, 6);
    MarkSeconds(stPicture);
    Path(stPicture, ColorClass(listFrames.size() <= 2 * kColumns ? "line" : "band", uColor),
         FrameWay(stPicture, listTimes, listFrames));
    Path(stPicture, "stutter", StutterWay(stPicture, st.stFigures, listTimes));
    const size_t uBeyond = CountAbove(listFrames, stPicture.stY.fTo);
    std::string strCaption = "Frame time in milliseconds over the recording";
    if (!st.stFigures.listStutters.empty())
        strCaption += "; <span class=\"dot\"></span> " + std::to_string(st.stFigures.listStutters.size()) +
                      (st.stFigures.listStutters.size() == 1 ? " stutter" : " stutters");
    if (uBeyond)
        strCaption += "; " + std::to_string(uBeyond) + (uBeyond == 1 ? " frame reaches" : " frames reach") +
                      " beyond the top";
    return Finish(stPicture, "high", "frame times of " + st.stRecording.strName, strCaption);
}

std::string DistributionChart(const Reported& st, size_t uColor) {
    const std::vector<f64> listFrames = FrameTimes(st.stRecording);
    Picture stPicture;
    const f64 fTo = std::max(std::min(st.stFigures.fLongest, st.stFigures.f99 * 1.25), 0.001);
    stPicture.stX = {std::max(0.0, st.stFigures.fShortest - (fTo - st.stFigures.fShortest) * 0.03),
                     fTo * 1.02};
    std::vector<size_t> listBars(kBars);
    for (const f64 f : listFrames) {
        const f64 fAt = stPicture.stX.At(f) * static_cast<f64>(kBars);
        if (fAt >= 0.0 && fAt < static_cast<f64>(kBars)) ++listBars[static_cast<size_t>(fAt)];
    }
    const f64 fAll = static_cast<f64>(listFrames.size()) / 100.0;
    const size_t uHighest = *std::max_element(listBars.begin(), listBars.end());
    stPicture.stY = {0.0, std::max(static_cast<f64>(uHighest) / fAll * 1.08, 0.01)};
    for (const f64 f : Ticks(0.0, stPicture.stY.fTo, 4)) MarkY(stPicture, f, Short(f) + " %");
    for (const f64 f : Ticks(stPicture.stX.fFrom, stPicture.stX.fTo, 6))
        MarkX(stPicture, f, Short(f) + " ms");
    std::string strWay;
    for (size_t u = 0; u < kBars; ++u) {
        if (!listBars[u]) continue;
        const f64 fWide = kSide / kBars, fX = static_cast<f64>(u) * fWide;
        // One frame among many is still a line to be seen.
        const f64 fShare = std::max(static_cast<f64>(listBars[u]) / fAll, stPicture.stY.fTo * 0.004);
        strWay +=
            "M" + Place(fX + 1) + " 1000V" + stPicture.Y(fShare) + "H" + Place(fX + fWide - 1) + "V1000Z";
    }
    Path(stPicture, ColorClass("bar", uColor), strWay);
    const size_t uBeyond = CountAbove(listFrames, stPicture.stX.fTo);
    std::string strCaption = "Share of the frames by their time";
    if (uBeyond) strCaption += "; " + std::to_string(uBeyond) + " longer than shown";
    return Finish(stPicture, "mid", "distribution of frame times", strCaption);
}

std::string ShareChart(const std::vector<Reported>& listReported,
                       const std::vector<std::string>& listTitles) {
    Picture stPicture;
    // The further to the right, the finer: 50, 90, 99, 99.9, 99.99 percent.
    const auto fnPlace = [](f64 fShare) { return -std::log10(1.0 - fShare); };
    const f64 fFirst = 0.5, fLast = 0.9999;
    stPicture.stX = {fnPlace(fFirst), fnPlace(fLast)};
    for (const Reported& st : listReported)
        stPicture.stY.fTo =
            std::max(stPicture.stY.fTo, std::min(st.stFigures.fLongest * 1.06, st.stFigures.f999 * 1.5));
    MarkValues(stPicture, 5);
    for (const f64 f : {0.5, 0.9, 0.99, 0.999, 0.9999}) MarkX(stPicture, fnPlace(f), Short(f * 100.0) + " %");
    std::string strKeys;
    for (size_t u = 0; u < listReported.size(); ++u) {
        std::vector<f64> listSorted = FrameTimes(listReported[u].stRecording);
        std::sort(listSorted.begin(), listSorted.end());
        std::string strWay;
        for (f64 f = stPicture.stX.fFrom; f <= stPicture.stX.fTo; f += 0.02)
            strWay += (strWay.empty() ? "M" : "L") +
                      stPicture.Point(
                          f, std::min(Interpolated(listSorted, 1.0 - std::pow(10.0, -f)), stPicture.stY.fTo));
        Path(stPicture, ColorClass("line thick", u), strWay);
        strKeys += "<span class=\"key\"><span class=\"" + ColorClass("swatch", u) + "\"></span>" +
                   Escaped(listTitles[u]) + "</span> ";
    }
    return Finish(stPicture, "high", "frame times by share of frames",
                  "Frame time in milliseconds that a share of the frames does not exceed. " +
                      (listReported.size() > 1 ? strKeys : ""));
}

std::string SensorChart(const Sensor& stSensor, size_t uColor) {
    Picture stPicture;
    f64 fLowest = stSensor.listValues.front().second, fHighest = fLowest;
    for (const auto& [fTime, fValue] : stSensor.listValues)
        fLowest = std::min(fLowest, fValue), fHighest = std::max(fHighest, fValue);
    const f64 fMargin = std::max((fHighest - fLowest) * 0.1, std::max(std::abs(fHighest) * 0.01, 0.5));
    stPicture.stX = {stSensor.listValues.front().first, stSensor.listValues.back().first};
    stPicture.stY = {fLowest >= 0.0 ? std::max(0.0, fLowest - fMargin) : fLowest - fMargin,
                     fHighest + fMargin};
    MarkValues(stPicture, 3);
    for (const f64 f : Ticks(stPicture.stX.fFrom / 1000.0, stPicture.stX.fTo / 1000.0, 4))
        MarkX(stPicture, f * 1000.0, Short(f) + " s");
    std::string strWay;
    const size_t uStep = stSensor.listValues.size() / 1000 + 1;
    for (size_t u = 0; u < stSensor.listValues.size(); u += uStep)
        strWay +=
            (u ? "L" : "M") + stPicture.Point(stSensor.listValues[u].first, stSensor.listValues[u].second);
    if (stSensor.listValues.size() == 1) strWay += "h0";
    Path(stPicture, ColorClass(stSensor.listValues.size() == 1 ? "line thick point" : "line thick", uColor),
         strWay);
    const std::string strUnit = stSensor.strUnit == "C" ? "&deg;C" : Escaped(stSensor.strUnit);
    return Finish(stPicture, "low", stSensor.strName,
                  "<b>" + Escaped(stSensor.strName) + "</b>" + (strUnit.empty() ? "" : " in " + strUnit) +
                      ", " + Short(fLowest) + (fHighest > fLowest ? " to " + Short(fHighest) : ""));
}

} // namespace companion::recording
