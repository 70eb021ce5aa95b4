#pragma once
// What recordings say, as a page, as text and as JSON.
#include "companion/options.h"
#include "companion/recording/figures.h"
#include "companion/recording/recording.h"
#include "companion/result.h"
#include <string>
#include <vector>

namespace companion {

/// Reads the recordings and writes what is asked for.
Result WriteReport(const Options& stOptions);

namespace recording {

/// A recording with its figures.
struct Reported {
    Recording stRecording;
    Figures stFigures;
};

std::string ReportText(const std::vector<Reported>& listReported);
std::string ReportJson(const std::vector<Reported>& listReported);
/// One page without anything from elsewhere: no script, no style sheet, no picture.
std::string ReportPage(const std::vector<Reported>& listReported);

/// Of a frame time and its rate, for people.
std::string MillisecondsText(f64 f);
std::string RateText(f64 fMilliseconds);
/// The words of a definition for one share.
std::string LowWords(LowKind eKind, const std::string& strShare);
/// Time of each known frame time in the recording, in their order.
std::vector<f64> TimesOfFrames(const Recording& st);
/// One word a recording is called by, and no other of the list.
std::vector<std::string> Titles(const std::vector<Reported>& listReported);

/// A figure of a recording in words, for tables.
struct FigureRow {
    const char* szTitle;
    std::string (*fnText)(const Reported& st);
};
const std::vector<FigureRow>& FigureRows();

} // namespace recording
} // namespace companion
