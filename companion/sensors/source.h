#pragma once
// What every reader of sensors is to the rest of the companion.
#include "companion/sensors/numbers.h"
#include "companion/sensors/reading.h"
#include <memory>
#include <string>
#include <vector>

namespace companion::sensors {

/// A family of sensors. None of its operations throws for what hardware or files do: what cannot be found is
/// not listed, and what cannot be read has no value.
class Source {
  public:
    virtual ~Source() = default;

    /// Looks for the hardware and proposes what needs an index.
    virtual void Probe(Numbers& numbers) = 0;
    /// Rebuilds Readings() from what Probe found, without values.
    virtual void List(const Numbers& numbers) = 0;
    /// Takes all values anew; the list itself does not change. Loads counted between two looks have a value
    /// from the second Read on.
    virtual void Read() = 0;

    const std::vector<Reading>& Readings() const { return m_listReadings; }
    /// What List found of cards and processors.
    const std::vector<Hardware>& Machine() const { return m_listHardware; }

  protected:
    std::vector<Reading> m_listReadings;
    std::vector<Hardware> m_listHardware;
};

using Sources = std::vector<std::unique_ptr<Source>>;

/// The readers of this system, over its own files and calls.
Sources SystemSources();

} // namespace companion::sensors
