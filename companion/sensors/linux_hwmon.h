#pragma once
// Temperatures and fans of processor, mainboard and drives, from the kernel's hwmon folders. Graphics cards'
// own chips belong to LinuxGpu.
#include "companion/sensors/file_source.h"

namespace companion::sensors {

class LinuxHwmon : public FileSource {
  public:
    explicit LinuxHwmon(std::string strRoot) : m_strRoot(std::move(strRoot)) {}

    void Probe(Numbers& numbers) override;
    void List(const Numbers& numbers) override;

  private:
    struct Chip {
        std::string strFolder;
        std::string strName;
        std::string strKey; ///< name and place among its like
        u32 uPlace = 0;
    };
    void ListCore(const Chip& stChip, const Numbers& numbers);
    void ListProcessor(const Chip& stChip, const Numbers& numbers);
    void ListNumbered(const Chip& stChip, const Numbers& numbers);

    std::string m_strRoot;
    std::vector<Chip> m_listChips;
};

} // namespace companion::sensors
