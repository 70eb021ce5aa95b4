#pragma once
// Cards whose driver brings the NVML library, which is opened at run time. Portable: only the library's name
// and the opening differ from system to system.
#include "companion/sensors/source.h"

namespace companion::sensors {

/// The part of NVML that is used, by its own prototypes. Every function answers 0 for success.
struct NvmlCalls {
    struct Device_t;
    using Device = Device_t*;
    struct Utilization {
        unsigned uGpu, uMemory; ///< percent of the last period
    };
    struct Memory {
        unsigned long long uTotal, uFree, uUsed; ///< bytes
    };
    struct PciInfo {
        char szBusIdLegacy[16];
        unsigned uDomain, uBus, uDevice, uPciDeviceId, uPciSubSystemId;
        char szBusId[32];
    };
    struct FanSpeed {
        unsigned uVersion, uFan, uSpeed; ///< RPM
    };

    int (*fnInit)() = nullptr;
    int (*fnShutdown)() = nullptr;
    int (*fnGetCount)(unsigned*) = nullptr;
    int (*fnGetHandle)(unsigned, Device*) = nullptr;
    // These may be missing, each on its own.
    int (*fnGetPciInfo)(Device, PciInfo*) = nullptr;
    int (*fnGetName)(Device, char*, unsigned) = nullptr;
    int (*fnGetClock)(Device, int, unsigned*) = nullptr;
    int (*fnGetTemperature)(Device, int, unsigned*) = nullptr;
    int (*fnGetUtilization)(Device, Utilization*) = nullptr;
    int (*fnGetMemory)(Device, Memory*) = nullptr;
    int (*fnGetFanCount)(Device, unsigned*) = nullptr;
    int (*fnGetFanDuty)(Device, unsigned, unsigned*) = nullptr;
    int (*fnGetFanSpeed)(Device, FanSpeed*) = nullptr;
    int (*fnGetPower)(Device, unsigned*) = nullptr;        ///< milliwatts
    int (*fnGetPowerLimit)(Device, unsigned*) = nullptr;   ///< milliwatts
    int (*fnGetPowerDefault)(Device, unsigned*) = nullptr; ///< milliwatts
};

/// Opens the library and fills stCalls; false if it is not there or lacks what is needed. The library stays
/// open.
bool OpenNvml(NvmlCalls& stCalls);

class NvmlGpu : public Source {
  public:
    /// fnOpen is tried at every Probe until it succeeds.
    explicit NvmlGpu(bool (*fnOpen)(NvmlCalls&) = OpenNvml) : m_fnOpen(fnOpen) {}
    ~NvmlGpu() override;
    NvmlGpu(const NvmlGpu&) = delete;
    NvmlGpu& operator=(const NvmlGpu&) = delete;

    void Probe(Numbers& numbers) override;
    void List(const Numbers& numbers) override;
    void Read() override;

    enum class What {
        Clock,
        MemoryClock,
        Temp,
        Usage,
        MemoryUsed,
        MemoryShare,
        Power,
        PowerTarget,
        Duty,
        Speed
    };

  private:
    struct Card {
        NvmlCalls::Device hDevice = nullptr;
        std::string strKey;
        std::string strTitle;
        std::string strName;
        u64 uMemory = 0;
    };
    struct Channel {
        NvmlCalls::Device hDevice;
        What eWhat;
        u32 uFan;
    };
    bool Start();
    Card Describe(NvmlCalls::Device hDevice, unsigned uPlace) const;
    void Add(const Card& stCard, What eWhat, u32 uFan, const std::string& strBase, const char* szUnit,
             u32 uIndex);
    void ListFans(const Card& stCard, u32 uIndex);
    std::optional<i32> ReadChannel(const Channel& st) const;

    bool (*m_fnOpen)(NvmlCalls&);
    NvmlCalls m_stCalls;
    bool m_bOpen = false;
    bool m_bStarted = false;
    std::vector<Card> m_listCards;
    std::vector<Channel> m_listChannels; ///< one a reading
};

} // namespace companion::sensors
