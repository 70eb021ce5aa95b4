#pragma once
// All sources together.
#include "companion/sensors/source.h"

namespace companion::sensors {

class Collector {
  public:
    explicit Collector(Sources listSources) : m_listSources(std::move(listSources)) {}

    /// Looks for hardware; indexes given once stay.
    void Probe();
    /// Takes all values.
    void Read();
    /// All readings, those without a value too. A name that two sources offer is listed once, of the first
    /// that has a value.
    const std::vector<Reading>& Readings() const { return m_listReadings; }
    /// Cards and processors that are there, by what the sources told at the last Probe.
    std::vector<Hardware> Machine() const;

  private:
    void Gather();

    Sources m_listSources;
    Numbers m_numbers;
    std::vector<Reading> m_listReadings;
};

} // namespace companion::sensors
