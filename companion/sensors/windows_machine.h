#pragma once
// Load and clock of the processors and the machine's memory, by system calls of Windows. The processors count
// as one, whatever their number of packages.
#include "companion/sensors/source.h"

namespace companion::sensors {

class WindowsCpu : public Source {
  public:
    void Probe(Numbers& numbers) override;
    void List(const Numbers&) override;
    void Read() override;

  private:
    std::optional<i32> ReadLoad();

    u64 m_uTotal = 0, m_uIdle = 0; ///< 100 nanoseconds at the last look; 0: none yet
    std::optional<i32> m_iLoad;    ///< of the last look
};

class WindowsMemory : public Source {
  public:
    void Probe(Numbers&) override {}
    void List(const Numbers&) override;
    void Read() override;
};

} // namespace companion::sensors
