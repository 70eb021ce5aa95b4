#pragma once
// Pictures of a report, as pieces of a page: lines and areas in SVG that stretches, labels as text that does
// not.
#include "companion/recording/report.h"
#include <string>
#include <vector>

namespace companion::recording {

/// Text as it may stand in a page.
std::string Escaped(const std::string& str);

/// Round values for the marks of an axis from 0 or fFrom on.
std::vector<f64> Ticks(f64 fFrom, f64 fTo, u32 uMost);

std::string FrameTimeChart(const Reported& st, size_t uColor);
std::string DistributionChart(const Reported& st, size_t uColor);
/// Frame times by the share of frames that stay below, all recordings in one picture.
std::string ShareChart(const std::vector<Reported>& listReported, const std::vector<std::string>& listTitles);
std::string SensorChart(const Sensor& stSensor, size_t uColor);

} // namespace companion::recording
