#pragma once
// The commands about sensor values: publishing them and reading back what is published.
#include "companion/options.h"
#include "companion/sensors/published.h"
#include "companion/sensors/publisher.h"

namespace companion {

/// Publishes the machine's sensors, once or until a stop is asked for. At the end of a running feed its
/// values are taken back, since nothing would move them any more; --once leaves them.
Result Feed(const ControlLibrary& stLibrary, const Options& stOptions);

/// Publishes one value beside those that stand in the segment. A name that stands there already gets its
/// value in place, without any program building its lists anew. Published names of which the segment does not
/// tell every character are lost when a new name comes; a line on standard error says so.
Result SetValue(const sensors::PublishTarget& stTarget, const std::string& strName, i32 iValue);

std::string SensorTable(const std::vector<sensors::Reading>& listReadings);
std::string SensorJson(const std::vector<sensors::Reading>& listReadings);
/// The overlay's own names first, then the published ones.
std::string NameTable(const std::vector<sensors::PublishedValue>& listPublished);
std::string NameJson(const std::vector<sensors::PublishedValue>& listPublished);

void PrintSensors(const Options& stOptions);
void PrintNames(const ControlLibrary& stLibrary, const Options& stOptions);

} // namespace companion
