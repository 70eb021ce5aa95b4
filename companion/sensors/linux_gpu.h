#pragma once
// Graphics cards by the files of their kernel drivers (amdgpu, i915, xe, nouveau, radeon). Cards of the
// driver "nvidia" belong to NvmlGpu.
#include "companion/sensors/file_source.h"
#include "companion/sensors/pci_names.h"

namespace companion::sensors {

class LinuxGpu : public FileSource {
  public:
    explicit LinuxGpu(std::string strRoot) : m_strRoot(std::move(strRoot)) {}

    void Probe(Numbers& numbers) override;
    void List(const Numbers& numbers) override;

  private:
    struct Card {
        std::string strFolder; ///< ".../card0"
        std::string strHwmon;  ///< folder of its chip; empty without one
        std::string strKey;    ///< its place on the bus
        std::string strName;   ///< of the model
    };
    void ListChip(const Card& stCard, u32 uIndex);
    std::string ModelName(const std::string& strCard, const std::string& strPciId);

    PciNames m_pciNames;
    std::string m_strRoot;
    std::vector<Card> m_listCards;
};

} // namespace companion::sensors
