#pragma once
// Values to draw a profile with: made up, read from a file, or those of this machine.
#include "companion/result.h"
#include "companion/sensors/publisher.h"
#include "platform/types.h"
#include <set>
#include <string>

namespace companion {

/// A plausible value of a data name at a moment, moving gently; alike on every machine. A name that no
/// sensor has gets one between 0 and 100.
i32 SampleValue(const std::string& strName, double dSeconds);
/// The names that come with every sample: those of one processor, one card, memory, fans and drives.
const std::set<std::string>& SampleNames();

/// Simulated seconds from one frame to the next at a moment: some 70 frames a second, not quite even.
double SampleFrameSeconds(double dSeconds);

/// Values of a text: lines of a name, blanks or "=", and a whole number. Empty lines and those that begin
/// with ";" count for nothing. The first bad line is told, with its number.
Result ParseValues(const std::string& strText, sensors::ValueMap& mapValues);

/// Where values come from: "sample", "live" or the path of a file. strLibrary: see LoadControlLibrary.
class ValueSource {
  public:
    /// Reads what is to be read.
    Result Open(const std::string& strWish, const std::string& strLibrary);
    /// Values at a moment, of at least the names that a profile shows.
    sensors::ValueMap At(double dSeconds, const std::set<std::string>& setShown) const;

  private:
    bool m_bSample = false;
    sensors::ValueMap m_mapValues;
};

/// What is published on this machine; without any, what its sensors say.
sensors::ValueMap LiveValues(const std::string& strLibrary);

} // namespace companion
