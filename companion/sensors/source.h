#pragma once
// What every reader of sensors is to the rest of the companion.
#include "companion/sensors/numbers.h"
#include "companion/sensors/reading.h"
#include <memory>
#include <string>
#include <vector>

namespace companion::sensors {

/// A family of sensors. Probe looks for the hardware and fills the list of readings; Read takes their values.
/// Neither throws for what hardware or files do: what cannot be found or read is left out or without value.
class Source {
  public:
    virtual ~Source() = default;

    /// Rebuilds Readings() from what is there now. Values of counters that need two looks stay empty.
    virtual void Probe(Numbers& numbers) = 0;
    /// Takes the values of all readings anew. The list itself does not change.
    virtual void Read() = 0;

    const std::vector<Reading>& Readings() const { return m_listReadings; }

  protected:
    std::vector<Reading> m_listReadings;
};

using Sources = std::vector<std::unique_ptr<Source>>;

/// The readers of this system, over its own files and calls.
Sources SystemSources();

} // namespace companion::sensors
