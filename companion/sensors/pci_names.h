#pragma once
// Names of devices by their numbers, out of the list that systems keep.
#include <map>
#include <string>

namespace companion::sensors {

class PciNames {
  public:
    /// Name of a device "VENDOR:DEVICE" in hexadecimal digits; the word in brackets where there is one, as it
    /// is the one on the box. Empty if no list below strRoot knows it. Looked up once.
    const std::string& Find(const std::string& strRoot, const std::string& strPciId);

  private:
    std::map<std::string, std::string> m_mapNames;
};

} // namespace companion::sensors
