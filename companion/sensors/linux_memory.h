#pragma once
// The machine's memory, from procfs.
#include "companion/sensors/source.h"

namespace companion::sensors {

class LinuxMemory : public Source {
  public:
    explicit LinuxMemory(const std::string& strRoot) : m_strFile(strRoot + "/proc/meminfo") {}

    void Probe(Numbers&) override {}
    void List(const Numbers&) override;
    void Read() override;

  private:
    std::string m_strFile, m_strText;
};

} // namespace companion::sensors
