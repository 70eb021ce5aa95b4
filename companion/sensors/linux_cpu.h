#pragma once
// Load and clock of the processor packages, from procfs and cpufreq.
#include "companion/sensors/source.h"

namespace companion::sensors {

class LinuxCpu : public Source {
  public:
    /// strRoot stands before "/proc" and "/sys".
    explicit LinuxCpu(std::string strRoot) : m_strRoot(std::move(strRoot)) {}

    void Probe(Numbers& numbers) override;
    void List(const Numbers& numbers) override;
    void Read() override;

  private:
    struct Processor {
        u32 uPackage = 0;          ///< place in m_listPackages
        std::string strClock;      ///< file of the present clock; empty without one
        u64 uTotal = 0, uIdle = 0; ///< ticks at the last look
        bool bSeen = false;        ///< there was a look
    };
    struct Package {
        i64 iId = 0;
        std::optional<size_t> uUsage, uClock; ///< places in the list of readings
        u64 uTotal = 0, uIdle = 0;            ///< ticks since the look before
        f64 fMegahertz = 0.0;                 ///< the fastest processor; 0: none known
        std::string strName;
    };
    u32 PackageOf(i64 iId);
    void FindProcessors();
    void FindNames();
    void CountTicks(Processor& stProcessor, u64 uTotal, u64 uIdle);
    void ReadTicks();
    void ShowLoads(bool bReadable);
    void ReadClocks();
    template <class Take> void ForEachInfoValue(std::string_view strName, Take take);
    void ReadInfoClocks();
    void KeepClock(const Processor& stProcessor, f64 fMegahertz);
    void ShowClocks();

    std::string m_strRoot, m_strText;
    std::map<u64, Processor> m_mapProcessors; ///< by the kernel's number
    std::vector<Package> m_listPackages;
    std::map<i64, i32>
        m_mapLoads;             ///< last known load of each package, which outlives a new look for hardware
    bool m_bInfoClocks = false; ///< no cpufreq: clocks stand in cpuinfo
};

} // namespace companion::sensors
